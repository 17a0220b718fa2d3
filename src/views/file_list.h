// lvwFiles: the files directly in the folder that is selected in the report, read from the disk on demand.
#pragma once

#include <string>

#include "base/size_value.h"
#include "scan/scan_context.h"

namespace hl {

/// Fills the list with the files of `path` in the order of the list's sort. Messages run while input waits;
/// Esc and Stop end the reading, and what was found until then stays. An unreadable folder leaves the list
/// empty. What is asked for while messages run counts: an earlier filling ends then. `FilesTotalSize` is the
/// size of the files that are in the list; fillings of one list have one such sum. No row has a picture.
/// Thread of the logic.
void List_Files_ScanFolderR(ScanContext& scan, Grid& lvwFiles, const std::string& path,
                            SizeValue& FilesTotalSize);

}  // namespace hl
