// Fills one list of a scan by a walk of its own. For the thread of the logic only.
#pragma once

#include <string>

#include "scan/scan_context.h"

namespace hl {

/// Empties `list`, one of the three lists that a scan fills, and fills it from the folder `source`, whatever
/// the options say. The report, its sums and the other lists stay as they are. `host` hears of the walk. Stop
/// ends it; what was found until then stays. The window must be locked meanwhile. `source` ends with a
/// separator.
void fillList(ScanContext& scan, Grid& list, const std::string& source, ScanHost& host);

}  // namespace hl
