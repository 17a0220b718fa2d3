#include "platform/qt/source_combo.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

#include "platform/qt/qt_convert.h"
#include "platform/qt/qt_guard.h"

namespace hl {

namespace {

constexpr int kSmallestCharacters = 12;
constexpr int kRowsOfList = 20;

/// The toolkit's own has what stands in the box as its name, and so no name at all.
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

QAccessibleInterface* sourceComboInterface(const QString&, QObject* object) {
    auto* box = dynamic_cast<SourceComboBox*>(object);
    return box == nullptr ? nullptr : new SourceComboAccessible(*box);
}

}  // namespace

SourceComboBox::SourceComboBox(IconStore& icons, WindowEvents& events) : icons_(icons), events_(events) {
    QAccessible::installFactory(sourceComboInterface);
    setObjectName(QStringLiteral("cboOrdner"));
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kSmallestCharacters);
    setMaxVisibleItems(kRowsOfList);
    view()->setTextElideMode(Qt::ElideMiddle);
    connect(this, &QComboBox::activated, this, [this](int index) {
        qtGuard(events_, "SourceComboBox::activated", [&] { events_.comboSelected(index); });
    });
    connect(lineEdit(), &QLineEdit::textEdited, this, [this](const QString& text) {
        qtGuard(events_, "SourceComboBox::textEdited", [&] { events_.comboText(utf8(text)); });
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

void SourceComboBox::renewIcons() {
    for (int i = 0; i < count(); ++i) setItemIcon(i, icons_.icon(images_[static_cast<std::size_t>(i)]));
}

void SourceComboBox::keyPressEvent(QKeyEvent* event) {
    qtGuard(events_, "SourceComboBox::keyPressEvent", [&] {
        QComboBox::keyPressEvent(event);
        // The box takes it for nothing; the window has a use for it.
        if (event->key() == Qt::Key_Escape) event->ignore();
        const int key = handledKey(*event);
        if (key != 0) events_.comboKeyDown(key);
    });
}

void SourceComboBox::keyReleaseEvent(QKeyEvent* event) {
    qtGuard(events_, "SourceComboBox::keyReleaseEvent", [&] {
        QComboBox::keyReleaseEvent(event);
        if (event->key() == Qt::Key_Escape) event->ignore();
    });
}

}  // namespace hl
