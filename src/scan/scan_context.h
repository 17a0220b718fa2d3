// Everything that the routines of a scan work with. It owns nothing, and all of it outlives the scan.
#pragma once

#include "app/log.h"
#include "app/options.h"
#include "app/texts.h"
#include "base/absolute_path.h"
#include "base/number_format.h"
#include "base/path.h"
#include "grid/grid.h"
#include "platform/folder_reader.h"
#include "platform/message_pump.h"
#include "platform/system_facts.h"
#include "robustness/debug.h"
#include "scan/scan_host.h"
#include "scan/scan_state.h"
#include "scan/source_combo.h"

namespace hl {

struct ScanContext {
    ScanState& state;
    const Options& options;
    SourceCombo& cboOrdner;
    Grid& tvwPL;   ///< The folder report.
    Grid& lvwTOP;  ///< Largest files.
    Grid& lvwHardlinks;
    Grid& lvwJunctions;
    FileSystem& fileSystem;
    MessagePump& pump;
    ScanHost& host;
    const Texts& texts;
    Log& log;
    SystemFacts& facts;
    Diagnostics& diagnostics;
    const PathRules& paths;
    const NumberFormat& numbers;
    PathBases bases = {};  ///< What a typed source is relative to.
};

}  // namespace hl
