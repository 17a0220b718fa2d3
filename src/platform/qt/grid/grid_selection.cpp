#include "platform/qt/grid/grid_selection.h"

#include <algorithm>

#include "grid/no_redraw.h"

namespace hl {

void GridSelection::pickStretch(std::size_t from, std::size_t to) {
    const auto [first, last] = std::minmax(from, to);
    for (std::size_t i = first; i <= last; ++i) grid_.setSelected(rows_.at(i), true);
}

void GridSelection::pick(std::size_t index, Pick how) {
    const Row row = rows_.at(index);
    const NoRedraw off(grid_);
    if (how == Pick::kOnly || how == Pick::kStretch) grid_.selectNone();
    if (how == Pick::kStretch || how == Pick::kAddedStretch) {
        pickStretch(rows_.find(anchor_).value_or(index), index);
    } else if (how != Pick::kNone) {
        grid_.setSelected(row, how == Pick::kOnly || !grid_.selected(row));
        anchor_ = row;
    }
    grid_.setCurrentRow(row);
}

void GridSelection::pickAll() {
    if (rows_.count() == 0) return;
    const NoRedraw off(grid_);
    pickStretch(0, rows_.count() - 1);
}

void GridSelection::pickNone() {
    grid_.selectNone();
}

}  // namespace hl
