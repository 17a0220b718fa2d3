// The data of one run of the program, with a window or without: what it was given, its options, its state,
// its sources and its grids. For the thread of the logic only.
#pragma once

#include "app/log.h"
#include "app/options.h"
#include "app/settings.h"
#include "app/texts.h"
#include "base/absolute_path.h"
#include "base/number_format.h"
#include "base/path.h"
#include "grid/grid.h"
#include "output/report_order.h"
#include "platform/console.h"
#include "platform/files.h"
#include "platform/folder_reader.h"
#include "platform/grid_pane.h"
#include "platform/message_pump.h"
#include "platform/system_facts.h"
#include "scan/file_columns.h"
#include "scan/records.h"
#include "scan/scan_context.h"
#include "views/drive_list.h"

namespace hl {

/// What main gives a run; all of it outlives the run.
struct Services {
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

struct Session {
    explicit Session(const Services& given) : services(given) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    Grid& grid(GridId id);

    Services services;
    ScanState state;
    Options options;
    SourceCombo cboOrdner;
    Grid tvwPL{kFolderCells};
    Grid lvwTOP{kFileCells};
    Grid lvwHardlinks{kFileCells};
    Grid lvwJunctions{kJunctionCells};
    Grid lvwFiles{kFileCells};      ///< Stays empty in a run without a window.
    Grid lvwDiskinfo{kDriveCells};  ///< Stays empty in a run without a window.
};

/// Reads the options and gives the report and the three lists of a scan their columns.
void Form_Load(Session& session);

/// Puts together what a scan works with. `session` and `host` must outlive the context.
ScanContext scanContext(Session& session, ScanHost& host);
/// Puts together what a report is written from. `session` must outlive it.
ReportSources reportSources(Session& session);

}  // namespace hl
