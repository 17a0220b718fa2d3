// What a run shows in the window: locked controls, the running path, rows that arrive. For the thread of the
// logic only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "mainwindow/run_look.h"
#include "mainwindow/run_progress.h"
#include "scan/controls.h"
#include "scan/scan_host.h"

namespace hl {

struct MainForm;

class RunDisplay final : public ScanHost, public Controls {
  public:
    explicit RunDisplay(MainForm& form) : form_(form) {}

    /// Tells the user that rows are missing, so that nothing is saved, and returns true; false if none are.
    bool tellIncomplete();
    /// Tells whether the last run was asked for a source that does not exist.
    bool sourceMissed() const { return sourceMissed_; }
    /// The user looks around in the report.
    void looked(Look what);

    // --- ScanHost
    void runBegan() override;
    void runEnded(RunEnd end) override;
    void selectionGone() override;
    void folderShown(const std::string& folder) override;
    void sourceMissing(const std::string& source, const std::string& reason) override;
    void sourceBegan() override;
    void readingInto(Row row) override;
    void listsFilled() override;
    void sourceDone(Row row) override;
    void sourceChanged(Row row) override;
    void rowsWillChange() override;
    void rowsChanged() override;
    void folderEntered(std::string_view path) override;
    void firstLevelFolderDone() override;
    void entriesCame(const ScanProgress& progress) override;
    void diskSilent(const std::string& text) override;

    // --- Controls
    void setBusyPointer(bool busy) override;
    void lockControls(bool noStop) override;
    void unlockControls() override;

  private:
    std::string notKeptText();
    void askDrive(const std::string& source);
    void showRows(const ScanProgress& progress, std::uint64_t tick);
    void showReport();
    void tellDesktop(std::optional<int> percent);

    MainForm& form_;
    bool sourceUnseen_ = false;       ///< The row of the first source of a run was not shown yet.
    std::uint64_t shownFolders_ = 0;  ///< The number of notices of a run to the report.
    std::uint32_t errorsBefore_ = 0;  ///< The program's errors when the controls were locked.
    bool rowsMissing_ = false;        ///< An error of the program interrupted the filling of the report.
    std::uint64_t lastStatusTick_ = 0;
    std::uint64_t lastCountTick_ = 0;
    bool runs_ = false;  ///< A run is under way, and no other reading, such as that after a delete.
    /// Answers of drives find it through weak pointers.
    std::shared_ptr<RunProgress> progress_ = std::make_shared<RunProgress>();
    std::uint64_t asked_ = 0;  ///< An answer of a drive counts only if nothing was begun since.
    std::string missing_;      ///< What a run has to say of sources that do not exist.
    bool sourceMissed_ = false;
    RunLook look_;
    Row sourceRow_ = kNoRow;
    bool toTop_ = false;  ///< The source's row belongs at the top, but there are too few rows below it yet.
    std::uint64_t nextShow_ = 0;  ///< The tick from which the report is shown anew.
    bool desktopShows_ = false;   ///< The desktop was told of a run's progress.
};

}  // namespace hl
