// Which sources of the report are on this computer. Those that were opened from a file are not: nothing of
// them is read, changed or looked for on the disk, even if their paths exist here. For the thread of the
// logic.
#pragma once

#include "scan/scan_context.h"

namespace hl {

/// Tells whether the row's source was opened from a file. The row may be kNoRow, which is of no source.
bool isFromFile(const ScanContext& scan, Row row);

/// These go through the sources that were read from the disk; kNoRow is the end.
Row firstLiveSource(const ScanContext& scan);
Row nextLiveSource(const ScanContext& scan, Row source);

/// Says why a command does nothing.
std::string fromFileText(const Texts& texts);

}  // namespace hl
