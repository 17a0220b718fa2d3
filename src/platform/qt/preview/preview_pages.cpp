#include "platform/qt/preview/preview_pages.h"

#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kPagesViewGuard{"PagesView"};

constexpr std::chrono::milliseconds kTimeToOpen{10'000}, kTimeForPage{5'000};
constexpr int kMargin = 8, kStep = 48;
constexpr int kWidestPage = 1600;
/// The limit without the visible pages, which may need more.
constexpr std::size_t kKeptBytes = 64U << 20;
/// If the helper ends more often than this, the document is given up.
constexpr int kMostRestarts = 10;

}  // namespace

PagesView::PagesView(const PreviewContext& context, QWidget* parent)
    : QAbstractScrollArea(parent), context_(context) {
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    viewport()->setBackgroundRole(QPalette::Window);
    verticalScrollBar()->setSingleStep(kStep);
}

PagesView::~PagesView() {
    PreviewJob::drop(job_);
}

void PagesView::showFile(std::unique_ptr<OpenFile> file) {
    clear();
    file_ = std::move(file);
    startHelper();
}

void PagesView::clear() {
    PreviewJob::drop(job_);
    file_.reset();
    pages_.clear();
    tops_.clear();
    drawn_.clear();
    failed_.clear();
    asked_.reset();
    ready_ = false;
    restarts_ = 0;
    verticalScrollBar()->setRange(0, 0);
    viewport()->update();
}

void PagesView::fail(const std::string& error) {
    clear();
    context_.failed({.text = error});
}

// --- where the pages are

int PagesView::pageWidth() const {
    return std::clamp(viewport()->width() - 2 * kMargin, 1, kWidestPage);
}

int PagesView::pageHeight(std::size_t page) const {
    const PageSize size = pages_[page];
    if (!(size.width > 0) || !(size.height > 0)) return 1;
    const double height = std::round(static_cast<double>(pageWidth()) * size.height / size.width);
    return static_cast<int>(std::clamp(height, 1.0, static_cast<double>(kHighestPage)));
}

void PagesView::place() {
    tops_.assign(1, kMargin);
    for (std::size_t page = 0; page < pages_.size(); ++page)
        tops_.push_back(tops_.back() + pageHeight(page) + kMargin);
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, tops_.back() - viewport()->height()));
    viewport()->update();
}

// Returns the first visible page, and the one after the last.
std::pair<std::size_t, std::size_t> PagesView::visiblePages() const {
    if (pages_.empty()) return {0, 0};
    const int top = verticalScrollBar()->value(), bottom = top + viewport()->height();
    const auto index = [&](int y) {
        const auto above = std::upper_bound(tops_.begin(), tops_.end(), y) - tops_.begin();
        return std::min(pages_.size() - 1, static_cast<std::size_t>(std::max<std::ptrdiff_t>(above, 1) - 1));
    };
    return {index(top), index(bottom) + 1};
}

bool PagesView::isDrawn(std::size_t page) const {
    const auto found = drawn_.find(page);
    return found != drawn_.end() && found->second.width == pageWidth() &&
           found->second.scale == static_cast<int>(std::lround(devicePixelRatioF() * 1000));
}

std::size_t PagesView::keptBytes() const {
    std::size_t bytes = 0;
    for (const auto& [page, drawn] : drawn_) bytes += static_cast<std::size_t>(drawn.image.sizeInBytes());
    return bytes;
}

// --- the helper

void PagesView::startHelper() {
    ready_ = false;
    job_ = startDecoder(context_, kPagesHelper, *file_, kTimeToOpen);
    if (job_ == nullptr) return clear();
    job_->onOutput = [this] { answers(); };
    job_->onEnd = [this](bool) { ended(); };
}

void PagesView::requestNext() {
    if (!file_ || asked_ || pages_.empty()) return;
    const auto [first, end] = visiblePages();
    for (std::size_t page = first; page < end; ++page) {
        if (isDrawn(page) || failed_.contains(page)) continue;
        if (job_ == nullptr) {
            startHelper();
            return;  // The helper asks when it is ready.
        }
        if (!ready_) return;
        asked_ = PreviewRequest{.page = static_cast<std::uint32_t>(page),
                                .box = {pageWidth(), std::min(pageHeight(page), kMaxPictureSide)},
                                .scale = static_cast<int>(std::lround(devicePixelRatioF() * 1000))};
        job_->setTime(kTimeForPage);
        job_->send(requestLine(*asked_));
        return;
    }
}

void PagesView::answers() {
    while (job_ != nullptr && answer()) {
    }
}

// Takes one answer from the output; returns false if there is none yet.
bool PagesView::answer() {
    std::string& output = job_->output();
    AnswerHeader header;
    if (output.size() < sizeof header) return false;
    std::memcpy(&header, output.data(), sizeof header);
    const bool expected =
        ready_ ? header.kind != PreviewAnswer::kPages : header.kind != PreviewAnswer::kPicture;
    if (!isSound(header) || !expected || (ready_ && (!asked_ || header.page != asked_->page))) {
        ended();
        return false;
    }
    if (output.size() < sizeof header + header.bytes) return false;
    const std::string bytes = output.substr(sizeof header, header.bytes);
    output.erase(0, sizeof header + header.bytes);
    job_->stopTime();
    if (header.kind == PreviewAnswer::kFailed && !ready_) {
        fail(bytes);
        return false;
    }
    if (header.kind == PreviewAnswer::kFailed) failed_.insert(asked_->page);
    if (header.kind == PreviewAnswer::kPicture) takePicture(header, bytes.data());
    if (header.kind == PreviewAnswer::kPages) {
        const bool first = pages_.empty();
        pages_.resize(bytes.size() / sizeof(PageSize));
        std::memcpy(pages_.data(), bytes.data(), bytes.size());
        if (first) verticalScrollBar()->setValue(0);
        place();
        tellPage();
    }
    ready_ = true;
    asked_.reset();
    viewport()->update();
    requestNext();
    return true;
}

void PagesView::takePicture(const AnswerHeader& header, const char* bytes) {
    QImage image(header.width, header.height, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        // There is no memory for it; it would be asked for again and again.
        failed_.insert(header.page);
        return;
    }
    std::memcpy(image.bits(), bytes, header.bytes);
    drawn_[header.page] = {image, asked_->box.width, asked_->scale};
    evict();
}

void PagesView::evict() {
    const auto [first, end] = visiblePages();
    while (keptBytes() > kKeptBytes) {
        const auto distance = [&, from = first, to = end](std::size_t page) {
            return page < from ? from - page : page >= to ? page - to + 1 : 0;
        };
        const auto far =
            std::ranges::max_element(drawn_, {}, [&](const auto& entry) { return distance(entry.first); });
        if (distance(far->first) == 0) return;
        drawn_.erase(far);
    }
}

// The helper has crashed, was too slow or sent nonsense. The page being drawn is to blame; another helper
// draws the others.
void PagesView::ended() {
    PreviewJob::drop(job_);
    if (pages_.empty() || ++restarts_ > kMostRestarts) return fail({});
    if (asked_) failed_.insert(asked_->page);
    asked_.reset();
    viewport()->update();
    requestNext();
}

// --- the window

void PagesView::tellPage() {
    if (pages_.empty()) return setAccessibleDescription({});
    QString text = qtText(context_.texts.page);
    text.replace(QLatin1String("%1"), QString::number(visiblePages().first + 1));
    text.replace(QLatin1String("%2"), QString::number(pages_.size()));
    setAccessibleDescription(text);
}

void PagesView::paintEvent(QPaintEvent*) {
    kPagesViewGuard(context_.events, [this] { paint(); });
}

void PagesView::paint() {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const auto [first, end] = visiblePages();
    for (std::size_t page = first; page < end; ++page) {
        const QRect place((viewport()->width() - pageWidth()) / 2, tops_[page] - verticalScrollBar()->value(),
                          pageWidth(), pageHeight(page));
        painter.fillRect(place, Qt::white);
        if (const auto found = drawn_.find(page); found != drawn_.end()) {
            painter.drawImage(place, found->second.image);
        } else if (failed_.contains(page)) {
            painter.setPen(Qt::black);
            painter.drawText(place, Qt::AlignCenter | Qt::TextWordWrap, qtText(context_.texts.pageFailed));
        }
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(place.adjusted(-1, -1, 0, 0));
    }
}

// What was at the top of the window stays there.
void PagesView::resizeEvent(QResizeEvent*) {
    kPagesViewGuard(context_.events, [this] {
        if (pages_.empty()) return;
        const std::size_t page = visiblePages().first;
        const double height = tops_[page + 1] - tops_[page];
        const double part = (verticalScrollBar()->value() - tops_[page]) / height;
        place();
        verticalScrollBar()->setValue(tops_[page] +
                                      static_cast<int>(std::lround(part * (tops_[page + 1] - tops_[page]))));
        requestNext();
    });
}

void PagesView::scrollContentsBy(int, int) {
    kPagesViewGuard(context_.events, [this] {
        tellPage();
        requestNext();
        viewport()->update();
    });
}

}  // namespace hl
