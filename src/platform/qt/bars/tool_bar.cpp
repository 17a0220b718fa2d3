#include "platform/qt/bars/tool_bar.h"

#include <QAccessibleWidget>
#include <QCheckBox>
#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <QToolButton>
#include <algorithm>

#include "base/scope_exit.h"
#include "platform/qt/bars/bar_button.h"
#include "platform/qt/bars/bar_edit.h"
#include "platform/qt/bars/bar_label.h"
#include "platform/qt/bars/bar_menu.h"
#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kToolBarGuard{"ToolBar"};

constexpr int kSmallIcon = 16, kLargeIcon = 32;
constexpr int kLabelSmallest = 150;
constexpr int kEditWidth = 150, kEditSmallest = 70;
constexpr int kCustomWidth = 260, kCustomSmallest = 120;

QAccessibleInterface* toolBarInterface(const QString&, QObject* object) {
    auto* bar = dynamic_cast<ToolBar*>(object);
    return bar == nullptr ? nullptr : new QAccessibleWidget(bar, QAccessible::ToolBar);
}

QString tooltipOf(const BarEntry& entry) {
    const QString text = qtText(entry.tooltip.empty() ? entry.caption : entry.tooltip);
    const QString keys = acceleratorOf(entry.key).toString(QKeySequence::NativeText);
    return keys.isEmpty() ? text : text + QStringLiteral(" (") + keys + QLatin1Char(')');
}

/// Without texts below the icons, only few entries have theirs beside the icon; the others show it as a
/// tooltip.
Qt::ToolButtonStyle styleOf(const BarEntry& entry, bool textBelow) {
    if (entry.icon == kNoIcon) return textBelow ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonTextOnly;
    if (textBelow) return Qt::ToolButtonTextUnderIcon;
    return entry.showsCaption ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly;
}

QString nameOf(const BarEntry& entry) {
    return qtText(entry.caption.empty() ? entry.tooltip : entry.caption);
}

}  // namespace

ToolBar::ToolBar(CommandBar& bar, IconStore& icons, WindowEvents& faults, BarEvents& events, QWidget* custom)
    : bar_(bar),
      icons_(icons),
      faults_(faults),
      events_(events),
      custom_(custom),
      extension_(new BarButton(faults, this)),
      focus_([this] { return placesOfFocus(); }, faults) {
    QAccessible::installFactory(toolBarInterface);
    setObjectName(qtText(bar.name()));
    extension_->setObjectName(objectName() + QStringLiteral(".extension"));
    extension_->setText(QStringLiteral("\u00BB"));
    extension_->setPopupMode(QToolButton::InstantPopup);
    extension_->hide();
    focus_.watch(*extension_);
    if (custom_ != nullptr) custom_->setParent(this);
    bar_.attach(this);
}

// An edit box with the focus reports that it is left when it is destroyed: the bar must still be complete
// then.
ToolBar::~ToolBar() {
    bar_.attach(nullptr);
    qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

// --- building

void ToolBar::barChanged(const CommandBar&) {
    if (std::exchange(largerBy_, bar_.largerBy()) != bar_.largerBy()) setFont(desktopFont(largerBy_));
    if (dirty_) return;
    dirty_ = true;
    updateGeometry();
    QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
}

void ToolBar::setNames(const QString& more, const QString& clear) {
    extension_->setAccessibleName(more);
    extension_->setToolTip(more);
    clear_ = clear;
}

void ToolBar::rebuild() {
    barChanged(bar_);
}

/// The object that was clicked may be on the stack, below a whole run; then it is deleted after that.
void ToolBar::drop(QObject* old) {
    if (running_ > 0) {
        parked_.push_back(old);
    } else {
        old->deleteLater();
    }
}

void ToolBar::dropParts() {
    setBehindExtension({});
    for (const Part& part : std::exchange(parts_, {})) {
        if (part.menu != nullptr) drop(part.menu);
        if (part.widget == nullptr || part.widget == custom_) continue;
        part.widget->hide();
        part.widget->setObjectName(QString());
        drop(part.widget);
    }
}

void ToolBar::build() {
    if (!std::exchange(dirty_, false)) return;
    const auto hasFocus = [](const Part& part) { return part.widget != nullptr && part.widget->hasFocus(); };
    const auto holder = std::find_if(parts_.begin(), parts_.end(), hasFocus);
    const int focused = holder == parts_.end() ? 0 : holder->id;
    dropParts();
    for (const BarEntry& entry : bar_.entries()) {
        Part& part = parts_.emplace_back();
        part.id = entry.id;
        part.widget = make(entry, part);
        if (part.widget == nullptr) continue;
        if (part.widget->objectName().isEmpty())
            part.widget->setObjectName(objectName() + QStringLiteral(".%1").arg(entry.id));
        focus_.watch(*part.widget);
        sync(part, entry);
        if (focused != 0 && entry.id == focused) part.widget->setFocus();
    }
    if (accessibleName().isEmpty()) setAccessibleName(qtText(bar_.title()));
    arrange();
}

QWidget* ToolBar::make(const BarEntry& entry, Part& part) {
    switch (entry.kind) {
        case EntryKind::kEdit:
            return new BarEdit(bar_, entry, faults_, events_, menuContext().within, clear_, this);
        case EntryKind::kCustom:
            return custom_;
        case EntryKind::kLabel:
            return new BarLabel(qtText(entry.caption), faults_, this);
        case EntryKind::kCheckBox:
            if (entry.icon == kNoIcon) return makeCheckBox(entry);
            [[fallthrough]];
        case EntryKind::kButton:
        case EntryKind::kSplitButton:
        case EntryKind::kMenuButton:
            return makeButton(entry, part);
    }
    return nullptr;
}

QWidget* ToolBar::makeCheckBox(const BarEntry& entry) {
    auto* box = new QCheckBox(this);
    connect(box, &QCheckBox::clicked, this,
            [this, id = entry.id] { kToolBarGuard(faults_, "clicked", [&] { run(id); }); });
    return box;
}

QWidget* ToolBar::makeButton(const BarEntry& entry, Part& part) {
    auto* button = new BarButton(faults_, this);
    const int side = bar_.largeIcons() ? kLargeIcon : kSmallIcon;
    button->setIconSize(QSize(side, side));
    button->setToolButtonStyle(styleOf(entry, bar_.textBelowIcons()));
    if (!entry.list.empty()) {
        part.menu = new BarMenu(menuContext(), entry.list, this);
        part.menu->setAccessibleName(nameOf(entry));
        button->setMenu(part.menu);
        const bool menuAlone = entry.kind == EntryKind::kMenuButton;
        button->setPopupMode(menuAlone ? QToolButton::InstantPopup : QToolButton::MenuButtonPopup);
        if (menuAlone) return button;
    }
    connect(button, &QToolButton::clicked, this,
            [this, id = entry.id] { kToolBarGuard(faults_, "clicked", [&] { run(id); }); });
    return button;
}

// --- following the bar

void ToolBar::entryChanged(const CommandBar&, const BarEntry& entry) {
    if (dirty_) return;
    bool moves = false;
    for (Part& part : parts_) {
        if (part.menu != nullptr) part.menu->syncEntry(entry);
        if (part.id != entry.id || part.widget == nullptr) continue;
        const QSize before = part.widget->sizeHint();
        const bool visible = part.visible;
        sync(part, entry);
        moves = moves || part.widget->sizeHint() != before || visible != entry.visible;
    }
    if (!moves) return;
    updateGeometry();
    arrange();  // This is done last, because whoever is told the new height may have the bar built anew.
}

void ToolBar::sync(Part& part, const BarEntry& entry) {
    part.visible = entry.visible;
    part.widget->setEnabled(entry.enabled);
    if (auto* button = dynamic_cast<QToolButton*>(part.widget)) return syncButton(*button, entry);
    if (auto* box = dynamic_cast<QCheckBox*>(part.widget)) {
        box->setText(captionText(entry.caption));
        box->setChecked(entry.checked);
        box->setToolTip(tooltipOf(entry));
    } else if (auto* edit = dynamic_cast<BarEdit*>(part.widget)) {
        if (edit->text() != qtText(entry.text)) edit->setText(qtText(entry.text));
        edit->setToolTip(qtText(entry.tooltip));
    } else if (auto* label = dynamic_cast<QLabel*>(part.widget)) {
        label->setText(qtText(entry.caption));
    } else {
        part.widget->setToolTip(tooltipOf(entry));
        part.widget->setAccessibleName(nameOf(entry));
    }
}

void ToolBar::syncButton(QToolButton& button, const BarEntry& entry) {
    button.setIcon(icons_.icon(entry.icon));
    button.setText(captionText(entry.caption));
    button.setToolTip(tooltipOf(entry));
    button.setAccessibleName(nameOf(entry));
    button.setCheckable(entry.kind == EntryKind::kCheckBox || entry.checked);
    button.setChecked(entry.checked);
}

// --- places

void ToolBar::addPlace(const BarEntry& entry, const Part& part, std::vector<FlowItem>& items) const {
    FlowItem item;
    item.size = part.widget->sizeHint();
    item.smallest = item.size.width();
    item.beginGroup = entry.beginGroup;
    item.rank = entry.rank;
    if (entry.kind == EntryKind::kEdit) {
        item.size.setWidth(entry.width != 0 ? entry.width : kEditWidth);
        item.smallest = std::min(item.size.width(), kEditSmallest);
    }
    if (entry.kind == EntryKind::kLabel) {
        // In the single row of a bar that clips, the buttons after a label say more than the end of a long
        // label.
        if (bar_.clips()) item.size.setWidth(std::min(item.size.width(), kLabelSmallest));
        item.smallest = std::min(item.smallest, kLabelSmallest);
    }
    if (entry.kind == EntryKind::kCustom) {
        item.size.setWidth(kCustomWidth);
        item.smallest = std::max(kCustomSmallest, part.widget->minimumSizeHint().width());
        item.grows = true;
    }
    items.push_back(item);
}

/// `shown` receives the indexes of the parts that the places belong to.
Flow ToolBar::flow(int width, std::vector<std::size_t>* shown) const {
    std::vector<FlowItem> items;
    bool group = false;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        const BarEntry& entry = bar_.entries()[i];
        // A group begins even if its first entry is hidden.
        group = group || entry.beginGroup;
        if (parts_[i].widget == nullptr || !entry.visible) continue;
        addPlace(entry, parts_[i], items);
        items.back().beginGroup = std::exchange(group, false);
        // The button that starts a search stays beside the search's text.
        items.back().joined = i > 0 && !entry.beginGroup && bar_.entries()[i - 1].kind == EntryKind::kEdit;
        if (shown != nullptr) shown->push_back(i);
    }
    FlowRule rule;
    if (bar_.clips()) rule.mostRows = 1;
    rule.extensionWidth = extension_->sizeHint().width();
    return flowOf(items, width, rule);
}

void ToolBar::arrange() {
    if (dirty_) return;
    std::vector<std::size_t> shown;
    const Flow flow = this->flow(width(), &shown);
    std::vector<bool> placed(parts_.size(), false);
    std::vector<std::size_t> behind;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (flow.places[i].isNull()) {
            behind.push_back(shown[i]);
            continue;
        }
        placed[shown[i]] = true;
        parts_[shown[i]].widget->setGeometry(flow.places[i]);
    }
    for (std::size_t i = 0; i < parts_.size(); ++i)
        if (parts_[i].widget != nullptr) parts_[i].widget->setVisible(placed[i]);
    setBehindExtension(std::move(behind));
    extension_->setGeometry(flow.extension);
    extension_->setVisible(!behindExtension_.empty());
    separators_ = flow.separators;
    update();
    if (std::exchange(height_, flow.height) != flow.height) events_.barResized(bar_.id());
}

void ToolBar::setBehindExtension(std::vector<std::size_t> parts) {
    if (parts == behindExtension_) return;
    behindExtension_ = std::move(parts);
    std::vector<BarEntry> entries;
    for (const std::size_t i : behindExtension_)
        if (bar_.entries()[i].kind != EntryKind::kLabel) entries.push_back(bar_.entries()[i]);
    QMenu* old = extension_->menu();
    extension_->setMenu(entries.empty() ? nullptr : new BarMenu(menuContext(), entries, extension_));
    if (extension_->menu() != nullptr) extension_->menu()->setAccessibleName(extension_->accessibleName());
    if (old != nullptr) drop(old);
}

int ToolBar::heightForWidth(int width) const {
    return kToolBarGuard(faults_, [&] {
        const_cast<ToolBar*>(this)->build();
        return flow(width).height;
    });
}

QSize ToolBar::sizeHint() const {
    return {width(), heightForWidth(width())};
}

QSize ToolBar::minimumSizeHint() const {
    return {kEditSmallest, 0};
}

// --- events

bool ToolBar::event(QEvent* event) {
    return kToolBarGuard(faults_, [&] {
        const auto type = event->type();
        if (type == QEvent::LayoutRequest || type == QEvent::Show) {
            build();
            arrange();
        }
        if (type == QEvent::StyleChange || type == QEvent::FontChange) rebuild();
        return QWidget::event(event);
    });
}

void ToolBar::resizeEvent(QResizeEvent*) {
    kToolBarGuard(faults_, [this] {
        build();
        arrange();
    });
}

void ToolBar::paintEvent(QPaintEvent*) {
    kToolBarGuard(faults_, [this] {
        QPainter painter(this);
        QColor line = palette().color(QPalette::WindowText);
        line.setAlphaF(0.25F);
        for (const QRect& separator : separators_) painter.fillRect(separator, line);
    });
}

void ToolBar::press(int id) {
    const BarEntry* entry = bar_.find(id);
    if (entry != nullptr && entry->enabled && entry->visible) run(id);
}

BarMenu::Context ToolBar::menuContext() {
    return {
        bar_,  icons_, faults_, events_, [this](const std::function<void()>& telling) { within(telling); },
        clear_};
}

void ToolBar::within(const std::function<void()>& telling) {
    ++running_;
    const ScopeExit done([this] {
        if (--running_ > 0) return;
        for (QObject* old : std::exchange(parked_, {})) old->deleteLater();
    });
    telling();
}

/// Qt has switched a check box at the click, but its command decides.
void ToolBar::run(int id) {
    within([&] { events_.execute(bar_.id(), id); });
    const BarEntry* entry = bar_.find(id);
    if (entry == nullptr || dirty_) return;
    for (Part& part : parts_)
        if (part.id == id && part.widget != nullptr) sync(part, *entry);
}

void ToolBar::focusEdit(int id) {
    build();
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        if (parts_[i].id != id || parts_[i].widget == nullptr) continue;
        const bool behind =
            std::find(behindExtension_.begin(), behindExtension_.end(), i) != behindExtension_.end();
        if (behind) return focusEditBehind(id);
        parts_[i].widget->setFocus(Qt::ShortcutFocusReason);
        if (auto* edit = dynamic_cast<QLineEdit*>(parts_[i].widget)) edit->selectAll();
    }
}

// Returns when the menu is closed.
void ToolBar::focusEditBehind(int id) {
    if (auto* menu = dynamic_cast<BarMenu*>(extension_->menu())) menu->focusWhenOpen(id);
    extension_->showMenu();
}

void ToolBar::markEdit(int id, bool notFound) {
    for (BarEdit* edit : findChildren<BarEdit*>())
        if (edit->id() == id) edit->setNotFound(notFound);
}

void ToolBar::showPopup(int id, Point at) {
    for (const BarEntry& popup : bar_.popups()) {
        if (popup.id != id) continue;
        // The menu exists until the next one is opened, because its command lets messages run while the menu
        // is still on the stack.
        if (popup_ != nullptr) popup_->deleteLater();
        popup_ = new BarMenu(menuContext(), popup.list, this);
        popup_->exec({at.x, at.y});
        return;
    }
}

// Returns all parts in their order, the button for the rest at the end.
std::vector<QWidget*> ToolBar::placesOfFocus() const {
    std::vector<QWidget*> all;
    for (const Part& part : parts_)
        if (part.widget != nullptr) all.push_back(part.widget);
    all.push_back(extension_);
    return all;
}

}  // namespace hl
