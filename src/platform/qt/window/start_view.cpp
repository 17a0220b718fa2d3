#include "platform/qt/window/start_view.h"

#include <QFontInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/window/start_button.h"

namespace hl {

namespace {

constexpr QtGuard kStartViewGuard{"StartView"};
constexpr int kPageMargin = 8, kRowGap = 4, kGroupGap = 12;
constexpr qreal kTitleScale = 1.25;

/// The page without what may change while its buttons stay.
bool sameButtons(const StartPage& a, const StartPage& b) {
    const auto same = [](const StartEntry& one, const StartEntry& other) {
        return one.tag == other.tag && one.picture == other.picture;
    };
    const auto sameGroup = [&](const StartGroup& one, const StartGroup& other) {
        return one.title == other.title && std::ranges::equal(one.entries, other.entries, same);
    };
    return a.title == b.title && a.hint == b.hint && std::ranges::equal(a.groups, b.groups, sameGroup);
}

}  // namespace

StartView::StartView(IconStore& icons, WindowEvents& faults, SourceEvents& events, QWidget& report)
    : icons_(icons), faults_(faults), events_(events), report_(report) {
    report_.installEventFilter(this);
    setObjectName(QStringLiteral("startPage"));
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    hide();
}

void StartView::setPage(const StartPage& page) {
    const bool same = widget() != nullptr && sameButtons(page, page_);
    const bool shows = !page.groups.empty();
    page_ = page;
    if (shows && !same) build();
    if (shows) {
        const auto all = entries();
        for (std::size_t i = 0; i < all.size(); ++i) buttons_[i]->show(*all[i]);
        widget()->setEnabled(page.enabled);
        showFont();
    }
    setVisible(shows);
}

std::vector<const StartEntry*> StartView::entries() const {
    std::vector<const StartEntry*> all;
    for (const StartGroup& group : page_.groups)
        for (const StartEntry& entry : group.entries) all.push_back(&entry);
    return all;
}

// The button with the keyboard is looked for among the new ones by its tag, since others may have come.
void StartView::build() {
    const auto holder = std::ranges::find_if(buttons_, [](StartButton* each) { return each->hasFocus(); });
    const QVariant focused = holder == buttons_.end() ? QVariant() : (*holder)->property("tag");
    buttons_.clear();
    auto* page = new QWidget;
    page->setBackgroundRole(QPalette::Base);
    page->setAccessibleName(qtText(page_.title));
    setAccessibleName(qtText(page_.title));
    auto* rows = new QVBoxLayout(page);
    rows->setContentsMargins(kPageMargin, kPageMargin, kPageMargin, kPageMargin);
    rows->setSpacing(kRowGap);
    title_ = addLabel(page_.title, *rows);
    for (const StartGroup& group : page_.groups) addGroup(group, *rows);
    rows->addSpacing(kGroupGap);
    addLabel(page_.hint, *rows);
    rows->addStretch(1);
    setWidget(page);
    for (StartButton* each : buttons_)
        if (focused.isValid() && each->property("tag") == focused) each->setFocus();
}

void StartView::showFont() {
    QFont font = report_.font();
    setFont(font);
    font.setPointSizeF(QFontInfo(font).pointSizeF() * kTitleScale);
    if (title_ != nullptr) title_->setFont(font);
}

bool StartView::eventFilter(QObject* watched, QEvent* event) {
    return kStartViewGuard(faults_, [&] {
        if (watched == &report_ && event->type() == QEvent::FontChange) showFont();
        return QScrollArea::eventFilter(watched, event);
    });
}

void StartView::addGroup(const StartGroup& group, QVBoxLayout& rows) {
    rows.addSpacing(kGroupGap);
    if (!group.title.empty()) addLabel(group.title, rows);
    for (const StartEntry& entry : group.entries) {
        auto* button = new StartButton(icons_.icon(entry.picture), faults_);
        button->setProperty("tag", QByteArray::fromStdString(entry.tag));
        button->setMaximumWidth(button->sizeHint().width());
        rows.addWidget(button);
        buttons_.push_back(button);
        // A run lasts long, and rebuilds the page: the button must not be on the stack meanwhile.
        const auto press = [this, tag = entry.tag] {
            kStartViewGuard(faults_, "clicked", [&] { events_.startChosen(tag); });
        };
        connect(button, &QPushButton::clicked, this, press, Qt::QueuedConnection);
    }
}

QLabel* StartView::addLabel(const std::string& text, QVBoxLayout& rows) {
    auto* label = new QLabel(qtText(text));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::Text);
    rows.addWidget(label);
    return label;
}

void StartView::addTabStops(std::vector<QWidget*>& stops) const {
    stops.insert(stops.end(), buttons_.begin(), buttons_.end());
}

void StartView::focusFirst() {
    if (!buttons_.empty()) buttons_.front()->setFocus(Qt::TabFocusReason);
}

// Keys that no button takes come here.
void StartView::keyPressEvent(QKeyEvent* event) {
    kStartViewGuard(faults_, [&] {
        const auto now = std::ranges::find_if(buttons_, [](StartButton* each) { return each->hasFocus(); });
        const bool down = event->key() == Qt::Key_Down || event->key() == Qt::Key_Right;
        const bool up = event->key() == Qt::Key_Up || event->key() == Qt::Key_Left;
        if ((!down && !up) || now == buttons_.end()) return event->ignore();
        if (down && now + 1 != buttons_.end()) now[1]->setFocus(Qt::TabFocusReason);
        if (up && now != buttons_.begin()) now[-1]->setFocus(Qt::TabFocusReason);
        ensureWidgetVisible(focusWidget());
    });
}

}  // namespace hl
