// Keeps the numbers of the report right: sizes, counts, shares of the parent, order; and the pictures of
// folders. For the thread of the logic.
#pragma once

#include <cstdint>

#include "scan/scan_context.h"

namespace hl {

/// Writes the row's size and number of files.
void Report_SetNodeSizeAndFilecount(Grid& tvwPL, Row row, SizeValue size, std::int32_t files);
/// Writes all numbers of the row but its share.
void Report_SetTotals(Grid& tvwPL, Row row, const ScanTotals& totals);

/// Sets the picture and the note of a folder whose reading was stopped.
void Report_MarkIncomplete(ScanContext& scan, Row row);

/// Sets the picture of a folder that can be read; a link or mount gets a note that tells where it leads.
void Report_ShowFolderKind(Grid& tvwPL, Row row, std::uint32_t tag, std::string_view target);

/// Gives the row the grey of its level, if the options say so; all rows below a folder share it.
void Report_Shade(ScanContext& scan, Row row);

/// Adds the row that stands for the files directly in a folder, unless there are none. `text` is kept by the
/// grid. REQUIRES: there are subfolders that it has to stand beside.
void Report_AddFilesRow(ScanContext& scan, Row folder, const ScanTotals& files, TextRef text);

/// Returns that row of a folder; kNoRow if it has none.
Row filesRowBelow(const Grid& report, Row folder);

/// Adds what was found elsewhere.
void addTotals(ScanTotals& sum, const ScanTotals& more);
/// Adds what was found below the row to all rows between it and `top`, both left out.
void Report_AddAbove(Grid& tvwPL, Row row, Row top, const ScanTotals& more);

/// Adds what a file takes on the disk, if it `counts`, and when it was written, unless that was after
/// `started`.
void addSpace(ScanTotals& totals, const EntryDetails& file, std::int64_t started, bool counts);

/// Returns the cell that shares, bars and the order go by: the size, or what is taken on the disk.
CellId reckonedCell(const Options& options);

/// Corrects the newest change of the rows above, after that of the row was changed from `before`. Before a
/// row is removed, it is set to 0.
void Report_UpdateNewest(Grid& tvwPL, Row row, double before);

/// Computes the share of `row` that each of its direct children has; it is 0 if either size is 0.
void Report_ChangePercentValue(ScanContext& scan, Row row);

/// Computes all shares anew, after another size is reckoned with. Levels that were sorted by a size are
/// sorted by that one.
void Report_ReckonAnew(ScanContext& scan);

/// Sorts every level by its setting.
void Report_Sort(ScanContext& scan);

/// Returns the path of a folder's row, with a trailing separator if `addSlash` is set.
std::string Report_GetFullpathOfNode(const Grid& tvwPL, Row row, bool addSlash, const PathRules& paths);

/// Removes the source of the current row with all rows below it. The three lists stay as they are.
void Report_RemoveFolders(ScanContext& scan);

}  // namespace hl
