// Keeps the numbers of the report right: sizes, counts, shares of the parent, order. For the thread of the
// logic.
#pragma once

#include <cstdint>

#include "scan/scan_context.h"

namespace hl {

/// Writes the row's size and number of files.
void Report_SetNodeSizeAndFilecount(Grid& tvwPL, Row row, SizeValue size, std::int32_t files);

/// Computes the share of `row` that each of its direct children has; it is 0 if either size is 0.
void Report_ChangePercentValue(ScanContext& scan, Row row);

/// Sorts every level by its setting.
void Report_Sort(ScanContext& scan);

/// Returns the path of a folder's row, with a trailing separator if `addSlash` is set.
std::string Report_GetFullpathOfNode(const Grid& tvwPL, Row row, bool addSlash, const PathRules& paths);

/// Removes the source of the current row with all rows below it. The three lists stay as they are.
void Report_RemoveFolders(ScanContext& scan);

}  // namespace hl
