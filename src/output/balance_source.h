// Puts the balance of a source together from what its scan counted, what the report has, and what the system
// tells now. For the thread of the logic only.
#pragma once

#include <vector>

#include "output/balance_text.h"
#include "scan/scan_context.h"

namespace hl {

/// Returns the balance of a source's row. The system is asked meanwhile (platform/disk_space.h), and `wait`,
/// which may be null, is called. Nothing if the source was never counted, or if `wait` gave up.
std::optional<SourceBalance> balanceOfSource(const ScanContext& scan, Row source, WaitCallback* wait);

/// Returns the rows of the trash folders that the source's report shows: those at its top, and that of each
/// home. (The trash of the desktop keeps to these places.)
std::vector<Row> trashRows(const ScanContext& scan, Row source);

}  // namespace hl
