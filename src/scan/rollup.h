// Keeps the numbers of the report true: sizes, counts, shares of the parent, order.
#pragma once

#include <cstdint>

#include "scan/scan_context.h"

namespace hl {

/// Writes size and files. Percent and folders stay.
void Report_SetNodeSizeAndFilecount(Grid& tvwPL, Row row, SizeValue size, std::int32_t files);

/// Computes the share of `row` that each of its direct children has, 0 where either size is 0.
void Report_ChangePercentValue(ScanContext& scan, Row row);

/// Sorts every level by its setting.
void Report_Sort(ScanContext& scan);

/// The path of a folder's row, with a trailing separator if asked for.
std::string Report_GetFullpathOfNode(const Grid& tvwPL, Row row, bool addSlash, const PathRules& paths);

/// Removes the source of the current row with all below it. The three lists keep what they hold.
void Report_RemoveFolders(ScanContext& scan);

}  // namespace hl
