#include "platform/qt/print/print_pages.h"

#include <QLocale>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/forms/dialogs.h"

namespace hl {

namespace {

constexpr double kPointsPerInch = 72;
constexpr double kTenthsPerInch = 254;
constexpr double kFramePoints = 9;                     ///< For the head and the foot of a page.
constexpr double kApart = 1.0 / 64;                    ///< A part of a unit that the toolkit still sees.
constexpr int kSmallestZoom = 10, kLargestZoom = 400;  ///< In percent.

int unitsOfTenths(int tenths) {
    return static_cast<int>(std::lround(std::max(tenths, 0) * kUnitsPerInch / kTenthsPerInch));
}

QFont frameFont() {
    return paperFont({.name = {}, .points = kFramePoints}, 100);
}

/// Returns the height of a line of text and the white below or above it.
int frameHeight() {
    return QFontMetrics(frameFont()).height() * 3 / 2;
}

// --- a text

class TextPages final : public PrintPages {
  public:
    explicit TextPages(const PrintJob& job) : PrintPages(job) {
        font_ = paperFont({.name = "monospace", .points = job.font.points}, job.zoom);
        font_.setStyleHint(QFont::Monospace);
        lineHeight_ = QFontMetrics(font_).lineSpacing();
    }

  protected:
    void pageChanged() override {
        lines_.clear();
        const QString text = qtText(job().text).remove(QLatin1Char('\r'));
        for (const QString& line : text.split(QLatin1Char('\n'))) breakLine(line);
        onPage_ = std::max(1, room().height() / lineHeight_);
    }
    std::size_t down() const override {
        return static_cast<std::size_t>((lines_.size() + onPage_ - 1) / onPage_);
    }
    void paintContent(QPainter& painter, std::size_t down, std::size_t) const override {
        painter.setFont(font_);
        const auto first = static_cast<qsizetype>(down) * onPage_;
        const qsizetype behind = std::min<qsizetype>(first + onPage_, lines_.size());
        for (qsizetype i = first; i < behind; ++i) {
            const int top = room().top() + static_cast<int>(i - first) * lineHeight_;
            painter.drawText(QRect(room().left(), top, room().width(), lineHeight_),
                             Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip,
                             lines_[i]);
        }
    }

  private:
    void breakLine(QString line) {
        line.replace(QLatin1Char('\t'), QStringLiteral("    "));
        QTextLayout layout(line, font_);
        QTextOption wrap;
        wrap.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(wrap);
        const qsizetype before = lines_.size();
        layout.beginLayout();
        for (QTextLine part = layout.createLine(); part.isValid(); part = layout.createLine()) {
            part.setLineWidth(room().width());
            lines_.push_back(line.mid(part.textStart(), part.textLength()));
        }
        layout.endLayout();
        if (lines_.size() == before) lines_.push_back({});
    }

    QFont font_;
    int lineHeight_ = 1, onPage_ = 1;
    QStringList lines_;
};

}  // namespace

QPalette paperPalette() {
    QPalette palette(QColor(Qt::black), QColor(0xE8, 0xE8, 0xE8), QColor(Qt::white), QColor(0x60, 0x60, 0x60),
                     QColor(0xA0, 0xA0, 0xA0), QColor(Qt::black), QColor(Qt::white));
    return palette;
}

int usableZoom(int zoom) {
    return std::clamp(zoom, kSmallestZoom, kLargestZoom);
}

QFont paperFont(const GridFont& font, int zoom) {
    QFont found = qtFont(font);
    const double points = found.pointSizeF() > 0 ? found.pointSizeF() : kFramePoints;
    const double size = points * kUnitsPerInch / kPointsPerInch * usableZoom(zoom) / 100;
    found.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
    // Widths must not depend on how a screen would round them.
    found.setHintingPreference(QFont::PreferNoHinting);
    // Letters that are set apart, even by almost nothing, are not joined to ligatures: so in a PDF the "fi"
    // of a file's name is copied and searched as two letters.
    found.setLetterSpacing(QFont::AbsoluteSpacing, kApart);
    return found;
}

void PrintPages::setPage(const QPageLayout& page) {
    page_ = page;
    const QRectF inches = page.fullRect(QPageLayout::Inch);
    full_ = {0, 0, static_cast<int>(inches.width() * kUnitsPerInch),
             static_cast<int>(inches.height() * kUnitsPerInch)};
    const PrintMargins& margins = job_.margins;
    room_ = full_.adjusted(unitsOfTenths(margins.left), unitsOfTenths(margins.top) + frameHeight(),
                           -unitsOfTenths(margins.right), -unitsOfTenths(margins.bottom) - frameHeight());
    room_.setSize(room_.size().expandedTo({1, 1}));
    pageChanged();
}

int PrintPages::count() const {
    const std::size_t pages = down() * static_cast<std::size_t>(across());
    return static_cast<int>(std::clamp<std::size_t>(pages, 1, std::numeric_limits<int>::max()));
}

void PrintPages::paint(QPainter& painter, int number) const {
    painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::LosslessImageRendering);
    paintFrame(painter, number);
    painter.setPen(Qt::black);
    const auto page = static_cast<std::size_t>(number), across = static_cast<std::size_t>(this->across());
    paintContent(painter, page / across, page % across);
}

void PrintPages::paintFrame(QPainter& painter, int number) const {
    const QFont font = frameFont();
    const QFontMetrics metrics(font);
    painter.setFont(font);
    painter.setPen(Qt::black);
    const QRect head(room_.left(), room_.top() - frameHeight(), room_.width(), metrics.height());
    painter.drawText(head, Qt::AlignLeft | Qt::TextSingleLine,
                     metrics.elidedText(shownName(job_.title), Qt::ElideMiddle, head.width()));
    const QRect foot(room_.left(), room_.bottom() + frameHeight() - metrics.height(), room_.width(),
                     metrics.height());
    painter.drawText(foot, Qt::AlignHCenter | Qt::TextSingleLine | Qt::TextDontClip,
                     qtText(job_.texts.pageOf).arg(number + 1).arg(count()));
}

std::unique_ptr<PrintPages> textPages(const PrintJob& job) {
    return std::make_unique<TextPages>(job);
}

std::unique_ptr<PrintPages> layOut(const PrintJob& job, const IconSource& icon, const QPageLayout& page) {
    auto pages = !job.picture.empty()  ? picturePages(job)
                 : job.grid != nullptr ? gridPages(job, icon)
                                       : textPages(job);
    pages->setPage(page);
    return pages;
}

std::unique_ptr<PrintPages> layOut(const PrintJob& job, const IconSource& icon) {
    const bool letters = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    const QPageSize size(letters ? QPageSize::Letter : QPageSize::A4);
    QPageLayout page(size, QPageLayout::Portrait, {});
    auto pages = layOut(job, icon, page);
    const int upright = pages->across();
    const bool wide = !job.picture.empty() && isWide(job);
    if (upright == 1 && !wide) return pages;
    page.setOrientation(QPageLayout::Landscape);
    pages->setPage(page);
    if (pages->across() < upright || wide) return pages;
    page.setOrientation(QPageLayout::Portrait);
    pages->setPage(page);
    return pages;
}

}  // namespace hl
