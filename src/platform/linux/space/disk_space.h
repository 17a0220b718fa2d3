// Asks Linux for the space of a file system. What takes long, and every question to a disk that may not
// answer, is left to a helper (process/helper.h).
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/disk_space.h"
#include "platform/open_files.h"

namespace hl {

class LinuxDiskSpace final : public DiskSpace {
  public:
    /// A disk that does not answer for the time of `limit` is given up.
    explicit LinuxDiskSpace(std::shared_ptr<const OpenFiles> openFiles,
                            std::chrono::milliseconds limit = std::chrono::seconds(10))
        : openFiles_(std::move(openFiles)), limit_(limit) {}

    Result<UsedSpace> used(const std::string& folder, WaitCallback* wait) override;
    std::optional<SpaceFacts> facts(const std::string& folder, WaitCallback* wait) override;

  private:
    const std::shared_ptr<const OpenFiles> openFiles_;
    const std::chrono::milliseconds limit_;
};

}  // namespace hl
