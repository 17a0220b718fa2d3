// Which rows of the report are on the disk. Sources that were opened from a file are not, and neither are the
// grey rows of folders that a comparison shows as gone: nothing of them is read, changed or looked for on the
// disk, even if their paths exist here. For the thread of the logic.
#pragma once

#include "scan/scan_context.h"

namespace hl {

/// Tells whether the row's source was opened from a file. The row may be kNoRow, which is of no source.
bool isFromFile(const ScanContext& scan, Row row);

/// These go through the sources that were read from the disk; kNoRow is the end.
Row firstLiveSource(const ScanContext& scan);
Row nextLiveSource(const ScanContext& scan, Row source);

/// Tells whether the row stands for a folder that a comparison shows as gone.
bool isGone(const Grid& report, Row row);
/// Tells whether the row's folder is on the disk, as far as the report knows. REQUIRES: the row exists.
bool isOnDisk(const ScanContext& scan, Row row);
/// Says why a command does nothing with a row that is not on the disk.
std::string notOnDiskText(const ScanContext& scan, Row row);

}  // namespace hl
