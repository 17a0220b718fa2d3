#include "platform/qt/grid/grid_keys.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "platform/qt/grid/grid_view.h"

namespace hl {

namespace {

struct KeyName {
    int toolkit, code;
};

// The logic is told of the release of these keys.
constexpr KeyName kToldKeys[] = {
    {Qt::Key_Return, kKeyReturn},    {Qt::Key_Enter, kKeyReturn}, {Qt::Key_Up, kKeyUp},
    {Qt::Key_Down, kKeyDown},        {Qt::Key_F2, kKeyF2},        {Qt::Key_PageUp, kKeyPageUp},
    {Qt::Key_PageDown, kKeyPageDown}};

std::optional<GridShortcut> shortcutOf(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Copy)) return GridShortcut::kCopy;
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::AltModifier) return std::nullopt;
    if (event.key() == Qt::Key_Left) return GridShortcut::kBack;
    if (event.key() == Qt::Key_Right) return GridShortcut::kForward;
    return std::nullopt;
}

// These look around and change no row.
constexpr int kLookKeys[] = {Qt::Key_Up,  Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home,
                             Qt::Key_End, Qt::Key_Left, Qt::Key_Right,  Qt::Key_Plus,     Qt::Key_Minus};

std::optional<int> toldKey(int key) {
    for (const KeyName& known : kToldKeys)
        if (known.toolkit == key) return known.code;
    return std::nullopt;
}

}  // namespace

// --- press and release

void GridKeys::press(QKeyEvent& event) {
    event.ignore();
    if (const auto shortcut = shortcutOf(event)) {
        event.accept();
        // The logic may let messages run meanwhile: repetitions of a held key would run inside each other.
        if (!event.isAutoRepeat() && view_.takesInput()) view_.listener().Shortcut(*shortcut);
        return;
    }
    // With Alt or Meta a key belongs to the menus and to the desktop.
    if ((event.modifiers() & (Qt::AltModifier | Qt::MetaModifier)) != 0) return;
    if (view_.looksOnly()) return look(event);
    if (!view_.takesInput()) return;
    if (event.key() == Qt::Key_Delete && !event.modifiers().testFlag(Qt::ControlModifier)) {
        event.accept();
        // A key that is held would delete one row after another.
        if (!event.isAutoRepeat())
            view_.listener().deletePressed(event.modifiers().testFlag(Qt::ShiftModifier));
        return;
    }
    if (toldKey(event.key())) pressed_ = event.key();
    const Grid& grid = view_.grid();
    const Row current = grid.currentRow();
    const std::size_t selected = grid.selectedCount();
    if (pressMoveKey(event) || pressTreeKey(event) || pressOtherKey(event) || pressTextKey(event) ||
        toldKey(event.key()))
        event.accept();
    if (current != grid.currentRow() || selected != grid.selectedCount()) movedBy_ = event.key();
}

// The logic is not told of the release, so that nothing follows what is picked.
void GridKeys::look(QKeyEvent& event) {
    if (std::ranges::find(kLookKeys, event.key()) == std::end(kLookKeys)) return;
    const GridSync::Glance glance(view_.changes());
    if (!view_.takesLooks()) return;
    view_.listener().looked(Look::kKey);
    if (pressMoveKey(event) || pressTreeKey(event) || pressOtherKey(event)) event.accept();
}

void GridKeys::release(QKeyEvent& event) {
    auto code = toldKey(event.key());
    // Home, End, a letter that searches, "select all": for the logic, all of these are keys that move.
    const bool moved = movedBy_ == event.key();
    if (!code && !moved) return event.ignore();
    if (event.isAutoRepeat()) return;
    if (moved) movedBy_ = 0;
    if (code && std::exchange(pressed_, 0) != event.key()) return;
    if (!code) code = kKeyDown;
    if (view_.takesInput()) view_.listener().KeyUp(*code);
}

void GridKeys::focusLeft() {
    pressed_ = movedBy_ = 0;
    search_.clear();
}

// --- what a key does

/// Returns the row that a key moves to; nothing for other keys. REQUIRES: there are rows.
std::optional<std::size_t> GridKeys::moveTarget(int key) const {
    const std::size_t last = view_.rows().count() - 1;
    const auto page = static_cast<std::size_t>(std::max(1, view_.places().wholeRowsOnPage() - 1));
    const auto current = view_.actions().currentIndex();
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

bool GridKeys::pressMoveKey(const QKeyEvent& event) {
    if (view_.rows().count() == 0) return false;
    const auto target = moveTarget(event.key());
    if (target) view_.actions().pick(*target, pickOf(event.modifiers(), Pick::kNone));
    return target.has_value();
}

bool GridKeys::pressTreeKey(const QKeyEvent& event) {
    GridActions& actions = view_.actions();
    const auto index = actions.currentIndex();
    if (!view_.isTree() || event.modifiers().testFlag(Qt::ControlModifier) || !index) return false;
    const Row row = view_.rows().at(*index);
    const bool open = view_.grid().expanded(row) && view_.grid().hasChildren(row);
    switch (event.key()) {
        case Qt::Key_Plus:
        case Qt::Key_Minus:
            actions.foldRow(*index, event.key() == Qt::Key_Plus);
            return true;
        case Qt::Key_Asterisk:
            actions.unfoldAllBelow(*index);
            return true;
        case Qt::Key_Right:
            if (open) {
                actions.pick(*index + 1, Pick::kOnly);
            } else {
                actions.foldRow(*index, true);
            }
            return true;
        case Qt::Key_Left:
        case Qt::Key_Backspace:
            if (open && event.key() == Qt::Key_Left) {
                actions.foldRow(*index, false);
            } else if (const auto above = view_.rows().find(view_.grid().parent(row))) {
                actions.pick(*above, Pick::kOnly);
            }
            return true;
        default:
            return false;
    }
}

bool GridKeys::pressOtherKey(const QKeyEvent& event) {
    GridActions& actions = view_.actions();
    QScrollBar* across = view_.horizontalScrollBar();
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    if (control && event.key() == Qt::Key_A) {
        actions.pickAll();
    } else if (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier) {
        actions.openMenu();  // Many keyboards have no menu key.
    } else if (event.key() == Qt::Key_Left || event.key() == Qt::Key_Right) {
        across->setValue(across->value() + (event.key() == Qt::Key_Left ? -1 : 1) * across->pageStep() / 4);
    } else if (const auto index = actions.currentIndex();
               index && event.key() == Qt::Key_Space && (control || search_.isEmpty())) {
        actions.pick(*index, pickOf(event.modifiers(), Pick::kToggle));
    } else {
        return false;
    }
    return true;
}

bool GridKeys::pressTextKey(const QKeyEvent& event) {
    const QString typed = event.text();
    if (event.modifiers().testFlag(Qt::ControlModifier) || typed.isEmpty() || !typed.front().isPrint())
        return false;
    const auto found = search_.type(typed, view_.grid(), view_.rows(), view_.actions().currentIndex());
    if (found) view_.actions().pick(*found, Pick::kOnly);
    return true;
}

}  // namespace hl
