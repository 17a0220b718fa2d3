#include "platform/qt/preview/preview_pdf_decoder.h"

#include <QCoreApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/common/qt_convert.h"

namespace hl {

namespace {

const char* reasonOf(QPdfDocument::Error error) {
    switch (error) {
        case QPdfDocument::Error::IncorrectPassword:
            return "password";
        case QPdfDocument::Error::InvalidFileFormat:
            return "invalid format";
        case QPdfDocument::Error::UnsupportedSecurityScheme:
            return "unsupported security scheme";
        default:
            return "unreadable";
    }
}

}  // namespace

PdfDecoder::PdfDecoder(int descriptor) {
    if (!file_.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle)) return;
    document_.load(&file_);
    // The number of pages is right only after a turn of the event loop.
    QCoreApplication::processEvents();
}

std::vector<PageSize> PdfDecoder::pages(std::string& error) {
    if (document_.status() != QPdfDocument::Status::Ready || document_.pageCount() < 1) {
        error = reasonOf(document_.error());
        return {};
    }
    const int count = std::min(document_.pageCount(), static_cast<int>(kMaxPages));
    std::vector<PageSize> sizes;
    sizes.reserve(static_cast<std::size_t>(count));
    for (int page = 0; page < count; ++page) {
        const QSizeF size = document_.pagePointSize(page);
        sizes.push_back({static_cast<float>(size.width()), static_cast<float>(size.height())});
    }
    return sizes;
}

DecodedPicture PdfDecoder::decode(const PreviewRequest& request) {
    const auto page = static_cast<int>(std::min(request.page, kMaxPages));
    const QSizeF points = document_.pagePointSize(page);
    if (points.isEmpty()) return {{}, {}, "page"};
    const int width = request.box.width;
    const int height =
        std::clamp(static_cast<int>(std::lround(width * points.height() / points.width())), 1, kHighestPage);
    // The scale must leave room for the page's pixels.
    double scale = request.scale / 1000.0;
    const double bytes = 4.0 * width * scale * height * scale;
    if (bytes > kMaxPictureBytes) scale *= std::sqrt(kMaxPictureBytes / bytes);
    const QSize pixels(std::clamp(static_cast<int>(width * scale), 1, kMaxPictureSide),
                       std::clamp(static_cast<int>(height * scale), 1, kMaxPictureSide));
    const QImage drawn = document_.render(page, pixels);
    if (drawn.isNull()) return {{}, {}, "page"};
    // Paper is white.
    QImage paper(drawn.size(), QImage::Format_ARGB32_Premultiplied);
    paper.fill(Qt::white);
    QPainter(&paper).drawImage(0, 0, drawn);
    return {paper, {width, height}, {}};
}

int answerForPdf(int argc, char** argv, int descriptor, const std::function<void()>& beforeEach) {
    const QCoreApplication application(argc, argv);
    beforeEach();
    PdfDecoder decoder(descriptor);
    return answerRequests(decoder, beforeEach);
}

}  // namespace hl
