// Keys and the mouse. The view first does what a row's own keys and clicks do; then the logic is told.
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "base/scope_exit.h"
#include "base/text.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/grid/grid_accessible.h"
#include "platform/qt/grid/grid_view.h"
#include "platform/qt/grid/grid_view_own.h"

namespace hl {

namespace {

struct KeyName {
    int toolkit, code;
};

// The logic is told of the release of these keys.
constexpr KeyName kToldKeys[] = {{Qt::Key_Up, kKeyUp},         {Qt::Key_Down, kKeyDown},
                                 {Qt::Key_F2, kKeyF2},         {Qt::Key_Delete, kKeyDelete},
                                 {Qt::Key_PageUp, kKeyPageUp}, {Qt::Key_PageDown, kKeyPageDown}};

std::optional<int> toldKey(int key) {
    for (const KeyName& known : kToldKeys)
        if (known.toolkit == key) return known.code;
    return std::nullopt;
}

std::optional<MouseButton> buttonOf(Qt::MouseButton button) {
    switch (button) {
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

Pick pickOf(Qt::KeyboardModifiers keys, Pick withControl) {
    const bool control = keys.testFlag(Qt::ControlModifier);
    if (keys.testFlag(Qt::ShiftModifier)) return control ? Pick::kAddedStretch : Pick::kStretch;
    return control ? withControl : Pick::kOnly;
}

bool shiftOrControl(Qt::KeyboardModifiers keys) {
    return (keys & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
}

}  // namespace

// --- rows and places

std::optional<std::size_t> GridView::indexAtPoint(const QPoint& point) const {
    if (point.y() < 0 || point.y() >= viewport()->height()) return std::nullopt;
    const auto index = static_cast<std::size_t>(verticalScrollBar()->value()) +
                       static_cast<std::size_t>(point.y() / rowHeight_);
    if (index >= rows_.count()) return std::nullopt;
    const QRect row = rowRect(index);
    return point.x() >= 0 && row.contains(point) ? std::optional(index) : std::nullopt;
}

Row GridView::rowAt(const QPoint& point) {
    const auto index = sync() ? indexAtPoint(point) : std::nullopt;
    return index ? rows_.at(*index) : kNoRow;
}

bool GridView::onBranch(const QPoint& point, std::size_t index) const {
    const Row row = rows_.at(index);
    if (!tree_ || !grid_.hasChildren(row) || isColumnHidden(0)) return false;
    const QRect line = rowRect(index);
    const QRect cell(columnViewportPosition(0), line.top(), columnWidth(0), line.height());
    return RowPainter(sources_, *this).branchRect(row, cell).intersected(cell).contains(point);
}

std::optional<std::size_t> GridView::currentIndexOfRow() const {
    return grid_.currentRow() == kNoRow ? std::nullopt : rows_.find(grid_.currentRow());
}

// --- picking and folding

void GridView::pick(std::size_t index, Pick how) {
    const OwnChange own(*this);
    selection_.pick(index, how);
    lastCurrent_ = grid_.currentRow();
    ensureVisible(index);
    accessibleCurrentChanged(*this, index);
}

void GridView::pickRow(std::size_t index) {
    if (takesInput() && index < rows_.count()) pick(index, Pick::kOnly);
}

void GridView::foldRow(std::size_t index, bool expand) {
    if (!takesInput() || index >= rows_.count()) return;
    const Row row = rows_.at(index);
    if (!grid_.hasChildren(row) || grid_.expanded(row) == expand) return;
    grid_.setExpanded(row, expand);
    sync();
    accessibleFoldChanged(*this, index);
    listener_->expandedByUser(row);
}

void GridView::unfoldAllBelow(std::size_t index) {
    const Row row = rows_.at(index);
    if (!grid_.hasChildren(row)) return;
    {
        grid_.setRedraw(false);
        const ScopeExit on([this] { grid_.setRedraw(true); });
        const std::uint32_t level = grid_.level(row);
        Row below = row;
        do {
            if (grid_.hasChildren(below)) grid_.setExpanded(below, true);
            below = grid_.tree().following(below);
        } while (below != kNoRow && grid_.level(below) > level);
    }
    sync();
    listener_->expandedByUser(row);
}

// --- mouse

void GridView::mousePressEvent(QMouseEvent* event) {
    qtGuard(events_, "GridView::mousePressEvent", [&] {
        pressed_ = Qt::NoButton;
        dragging_ = false;
        if (takesInput() && buttonOf(event->button()))
            press(event->position().toPoint(), event->button(), event->modifiers());
    });
}

void GridView::press(const QPoint& point, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
    const auto index = indexAtPoint(point);
    if (index && button == Qt::LeftButton && onBranch(point, *index))
        return foldRow(*index, !grid_.expanded(rows_.at(*index)));
    pressed_ = button;
    pressPoint_ = point;
    if (!index) {
        const OwnChange own(*this);
        if (button == Qt::LeftButton && !shiftOrControl(keys)) selection_.pickNone();
    } else if (button == Qt::LeftButton) {
        pick(*index, pickOf(keys, Pick::kToggle));
    } else if (!grid_.selected(rows_.at(*index))) {
        pick(*index, Pick::kOnly);
    }
}

void GridView::mouseMoveEvent(QMouseEvent* event) {
    qtGuard(events_, "GridView::mouseMoveEvent", [&] {
        if (event->buttons() == Qt::NoButton && takesInput())
            return hover(rowAt(event->position().toPoint()));
        if (pressed_ == Qt::LeftButton && event->buttons() == Qt::LeftButton && takesInput())
            dragTo(event->position().toPoint());
    });
}

void GridView::leaveEvent(QEvent* event) {
    qtGuard(events_, "GridView::leaveEvent", [&] {
        QTableView::leaveEvent(event);
        if (takesInput()) hover(kNoRow);
    });
}

void GridView::hover(Row row) {
    // The same number may belong to another row by now.
    if (std::exchange(hovered_, row) != kNoRow || row != kNoRow) listener_->MouseMove(row);
}

// Selects from the pressed row to the one below the pointer, and scrolls at the edges.
void GridView::dragTo(const QPoint& point) {
    if ((point - pressPoint_).manhattanLength() >= QApplication::startDragDistance()) dragging_ = true;
    if (!dragging_ || !indexAtPoint(pressPoint_) || rows_.count() == 0) return;
    const int line = verticalScrollBar()->value() + (point.y() < 0 ? -1 : point.y() / rowHeight_);
    const auto last = static_cast<int>(rows_.count()) - 1;
    const auto index = static_cast<std::size_t>(std::clamp(line, 0, last));
    if (rows_.at(index) != grid_.currentRow()) pick(index, Pick::kStretch);
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
    qtGuard(events_, "GridView::mouseReleaseEvent", [&] {
        if (std::exchange(pressed_, Qt::NoButton) != event->button() || !takesInput()) return;
        const auto button = buttonOf(event->button());
        if (!button) return;
        Row row = rowAt(event->position().toPoint());
        // A drag beyond the edge ends at the row it reached.
        if (std::exchange(dragging_, false) && row == kNoRow) row = grid_.currentRow();
        const QPoint at = event->globalPosition().toPoint();
        listener_->MouseUp(row, *button, shiftOrControl(event->modifiers()), {at.x(), at.y()});
    });
}

// This is the press of a double click, whose release is not reported.
void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    qtGuard(events_, "GridView::mouseDoubleClickEvent", [&] {
        pressed_ = Qt::NoButton;
        if (!takesInput()) return;
        const QPoint point = event->position().toPoint();
        const auto index = indexAtPoint(point);
        if (!index || event->button() != Qt::LeftButton) {
            if (buttonOf(event->button())) press(point, event->button(), event->modifiers());
        } else if (onBranch(point, *index)) {
            foldRow(*index, !grid_.expanded(rows_.at(*index)));
        } else {
            listener_->DblClick();
        }
    });
}

// The menu key acts like a right click on the current row. For the mouse, its release has done that already.
void GridView::contextMenuEvent(QContextMenuEvent* event) {
    qtGuard(events_, "GridView::contextMenuEvent", [&] {
        event->accept();
        if (event->reason() == QContextMenuEvent::Keyboard && takesInput()) openMenu();
    });
}

void GridView::openMenu() {
    const auto index = currentIndexOfRow();
    if (!index) return;
    const Row row = rows_.at(*index);
    if (grid_.selected(row)) {
        ensureVisible(*index);
    } else {
        pick(*index, Pick::kOnly);
    }
    if (currentIndexOfRow() != index || rows_.at(*index) != row) return;  // The scrolling removed it.
    const QPoint at = viewport()->mapToGlobal(QPoint(rowHeight_, rowRect(*index).bottom()));
    listener_->MouseUp(row, MouseButton::kRight, false, {at.x(), at.y()});
}

// --- keys

void GridView::keyPressEvent(QKeyEvent* event) {
    qtGuard(events_, "GridView::keyPressEvent", [&] {
        event->ignore();
        // With Alt or Meta a key belongs to the menus and to the desktop.
        if ((event->modifiers() & (Qt::AltModifier | Qt::MetaModifier)) != 0 || !takesInput()) return;
        if (toldKey(event->key())) pressedKey_ = event->key();
        const Row current = grid_.currentRow();
        const std::size_t selected = grid_.selectedCount();
        if (pressMoveKey(*event) ||
            (tree_ && !shiftOrControl(event->modifiers() & ~Qt::ShiftModifier) &&
             pressTreeKey(event->key())) ||
            pressOtherKey(*event) || pressTextKey(*event) || toldKey(event->key()))
            event->accept();
        if (current != grid_.currentRow() || selected != grid_.selectedCount()) movedBy_ = event->key();
    });
}

/// Returns the row that a key moves to; nothing for other keys. REQUIRES: there are rows.
std::optional<std::size_t> GridView::keyTarget(int key) const {
    const std::size_t last = rows_.count() - 1;
    const auto page = static_cast<std::size_t>(std::max(1, viewport()->height() / rowHeight_ - 1));
    const auto current = currentIndexOfRow();
    const std::size_t from = current.value_or(0);
    switch (key) {
        case Qt::Key_Up:
            return from - std::min<std::size_t>(from, 1);
        case Qt::Key_Down:
            return current ? std::min(from + 1, last) : 0;
        case Qt::Key_PageUp:
            return from - std::min(from, page);
        case Qt::Key_PageDown:
            return std::min(from + page, last);
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return last;
        default:
            return std::nullopt;
    }
}

bool GridView::pressMoveKey(const QKeyEvent& event) {
    if (rows_.count() == 0) return false;
    const auto target = keyTarget(event.key());
    if (target) pick(*target, pickOf(event.modifiers(), Pick::kNone));
    return target.has_value();
}

bool GridView::pressTreeKey(int key) {
    const auto index = currentIndexOfRow();
    if (!index) return false;
    const Row row = rows_.at(*index);
    const bool open = grid_.expanded(row) && grid_.hasChildren(row);
    switch (key) {
        case Qt::Key_Plus:
        case Qt::Key_Minus:
            foldRow(*index, key == Qt::Key_Plus);
            return true;
        case Qt::Key_Asterisk:
            unfoldAllBelow(*index);
            return true;
        case Qt::Key_Right:
            if (open) {
                pick(*index + 1, Pick::kOnly);
            } else {
                foldRow(*index, true);
            }
            return true;
        case Qt::Key_Left:
            if (open) {
                foldRow(*index, false);
            } else if (const auto above = rows_.find(grid_.parent(row))) {
                pick(*above, Pick::kOnly);
            }
            return true;
        default:
            return false;
    }
}

bool GridView::pressOtherKey(const QKeyEvent& event) {
    QScrollBar* across = horizontalScrollBar();
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    if (control && event.key() == Qt::Key_A) {
        const OwnChange own(*this);
        selection_.pickAll();
    } else if (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier) {
        openMenu();  // Many keyboards have no menu key.
    } else if (event.key() == Qt::Key_Left || event.key() == Qt::Key_Right) {
        across->setValue(across->value() + (event.key() == Qt::Key_Left ? -1 : 1) * across->pageStep() / 4);
    } else if (const auto index = currentIndexOfRow();
               index && event.key() == Qt::Key_Space && (control || typed_.isEmpty())) {
        pick(*index, pickOf(event.modifiers(), Pick::kToggle));
    } else {
        return false;
    }
    return true;
}

// --- search by typing

bool GridView::pressTextKey(const QKeyEvent& event) {
    const bool command =
        (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
    const QString typed = event.text();
    if (command || typed.isEmpty() || !typed.front().isPrint()) return false;
    searchFor(typed);
    return true;
}

// Keys typed quickly search for a longer text from the current row on; a first key, and one that is pressed
// repeatedly, goes to the next matching row.
void GridView::searchFor(const QString& typed) {
    if (!typedAt_.isValid() || typedAt_.elapsed() > QApplication::keyboardInputInterval()) typed_.clear();
    typedAt_.start();
    typed_ += typed;
    if (rows_.count() == 0) return;
    const auto current = currentIndexOfRow();
    const std::size_t next = current ? *current + 1 : 0;
    const bool longer = typed_.size() > typed.size();
    auto found = findText(typed_.toStdString(), longer ? current.value_or(0) : next);
    if (!found && typed_ == typed.repeated(typed_.size() / typed.size()))
        found = findText(typed.toStdString(), next);
    if (found) pick(*found, Pick::kOnly);
}

// Returns the first row from `from` on, and then from the top, whose text begins with `front` without regard
// to case.
std::optional<std::size_t> GridView::findText(const std::string& front, std::size_t from) const {
    const std::size_t length = characterCount(front), count = rows_.count();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t index = (from + i) % count;
        const std::string_view text = firstCharacters(grid_.text(rows_.at(index)), length);
        if (compareFolded(text, front) == 0) return index;
    }
    return std::nullopt;
}

// --- releases and focus

void GridView::keyReleaseEvent(QKeyEvent* event) {
    qtGuard(events_, "GridView::keyReleaseEvent", [&] {
        auto code = toldKey(event->key());
        // Home, End, a letter that searches, "select all": for the logic, all of these are keys that move.
        const bool moved = movedBy_ == event->key();
        if (!code && !moved) return event->ignore();
        if (event->isAutoRepeat()) return;
        if (moved) movedBy_ = 0;
        if (code && std::exchange(pressedKey_, 0) != event->key()) return;
        if (!code) code = kKeyDown;
        if (takesInput()) listener_->KeyUp(*code);
    });
}

// The toolkit's own method would choose a current row by itself.
void GridView::focusInEvent(QFocusEvent* event) {
    qtGuard(events_, "GridView::focusInEvent", [&] {
        QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
        viewport()->update();
    });
}

void GridView::focusOutEvent(QFocusEvent* event) {
    qtGuard(events_, "GridView::focusOutEvent", [&] {
        QAbstractScrollArea::focusOutEvent(event);  // NOLINT(bugprone-parent-virtual-call)
        pressedKey_ = movedBy_ = 0;
        typed_.clear();
        viewport()->update();
    });
}

}  // namespace hl
