#include <QSvgRenderer>

#include "platform/qt/print/print_pages.h"

namespace hl {

namespace {

QByteArray bytesOf(const PrintJob& job) {
    return QByteArray::fromStdString(job.picture);
}

class PicturePages final : public PrintPages {
  public:
    explicit PicturePages(const PrintJob& job) : PrintPages(job), picture_(bytesOf(job)) {}

  protected:
    void pageChanged() override {}
    std::size_t down() const override { return 1; }
    void paintContent(QPainter& painter, std::size_t /*down*/, std::size_t /*across*/) const override {
        const QSize size = picture_.defaultSize().scaled(room().size(), Qt::KeepAspectRatio);
        picture_.render(&painter, QRectF(room().topLeft(), size));
    }

  private:
    mutable QSvgRenderer picture_;  // The toolkit has no painting that is const.
};

}  // namespace

std::unique_ptr<PrintPages> picturePages(const PrintJob& job) {
    return std::make_unique<PicturePages>(job);
}

bool isWide(const PrintJob& job) {
    const QSize size = QSvgRenderer(bytesOf(job)).defaultSize();
    return size.width() > size.height();
}

}  // namespace hl
