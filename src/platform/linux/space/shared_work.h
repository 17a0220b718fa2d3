// Does the items of a work on two threads: the caller's, and one of its own that waits in between. The second
// one begins with the first work that is worth it; where there is none, the caller does all.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

namespace hl {

/// For one thread, the caller's.
class SharedWork {
  public:
    static constexpr std::size_t kThreads = 2;
    /// `thread` is 0 on the caller's thread, and 1 on the other.
    using Work = std::function<void(std::size_t thread, std::size_t item)>;

    SharedWork() = default;
    ~SharedWork();
    SharedWork(const SharedWork&) = delete;
    SharedWork& operator=(const SharedWork&) = delete;

    /// Calls `work` once for each item below `count`, in no order, and returns when all are done. If it
    /// throws on either thread, no further item is begun, and that leaves when both have come to their end.
    void run(std::size_t count, const Work& work);

  private:
    enum class Offer : std::uint8_t { kNone, kThere, kTaken, kOver };

    bool startHelp() noexcept;
    void help() noexcept;
    void doItems(std::size_t thread);
    void endWork();

    std::atomic<std::size_t> next_{0};
    std::mutex mutex_;
    std::condition_variable changed_;
    Offer offer_ = Offer::kNone;
    std::size_t count_ = 0;
    const Work* work_ = nullptr;
    std::exception_ptr failure_;  ///< What the work threw on the other thread.
    std::thread thread_;
};

}  // namespace hl
