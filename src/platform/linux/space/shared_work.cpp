#include "platform/linux/space/shared_work.h"

#include <system_error>
#include <utility>

#include "base/scope_exit.h"
#include "platform/linux/process/fault_signals.h"

namespace hl {

namespace {

constexpr std::size_t kWorthSharing = 8;  // Items; to wake a thread takes as long as some of them.

}  // namespace

SharedWork::~SharedWork() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        offer_ = Offer::kOver;
    }
    changed_.notify_all();
    thread_.join();
}

void SharedWork::run(std::size_t count, const Work& work) {
    if (count < kWorthSharing || !startHelp()) {
        for (std::size_t item = 0; item < count; ++item) work(0, item);
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        count_ = count;
        work_ = &work;
        next_.store(0, std::memory_order_relaxed);
        offer_ = Offer::kThere;
    }
    changed_.notify_all();
    {
        const ScopeExit end([this] { endWork(); });
        doItems(0);
    }
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

bool SharedWork::startHelp() noexcept {
    if (thread_.joinable()) return true;
    try {
        thread_ = std::thread([this] { help(); });
    } catch (const std::system_error&) {  // There are too many threads.
        return false;
    }
    return true;
}

void SharedWork::doItems(std::size_t thread) {
    const ScopeExit noMore([this] { next_.store(count_, std::memory_order_relaxed); });
    for (;;) {
        const std::size_t item = next_.fetch_add(1, std::memory_order_relaxed);
        if (item >= count_) return;
        (*work_)(thread, item);
    }
}

// Takes the offer back if the other thread has not woken up by now.
void SharedWork::endWork() {
    std::unique_lock lock(mutex_);
    if (offer_ == Offer::kThere) offer_ = Offer::kNone;
    changed_.wait(lock, [this] { return offer_ == Offer::kNone; });
}

void SharedWork::help() noexcept {
    LinuxFaultSignals().prepareThread();
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return offer_ == Offer::kThere || offer_ == Offer::kOver; });
        if (offer_ == Offer::kOver) return;
        offer_ = Offer::kTaken;
        lock.unlock();
        std::exception_ptr failure;
        try {
            doItems(1);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        failure_ = std::move(failure);
        offer_ = Offer::kNone;
        changed_.notify_all();
    }
}

}  // namespace hl
