// The window while a disk has not answered at once: it is locked, says what it waits for, and goes on
// painting. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "mainwindow/sources_control.h"
#include "platform/patience.h"

namespace hl {

struct MainForm;

class DiskWaiting final : public DiskWait {
  public:
    explicit DiskWaiting(MainForm& form) : form_(form) {}

    void waitBegins(const std::string& path) override;
    bool goesOnWaiting() override;
    void waitEnds() override;

  private:
    MainForm& form_;
    int waits_ = 0;            ///< The number of waits on the stack.
    bool locked_ = false;      ///< The outermost wait has locked the window.
    std::uint64_t began_ = 0;  ///< In ticks.
    std::string statusBefore_;
    std::optional<SourcesControl::AtWork> work_;  ///< Of the outermost wait.
};

}  // namespace hl
