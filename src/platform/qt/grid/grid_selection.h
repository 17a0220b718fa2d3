// Picking rows as every list does it: one, some, a stretch, all. What is picked is kept by the grid.
//
// REQUIRES, for every routine: the list of visible rows is up to date, and Redraw is on. Each tells the
// grid's observer once, however many rows it picks.
#pragma once

#include "platform/qt/grid/visible_rows.h"

namespace hl {

enum class Pick {
    kOnly,          ///< This row alone.
    kToggle,        ///< This row changes sides.
    kStretch,       ///< From the anchor to this row, and nothing else.
    kAddedStretch,  ///< From the anchor to this row, beside what is picked.
    kNone,          ///< It becomes the current row, no more.
};

class GridSelection {
  public:
    /// Both must outlive it.
    GridSelection(Grid& grid, const VisibleRows& rows) : grid_(grid), rows_(rows) {}

    /// The row at `index` becomes current. The anchor is the row that was last picked by itself.
    void pick(std::size_t index, Pick how);
    /// All visible rows.
    void pickAll();
    void pickNone();

  private:
    void pickStretch(std::size_t from, std::size_t to);

    Grid& grid_;
    const VisibleRows& rows_;
    Row anchor_ = kNoRow;
};

}  // namespace hl
