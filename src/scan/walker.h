// Walks a folder tree once, depth-first, makes the rows of the report and adds up sizes. For the thread of
// the logic.
//
// Entries come in the order of the file system; nothing is sorted here. The walk does not recurse; only
// memory limits its depth. A fault within a folder ends that folder with what was added up so far, and the
// walk goes on in the folder above. Stop (CancelState 3) leaves rows and partial totals as they are.
#pragma once

#include "scan/scan_context.h"

namespace hl {

/// Reads `path` (with a trailing separator) into the existing `row`; the caller sets that row's own cells.
/// `totals` receives size, files, folders and access errors of all levels.
void Report_ScanFolders(ScanContext& scan, const std::string& path, Row row, ScanTotals& totals);

}  // namespace hl
