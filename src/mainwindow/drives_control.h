// The list of drives in the main window, and what it asks of the rest of the window. For the thread of the
// logic only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "views/drive_list.h"

namespace hl {

struct MainForm;

class DrivesControl final : public DriveListHost {
  public:
    explicit DrivesControl(MainForm& form) : form_(form) {}

    /// Makes the list, which hears of its grid from now on. REQUIRES: the window exists.
    void makeList();
    /// REQUIRES: makeList() was called.
    DriveList& list() { return *list_; }
    /// Shows the sizes that drives have answered with.
    void takeAnswers();

    // --- DriveListHost
    void Drives_ResizeTableHeight() override;
    void readSources(const std::vector<std::string>& sources) override;
    void copyPaths(const std::vector<std::string>& paths) override;
    void openDriveMenu(Row row, Point at) override;

  private:
    MainForm& form_;
    std::unique_ptr<DriveList> list_;
};

}  // namespace hl
