#include "platform/qt/grid/grid_mouse.h"

#include <QApplication>
#include <QMouseEvent>
#include <algorithm>
#include <utility>

#include "platform/qt/grid/grid_view.h"

namespace hl {

namespace {

std::optional<MouseButton> buttonOf(const QMouseEvent& event) {
    switch (event.button()) {
        case Qt::LeftButton:
            return MouseButton::kLeft;
        case Qt::RightButton:
            return MouseButton::kRight;
        case Qt::MiddleButton:
            return MouseButton::kMiddle;
        default:
            return std::nullopt;
    }
}

}  // namespace

void GridMouse::press(const QMouseEvent& event) {
    pressed_ = Qt::NoButton;
    dragging_ = false;
    if (view_.looksOnly()) return lookAt(event, false);
    if (view_.takesInput() && buttonOf(event)) pressAt(event);
}

// The logic is not told of a release, so that nothing follows what is picked.
void GridMouse::lookAt(const QMouseEvent& event, bool twice) {
    const GridSync::Glance glance(view_.changes());
    if (!view_.takesLooks()) return;
    const QPoint point = event.position().toPoint();
    const auto index = view_.places().indexAt(point);
    if (event.button() != Qt::LeftButton || !index) return;
    if (twice || view_.places().onBranch(point, *index))
        return view_.actions().foldRow(*index, !view_.grid().expanded(view_.rows().at(*index)));
    view_.actions().pick(*index, pickOf(event.modifiers(), Pick::kToggle));
}

void GridMouse::pressAt(const QMouseEvent& event) {
    const QPoint point = event.position().toPoint();
    const bool left = event.button() == Qt::LeftButton;
    const auto index = view_.places().indexAt(point);
    const Row row = index ? view_.rows().at(*index) : kNoRow;
    GridActions& actions = view_.actions();
    if (index && left && view_.places().onBranch(point, *index))
        return actions.foldRow(*index, !view_.grid().expanded(row));
    pressed_ = event.button();
    pressPoint_ = point;
    if (!index) {
        if (left && !shiftOrControl(event.modifiers())) actions.pickNone();
    } else if (left) {
        actions.pick(*index, pickOf(event.modifiers(), Pick::kToggle));
    } else if (!view_.grid().selected(row)) {
        actions.pick(*index, Pick::kOnly);
    }
}

void GridMouse::move(const QMouseEvent& event) {
    const QPoint point = event.position().toPoint();
    if (event.buttons() == Qt::NoButton && view_.takesInput()) return hover(view_.rowAt(point));
    if (pressed_ == Qt::LeftButton && event.buttons() == Qt::LeftButton && view_.takesInput()) dragTo(point);
}

void GridMouse::hover(Row row) {
    // The same number may belong to another row by now.
    if (std::exchange(hovered_, row) != kNoRow || row != kNoRow) view_.listener().MouseMove(row);
}

// Selects from the pressed row to the one below the pointer, and scrolls at the edges.
void GridMouse::dragTo(const QPoint& point) {
    const VisibleRows& rows = view_.rows();
    if ((point - pressPoint_).manhattanLength() >= QApplication::startDragDistance()) dragging_ = true;
    if (!dragging_ || !view_.places().indexAt(pressPoint_) || rows.count() == 0) return;
    const int line = static_cast<int>(view_.places().topIndex()) +
                     (point.y() < 0 ? -1 : point.y() / view_.places().rowHeight());
    const auto last = static_cast<int>(rows.count()) - 1;
    const auto index = static_cast<std::size_t>(std::clamp(line, 0, last));
    if (rows.at(index) != view_.grid().currentRow()) view_.actions().pick(index, Pick::kStretch);
}

void GridMouse::release(const QMouseEvent& event) {
    if (std::exchange(pressed_, Qt::NoButton) != event.button() || !view_.takesInput()) return;
    const auto button = buttonOf(event);
    if (!button) return;
    Row row = view_.rowAt(event.position().toPoint());
    // A drag beyond the edge ends at the row it reached.
    if (std::exchange(dragging_, false) && row == kNoRow) row = view_.grid().currentRow();
    const QPoint at = event.globalPosition().toPoint();
    view_.listener().MouseUp(row, *button, shiftOrControl(event.modifiers()), {at.x(), at.y()});
}

void GridMouse::doubleClick(const QMouseEvent& event) {
    pressed_ = Qt::NoButton;
    if (view_.looksOnly()) return lookAt(event, true);
    if (!view_.takesInput()) return;
    const QPoint point = event.position().toPoint();
    const auto index = view_.places().indexAt(point);
    if (!index || event.button() != Qt::LeftButton || view_.places().onBranch(point, *index)) {
        if (buttonOf(event)) pressAt(event);
    } else {
        view_.listener().DblClick();
    }
}

}  // namespace hl
