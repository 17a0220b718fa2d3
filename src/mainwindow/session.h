// The data of one run of the program, with a window or without: what it was given, its options, its state,
// its sources and its grids. For the thread of the logic only.
#pragma once

#include "app/options.h"
#include "app/services.h"
#include "grid/grid.h"
#include "platform/grid_pane.h"
#include "scan/file_columns.h"
#include "scan/records.h"
#include "scan/scan_context.h"
#include "views/changes_list.h"
#include "views/drive_list.h"
#include "views/statistics_list.h"

namespace hl {

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
    Grid lvwFind{kFileCells};              ///< Stays empty in a run without a window.
    Grid lvwFiles{kFileCells};             ///< Stays empty in a run without a window.
    Grid lvwDiskinfo{kDriveCells};         ///< Stays empty in a run without a window.
    Grid lvwStatistics{kStatisticsCells};  ///< Stays empty in a run without a window.
    Grid lvwChanges{kChangeCells};         ///< Stays empty in a run without a window.
    Statistics statistics;                 ///< Without a window, for a saved scan alone.
    LargestOfSources largest;              ///< Likewise.
    RowFacts facts;                        ///< Empty in a run without a window, but for some formats.
};

/// Reads the options and gives the report and the three lists of a scan their columns.
void Form_Load(Session& session);

/// Puts together what a scan works with. The arguments must outlive the context.
ScanContext scanContext(Session& session, ScanHost& host, Controls& controls);

}  // namespace hl
