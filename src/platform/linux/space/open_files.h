// Finds the open files of Linux in /proc/PID/fd, in /proc/PID/maps, and for root in /proc/PID/map_files; and
// the files that the kernel holds, as long as they have a name, in /sys/block/loop*/loop and /proc/swaps.
#pragma once

#include <string>

#include "platform/open_files.h"

namespace hl {

class LinuxOpenFiles final : public OpenFiles {
  public:
    /// `proc` is where the processes are shown, `blockDevices` where the block devices are.
    explicit LinuxOpenFiles(std::string proc = "/proc", std::string blockDevices = "/sys/block")
        : proc_(std::move(proc)), blockDevices_(std::move(blockDevices)) {}

    OpenFilesAnswer list(const Wanted& wanted) const override;

  private:
    std::string proc_, blockDevices_;
};

}  // namespace hl
