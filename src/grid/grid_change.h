// What a grid tells its observer. For one thread.
//
// The sets name rows by their numbers as they are after the changes. Whoever gathers several notices has to
// expect that a row of an earlier one is gone (RowTree::exists), or that its number belongs to another row,
// which is in `added` then.
#pragma once

#include "grid/row_set.h"

namespace hl {

struct GridChange {
    bool structure = false;  ///< Rows were added, removed, moved or folded: the next three sets tell which.
    bool columns = false;    ///< The columns, their titles or their masks changed.
    bool current = false;    ///< The current row, the selection or the top row changed.
    RowSet added;            ///< New rows. It holds all rows if others were moved or cleared, too.
    RowSet folded;           ///< Rows that were folded or unfolded.
    /// Shown rows (kNoRow for the place above the first) directly behind which shown rows were removed or
    /// added. Behind a row of `added`, or below it, that may not be noted.
    RowSet gaps;
    RowSet cells;  ///< Rows that show something else: a text, a note, a cell, a picture, a colour.

    bool cellsAlone() const { return !structure && !columns && !current; }
    bool isEmpty() const { return cellsAlone() && cells.isEmpty(); }
    /// Tells whether the shown rows have to be listed anew: too much changed to tell what.
    bool newList() const { return added.isAll() || folded.isAll() || gaps.isAll(); }
    void clear() {
        structure = columns = current = false;
        for (RowSet* set : {&added, &folded, &gaps, &cells}) set->clear();
    }
    /// Adds what changed afterwards.
    void add(const GridChange& later) {
        structure |= later.structure;
        columns |= later.columns;
        current |= later.current;
        added.add(later.added);
        folded.add(later.folded);
        gaps.add(later.gaps);
        cells.add(later.cells);
    }
};

class GridObserver {
  public:
    virtual ~GridObserver() = default;
    /// Tells of changes. While redraw is off they gather, and one call tells of all of them when it goes on.
    /// The call must not change the grid.
    virtual void gridChanged(const GridChange& change) = 0;
};

}  // namespace hl
