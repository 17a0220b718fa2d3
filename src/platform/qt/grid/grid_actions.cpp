#include "platform/qt/grid/grid_actions.h"

#include "grid/no_redraw.h"
#include "platform/qt/grid/grid_accessible.h"
#include "platform/qt/grid/grid_view.h"

namespace hl {

Pick pickOf(Qt::KeyboardModifiers keys, Pick withControl) {
    const bool control = keys.testFlag(Qt::ControlModifier);
    if (keys.testFlag(Qt::ShiftModifier)) return control ? Pick::kAddedStretch : Pick::kStretch;
    return control ? withControl : Pick::kOnly;
}

bool shiftOrControl(Qt::KeyboardModifiers keys) {
    return (keys & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
}

std::optional<std::size_t> GridActions::currentIndex() const {
    return grid_.currentRow() == kNoRow ? std::nullopt : rows_.find(grid_.currentRow());
}

// --- picking

void GridActions::pick(std::size_t index, Pick how) {
    const GridSync::OwnChange own(view_.changes());
    selection_.pick(index, how);
    view_.changes().currentIsKnown();
    view_.changes().ensureVisible(index);
    accessibleCurrentChanged(view_, index);
    if (view_.looksOnly()) view_.listener().looked(Look::kPick);
}

void GridActions::pickRow(std::size_t index) {
    const GridSync::Glance glance(view_.changes());
    if (view_.takesLooks() && index < rows_.count()) pick(index, Pick::kOnly);
}

void GridActions::pickAll() {
    const GridSync::OwnChange own(view_.changes());
    selection_.pickAll();
}

void GridActions::pickNone() {
    const GridSync::OwnChange own(view_.changes());
    selection_.pickNone();
}

void GridActions::openMenu() {
    const auto index = currentIndex();
    if (!index) return;
    const Row row = rows_.at(*index);
    if (grid_.selected(row)) {
        view_.changes().ensureVisible(*index);
    } else {
        pick(*index, Pick::kOnly);
    }
    if (currentIndex() != index || rows_.at(*index) != row) return;  // The scrolling removed it.
    const GridPlaces& places = view_.places();
    const QPoint at =
        view_.viewport()->mapToGlobal(QPoint(places.rowHeight(), places.rowRect(*index).bottom()));
    view_.listener().MouseUp(row, MouseButton::kRight, false, {at.x(), at.y()});
}

// --- folding

void GridActions::foldRow(std::size_t index, bool expand) {
    const GridSync::Glance glance(view_.changes());
    if (!view_.takesLooks() || index >= rows_.count()) return;
    const Row row = rows_.at(index);
    if (!grid_.hasChildren(row) || grid_.expanded(row) == expand) return;
    grid_.setExpanded(row, expand);
    view_.sync();
    accessibleFoldChanged(view_, index);
    if (view_.looksOnly()) view_.listener().looked(Look::kScroll);
    view_.listener().expandedByUser(row);
}

void GridActions::unfoldAllBelow(std::size_t index) {
    const Row row = rows_.at(index);
    if (!grid_.hasChildren(row)) return;
    {
        const NoRedraw off(grid_);
        const std::uint32_t level = grid_.level(row);
        Row below = row;
        do {
            if (grid_.hasChildren(below)) grid_.setExpanded(below, true);
            below = grid_.tree().following(below);
        } while (below != kNoRow && grid_.level(below) > level);
    }
    view_.sync();
    view_.listener().expandedByUser(row);
}

}  // namespace hl
