// Finds the open files of Linux in /proc/PID/fd, in /proc/PID/maps, and for root in /proc/PID/map_files.
#pragma once

#include <string>

#include "platform/open_files.h"

namespace hl {

class LinuxOpenFiles final : public OpenFiles {
  public:
    /// `proc` is where the processes are shown.
    explicit LinuxOpenFiles(std::string proc = "/proc") : proc_(std::move(proc)) {}

    OpenFilesAnswer list(const Wanted& wanted) const override;

  private:
    std::string proc_;
};

}  // namespace hl
