// The rows that the walk hands to the three lists: largest files, hardlinks, junctions and links.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/folder_reader.h"
#include "scan/scan_context.h"

namespace hl {

/// The list of the largest files may overrun the wanted length by this many rows before it is first cut.
inline constexpr std::int32_t kTopTrimSlack = 100;

/// "low word - high word" of an inode, both as signed decimals.
std::string fileId(std::uint64_t inode);

/// A file as the walk hands it over.
struct FoundFile {
    const Entry& entry;
    const EntryTimes& times;
    std::string_view name;
    std::string_view folder;  ///< With a trailing separator.
    std::int32_t links;       ///< 0 for a file with one name.
};

/// Gives the file to the largest files and the hardlinks, as far as they are collected and it qualifies.
/// A list of largest files whose wanted length is 0 is empty when the scan is done.
void handOverFile(ScanContext& scan, const FoundFile& file);
/// REQUIRES: junctions are collected. `path` without its trailing separator.
void handOverJunction(ScanContext& scan, std::string_view path, std::string_view target, std::uint32_t tag);
/// Sorts the hardlinks. By their ids, names of one file stand together also where another disk has the
/// number.
void sortHardlinks(Grid& lvwHardlinks);
/// Tells how many there are, and of which source.
void showTopTitle(ScanContext& scan);
/// Sorts the largest files and removes those behind the wanted length.
void trimTopList(ScanContext& scan);

}  // namespace hl
