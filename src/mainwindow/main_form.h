// frmMain owns what a run of the program works with, above all grids and state. For the thread of the logic
// only.
//
// It answers what a scan asks of the window around it. In a run without a window it only keeps data: there
// are no status panels, the lists stay empty, and what could not be read goes to standard error, one line
// each.
#pragma once

#include <string>

#include "app/command_line.h"
#include "output/save_report.h"
#include "platform/console.h"
#include "platform/files.h"
#include "scan/driver.h"
#include "scan/records.h"
#include "scan/scan_context.h"

namespace hl {

/// What main gives the form; all of it outlives the form.
struct FormServices {
    SettingsStore& settings;
    const Texts& texts;
    Log& log;
    Files& files;
    FileSystem& fileSystem;
    MessagePump& pump;
    Console& console;
    SystemFacts& facts;
    Diagnostics& diagnostics;
    const PathRules& paths;
    const NumberFormat& numbers;
    PathBases bases = {};  ///< What a typed source is relative to.
};

class MainForm : public ScanHost {
  public:
    MainForm(const FormServices& services, bool silentRun);

    /// Reads the options and sets up the grids.
    void Form_Load();
    /// Reads the sources of a silent command line and writes the report. The report's target is opened before
    /// anything is read. Returns true if everything was read and the report was written completely; anything
    /// that failed has then been reported. REQUIRES: Form_Load was called.
    bool runSilent(const std::string& commandLine);

    ScanState& state() { return state_; }
    ScanContext& scan() { return scan_; }
    const Options& options() const { return options_; }

    // ScanHost
    void setBusyPointer(bool) override {}
    void lockControls(bool noStop) override;
    void unlockControls() override;
    void statusOfRun() override {}
    void statusAfterRun(const std::string& text) override;
    void folderEntered(std::string_view path) override;
    void firstLevelFolderDone() override {}
    void sourceMissing(const std::string& source, const std::string& reason) override;
    void scanNotice(const std::string& text) override;
    void notRead(std::string_view path, const std::string& reason) override;
    std::string typeName(const std::string&) override { return {}; }
    void topListTitle(const std::string& title) override { topTitle_ = title; }
    void listsFilled() override {}
    void reportResizeColumns() override {}
    void selectDriveOf(Row) override {}
    void refreshDriveOf(Row) override {}
    void showFilesOf(const std::string& folder) override { state_.currentFolder = folder; }
    void refreshPreview() override {}
    void showFileStat() override {}
    void clearStatus() override { panel1_.clear(); }

  protected:
    FormServices services_;
    ScanState state_;
    Options options_;
    SourceCombo cboOrdner_;
    Grid tvwPL_{kFolderCells};
    Grid lvwTOP_{kFileCells};
    Grid lvwHardlinks_{kFileCells};
    Grid lvwJunctions_{kJunctionCells};
    ScanContext scan_;

  private:
    bool writeReport(const SilentOrder& order, ReplacingFile& target);
    bool reportNotWritten(const std::string& file, const std::string& reason);

    std::string panel1_;
    std::string topTitle_;
    std::uint64_t lastProgressTick_ = 0;
    bool somethingFailed_ = false;
};

}  // namespace hl
