// Whole files on Linux. See platform/files.h.
#pragma once

#include <atomic>

#include "platform/files.h"
#include "platform/patience.h"

namespace hl {

/// How a file that is to replace another lives until it is complete.
enum class Unfinished {
    kNameless,  ///< Without a name, so that a kill leaves nothing behind; kNamed where the file system has no
                ///< such.
    kNamed,     ///< Under a hidden name beside the target.
};

/// The file that replaces another takes over its mode, and its owner where that is allowed; other names of
/// the old file keep the old content. Even a nameless file has a hidden name for the moment in which it takes
/// the place of another. Nothing is synced to the disk: a kill is survived, a loss of power is the file
/// system's matter.
/// Tests derive from it.
class LinuxFiles : public Files {
  public:
    explicit LinuxFiles(Unfinished unfinished = Unfinished::kNameless) : unfinished_(unfinished) {}

    /// For looking into files, and replacing them, on disks that may not answer; null, as at first: all
    /// answer. With it both are for the thread of the logic only.
    void setPatience(Patience* patience) { patience_ = patience; }
    /// From now on a pipe that nobody reads is refused as a target (ENXIO); before, its reader is waited for.
    void refuseUnreadPipes() { waitsForReaders_ = false; }

    std::optional<std::string> readWhole(const std::string& path, std::size_t limit, int& error) override;
    std::optional<std::string> beginning(const std::string& path, std::size_t count) override;
    std::unique_ptr<ReplacingFile> replace(const std::string& path, int& error) override;
    int append(const std::string& path, std::string_view bytes) override;
    bool exists(const std::string& path) override;
    /// By a hidden file in the folder, which stays. Empty if the lock cannot be had; after one that was
    /// waited for in vain, none is waited for until one was had. Not to be nested for one folder: the inner
    /// one waits in vain.
    std::shared_ptr<void> lockFolderOf(const std::string& path) override;

  private:
    Unfinished unfinished_;
    bool waitsForReaders_ = true;
    std::atomic<bool> waitedForLock_ = false;
    Patience* patience_ = nullptr;
};

}  // namespace hl
