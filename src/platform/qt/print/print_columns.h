// How wide the columns of a printed grid are, and which of them stand together on a page.
#pragma once

#include <vector>

#include "platform/qt/grid/row_painter.h"
#include "platform/qt/grid/visible_rows.h"

namespace hl {

/// Width that shows each of the column's cells. To have them all drawn would take seconds for a million rows:
/// measured are some rows from all parts, those whose texts are the longest, and for numbers the smallest and
/// the largest. A text that is broader than all of these is cut when it is painted.
int printedWidth(const RowPainter& painter, const Grid& grid, const VisibleRows& rows, std::size_t column);

/// A column and how wide it would like to be.
struct WantedColumn {
    std::size_t column;
    int width;
};

/// The columns of each page of those that stand side by side, in units from the left of the content. All but
/// the first page begin with the first column, narrower if need be. No column is wider than its page.
std::vector<std::vector<PaintedColumn>> columnsOfPages(const std::vector<WantedColumn>& wanted, int room);

}  // namespace hl
