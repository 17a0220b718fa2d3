#include "platform/qt/preview/preview_decoder.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "platform/qt/common/qt_convert.h"

namespace hl {

namespace {

/// The limit, in megabytes, of a picture in memory while it is read. A picture that cannot be reduced while
/// it is read, such as a BMP, has all its pixels there.
constexpr int kMostMegabytes = 512;
// SVG is excluded, because it can name other files and contain whole documents.
constexpr std::array kFormats = {"bmp", "gif", "ico",  "cur",  "jpeg", "jpg",
                                 "png", "tif", "tiff", "webp", "tga",  "ppm"};

bool isKnown(const QByteArray& format) {
    return std::ranges::any_of(kFormats, [&](const char* one) { return format == one; });
}

// An icon file has several sizes.
void chooseLargest(QImageReader& reader) {
    if (reader.format() != "ico" && reader.format() != "cur") return;
    int best = 0, width = 0;
    for (int i = 0; i < reader.imageCount() && reader.jumpToImage(i); ++i) {
        if (reader.size().width() <= width) continue;
        best = i;
        width = reader.size().width();
    }
    reader.jumpToImage(best);
}

bool turnsSides(const QImageReader& reader) {
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

bool isTooLarge(QSize size) {
    constexpr qint64 kPixelBytes = 4, kMegabyte = 1 << 20;
    return qint64{size.width()} * size.height() > kMostMegabytes * kMegabyte / kPixelBytes;
}

// The office program puts a drawing on a whole page.
QImage withoutMargins(const QImage& image) {
    const QRgb paper = image.pixel(0, 0);
    QRect drawing;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != paper) drawing |= QRect(x, y, 1, 1);
    return drawing.isEmpty() ? image : image.copy(drawing);
}

// A small picture is not enlarged here: whoever paints it does that.
PictureSize pixelsOf(PictureSize source, PictureSize drawn, int scale) {
    const auto side = [scale](int whole, int shown) {
        return std::clamp(static_cast<int>(std::lround(shown * scale / 1000.0)), 1, whole);
    };
    return {side(source.width, drawn.width), side(source.height, drawn.height)};
}

void write(const void* bytes, std::size_t count) {
    std::fwrite(bytes, 1, count, stdout);
}

void answerFailure(std::uint32_t page, const std::string& error) {
    const std::string text = error.substr(0, 1000);
    const AnswerHeader header{.page = page, .bytes = static_cast<std::uint32_t>(text.size())};
    write(&header, sizeof header);
    write(text.data(), text.size());
    std::fflush(stdout);
}

void answerPages(const std::vector<PageSize>& pages) {
    const std::size_t count = std::min<std::size_t>(pages.size(), kMaxPages);
    AnswerHeader header{.kind = PreviewAnswer::kPages};
    header.bytes = static_cast<std::uint32_t>(count * sizeof(PageSize));
    write(&header, sizeof header);
    write(pages.data(), header.bytes);
    std::fflush(stdout);
}

void answerPicture(std::uint32_t page, const DecodedPicture& picture) {
    const QImage image = picture.image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const AnswerHeader header{PreviewAnswer::kPicture,
                              page,
                              image.width(),
                              image.height(),
                              picture.drawn.width,
                              picture.drawn.height,
                              static_cast<std::uint32_t>(image.sizeInBytes())};
    if (image.isNull() || !isSound(header)) return answerFailure(page, "");
    write(&header, sizeof header);
    write(image.constBits(), header.bytes);
    std::fflush(stdout);
}

class PictureDecoder final : public PreviewDecoder {
  public:
    explicit PictureDecoder(QIODevice& file) : file_(file) {}
    std::vector<PageSize> pages(std::string&) override { return {}; }
    DecodedPicture decode(const PreviewRequest& request) override { return decodePicture(file_, request); }

  private:
    QIODevice& file_;
};

}  // namespace

DecodedPicture decodePicture(QIODevice& file, const PreviewRequest& request) {
    QImageReader::setAllocationLimit(kMostMegabytes);
    file.seek(0);
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead() || !isKnown(reader.format())) return {};
    chooseLargest(reader);
    QSize size = request.trimmed ? QSize() : reader.size();  // Only the pixels tell it.
    if (turnsSides(reader)) size.transpose();
    PictureSize drawn, pixels;
    if (!size.isEmpty()) {
        const PictureSize source{size.width(), size.height()};
        drawn = ZoomPicture(source, request.box, false).drawn;
        pixels = pixelsOf(source, drawn, request.scale);
        QSize wanted(pixels.width, pixels.height);
        if (turnsSides(reader)) wanted.transpose();
        if (pixels != source) reader.setScaledSize(wanted);
    }
    QImage image = reader.read();
    // What a decoder says of a picture for which it has no room would be misleading.
    if (image.isNull()) return {{}, {}, isTooLarge(size) ? std::string() : utf8(reader.errorString())};
    if (request.trimmed) image = withoutMargins(image);
    if (size.isEmpty()) {
        const PictureSize source{image.width(), image.height()};
        drawn = ZoomPicture(source, request.box, false).drawn;
        pixels = pixelsOf(source, drawn, request.scale);
        image = image.scaled(pixels.width, pixels.height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return {image, drawn, {}};
}

int answerRequests(PreviewDecoder& decoder, const std::function<void()>& beforeEach) {
    beforeEach();
    std::string error;
    const std::vector<PageSize> pages = decoder.pages(error);
    if (!error.empty()) {
        answerFailure(0, error);
        return 0;
    }
    if (!pages.empty()) answerPages(pages);
    std::array<char, 256> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), stdin) != nullptr) {
        const auto request = requestOf(line.data());
        if (!request) return 1;
        beforeEach();
        const DecodedPicture picture = decoder.decode(*request);
        if (picture.image.isNull()) {
            answerFailure(request->page, picture.error);
        } else {
            answerPicture(request->page, picture);
        }
    }
    return 0;
}

int answerForPictures(int argc, char** argv, int descriptor, const std::function<void()>& beforeEach) {
    const QCoreApplication application(argc, argv);
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle)) return 1;
    PictureDecoder decoder(file);
    return answerRequests(decoder, beforeEach);
}

}  // namespace hl
