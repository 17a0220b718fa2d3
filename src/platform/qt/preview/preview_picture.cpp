#include "platform/qt/preview/preview_picture.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/preview_protocol.h"
#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kPictureViewGuard{"PictureView"};

constexpr std::chrono::milliseconds kTime{10'000}, kSettle{150};

int side(int pixels) {
    return std::clamp(pixels, 1, kMaxPictureSide);
}

}  // namespace

PictureView::PictureView(const PreviewContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    settle_.setSingleShot(true);
    settle_.setInterval(kSettle);
    connect(&settle_, &QTimer::timeout, this,
            [this] { kPictureViewGuard(context_.events, "request", [this] { request(); }); });
}

PictureView::~PictureView() {
    PreviewJob::drop(job_);
}

void PictureView::showFile(std::unique_ptr<OpenFile> file, bool trimmed) {
    clear();
    trimmed_ = trimmed;
    file_ = std::move(file);
    request();
}

void PictureView::clear() {
    settle_.stop();
    PreviewJob::drop(job_);
    file_.reset();
    image_ = QImage();
    update();
}

// The picture is read from the file each time, because it is not kept in its full size.
void PictureView::request() {
    if (!file_) return;
    PreviewJob::drop(job_);
    job_ = startDecoder(context_, kPictureHelper, *file_, kTime);
    if (job_ == nullptr) return clear();
    asked_ = size();
    job_->onOutput = [this] { answer(); };
    job_->onEnd = [this](bool) { fail({}); };
    const PreviewRequest wanted{.box = {side(width()), side(height())},
                                .scale = static_cast<int>(std::lround(devicePixelRatioF() * 1000)),
                                .trimmed = trimmed_};
    job_->send(requestLine(wanted));
}

void PictureView::answer() {
    const std::string& output = job_->output();
    AnswerHeader header;
    if (output.size() < sizeof header) return;
    std::memcpy(&header, output.data(), sizeof header);
    if (!isSound(header) || header.kind == PreviewAnswer::kPages) return fail({});
    if (output.size() < sizeof header + header.bytes) return;
    const char* bytes = output.data() + sizeof header;
    if (header.kind == PreviewAnswer::kFailed) return fail(std::string(bytes, header.bytes));
    image_ = QImage(header.width, header.height, QImage::Format_ARGB32_Premultiplied);
    if (image_.isNull()) return fail({});
    std::memcpy(image_.bits(), bytes, header.bytes);
    drawn_ = {header.drawnWidth, header.drawnHeight};
    PreviewJob::drop(job_);
    update();
}

void PictureView::fail(const std::string& error) {
    clear();
    context_.failed({.text = error});
}

void PictureView::paintEvent(QPaintEvent*) {
    kPictureViewGuard(context_.events, [this] {
        QPainter painter(this);
        painter.fillRect(rect(), palette().base());
        if (image_.isNull()) return;
        // While a new size is being decoded, the old pixels are shown.
        const ZoomedPicture now =
            ZoomPicture({drawn_.width(), drawn_.height()}, {side(width()), side(height())}, false);
        const QRect place((width() - now.drawn.width) / 2, (height() - now.drawn.height) / 2, now.drawn.width,
                          now.drawn.height);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(place, image_);
    });
}

void PictureView::resizeEvent(QResizeEvent*) {
    // A picture in its own size does not change while it fits.
    const bool own = drawn_.width() < asked_.width() && drawn_.height() < asked_.height();
    const bool fits = drawn_.width() <= width() && drawn_.height() <= height();
    if (!file_ || (size() == asked_ && !job_) || (!image_.isNull() && own && fits)) return;
    settle_.start();
}

}  // namespace hl
