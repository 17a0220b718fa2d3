#include "platform/qt/grid/cell_editor.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStyleOptionFrame>
#include <algorithm>
#include <limits>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/grid/grid_view.h"

namespace hl {

namespace {

constexpr QtGuard kCellEditorGuard{"CellEditor"};

/// The distance that QLineEdit keeps between its frame and its text.
constexpr int kTextMargin = 2;
/// The room for the frame left of the name, if there is no picture.
constexpr int kLeftRoom = 4;
/// The room for typing behind the text, and the least width of the box, in characters.
constexpr int kRoom = 3, kLeast = 12;
/// How often watch() checks, in milliseconds.
constexpr int kWatch = 100;

/// Returns the length of a file name without its extension.
int stemLength(const QString& name) {
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return static_cast<int>(dot > 0 ? dot : name.size());
}

QString inOneLine(QString text) {
    static const QRegularExpression breaks(QStringLiteral("\r\n|[\n\v\f\r\u0085\u2028\u2029]"));
    return text.replace(breaks, QStringLiteral(" "));
}

}  // namespace

CellEditor::CellEditor(GridView& view) : QLineEdit(view.viewport()), view_(view) {
    setObjectName(QStringLiteral("cellEditor"));
    // A name must never be cut.
    setMaxLength(std::numeric_limits<int>::max());
    // A dropped text could have several lines.
    setAcceptDrops(false);
    hide();
    connect(this, &QLineEdit::textChanged, this,
            [this] { kCellEditorGuard(view_.events(), "textChanged", [&] { follow(); }); });
}

// --- life of an edit

bool CellEditor::usable() const {
    return view_.isEnabled() && view_.grid().enabled();
}

void CellEditor::begin(Row row) {
    if (open_) {
        const std::size_t before = view_.rows().changes();
        commit();
        // Whoever was told of that may have removed the row.
        const bool sameRows = view_.sync() && view_.rows().changes() == before;
        if (!sameRows && !view_.rows().find(row)) return;
    }
    if (row == kNoRow || !usable() || !view_.isVisible()) return;
    view_.scrollIntoView(row);
    auto name = view_.nameRect(row);
    if (!name) return;
    if (name->left() < kLeftRoom) {
        QScrollBar* across = view_.horizontalScrollBar();
        across->setValue(across->value() + name->left() - kLeftRoom);
    }
    row_ = row;
    open_ = true;
    locked_ = false;
    qApp->installEventFilter(this);
    timer_.start(kWatch, this);
    fill();
    follow();
    if (!open_) return;
    show();
    setFocus(Qt::OtherFocusReason);
}

void CellEditor::fill() {
    setAccessibleName(qtText(view_.grid().columns()[0].title));
    setText(editableText(view_.grid().text(row_)));
    setSelection(0, static_cast<int>(view_.isTree() ? text().size() : stemLength(text())));
}

void CellEditor::cancel() {
    if (!std::exchange(open_, false)) return;
    timer_.stop();
    if (endKey_ == 0) qApp->removeEventFilter(this);
    for (auto* menu : findChildren<QMenu*>()) menu->close();
    // This comes before it is hidden, or else the focus would go to the next stop of the Tab key.
    if (window()->focusWidget() == this) view_.focus();
    hide();
}

void CellEditor::commit() {
    // Applying what the grid has told ends the edit if rows were added or removed.
    if (!usable() || !view_.sync()) cancel();
    if (!open_) return;
    const std::string bytes = bytesOfEditable(text());
    cancel();
    view_.listener().GridCellAfterEditing(row_, bytes);
}

// A redraw that is off only for a moment, such as for a change of cells, ends nothing.
void CellEditor::watch() {
    const bool before = std::exchange(locked_, !view_.grid().redraw());
    if (!usable() || (before && locked_)) return cancel();
    // In a window in the background nobody reports that the focus has moved.
    if (window()->focusWidget() != this) commit();
}

void CellEditor::timerEvent(QTimerEvent* event) {
    kCellEditorGuard(view_.events(), [&] {
        if (event->timerId() != timer_.timerId()) return QLineEdit::timerEvent(event);
        watch();
    });
}

// --- its place

void CellEditor::follow() {
    if (!open_ || !view_.upToDate()) return;
    setFont(view_.font());
    const auto name = view_.nameRect(row_);
    const QRect place = name ? placeOver(*name) : QRect();
    if (!place.intersects(view_.viewport()->rect())) return cancel();
    setGeometry(place);
}

// The text is placed where the name was, unless the style's frame is too wide for that.
QRect CellEditor::placeOver(const QRect& name) const {
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect inside = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    const int inset = inside.left() + kTextMargin;
    const int left = name.left() - std::min(inset, kLeftRoom);
    const int character = fontMetrics().averageCharWidth();
    const int wanted = fontMetrics().horizontalAdvance(displayText()) + 2 * inset + kRoom * character;
    const int width = std::min(std::max(wanted, kLeast * character), view_.viewport()->width() - left);
    return {left, name.top(), width, name.height()};
}

// --- keys

void CellEditor::keyPressEvent(QKeyEvent* event) {
    kCellEditorGuard(view_.events(), [&] {
        const int key = event->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) {
            pressEndKey(*event);
        } else if (event->matches(QKeySequence::Paste)) {
            const auto selection = Qt::ControlModifier | Qt::ShiftModifier;
            const bool ofSelection = event->modifiers() == selection && key == Qt::Key_Insert;
            pasteFrom(ofSelection ? QClipboard::Selection : QClipboard::Clipboard);
        } else {
            QLineEdit::keyPressEvent(event);
        }
        // No key is passed on to the grid, or to the commands of the window.
        event->accept();
    });
}

// The key that began the edit may still be held down.
void CellEditor::pressEndKey(const QKeyEvent& event) {
    if (event.isAutoRepeat()) return;
    endKey_ = event.key();
    if (event.key() == Qt::Key_Escape) {
        cancel();
    } else {
        commit();
    }
}

// The toolkit calls this for the Tab key.
bool CellEditor::focusNextPrevChild(bool) {
    kCellEditorGuard(view_.events(), [&] { commit(); });
    return true;
}

/// Handles the remaining events of a key that ended an edit, wherever the focus is by now: its repeats and
/// its release.
bool CellEditor::swallows(const QKeyEvent& event) {
    if (endKey_ == 0 || event.key() != endKey_) return false;
    if (event.isAutoRepeat()) return true;
    endKey_ = 0;
    if (!open_) qApp->removeEventFilter(this);
    return event.type() == QEvent::KeyRelease;
}

// --- the mouse

bool CellEditor::eventFilter(QObject* object, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool key = type == QEvent::KeyPress || type == QEvent::KeyRelease;
    if (!key && type != QEvent::MouseButtonPress) return false;
    return kCellEditorGuard(view_.events(), [&] {
        if (key) return swallows(*static_cast<QKeyEvent*>(event));
        if (object->isWidgetType() && isElsewhere(*static_cast<QWidget*>(object))) commit();
        return false;
    });
}

// Much in a window takes a click but not the focus.
bool CellEditor::isElsewhere(const QWidget& pressed) const {
    return &pressed != this && !isAncestorOf(&pressed) && pressed.window() == window();
}

// When a menu or another window closes, the focus comes back.
void CellEditor::focusOutEvent(QFocusEvent* event) {
    kCellEditorGuard(view_.events(), [&] {
        QLineEdit::focusOutEvent(event);
        if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason) return;
        commit();
    });
}

// --- pasting; the toolkit's own would keep line breaks, which look like blanks, in the name

void CellEditor::pasteFrom(QClipboard::Mode mode) {
    const QString text = inOneLine(QGuiApplication::clipboard()->text(mode));
    if (!text.isEmpty()) insert(text);
}

void CellEditor::mouseReleaseEvent(QMouseEvent* event) {
    kCellEditorGuard(view_.events(), [&] {
        const bool paste =
            event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection();
        if (!paste) return QLineEdit::mouseReleaseEvent(event);
        deselect();
        pasteFrom(QClipboard::Selection);
    });
}

/// The standard entry can be recognised only by its text.
void CellEditor::replacePaste(QMenu& menu) {
    for (QAction* standard : menu.actions()) {
        if (!standard->text().startsWith(QLineEdit::tr("&Paste"))) continue;
        auto* paste = new QAction(standard->icon(), standard->text(), &menu);
        paste->setObjectName(QStringLiteral("paste"));
        paste->setEnabled(standard->isEnabled());
        connect(paste, &QAction::triggered, this, [this] {
            kCellEditorGuard(view_.events(), "paste", [&] { pasteFrom(QClipboard::Clipboard); });
        });
        menu.insertAction(standard, paste);
        menu.removeAction(standard);
    }
}

void CellEditor::contextMenuEvent(QContextMenuEvent* event) {
    kCellEditorGuard(view_.events(), [&] {
        QMenu* menu = createStandardContextMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        replacePaste(*menu);
        menu->popup(event->globalPos());
        event->accept();
    });
}

}  // namespace hl
