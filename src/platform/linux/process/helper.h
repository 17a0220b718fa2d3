// Work on a thread of its own. Where it hangs on a disk that does not answer it is left behind: it is never
// joined, owns all that it touches, and what it finds in the end is dropped.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "platform/linux/process/helper_slot.h"

namespace hl {

/// Raised in work that was left behind, so that it does nothing more.
struct LeftBehind {};

/// What the work tells of where it is. Telling costs a look at a flag as long as nobody asks.
class Whereabouts {
  public:
    /// For the working thread: `path()` is called only if somebody waits for an answer.
    template <class Path>
    void at(Path&& path) {
        if (!asked_.load(std::memory_order_relaxed)) return;
        const std::lock_guard lock(mutex_);
        if (left_) throw LeftBehind();
        path_ = path();
        asked_.store(false, std::memory_order_relaxed);
    }
    /// For the waiting thread: what was told last; asks for more. `isNew`: something was told since it was
    /// asked before.
    std::string now(bool& isNew) {
        const std::lock_guard lock(mutex_);
        isNew = !asked_.exchange(true, std::memory_order_relaxed);
        return path_;
    }
    /// For the waiting thread: the work is to end, if it can.
    void end() { unwanted_.store(true, std::memory_order_relaxed); }
    bool unwanted() const { return unwanted_.load(std::memory_order_relaxed); }
    /// For the working thread: whether nobody waits for it any more.
    bool isLeft() {
        const std::lock_guard lock(mutex_);
        return left_;
    }
    /// What is told next ends the work in any case.
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
    /// `mayHang`: the disk may not answer; the helper takes a slot then. Null if there is no thread, or no
    /// slot.
    static std::shared_ptr<Helper> start(Work work, bool mayHang);

    Whereabouts& whereabouts() { return whereabouts_; }
    /// Waits so long at most; whether it has ended.
    bool endsWithin(std::chrono::milliseconds time);
    /// Waits without end.
    void join();
    /// Throws what the work threw. REQUIRES: it has ended.
    void rethrow();
    /// Nobody waits for it any more. False if it has ended already.
    bool leave();

  private:
    Whereabouts whereabouts_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool over_ = false;
    std::exception_ptr failure_;
};

}  // namespace hl
