// The walk of one folder tree: a single pass, depth-first, that makes the rows of the report and adds up
// sizes.
//
// Entries come in the order of the file system and nothing is sorted here. The walk does not recurse; its
// depth has no limit but memory. A fault within a folder ends that folder with what was added up so far, and
// the walk goes on in the folder above. Stop (CancelState 3) leaves rows and partial totals as they are.
#pragma once

#include "scan/scan_context.h"

namespace hl {

/// Reads `path` (with a trailing separator) into the existing `row`, whose own cells are left to the caller.
/// `totals` receives size, files, folders and access errors of all levels.
void Report_ScanFolders(ScanContext& scan, const std::string& path, Row row, ScanTotals& totals);

/// The picture of a folder that can be read, and the note of a link or a mount: where it leads.
void Report_ShowFolderKind(Grid& tvwPL, Row row, std::uint32_t tag, std::string_view target);

}  // namespace hl
