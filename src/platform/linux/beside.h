// Work that may take long, done beside the thread that asked for it.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>

#include "platform/file_operations.h"

namespace hl {

/// What the work tells of where it is. Telling costs a look at a flag as long as nobody asks.
class Whereabouts {
  public:
    /// For the working thread: `path()` is called only if somebody waits for an answer.
    template <class Path>
    void at(Path&& path) {
        if (!asked_.load(std::memory_order_relaxed)) return;
        const std::lock_guard lock(mutex_);
        path_ = path();
        asked_.store(false, std::memory_order_relaxed);
    }
    /// For the waiting thread: what was told last; asks for more.
    std::string now() {
        const std::lock_guard lock(mutex_);
        asked_.store(true, std::memory_order_relaxed);
        return path_;
    }

    /// For the waiting thread: the work is to end, if it can.
    void end() { unwanted_.store(true, std::memory_order_relaxed); }
    bool unwanted() const { return unwanted_.load(std::memory_order_relaxed); }

  private:
    std::atomic<bool> asked_{true}, unwanted_{false};
    std::mutex mutex_;
    std::string path_;
};

/// Runs `work` on a thread of its own and returns when it has ended; what it throws is thrown here. Meanwhile
/// `watch` is asked for what waits. Where no thread can be had the work is done here.
void runBeside(const std::function<void(Whereabouts&)>& work, OperationWatch& watch);

}  // namespace hl
