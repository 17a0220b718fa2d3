#include "platform/qt/bars/icon_store.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <fstream>
#include <iterator>

#include "platform/icons.h"

namespace hl {

namespace {

/// The drawings have this colour where the text's colour is wanted.
constexpr const char* kInk = "#303030";
/// Smaller numbers are pictures of rows.
constexpr int kFirstCommand = 100;
constexpr qreal kDisabledOpacity = 0.4;

QColor inkFor(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText);
}

/// Draws an SVG anew for each size; neither QIcon nor the style caches a pixmap of it, so nothing is to be
/// done when the scale factor changes.
class SvgEngine final : public QIconEngine {
  public:
    /// Without an `ink` it uses that of the palette.
    SvgEngine(QByteArray svg, std::optional<QColor> ink) : svg_(std::move(svg)), ink_(ink) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const qreal ratio = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, pixmap(rect.size() * ratio, mode, state));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        try {
            const auto key = std::pair(size.width(), static_cast<int>(mode));
            if (const auto found = drawn_.constFind(key); found != drawn_.constEnd()) return *found;
            return *drawn_.insert(key, draw(size, mode));
        } catch (...) {
            return {};  // The toolkit, which calls this, must not get an exception.
        }
    }
    QIconEngine* clone() const override { return new SvgEngine(svg_, ink_); }
    QString key() const override { return QStringLiteral("harborlantern-svg"); }
    bool isNull() override { return svg_.isEmpty(); }

  private:
    QPixmap draw(const QSize& size, QIcon::Mode mode) const {
        QByteArray colored = svg_;
        colored.replace(kInk, ink_.value_or(inkFor(mode)).name().toLatin1());
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        if (mode == QIcon::Disabled) painter.setOpacity(kDisabledOpacity);
        const int side = std::min(size.width(), size.height());
        const QRectF square((size.width() - side) / 2.0, (size.height() - side) / 2.0, side, side);
        QSvgRenderer(colored).render(&painter, square);
        return pixmap;
    }

    QByteArray svg_;
    std::optional<QColor> ink_;
    QHash<std::pair<int, int>, QPixmap> drawn_;
};

/// Returns a null icon if the file cannot be read.
QIcon iconOfFile(const std::string& path, std::optional<QColor> ink) {
    std::ifstream in(path, std::ios::binary);
    const std::string svg{std::istreambuf_iterator<char>(in), {}};
    return svg.empty() ? QIcon() : QIcon(new SvgEngine(QByteArray::fromStdString(svg), ink));
}

}  // namespace

QIcon IconStore::icon(int number) {
    if (const auto found = cache_.constFind(number); found != cache_.constEnd()) return *found;
    return *cache_.insert(number, make(number));
}

QIcon IconStore::drawing(const std::string& name) const {
    return iconOfFile(folder_ + name + ".svg", ink_);
}

QIcon IconStore::programIcon() {
    return drawing("harborlantern");
}

QIcon IconStore::ofFile(int number) const {
    const std::string name = fileIcon_ ? fileIcon_(number) : std::string();
    if (name.empty()) return {};
    return QIcon::fromTheme(QString::fromStdString(name), drawing(iconNames(kIconFilesRow)->own));
}

QIcon IconStore::make(int number) const {
    const IconNames* names = iconNames(number);
    if (names == nullptr) return ofFile(number);
    const QString theme = QString::fromLatin1(names->theme);
    if (number < kFirstCommand && names->theme != nullptr && QIcon::hasThemeIcon(theme))
        return QIcon::fromTheme(theme);
    return drawing(names->own);
}

}  // namespace hl
