// Where rows and cells of a grid stand in its view: from a row to its rectangle, and from a point to a row.
// All are coordinates of the viewport. For the grid's thread.
//
// REQUIRES, for every routine with an index or a point: the list of visible rows is up to date.
#pragma once

#include <QTableView>
#include <optional>
#include <vector>

#include "platform/qt/grid/row_painter.h"
#include "platform/qt/grid/visible_rows.h"

namespace hl {

class GridPlaces {
  public:
    /// All must outlive it.
    GridPlaces(QTableView& table, const RowSources& sources, const VisibleRows& rows)
        : table_(table), sources_(sources), rows_(rows) {}

    /// Takes over the height of a row, which depends on the view's font and style.
    void measure();
    int rowHeight() const { return rowHeight_; }
    /// The number of rows of which something is visible, if there are as many.
    int rowsOnPage() const;
    /// The number of rows that are wholly visible, at least 1.
    int wholeRowsOnPage() const;
    std::size_t topIndex() const;
    /// The width of the vertical scroll bar; 0 while the rows fit.
    int scrollBarWidth() const;

    QRect rowRect(std::size_t index) const;
    /// Returns the place of the text in the first column of a row, from its first character to the end of the
    /// column. REQUIRES: that column is visible.
    QRect nameRect(std::size_t index) const;
    /// Returns nothing outside of all rows.
    std::optional<std::size_t> indexAt(const QPoint& point) const;
    /// Tells whether the point is on the row's sign for folding.
    bool onBranch(const QPoint& point, std::size_t index) const;
    /// Returns how far the view has to scroll to the right until the row's name begins within it.
    int beyondRight(Row row) const;

    /// Return the visible columns in the order on screen.
    std::vector<std::size_t> shownColumns() const;
    std::vector<PaintedColumn> paintedColumns() const;

  private:
    QRect nameCell(std::size_t index) const;

    QTableView& table_;
    const RowSources& sources_;
    const VisibleRows& rows_;
    int rowHeight_ = 1;
};

}  // namespace hl
