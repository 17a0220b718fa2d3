// The rows of a grid that no folded row hides, from the top: the toolkit's table counts and numbers these.
//
// It is a list of row numbers, 4 bytes each. It is made by walking only the unfolded rows (some 8 ms for a
// million) and is valid until the next change of the grid's structure. For the grid's thread.
#pragma once

#include <optional>
#include <vector>

#include "grid/grid.h"

namespace hl {

class VisibleRows {
  public:
    /// `grid` must outlive it. It is empty until rebuild().
    explicit VisibleRows(const Grid& grid) : grid_(grid) {}

    void rebuild();
    std::size_t count() const { return rows_.size(); }
    /// REQUIRES: index < count().
    Row at(std::size_t index) const { return rows_[index]; }
    /// Returns nothing for a row that is hidden or gone. It searches the list.
    std::optional<std::size_t> find(Row row) const;
    /// Returns the index of the row itself, or of the nearest row above it in the hierarchy that is shown.
    /// REQUIRES: the row exists.
    std::optional<std::size_t> findShown(Row row) const;
    /// How often the list was made; for tests of cost.
    std::size_t rebuilds() const { return rebuilds_; }

    /// Returns the row shown next below `row`, without the list; kNoRow after the last one. It takes constant
    /// time, except for the way up from the end of a subtree.
    static Row following(const Grid& grid, Row row);

  private:
    const Grid& grid_;
    std::vector<Row> rows_;
    std::size_t rebuilds_ = 0;
};

}  // namespace hl
