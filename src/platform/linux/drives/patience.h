// Asks disks that may not answer, on Linux. For the thread of the logic.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "platform/folder_reader.h"
#include "platform/linux/drives/silent_disks.h"
#include "platform/patience.h"

namespace hl {

class LinuxPatience final : public Patience {
  public:
    static constexpr std::chrono::milliseconds kLimit{10'000};

    /// `disks` must outlive it.
    explicit LinuxPatience(SilentDisks& disks, std::chrono::milliseconds limit = kLimit)
        : disks_(disks), limit_(limit) {}
    /// Sets who lets messages run meanwhile; null, as at first, means nobody.
    void setWait(DiskWait* wait) { wait_ = wait; }

    bool run(const std::string& path, const std::function<void()>& work, LastName last) override;
    bool runStill(const std::string& path, const std::function<void()>& work) override;
    std::string silentDisk() override;

  private:
    /// Does the work on the disk; `ends` waits for the helper that does it.
    bool runOn(std::uint64_t disk, const std::function<void()>& work,
               const std::function<bool(Helper&)>& ends);
    bool endsInTime(Helper& helper, const std::string& path) const;

    SilentDisks& disks_;
    std::chrono::milliseconds limit_;
    DiskWait* wait_ = nullptr;
};

/// The machine's file system, asked with patience: a path whose disk does not answer has the error kNoAnswer.
/// The reading of folders has its own means against hanging.
class PatientFileSystem final : public FileSystem {
  public:
    PatientFileSystem(std::shared_ptr<FileSystem> disk, Patience& patience)
        : disk_(std::move(disk)), patience_(patience) {}

    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override {
        return disk_->read(source, options, wait);
    }
    bool mayHang(std::string_view path) override { return disk_->mayHang(path); }
    bool countsBeforeCompression(std::string_view path) override {
        return disk_->countsBeforeCompression(path);
    }
    Result<PathFacts> look(std::string_view path) override;
    Result<std::string> target(std::string_view path) override;

  private:
    std::shared_ptr<FileSystem> disk_;
    Patience& patience_;
};

}  // namespace hl
