#include "views/report_columns.h"

#include "grid/no_redraw.h"
#include "views/list_columns.h"

namespace hl {

void Init_Tree(Grid& grid, const Options& options, const Texts& texts) {
    const NoRedraw off(grid);
    Init_List(grid, kReportTable, options, texts);
    for (std::uint32_t level = 1; level < Grid::kSortLevels; ++level)
        grid.levelSort(level) = grid.levelSort(0);
}

}  // namespace hl
