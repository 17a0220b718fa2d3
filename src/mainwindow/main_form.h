// frmMain: the data of the main window, and its controllers, one for each subject. It is data alone: what
// happens is in the controllers, which find each other here. For the thread of the logic only.
#pragma once

#include <functional>
#include <string>

#include "app/addresses.h"
#include "mainwindow/balance_control.h"
#include "mainwindow/bar_control.h"
#include "mainwindow/bars.h"
#include "mainwindow/comparison_control.h"
#include "mainwindow/disk_waiting.h"
#include "mainwindow/drives_control.h"
#include "mainwindow/files_control.h"
#include "mainwindow/find_control.h"
#include "mainwindow/kept_scans.h"
#include "mainwindow/lists_control.h"
#include "mainwindow/looks_control.h"
#include "mainwindow/map_control.h"
#include "mainwindow/opened_scans.h"
#include "mainwindow/preview_control.h"
#include "mainwindow/report_control.h"
#include "mainwindow/run_display.h"
#include "mainwindow/session.h"
#include "mainwindow/sources_control.h"
#include "mainwindow/status_line.h"
#include "platform/drives.h"
#include "platform/file_operations.h"
#include "platform/folder_verb.h"
#include "platform/freed_space.h"
#include "platform/window.h"

namespace hl {

/// What a window needs besides Services; all of it outlives the form.
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
    bool portable = true;             ///< True if no package installed the program.
    FreedSurveys* surveys = nullptr;  ///< Null if nobody tells what a delete gives back.
};

struct MainForm {
    MainForm(const Services& services, const WindowServices& window);
    MainForm(const MainForm&) = delete;
    MainForm& operator=(const MainForm&) = delete;

    const Services& services() const { return session.services; }
    CommandBar& bar(BarId id) { return bars.of(id); }

    Session session;
    WindowServices own;
    /// Null before the window is loaded. It can be used until the window's module returns, also after
    /// `closed`.
    const Window* window = nullptr;
    bool closed = false;  ///< The window is gone. What is on the stack then still ends; nothing new begins.
    bool restartPending = false;  ///< The program is to start again when it has ended.
    Bars bars;
    StatusLine status{*this};
    RunDisplay run{*this};
    ScanContext scan;
    DiskWaiting diskWaiting{*this};
    LooksControl looks{*this};
    PreviewControl preview{*this};
    ReportControl report{*this};
    MapControl map{*this};
    DrivesControl drives{*this};
    ListsControl lists{*this};
    FilesControl files{*this};
    FindControl find{*this};
    SourcesControl sources{*this};
    OpenedScans openedScans{*this};
    ComparisonControl comparison{*this};
    KeptScans keptScans{*this};
    BalanceControl balance{*this};
    BarControl barControl{*this};
    WindowParts parts;  ///< What the window shows.
};

}  // namespace hl
