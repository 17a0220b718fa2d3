#include "platform/qt/bars/source_combo.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalBlocker>
#include <algorithm>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kSourceComboBoxGuard{"SourceComboBox"};

constexpr int kSmallestCharacters = 12;
constexpr int kRowsOfList = 20;

/// The toolkit's own accessible object gives the box's text as its name, and so no real name.
class SourceComboAccessible final : public QAccessibleWidget {
  public:
    explicit SourceComboAccessible(SourceComboBox& box)
        : QAccessibleWidget(&box, QAccessible::ComboBox), box_(box) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? box_.currentText() : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = state.expandable = state.hasPopup = true;
        state.expanded = box_.view()->isVisible();
        state.collapsed = !state.expanded;
        return state;
    }
    int childCount() const override { return 2; }
    QAccessibleInterface* child(int number) const override {
        if (number == 0) return QAccessible::queryAccessibleInterface(box_.view());
        return number == 1 ? QAccessible::queryAccessibleInterface(box_.lineEdit()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* sought) const override {
        for (int i = 0; i < childCount(); ++i)
            if (sought != nullptr && child(i) == sought) return i;
        return -1;
    }
    QStringList actionNames() const override {
        return {QAccessibleActionInterface::showMenuAction(), QAccessibleActionInterface::setFocusAction()};
    }
    void doAction(const QString& action) override {
        if (action != QAccessibleActionInterface::showMenuAction())
            return QAccessibleWidget::doAction(action);
        if (box_.view()->isVisible()) return box_.hidePopup();
        box_.showPopup();
    }

  private:
    SourceComboBox& box_;
};

/// With Shift or Ctrl, Del cuts, or deletes a word.
bool isDel(const QKeyEvent& event) {
    return event.key() == Qt::Key_Delete && (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

QAccessibleInterface* sourceComboInterface(const QString&, QObject* object) {
    auto* box = dynamic_cast<SourceComboBox*>(object);
    return box == nullptr ? nullptr : new SourceComboAccessible(*box);
}

}  // namespace

SourceComboBox::SourceComboBox(IconStore& icons, WindowEvents& faults, SourceEvents& events)
    : icons_(icons), faults_(faults), events_(events) {
    QAccessible::installFactory(sourceComboInterface);
    setObjectName(QStringLiteral("cboOrdner"));
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kSmallestCharacters);
    setMaxVisibleItems(kRowsOfList);
    view()->setTextElideMode(Qt::ElideMiddle);
    view()->installEventFilter(this);
    lineEdit()->installEventFilter(this);
    connect(this, &QComboBox::activated, this, [this](int index) {
        kSourceComboBoxGuard(faults_, "activated", [&] { events_.comboSelected(index); });
    });
    connect(lineEdit(), &QLineEdit::textEdited, this, [this](const QString& text) {
        kSourceComboBoxGuard(faults_, "textEdited", [&] { events_.comboText(utf8(text)); });
    });
}

void SourceComboBox::setSources(const std::vector<ComboItem>& items, const std::string& text, int selected) {
    const QSignalBlocker quiet(this);
    view()->setAccessibleName(accessibleName());
    lineEdit()->setAccessibleName(accessibleName());
    clear();
    images_.clear();
    for (const ComboItem& item : items) {
        addItem(icons_.icon(item.image), shownName(item.text));
        setItemData(count() - 1, shownName(item.text), Qt::ToolTipRole);
        images_.push_back(item.image);
    }
    setCurrentIndex(selected);
    const QString shown = selected < 0 ? qtText(text) : shownName(text);
    setEditText(shown);
    lineEdit()->setCursorPosition(0);
    setToolTip(shown);
}

/// Tells whether Del means the item and not its text, because nobody is editing the text.
bool SourceComboBox::standsOnItem() const {
    const QLineEdit& edit = *lineEdit();
    const QString text = edit.text();
    if (currentIndex() < 0 || text != itemText(currentIndex())) return false;
    if (edit.hasSelectedText()) return edit.selectedText() == text;
    return edit.cursorPosition() == 0 || edit.cursorPosition() == text.size();
}

/// The open list then selects the next item.
bool SourceComboBox::removeInList() {
    const int row = view()->currentIndex().row();
    if (!events_.comboRemove(row)) return false;
    if (count() == 0) hidePopup();
    view()->setCurrentIndex(model()->index(std::min(row, count() - 1), 0));
    return true;
}

void SourceComboBox::renewIcons() {
    for (int i = 0; i < count(); ++i) setItemIcon(i, icons_.icon(images_[static_cast<std::size_t>(i)]));
}

void SourceComboBox::keyPressEvent(QKeyEvent* event) {
    kSourceComboBoxGuard(faults_, [&] {
        if (isDel(*event) && standsOnItem() && events_.comboRemove(currentIndex())) return;
        QComboBox::keyPressEvent(event);
        // The box does nothing with it, but the window does.
        if (event->key() == Qt::Key_Escape) event->ignore();
        const int key = handledKey(*event);
        if (key != 0) events_.comboKeyDown(key);
    });
}

bool SourceComboBox::eventFilter(QObject* watched, QEvent* event) {
    return kSourceComboBoxGuard(faults_, [&] {
        if (watched == lineEdit() && event->type() == QEvent::DragEnter &&
            static_cast<QDragEnterEvent&>(*event).mimeData()->hasUrls()) {
            event->ignore();  // Files are for the window, which reads them.
            return true;
        }
        const bool key = watched == view() && event->type() == QEvent::KeyPress;
        if (key && isDel(static_cast<QKeyEvent&>(*event)) && removeInList()) return true;
        return QComboBox::eventFilter(watched, event);
    });
}

void SourceComboBox::keyReleaseEvent(QKeyEvent* event) {
    kSourceComboBoxGuard(faults_, [&] {
        QComboBox::keyReleaseEvent(event);
        if (event->key() == Qt::Key_Escape) event->ignore();
    });
}

}  // namespace hl
