// Everything that the routines of a scan work with. It owns nothing, and all of it outlives the scan. For the
// thread of the logic only.
#pragma once

#include "app/options.h"
#include "app/services.h"
#include "grid/grid.h"
#include "scan/controls.h"
#include "scan/file_type_names.h"
#include "scan/largest_files.h"
#include "scan/row_facts.h"
#include "scan/scan_host.h"
#include "scan/scan_state.h"
#include "scan/source_combo.h"
#include "scan/statistics.h"

namespace hl {

struct ScanContext : Services {
    ScanState& state;
    const Options& options;
    SourceCombo& cboOrdner;
    Grid& tvwPL;   ///< The folder report.
    Grid& lvwTOP;  ///< Largest files.
    Grid& lvwHardlinks;
    Grid& lvwJunctions;
    ScanHost& host;
    Controls& controls;
    FileTypeNames* types = nullptr;    ///< Null if nobody shows types.
    Statistics* statistics = nullptr;  ///< Of the report's rows. Null if nobody asks for them.
    /// Of the report's sources. Null if nobody asks for them.
    LargestOfSources* largest = nullptr;
    RowFacts* facts = nullptr;  ///< Of the report's rows. Null if nobody asks for them.
};

}  // namespace hl
