// Makes surveys on Linux. Each walks on a helper thread that is never joined, owns all that it uses, and
// takes one of the slots for threads that may hang. For the thread of the logic.
#pragma once

#include <memory>
#include <vector>

#include "platform/freed_space.h"
#include "platform/linux/drives/silent_disks.h"
#include "platform/linux/scan/directory_calls.h"
#include "platform/open_files.h"

namespace hl {

class LinuxFreedSurveys final : public FreedSurveys {
  public:
    /// `disks`, which must outlive this object and its surveys, tells which disks may not answer; null means
    /// that all answer. What is on a disk that does not answer is not asked for. `budget` is the largest
    /// number of folders that a survey has open.
    LinuxFreedSurveys(std::shared_ptr<DirectoryCalls> calls, std::shared_ptr<const OpenFiles> openFiles,
                      SilentDisks* disks = nullptr, std::size_t budget = 64);

    std::unique_ptr<FreedSurvey> begin(std::vector<FilePlace> places) override;

  private:
    std::shared_ptr<DirectoryCalls> calls_;
    std::shared_ptr<const OpenFiles> openFiles_;
    SilentDisks* disks_;
    std::size_t budget_;
};

}  // namespace hl
