#include "views/report_columns.h"

#include "grid/no_redraw.h"
#include "scan/rollup.h"
#include "views/list_columns.h"

namespace hl {

void Init_Tree(Grid& grid, const Options& options, const Texts& texts) {
    const NoRedraw off(grid);
    Init_List(grid, kReportTable, options, texts);
    grid.levelSort(0).key = kFolderCells[reckonedCell(options)].key;
    for (std::uint32_t level = 1; level < Grid::kSortLevels; ++level)
        grid.levelSort(level) = grid.levelSort(0);
}

}  // namespace hl
