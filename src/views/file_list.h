// lvwFiles lists the files directly in the folder selected in the report; they are read from the disk on
// demand.
#pragma once

#include <string>

#include "base/size_value.h"
#include "scan/scan_context.h"

namespace hl {

/// Fills the list with the files of `path`, in the order of the list's sort. Messages run while input waits;
/// Esc and Stop end the reading, and what was found until then stays. An unreadable folder leaves the list
/// empty. If messages start another filling, this one ends. `FilesTotalSize` receives the size of the listed
/// files; all fillings of a list must be given the same variable. No row gets a picture. Returns true if the
/// list has all files. For the thread of the logic.
bool List_Files_ScanFolderR(ScanContext& scan, Grid& lvwFiles, const std::string& path,
                            SizeValue& FilesTotalSize);

}  // namespace hl
