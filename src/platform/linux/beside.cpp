#include "platform/linux/beside.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <system_error>
#include <thread>

namespace hl {

namespace {
// A click is taken within a frame of the screen.
constexpr std::chrono::milliseconds kBetweenLooks{16};
}  // namespace

void runBeside(const std::function<void(Whereabouts&)>& work, OperationWatch& watch) {
    Whereabouts whereabouts;
    std::mutex mutex;
    std::condition_variable ended;
    bool over = false;
    std::exception_ptr failure;
    const auto body = [&] {
        try {
            work(whereabouts);
        } catch (...) {
            failure = std::current_exception();
        }
        const std::lock_guard lock(mutex);
        over = true;
        ended.notify_one();
    };
    std::thread thread;
    try {
        thread = std::thread(body);
    } catch (const std::system_error&) {
        work(whereabouts);
        return;
    }
    // Whatever the watch throws, the work is not left alone with what lies on this stack.
    try {
        std::unique_lock lock(mutex);
        while (!ended.wait_for(lock, kBetweenLooks, [&] { return over; })) {
            lock.unlock();
            if (!watch.stillAt(whereabouts.now())) whereabouts.end();
            lock.lock();
        }
    } catch (...) {
        thread.join();
        throw;
    }
    thread.join();
    if (failure) std::rethrow_exception(failure);
}

}  // namespace hl
