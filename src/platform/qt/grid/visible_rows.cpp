#include "platform/qt/grid/visible_rows.h"

#include <algorithm>

namespace hl {

void VisibleRows::rebuild() {
    ++rebuilds_;
    rows_.clear();
    // The system provides no memory that is never written to, so folded rows cost nothing here; a list that
    // grew by doubling would take twice its size for a moment.
    rows_.reserve(grid_.rowCount());
    if (const auto sorted = grid_.tree().sortedRoots(); !sorted.empty()) {
        rows_.assign(sorted.begin(), sorted.end());
        return;
    }
    for (Row row = grid_.firstRoot(); row != kNoRow; row = following(grid_, row)) rows_.push_back(row);
}

std::optional<std::size_t> VisibleRows::find(Row row) const {
    const auto found = std::find(rows_.begin(), rows_.end(), row);
    if (found == rows_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rows_.begin());
}

std::optional<std::size_t> VisibleRows::findShown(Row row) const {
    Row shown = row;
    for (Row above = row; above != kNoRow; above = grid_.parent(above))
        if (above != row && !grid_.expanded(above)) shown = above;
    return find(shown);
}

Row VisibleRows::following(const Grid& grid, Row row) {
    if (grid.expanded(row) && grid.hasChildren(row)) return grid.firstChild(row);
    while (row != kNoRow) {
        if (const Row next = grid.nextSibling(row); next != kNoRow) return next;
        row = grid.parent(row);
    }
    return kNoRow;
}

}  // namespace hl
