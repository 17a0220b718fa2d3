// The rows of a grid that no folded row hides, from the top: what a table of the toolkit counts and numbers.
//
// A list of row numbers, 4 bytes each. It is made by walking the unfolded rows alone (some 8 ms for a
// million) and is good until the next change of the grid's structure. Thread of the grid.
#pragma once

#include <optional>
#include <vector>

#include "grid/grid.h"

namespace hl {

class VisibleRows {
  public:
    /// `grid` must outlive it. Empty until rebuild().
    explicit VisibleRows(const Grid& grid) : grid_(grid) {}

    void rebuild();
    std::size_t count() const { return rows_.size(); }
    /// REQUIRES: index < count().
    Row at(std::size_t index) const { return rows_[index]; }
    /// Nothing for a row that is hidden or gone. A search through the list.
    std::optional<std::size_t> find(Row row) const;
    /// The row itself, or the nearest row above it in the hierarchy that is shown. REQUIRES: the row exists.
    std::optional<std::size_t> findShown(Row row) const;
    /// How often the list was made; for tests of cost.
    std::size_t rebuilds() const { return rebuilds_; }

    /// The row shown next below `row`, found without a list; kNoRow behind the last. Constant time, but for
    /// the climb from the end of a subtree.
    static Row following(const Grid& grid, Row row);

  private:
    const Grid& grid_;
    std::vector<Row> rows_;
    std::size_t rebuilds_ = 0;
};

}  // namespace hl
