// Tells what has grown in a source since a saved scan: the source as a whole, each folder whose own files
// take more bytes than before, and each new tree as one row. What is written is the same in every language.
// For one thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "scan/saved/compare.h"

namespace hl {

enum class GrowthFormat : std::uint8_t { kCsv, kText, kJsonLines };
/// Returns the format with this name of kCompareFormats (app/line_options.h); if it is empty, the end of the
/// file's name decides.
GrowthFormat growthFormatOf(std::string_view format, std::string_view file);

struct GrowthRow {
    std::string_view state;             ///< "source", "grown", "renamed" (and grown) or "new".
    std::string path;                   ///< In any bytes.
    std::string was;                    ///< Its former path, if it was renamed.
    std::uint64_t before = 0, now = 0;  ///< Bytes: of the folder's own files, of a new tree, of all.
    std::int64_t change() const { return static_cast<std::int64_t>(now) - static_cast<std::int64_t>(before); }
};

/// The source comes first, whether it grew or not; then what grew most.
std::vector<GrowthRow> growthRows(const ScanChanges& changes, const FolderList& before,
                                  const FolderList& after, const std::string& source);

/// Returns the whole text. `complete` tells whether both scans were.
std::string growthText(const std::vector<GrowthRow>& rows, GrowthFormat format, bool complete);

}  // namespace hl
