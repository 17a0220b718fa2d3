#include "platform/linux/process/helper.h"

#include <system_error>
#include <thread>
#include <utility>

#include "platform/linux/process/fault_signals.h"

namespace hl {

// The work is destroyed before its end is reported: what it owns may be on the disk, too, and closing that
// may hang.
std::shared_ptr<Helper> Helper::start(Work work, bool mayHang) {
    std::shared_ptr<HelperSlot> slot;
    if (mayHang) {
        auto taken = HelperSlot::take();
        if (!taken) return nullptr;
        slot = std::make_shared<HelperSlot>(std::move(*taken));
    }
    auto helper = std::make_shared<Helper>();
    auto body = [helper, work = std::move(work), slot]() mutable {
        std::exception_ptr failure;
        try {
            LinuxFaultSignals().prepareThread();
            work(helper->whereabouts_);
        } catch (const LeftBehind&) {  // Nobody is left to be told.
            failure = nullptr;
        } catch (...) {
            failure = std::current_exception();
        }
        work = nullptr;
        {
            const std::lock_guard lock(helper->mutex_);
            helper->failure_ = std::move(failure);
            helper->over_ = true;
            helper->ended_.notify_all();
        }
        slot.reset();
    };
    try {
        std::thread(std::move(body)).detach();
    } catch (const std::system_error&) {
        return nullptr;
    }
    return helper;
}

bool Helper::endsWithin(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, time, [this] { return over_; });
}

void Helper::join() {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [this] { return over_; });
}

void Helper::rethrow() {
    const std::lock_guard lock(mutex_);
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

bool Helper::leave() {
    whereabouts_.leave();
    const std::lock_guard lock(mutex_);
    return !over_;
}

void closeBeside(Descriptor file) noexcept {
    try {
        Helper::start([number = file.release()](Whereabouts&) { Descriptor(number).close(); }, true);
    } catch (...) {  // There is no memory for a helper.
        file.release();
    }
}

}  // namespace hl
