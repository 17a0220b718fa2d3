// Reads and writes whole files on Linux; see platform/files.h.
#pragma once

#include <atomic>

#include "platform/files.h"
#include "platform/patience.h"

namespace hl {

/// How a file that is to replace another exists until it is complete.
enum class Unfinished {
    kNameless,  ///< Without a name, so that a kill leaves nothing behind; like kNamed if the file system does
                ///< not support that.
    kNamed,     ///< Under a hidden name beside the target.
};

/// A file that replaces another takes over its mode, and its owner if allowed; other names of the old file
/// keep the old content. Even a nameless file has a hidden name for the moment in which it takes another's
/// place. Nothing is synced to the disk: files survive a kill, and after a loss of power the file system
/// decides. Tests derive from it.
class LinuxFiles : public Files {
  public:
    explicit LinuxFiles(Unfinished unfinished = Unfinished::kNameless) : unfinished_(unfinished) {}

    /// Sets what asks disks that may not answer; null, as at first, means that all disks answer. If it is
    /// set, all calls are for the thread of the logic only. A disk that does not answer is kNoAnswer, or
    /// counts as having nothing.
    void setPatience(Patience* patience) { patience_ = patience; }
    /// From now on a pipe without a reader is refused as a target (ENXIO); before, its reader is waited for.
    void refuseUnreadPipes() { waitsForReaders_ = false; }

    Result<std::string> readWhole(const std::string& path, std::size_t limit) override;
    Result<std::string> readInput(std::size_t limit, WaitCallback* wait) override;
    Result<> makePrivateFolder(const std::string& path) override;
    Result<> remove(const std::string& path) override;
    std::optional<std::string> beginning(const std::string& path, std::size_t count) override;
    Result<std::unique_ptr<ReplacingFile>> replace(const std::string& path) override;
    Result<> append(const std::string& path, std::string_view bytes) override;
    std::vector<std::string> namesIn(const std::string& folder) override;
    bool exists(const std::string& path) override;
    Error errorOf(int number) override;
    /// Locks a hidden file in the folder, which stays. Returns null if the lock cannot be had; after waiting
    /// for one in vain, it does not wait again until it got one. Must not be nested for one folder, because
    /// the inner call would wait in vain.
    std::shared_ptr<void> lockFolderOf(const std::string& path) override;

  private:
    Unfinished unfinished_;
    bool waitsForReaders_ = true;
    std::atomic<bool> waitedForLock_ = false;
    Patience* patience_ = nullptr;
};

}  // namespace hl
