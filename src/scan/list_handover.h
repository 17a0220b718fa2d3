// Makes the rows of the three lists that the walk fills: largest files, hardlinks, junctions and links. For
// the thread of the logic.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "scan/file_columns.h"
#include "scan/scan_context.h"

namespace hl {

/// The list of the largest files may overrun the wanted length by this many rows before it is first cut.
inline constexpr std::int32_t kTopTrimSlack = 100;

/// Returns device and inode as bytes, by which the names of one file are known. It is short enough to
/// allocate nothing.
std::string linkKey(const Entry& entry);

/// Adds the file to the largest files and to the hardlinks, if they are collected and it qualifies; its type
/// is looked up here. A list of the largest files whose wanted length is 0 is empty when the scan is done.
void handOverFile(ScanContext& scan, const FoundFile& file);
/// Adds a row. `path` has no trailing separator. REQUIRES: junctions are collected.
void handOverJunction(ScanContext& scan, std::string_view path, std::string_view target, std::uint32_t tag);
/// Sorts the hardlinks. Sorted by id, names of one file stand together even if another disk uses the same id.
void sortHardlinks(Grid& lvwHardlinks);
/// Returns how many of the largest files are listed, and of which source; empty before the first scan.
std::string topTitle(const ScanContext& scan);
/// Sorts the largest files and removes those behind the wanted length.
void trimTopList(ScanContext& scan);

}  // namespace hl
