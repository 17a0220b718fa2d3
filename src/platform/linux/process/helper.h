// Does work on a thread of its own. If it hangs on a disk that does not answer, it is abandoned: it is never
// joined, owns everything that it uses, and its late result is dropped.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/helper_slot.h"

namespace hl {

/// Is thrown in work that was abandoned, so that it does nothing more.
struct LeftBehind {};

/// Tells what the work is doing. As long as nobody asks, that costs only a look at a flag.
class Whereabouts {
  public:
    /// For the working thread: tells where it is. `path()` is called only if somebody waits for an answer.
    template <class Path>
    void at(Path&& path) {
        if (!asked_.load(std::memory_order_relaxed)) return;
        const std::lock_guard lock(mutex_);
        if (left_) throw LeftBehind();
        path_ = path();
        asked_.store(false, std::memory_order_relaxed);
    }
    /// For the waiting thread: returns what was told last, and asks for more. `isNew` tells whether something
    /// was told since the last call.
    std::string now(bool& isNew) {
        const std::lock_guard lock(mutex_);
        isNew = !asked_.exchange(true, std::memory_order_relaxed);
        return path_;
    }
    /// For the waiting thread: asks the work to end, if it can.
    void end() { unwanted_.store(true, std::memory_order_relaxed); }
    bool unwanted() const { return unwanted_.load(std::memory_order_relaxed); }
    /// For the working thread: tells whether nobody waits for it any more.
    bool isLeft() {
        const std::lock_guard lock(mutex_);
        return left_;
    }
    /// Makes the work end when it next tells where it is.
    void leave() {
        end();
        const std::lock_guard lock(mutex_);
        left_ = true;
        asked_.store(true, std::memory_order_relaxed);
    }

  private:
    std::atomic<bool> asked_{true}, unwanted_{false};
    std::mutex mutex_;
    std::string path_;
    bool left_ = false;
};

class Helper {
  public:
    using Work = std::function<void(Whereabouts&)>;
    /// Starts the work. With `mayHang`, if the disk may not answer, the helper takes a slot. Returns null if
    /// there is no thread, or no slot.
    static std::shared_ptr<Helper> start(Work work, bool mayHang);

    Whereabouts& whereabouts() { return whereabouts_; }
    /// Waits at most that long; returns whether the work has ended.
    bool endsWithin(std::chrono::milliseconds time);
    /// Waits without a limit.
    void join();
    /// Throws what the work threw. REQUIRES: it has ended.
    void rethrow();
    /// Abandons the work. Returns false if it has ended already.
    bool leave();

  private:
    Whereabouts whereabouts_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool over_ = false;
    std::exception_ptr failure_;
};

/// Closes a file on a disk that may not answer; nobody waits for that. If no helper can begin, the file stays
/// open.
void closeBeside(Descriptor file) noexcept;

}  // namespace hl
