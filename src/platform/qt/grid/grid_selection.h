// Selects rows as every list does: one, some, a range, all. The grid stores the selection. For the grid's
// thread.
//
// REQUIRES, for every routine: the list of visible rows is up to date, and redraw is on. Each tells the
// grid's observer once, however many rows it selects.
#pragma once

#include "platform/qt/grid/visible_rows.h"

namespace hl {

enum class Pick {
    kOnly,          ///< Selects only this row.
    kToggle,        ///< Selects or deselects this row.
    kStretch,       ///< Selects from the anchor to this row, and nothing else.
    kAddedStretch,  ///< Adds the rows from the anchor to this row to the selection.
    kNone,          ///< Only makes it the current row.
};

class GridSelection {
  public:
    /// Both must outlive it.
    GridSelection(Grid& grid, const VisibleRows& rows) : grid_(grid), rows_(rows) {}

    /// Makes the row at `index` current and selects as `how` says. The anchor is the row that was last picked
    /// by itself.
    void pick(std::size_t index, Pick how);
    /// Selects all visible rows.
    void pickAll();
    void pickNone();

  private:
    void pickStretch(std::size_t from, std::size_t to);

    Grid& grid_;
    const VisibleRows& rows_;
    Row anchor_ = kNoRow;
};

}  // namespace hl
