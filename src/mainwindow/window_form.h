// frmMain with its window: its life from loading to the end of the process, its commands, and what a scan
// shows in it.
//
// window_form.cpp has the life of the window and its events, window_scan.cpp what a scan and the panes ask
// for, window_lists.cpp what the lists ask for, window_files.cpp what changes or opens files. The commands of
// the bars are in mainwindow/window_commands.h. For the thread of the logic only.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "app/addresses.h"
#include "base/scope_exit.h"
#include "fileops/menus.h"
#include "mainwindow/bar_options.h"
#include "mainwindow/bars.h"
#include "mainwindow/list_views.h"
#include "mainwindow/main_form.h"
#include "mainwindow/panes.h"
#include "mainwindow/toolbar_state.h"
#include "mainwindow/window_commands.h"
#include "mainwindow/window_preview.h"
#include "output/print_job.h"
#include "platform/drives.h"
#include "platform/folder_verb.h"
#include "platform/patience.h"
#include "platform/window.h"
#include "views/drive_list.h"
#include "views/report_view.h"
#include "views/type_names.h"

namespace hl {

/// What a window needs besides FormServices; all of it outlives the form.
struct WindowServices {
    Drives& drives;
    FolderVerb& verb;
    FileOperations& operations;
    std::string executable;     ///< The executable's full path.
    std::string programFolder;  ///< The folder of settings, log and Toolbar.dat.
    std::string commandLine;
    std::string version;  ///< "0.1"
    Addresses addresses;
    /// Is called when the window exists, and with null when it no longer does.
    std::function<void(const Window*, MessagePump*)> windowThere;
    /// Is called when the user sees the window: messages that waited for that can be shown now.
    std::function<void()> windowShown = {};
    bool portable = true;  ///< True if no package installed the program.
};

class WindowForm final : public MainForm,
                         public WindowEvents,
                         public BarEvents,
                         public SourceEvents,
                         private ReportHost,
                         private PaneHost,
                         private DriveListHost,
                         private ListHost,
                         private FileOpsHost,
                         private DiskWait,
                         private SaveDialog {
  public:
    WindowForm(const FormServices& services, const WindowServices& window);
    ~WindowForm() override;

    /// What the window shows, for the start of the module.
    WindowParts& parts() { return parts_; }
    bool restartPending() const { return RestartPending_; }
    /// Tells that the window was closed; sources handed over now would be lost.
    bool unloaded() const { return unloaded_; }
    /// What a grid tells the logic, for whoever acts without a mouse. REQUIRES: formLoad was called.
    GridEvents& gridEvents(GridId id);
    /// Locks the window while a disk is waited for.
    DiskWait& diskWait() { return *this; }
    void takeDriveAnswers() {
        if (driveList_) driveList_->takeAnswers();
    }

    // WindowEvents
    void formLoad(const Window& window, MessagePump& pump) override;
    void formActivate() override;
    bool formQueryUnload() override;
    void formUnload() override;
    void formResize() override;
    void formKeyUp(int key) override;
    void handOver(const std::string& commandLine) override;
    void windowFault(const char* where) override;

    // BarEvents
    void execute(BarId bar, int id) override { commandsOfBars_.execute(bar, id); }
    void editChanged(BarId bar, int id, const std::string& text) override;
    void editKeyDown(BarId bar, int id, int key) override;
    void editLeft(BarId bar, int id) override;
    void barResized(BarId bar) override;

    // SourceEvents
    void comboText(const std::string& text) override;
    void comboSelected(int index) override;
    void comboKeyDown(int key) override;
    bool comboRemove(int index) override;

  private:
    friend class WindowCommands;

    // --- life
    void Form_Load_Window();
    void Form_Activate();
    void makeViews();
    void initGrids();
    void saveState();
    void loadToolbars();

    // --- views
    PrintSources printSources() { return {services_.texts, services_.files, services_.facts}; }
    void applyFonts();
    void resizeAllColumns();
    ListView* listThatShows();
    void runQueue();
    void readWaiting();
    void fitReportPane();
    void sourcesChanged();
    void showStatus() { window_->frame.setStatus(status_); }

    // --- ScanHost
    void setBusyPointer(bool busy) override;
    void lockControls(bool noStop) override;
    void unlockControls() override;
    void statusOfRun() override;
    void statusAfterRun(const std::string& text) override;
    void folderEntered(std::string_view path) override;
    void firstLevelFolderDone() override;
    void sourceChosen() override { sourcesChanged(); }
    void sourceMissing(const std::string& source, const std::string& reason) override;
    void scanNotice(const std::string& text) override;
    void notRead(std::string_view, const std::string&) override {}
    void typesBegin() override { typeNames_->restart(); }
    std::string typeName(const std::string& path) override;
    void topListTitle(const std::string& title) override;
    void listsFilled() override;
    void reportResizeColumns() override;
    void selectDriveOf(Row row) override;
    void refreshDriveOf(Row row) override;
    void showFilesOf(const std::string& folder) override;
    void showFileStat() override;
    void refreshPreview() override { preview_.Preview_ShowFile(true); }
    void clearStatus() override;

    // --- ReportHost
    void setReportWidth(int pixels) override;
    void setFirstPanel(const std::string& text) override;
    void openRowsMenu(Point at) override;
    void Preview_Reset_View() override { preview_.Preview_Reset_View(); }  ///< The panes call it, too.
    void Report_ShellContextMenu(Row row, const std::string& path, Point at) override;

    // --- PaneHost
    int barHeight(BarId bar) override { return window_->bar(bar).wrappedHeight(); }
    int gridWidth(GridId grid) override { return window_->grid(grid).innerWidth(); }
    int formWidth() override { return window_->frame.clientArea().width; }
    void refresh(GridId grid) override { window_->grid(grid).refresh(); }
    void fitColumns(GridId list) override;
    void SetFileIcons(GridId list) override;
    void ShowFileStat(GridId list) override;
    void List_Files_ScanFolder(const std::string& folder) override { showFilesOf(folder); }
    void Drives_ResizeTableHeight() override;
    void Drives_Resize_Columns(bool withRedraw) override { driveList_->Drives_Resize_Columns(withRedraw); }
    void Preview_ShowFile() override { preview_.Preview_ShowFile(false); }
    void statusChanged() override { showStatus(); }

    // --- SaveDialog
    std::string askSavePath(const SaveQuestion& question) override;

    // --- ListHost
    bool listShows(GridId list) override;
    void setSecondPanel(const std::string& text) override;
    void showPreview(GridId, bool force) override { preview_.Preview_ShowFile(force); }
    void openFile(const std::string& path) override;
    void ShellContextMenuFileList(GridId list, Point at) override;
    void nameEdited(GridId grid, Row row, const std::string& name) override;  ///< Of the report, too.

    // --- FileOpsHost
    void removeFromLists(const std::function<bool(const std::string& path)>& went) override;
    bool closed() override { return unloaded_; }

    // --- DiskWait
    void waitBegins(const std::string& path) override;
    bool goesOnWaiting() override;
    void waitEnds() override;

    // --- DriveListHost
    void readSources(const std::vector<std::string>& sources) override;
    void openDriveMenu(Row row, Point at) override;

    bool hasNoMenu(const char* routine, const std::string& path);
    void reportMenuCommand(int id, Row row);
    /// Marks a command as running while the result lives: sources that are handed over meanwhile wait for its
    /// end.
    auto command() {
        ++commands_;
        return ScopeExit([this] { --commands_; });
    }
    FileOps fileOps() { return {scan_, own_.operations, *window_, *this}; }
    CommandBar& bar(BarId id) { return bars_.of(id); }
    std::string emptyHint(GridId id) const;
    Grid& grid(GridId id) { return *parts_.grids[static_cast<std::size_t>(id)]; }

    WindowServices own_;
    WindowCommands commandsOfBars_{*this};
    const Window* window_ = nullptr;
    Bars bars_;
    Grid lvwFiles_;
    Grid lvwDiskinfo_;
    StatusPanels status_;
    Panes panes_;
    std::unique_ptr<DriveList> driveList_;
    ToolbarStore toolbars_;
    bool ColumnDragGuard_ = false;  ///< The next click on a title only ends the dragging of a column border.
    std::unique_ptr<ReportView> reportView_;
    std::unique_ptr<FilePictures> pictures_;
    std::unique_ptr<TypeNames> typeNames_;
    std::unique_ptr<ListViews> lists_;
    WindowParts parts_;
    WindowPreview preview_;
    /// Nobody has chosen the width of the report yet: it starts narrower than its columns.
    bool reportWidthOpen_ = false;
    int reportStart_ = 0;              ///< The width at the start, which nobody has chosen.
    bool sourceUnseen_ = false;        ///< The row of a run's first source has not been shown yet.
    std::uint64_t shownFolders_ = 0;   ///< How often a run has told the report to show new rows.
    bool loaded_ = false;              ///< The form has taken over everything that is saved at the end.
    bool sourcesLoaded_ = false;       ///< The box of sources has been loaded, too.
    bool ready_ = false;               ///< formActivate has ended: sources may be read.
    std::uint32_t errorsBefore_ = 0;   ///< The program's number of errors when the controls were locked.
    bool rowsMissing_ = false;         ///< An error of the program has ended what fills the report.
    bool unloaded_ = false;            ///< Running routines end after this, but nothing new begins.
    int commands_ = 0;                 ///< The number of commands on the stack; each may have a dialog.
    int diskWaits_ = 0;                ///< The number of waits for a disk on the stack.
    bool lockedForDisk_ = false;       ///< The outermost wait has locked the window.
    std::uint64_t diskWaitBegan_ = 0;  ///< In ticks.
    std::string statusBeforeWait_;
    bool RestartPending_ = false;
    std::uint64_t lastStatusTick_ = 0;
    std::string missing_;  ///< What a run has to say about sources that do not exist.
};

}  // namespace hl
