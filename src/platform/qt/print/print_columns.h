// Computes how wide the columns of a printed grid are, and which of them share a page. For the thread of the
// logic.
#pragma once

#include <vector>

#include "platform/qt/grid/row_painter.h"
#include "platform/qt/grid/visible_rows.h"

namespace hl {

/// Returns the width that shows each of the column's cells. Measuring all of them would take seconds for a
/// million rows, so these are measured: some rows from all parts, the rows with the longest texts, and for
/// numbers the smallest and the largest. A text that is wider than all of these is cut when it is painted.
int printedWidth(const RowPainter& painter, const Grid& grid, const VisibleRows& rows, std::size_t column);

/// A column and the width that it would like to have.
struct WantedColumn {
    std::size_t column;
    int width;
};

/// Returns the columns of each of the pages that are side by side, in units from the left of the content. All
/// pages but the first begin with the first column, narrowed if necessary. No column is wider than its page.
std::vector<std::vector<PaintedColumn>> columnsOfPages(const std::vector<WantedColumn>& wanted, int room);

}  // namespace hl
