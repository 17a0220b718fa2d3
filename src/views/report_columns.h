// The columns of the folder report, and how its rows are sorted. For the thread of the logic.
#pragma once

#include "app/options.h"
#include "app/texts.h"
#include "grid/grid.h"

namespace hl {

enum ReportColumn : std::size_t { kReportRowName, kReportSize, kReportPercent, kReportFiles, kReportFolders };

/// Empties the grid and gives it its columns, with sizes in bytes until Report_Set_SizeFormat is called. Each
/// level is sorted by size, the largest first.
void Init_Tree(Grid& grid, const Options& options, const Texts& texts);

}  // namespace hl
