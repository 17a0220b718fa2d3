#include "platform/qt/bars/bar_menu.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWidgetAction>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kBarMenuGuard{"BarMenu"};
constexpr const char* kCheckBox = "isCheckBox";
}  // namespace

BarMenu::BarMenu(const Context& context, const std::vector<BarEntry>& entries, QWidget* parent)
    : QMenu(parent), context_(context) {
    setToolTipsVisible(true);
    for (const BarEntry& entry : entries) add(entry);
    connect(this, &QMenu::aboutToShow, this,
            [this] { kBarMenuGuard(context_.faults, "aboutToShow", [this] { sync(); }); });
}

void BarMenu::add(const BarEntry& entry) {
    if (entry.beginGroup) addSeparator();
    if (entry.kind == EntryKind::kEdit) return addEdit(entry);
    if (!entry.list.empty()) return addList(entry);
    auto* action = addAction(QString());
    action->setData(entry.id);
    action->setProperty(kCheckBox, entry.kind == EntryKind::kCheckBox);
    show(*action, entry);
    connect(action, &QAction::triggered, this, [this, id = entry.id] {
        kBarMenuGuard(context_.faults, "triggered", [&] {
            context_.within([&] { context_.events.execute(context_.bar.id(), id); });
            if (const BarEntry* after = context_.bar.find(id)) syncEntry(*after);
        });
    });
}

void BarMenu::addEdit(const BarEntry& entry) {
    auto* holder = new QWidgetAction(this);
    holder->setDefaultWidget(new BarEdit(context_.bar, entry, context_.faults, context_.events,
                                         context_.within, context_.clear, this));
    holder->setData(entry.id);
    addAction(holder);
}

void BarMenu::focusWhenOpen(int id) {
    for (QAction* action : actions()) {
        auto* holder = dynamic_cast<QWidgetAction*>(action);
        if (holder == nullptr || holder->data() != id) continue;
        // The menu takes the keyboard when it opens.
        QTimer::singleShot(0, holder, [this, holder] {
            kBarMenuGuard(context_.faults, "focusWhenOpen", [&] {
                if (!isVisible()) return;
                setActiveAction(holder);
                holder->defaultWidget()->setFocus(Qt::ShortcutFocusReason);
            });
        });
    }
}

/// The first line of the list does what a split button does when it is clicked outside of a menu.
void BarMenu::addList(const BarEntry& entry) {
    auto* list = new BarMenu(context_, {}, this);
    BarEntry itself = entry;
    itself.list.clear();
    itself.beginGroup = false;
    bool first = entry.id != 0 && entry.kind != EntryKind::kMenuButton;
    if (first) list->add(itself);
    for (BarEntry below : entry.list) {
        below.beginGroup = below.beginGroup || std::exchange(first, false);
        list->add(below);
    }
    lists_.push_back(list);
    list->menuAction()->setData(entry.id);
    show(*addMenu(list), entry);
}

void BarMenu::show(QAction& action, const BarEntry& entry) const {
    const std::string& text = entry.caption.empty() ? entry.tooltip : entry.caption;
    // Behind a tab a menu only shows keys; the window handles them.
    const QString keys = acceleratorOf(entry.key).toString(QKeySequence::NativeText);
    action.setText(captionText(text) + (keys.isEmpty() ? QString() : QLatin1Char('\t') + keys));
    action.setToolTip(qtText(entry.tooltip));
    action.setIcon(context_.icons.icon(entry.icon));
    action.setEnabled(entry.enabled);
    action.setVisible(entry.visible);
    // A pressed button has a mark, too, but a click on it closes the menu.
    action.setCheckable(entry.checked || action.property(kCheckBox).toBool());
    action.setChecked(entry.checked);
}

void BarMenu::sync() {
    for (QAction* action : actions()) {
        const int id = action->data().toInt();
        const BarEntry* entry = id == 0 ? nullptr : context_.bar.find(id);
        if (entry != nullptr) show(*action, *entry);
    }
}

void BarMenu::syncEntry(const BarEntry& entry) {
    for (QAction* action : actions())
        if (entry.id != 0 && action->data().toInt() == entry.id) show(*action, entry);
    for (BarMenu* list : lists_) list->syncEntry(entry);
}

bool BarMenu::switchCheckBox(QAction* action) {
    if (action == nullptr || !action->property(kCheckBox).toBool() || !action->isEnabled()) return false;
    action->trigger();
    return true;
}

void BarMenu::mouseReleaseEvent(QMouseEvent* event) {
    kBarMenuGuard(context_.faults, [&] {
        if (!switchCheckBox(actionAt(event->position().toPoint()))) QMenu::mouseReleaseEvent(event);
    });
}

void BarMenu::keyPressEvent(QKeyEvent* event) {
    kBarMenuGuard(context_.faults, [&] {
        const bool space = event->key() == Qt::Key_Space;
        if (!space || !switchCheckBox(activeAction())) QMenu::keyPressEvent(event);
    });
}

}  // namespace hl
