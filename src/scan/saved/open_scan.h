// Makes the rows of a saved scan in the report. For the thread of the logic; messages run meanwhile.
#pragma once

#include "scan/saved/scan_reader.h"
#include "scan/scan_context.h"

namespace hl {

/// Adds the scan as a source, whose row it returns, with all rows below it; it is the caller's to sort the
/// report. Returns kNoRow if Stop ended it: then nothing is left of it. REQUIRES: the report's facts are kept
/// (ScanContext).
Row openSavedScan(ScanContext& scan, const ScanFile& file);

/// Returns what is told of the scan that the row belongs to; null if it was read from the disk. Nothing of a
/// saved scan may be changed, or read again.
const SavedScan* savedScanOf(const ScanContext& scan, Row row);

/// Returns the name of the machine that the row's source is on, as far as it is known.
std::string hostOf(const ScanContext& scan, Row row);

/// Says why a file cannot be opened, without its name.
std::string scanProblemText(const Texts& texts, ScanProblem problem);

}  // namespace hl
