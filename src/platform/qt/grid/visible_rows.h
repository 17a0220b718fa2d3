// The rows of a grid that no folded row hides, from the top: the toolkit's table counts and numbers these.
//
// It is a list of row numbers, 4 bytes each, which is valid until the next change of the grid's structure.
// rebuild() makes it by walking only the unfolded rows (some 8 ms for a million). update() costs what the
// changed rows hold, and the move of the numbers behind them. For the grid's thread.
#pragma once

#include <optional>
#include <vector>

#include "grid/grid.h"

namespace hl {

/// Hears of each part of the list that update() takes out or puts in; `last` belongs to the part.
class RowListObserver {
  public:
    virtual ~RowListObserver() = default;
    virtual void beforeRemoval(std::size_t first, std::size_t last) = 0;
    virtual void afterRemoval() = 0;
    virtual void beforeInsertion(std::size_t first, std::size_t last) = 0;
    virtual void afterInsertion() = 0;
};

class VisibleRows {
  public:
    /// `grid` must outlive it. It is empty until rebuild().
    explicit VisibleRows(const Grid& grid) : grid_(grid) {}

    void rebuild();
    /// Brings the list up to date; `change` has everything that changed since it was. Returns false, perhaps
    /// after a part of the work, if rebuild() has to do it.
    bool update(const GridChange& change, RowListObserver& observer);
    std::size_t count() const { return rows_.size(); }
    /// REQUIRES: index < count().
    Row at(std::size_t index) const { return rows_[index]; }
    /// Returns nothing for a row that is hidden or gone. It searches the list, first near where the last
    /// search ended.
    std::optional<std::size_t> find(Row row) const;
    /// Returns the index of the row itself, or of the nearest row above it in the hierarchy that is shown.
    /// REQUIRES: the row exists.
    std::optional<std::size_t> findShown(Row row) const;
    /// How often the list was made; for tests of cost.
    std::size_t rebuilds() const { return rebuilds_; }
    /// How often the list was made or brought up to date.
    std::size_t changes() const { return changes_; }

    /// Returns the row at the top of the view; kNoRow if there are no rows.
    static Row firstPainted(const Grid& grid) {
        return grid.topRow() != kNoRow ? grid.topRow() : grid.firstRoot();
    }
    /// Returns the row shown next below `row`, without the list; kNoRow after the last one. It takes constant
    /// time, except for the way up from the end of a subtree.
    static Row following(const Grid& grid, Row row);

  private:
    bool isCovered(Row gap, const GridChange& change) const;
    bool splice(Row gap, const GridChange& change, RowListObserver& observer);

    const Grid& grid_;
    std::vector<Row> rows_;
    mutable std::size_t found_ = 0;  ///< Where the last search ended.
    std::size_t rebuilds_ = 0, changes_ = 0;
};

}  // namespace hl
