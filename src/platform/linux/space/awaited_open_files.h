// A list of the open files that is made while something else is under way. A process that hangs in the kernel
// may keep the list of what it holds from being read, so the list is waited for only so long. For one thread.
#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "platform/linux/process/helper.h"
#include "platform/open_files.h"

namespace hl {

class AwaitedOpenFiles {
  public:
    /// Begins the list. Takes one of the slots for threads that may hang.
    explicit AwaitedOpenFiles(std::shared_ptr<const OpenFiles> files);
    ~AwaitedOpenFiles();
    AwaitedOpenFiles(const AwaitedOpenFiles&) = delete;
    AwaitedOpenFiles& operator=(const AwaitedOpenFiles&) = delete;

    /// Waits at most that long. Returns true if the list is there, or will not come any more.
    bool isDecided(std::chrono::milliseconds wait);
    /// Returns the list, or nothing if it did not come in time. REQUIRES: isDecided() has returned true.
    std::optional<OpenFilesAnswer> take();

  private:
    std::shared_ptr<std::optional<OpenFilesAnswer>> answer_;
    std::shared_ptr<Helper> helper_;  ///< Null if there was no thread or no slot.
    std::chrono::steady_clock::time_point end_;
    bool came_ = false;
};

}  // namespace hl
