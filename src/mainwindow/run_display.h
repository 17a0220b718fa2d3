// What a run shows in the window: locked controls, the running path, rows that arrive. For the thread of the
// logic only.
#pragma once

#include <cstdint>
#include <string>

#include "scan/scan_host.h"

namespace hl {

struct MainForm;

class RunDisplay final : public ScanHost {
  public:
    explicit RunDisplay(MainForm& form) : form_(form) {}

    /// Tells the user that rows are missing, so that nothing is saved, and returns true; false if none are.
    bool tellIncomplete();

    // --- ScanHost
    void setBusyPointer(bool busy) override;
    void lockControls(bool noStop) override;
    void unlockControls() override;
    void statusOfRun() override;
    void statusAfterRun(const std::string& text) override;
    void folderEntered(std::string_view path) override;
    void firstLevelFolderDone() override;
    void sourceChosen() override;
    void sourceMissing(const std::string& source, const std::string& reason) override;
    void scanNotice(const std::string& text) override;
    void notRead(std::string_view, const std::string&) override {}
    void typesBegin() override;
    std::string typeName(const std::string& path) override;
    void topListTitle(const std::string& title) override;
    void listsFilled() override;
    void reportResizeColumns() override;
    void selectDriveOf(Row row) override;
    void refreshDriveOf(Row row) override;
    void showFilesOf(const std::string& folder) override;
    void showFileStat() override;
    void refreshPreview() override;
    void clearStatus() override;

  private:
    MainForm& form_;
    bool sourceUnseen_ = false;       ///< The row of the first source of a run was not shown yet.
    std::uint64_t shownFolders_ = 0;  ///< The number of notices of a run to the report.
    std::uint32_t errorsBefore_ = 0;  ///< The program's errors when the controls were locked.
    bool rowsMissing_ = false;        ///< An error of the program interrupted the filling of the report.
    std::uint64_t lastStatusTick_ = 0;
    std::string missing_;  ///< What a run has to say of sources that do not exist.
};

}  // namespace hl
