// Reads a file with a saved scan, or with what another program has found, from the disk or from standard
// input, and says what is wrong with it. For the thread of the logic.
#pragma once

#include <string>
#include <variant>

#include "app/services.h"
#include "scan/saved/foreign_tree.h"
#include "scan/saved/scan_reader.h"
#include "scan/scan_context.h"

namespace hl {

/// The last is one sentence that names the file and says why it cannot be opened.
using SavedFile = std::variant<ScanFile, ForeignTree, std::string>;

/// Reads the file; what it holds is told by its first bytes. `wait`, which may be null, is called while
/// standard input ("-") is waited for.
SavedFile readSavedFile(const Services& services, const std::string& path, WaitCallback* wait);
/// The same, for a file that has to be a saved scan.
std::variant<ScanFile, std::string> readScanFile(const Services& services, const std::string& path,
                                                 WaitCallback* wait);

/// Adds it to the report as a source, whose row it returns; kNoRow if it was stopped. REQUIRES: `file` is no
/// sentence, and the report's facts are kept (ScanContext).
Row openSavedFile(ScanContext& scan, const SavedFile& file);

}  // namespace hl
