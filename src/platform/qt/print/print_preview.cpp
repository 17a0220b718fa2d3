#include "platform/qt/print/print_preview.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kPrintPreviewGuard{};
constexpr QtGuard kPreviewGuard{"PrintPreview"};
constexpr QtGuard kPageGuard{"PageView"};

constexpr int kFirstWidth = 860, kFirstHeight = 920;
constexpr int kAroundSheet = 12;  ///< The pixels of background around the page.
/// The choices of the view: two that follow the window, then percents.
enum ViewChoice { kWholePage, kPageWidth, kFirstPercent };
constexpr int kPercents[] = {50, 75, 100, 150, 200, 400};

}  // namespace

// --- the sheet

void PageView::show(const PrintPages& pages, int number, double factor) {
    pages_ = &pages;
    number_ = number;
    scale_ = factor * logicalDpiX() / kUnitsPerInch;
    const QSizeF inches = pages.page().fullRect(QPageLayout::Inch).size();
    size_ = (inches * kUnitsPerInch * scale_).toSize();
    resize(size_);
    update();
}

void PageView::paintEvent(QPaintEvent*) {
    kPageGuard(events_, [&] {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        if (pages_ != nullptr && number_ < pages_->count()) {
            painter.save();
            painter.scale(scale_, scale_);
            pages_->paint(painter, number_);
            painter.restore();
        }
        painter.setPen(Qt::darkGray);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    });
}

// --- building

PrintPreview::PrintPreview(const PrintJob& job, IconSource icon, const DialogTexts& texts,
                           WindowEvents& events, QWidget* parent)
    : QDialog(parent),
      job_(job),
      icon_(std::move(icon)),
      texts_(texts),
      events_(events),
      pages_(layOut(job, icon_)) {
    setObjectName(QStringLiteral("printPreview"));
    setWindowTitle(qtText(job.texts.preview) + QStringLiteral(" - ") + shownName(job.title));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    auto* rows = new QVBoxLayout(this);
    rows->addLayout(makeUpper());
    area_ = new QScrollArea;
    area_->setBackgroundRole(QPalette::Mid);
    area_->setAlignment(Qt::AlignCenter);
    area_->setFocusPolicy(Qt::StrongFocus);
    sheet_ = new PageView(events_);
    area_->setWidget(sheet_);
    for (QWidget* each : std::initializer_list<QWidget*>{area_, layout_, view_})
        each->installEventFilter(this);
    area_->viewport()->installEventFilter(this);
    rows->addWidget(area_, 1);
    rows->addLayout(makeLower());
    resize(kFirstWidth, kFirstHeight);
    if (parent != nullptr) resize(size().boundedTo(parent->screen()->availableSize() * 9 / 10));
    area_->setFocus();
    showPage();
}

PrintPreview::~PrintPreview() {
    for (QWidget* each : std::initializer_list<QWidget*>{area_, layout_, view_})
        each->removeEventFilter(this);
    area_->viewport()->removeEventFilter(this);
}

QPushButton* PrintPreview::button(const std::string& caption, const char* name, std::function<void()> press) {
    auto* made = new QPushButton(qtText(caption));
    made->setObjectName(QLatin1String(name));
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this,
            [this, name, press = std::move(press)] { kPrintPreviewGuard(events_, name, press); });
    return made;
}

QLabel* PrintPreview::label(const std::string& caption, QWidget* buddy) {
    auto* made = new QLabel(qtText(caption));
    made->setBuddy(buddy);
    buddy->setAccessibleName(qtText(caption));
    return made;
}

QLayout* PrintPreview::makeUpper() {
    const PrintTexts& texts = job_.texts;
    layout_ = new QComboBox;
    layout_->setObjectName(QStringLiteral("layout"));
    layout_->addItems({qtText(texts.upright), qtText(texts.across)});
    layout_->setCurrentIndex(pages_->page().orientation() == QPageLayout::Portrait ? 0 : 1);
    connect(layout_, &QComboBox::activated, this, [this](int index) {
        kPreviewGuard(events_, "turn",
                      [&] { turn(index == 0 ? QPageLayout::Portrait : QPageLayout::Landscape); });
    });
    view_ = new QComboBox;
    view_->setObjectName(QStringLiteral("view"));
    view_->addItems({qtText(texts.wholePage), qtText(texts.pageWidth)});
    for (const int percent : kPercents) view_->addItem(QString::number(percent) + QStringLiteral(" %"));
    connect(view_, &QComboBox::activated, this,
            [this] { kPreviewGuard(events_, "view", [&] { showPage(); }); });
    auto* line = new QHBoxLayout;
    line->addWidget(
        button(texts.print, "print", [this] { askAndPrint(desk(), job_, icon_, pages_->page()); }));
    line->addWidget(button(texts.savePdf, "savePdf", [this] { askAndWritePdf(desk(), *pages_); }));
    line->addStretch(1);
    line->addWidget(label(texts.layout, layout_));
    line->addWidget(layout_);
    line->addWidget(label(texts.view, view_));
    line->addWidget(view_);
    return line;
}

QLayout* PrintPreview::makeLower() {
    const PrintTexts& texts = job_.texts;
    first_ = button(texts.first, "first", [this] { goTo(0); });
    previous_ = button(texts.previous, "previous", [this] { goTo(page_ - 1); });
    next_ = button(texts.next, "next", [this] { goTo(page_ + 1); });
    last_ = button(texts.last, "last", [this] { goTo(pages_->count() - 1); });
    number_ = new QSpinBox;
    number_->setObjectName(QStringLiteral("number"));
    number_->setKeyboardTracking(false);
    connect(number_, &QSpinBox::valueChanged, this,
            [this](int value) { kPreviewGuard(events_, "number", [&] { goTo(value - 1); }); });
    auto* line = new QHBoxLayout;
    for (QWidget* each : std::initializer_list<QWidget*>{first_, previous_, number_, next_, last_})
        line->addWidget(each);
    line->addStretch(1);
    line->addWidget(button(texts.close, "close", [this] { accept(); }));
    return line;
}

// --- what is shown

double PrintPreview::factor() const {
    const int choice = view_->currentIndex();
    if (choice >= kFirstPercent) return kPercents[choice - kFirstPercent] / 100.0;
    const QSizeF inches = pages_->page().fullRect(QPageLayout::Inch).size();
    const QSize all = area_->maximumViewportSize();
    const double dpi = sheet_->logicalDpiX();
    const double high = (all.height() - kAroundSheet) / (inches.height() * dpi);
    const int bar = choice == kPageWidth ? area_->verticalScrollBar()->sizeHint().width() : 0;
    const double wide = (all.width() - kAroundSheet - bar) / (inches.width() * dpi);
    return std::max(0.05, choice == kPageWidth ? wide : std::min(high, wide));
}

void PrintPreview::showPage() {
    const int count = pages_->count();
    page_ = std::clamp(page_, 0, count - 1);
    sheet_->show(*pages_, page_, factor());
    sheet_->setAccessibleName(qtText(job_.texts.pageOf).arg(page_ + 1).arg(count));
    area_->setAccessibleName(sheet_->accessibleName());
    const QSignalBlocker quiet(number_);
    const QStringList around = qtText(job_.texts.pageOf)
                                   .arg(QStringLiteral("%1"), QString::number(count))
                                   .split(QStringLiteral("%1"));
    number_->setRange(1, count);
    number_->setPrefix(around.value(0));
    number_->setSuffix(around.value(1));
    number_->setValue(page_ + 1);
    for (QPushButton* back : {first_, previous_}) back->setEnabled(page_ > 0);
    for (QPushButton* on : {next_, last_}) on->setEnabled(page_ + 1 < count);
}

void PrintPreview::goTo(int page, int scrolled) {
    page_ = page;
    showPage();
    area_->verticalScrollBar()->setValue(scrolled);
}

void PrintPreview::keyPressEvent(QKeyEvent* event) {
    kPreviewGuard(events_, [&] {
        if (!pageKey(event->key())) QDialog::keyPressEvent(event);
    });
}

void PrintPreview::turn(QPageLayout::Orientation orientation) {
    QPageLayout page = pages_->page();
    page.setOrientation(orientation);
    pages_->setPage(page);
    showPage();
}

// A key first scrolls to the rest of the page.
bool PrintPreview::pageKey(int key) {
    QScrollBar& bar = *area_->verticalScrollBar();
    switch (key) {
        case Qt::Key_PageUp:
            if (bar.value() > bar.minimum()) return bar.triggerAction(QScrollBar::SliderPageStepSub), true;
            if (page_ > 0) goTo(page_ - 1, bar.maximum());
            return true;
        case Qt::Key_PageDown:
            if (bar.value() < bar.maximum()) return bar.triggerAction(QScrollBar::SliderPageStepAdd), true;
            if (page_ + 1 < pages_->count()) goTo(page_ + 1);
            return true;
        case Qt::Key_Home:
            return goTo(0), true;
        case Qt::Key_End:
            return goTo(pages_->count() - 1), true;
        default:
            return false;
    }
}

bool PrintPreview::eventFilter(QObject* watched, QEvent* event) {
    return kPreviewGuard(events_, [&] {
        if (event->type() == QEvent::Resize && watched == area_ && view_->currentIndex() < kFirstPercent)
            sheet_->show(*pages_, page_, factor());
        const bool turns = watched == area_ || watched == layout_ || watched == view_;
        if (event->type() == QEvent::KeyPress && turns && pageKey(static_cast<QKeyEvent*>(event)->key()))
            return true;
        return QDialog::eventFilter(watched, event);
    });
}

}  // namespace hl
