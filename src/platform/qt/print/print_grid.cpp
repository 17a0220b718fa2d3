// Lays out and paints the pages of a grid.
#include <QHash>
#include <cmath>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/print/print_columns.h"
#include "platform/qt/print/print_pages.h"

namespace hl {

namespace {

constexpr double kPixelsPerInch = 96;
constexpr int kStepPixels = 14, kIconPixels = 14;
/// The pixels of a picture: enough for paper, and few enough to be put into a file.
constexpr int kPictureSide = 64;
/// How far right the deepest rows are indented, in percent of the page's width.
constexpr int kDeepestShare = 40;
constexpr int kTitlePadding = 4;  // In pixels.

class GridPages final : public PrintPages {
  public:
    GridPages(const PrintJob& job, IconSource icon)
        : PrintPages(job),
          pixel_(kUnitsPerInch / kPixelsPerInch * usableZoom(job.zoom) / 100),
          rows_(*job.grid),
          text_([&job](GridId, std::size_t column, Row row) { return job.cellText(column, row); }),
          icon_(std::move(icon)),
          picture_([this](int number) { return picture(number); }),
          sources_{*job.grid, GridId::kReport, job.tree, text_, picture_},
          flat_{*job.grid, GridId::kReport, false, text_, picture_} {
        rows_.rebuild();
        look_.font = paperFont(job.font, job.zoom);
        look_.palette = paperPalette();
        look_.pixel = pixel_;
        look_.step = units(kStepPixels);
        look_.iconSize = units(kIconPixels);
        look_.pictureSide = kPictureSide;
        look_.onScreen = false;
        titleFont_ = look_.font;
        titleFont_.setBold(true);
        rowHeight_ = RowPainter::rowHeight(look_);
    }

    int across() const override { return static_cast<int>(pages_.size()); }

  protected:
    void pageChanged() override {
        if (wanted_.empty()) measure();
        pages_ = columnsOfPages(wanted_, room().width());
        onPage_ = static_cast<std::size_t>(std::max(1, (room().height() - titleHeight()) / rowHeight_));
    }
    std::size_t down() const override { return (rows_.count() + onPage_ - 1) / onPage_; }

    void paintContent(QPainter& painter, std::size_t down, std::size_t across) const override {
        painter.translate(room().topLeft());
        paintTitles(painter, pages_[across]);
        painter.setFont(look_.font);
        const std::size_t first = down * onPage_, behind = std::min(first + onPage_, rows_.count());
        const int right = pages_[across].back().left + pages_[across].back().width;
        // A first column that is repeated only names the row.
        const RowPainter rows(across == 0 ? sources_ : flat_, look_);
        for (std::size_t i = first; i < behind; ++i) {
            const int top = titleHeight() + static_cast<int>(i - first) * rowHeight_;
            rows.paint(painter, rows_.at(i), {0, top, right, rowHeight_}, pages_[across]);
        }
        painter.translate(-room().topLeft());
    }

  private:
    int units(double pixels) const { return static_cast<int>(std::lround(pixels * pixel_)); }
    int titleHeight() const { return rowHeight_ + units(kTitlePadding); }

    // The page's shorter side decides, so that the widths suit both orientations.
    void measure() {
        const int shorter = std::min(room().width(), room().height());
        const int deepest = shorter * kDeepestShare / 100 / std::max(1, look_.step);
        look_.deepest = static_cast<std::uint32_t>(std::clamp(deepest, 1, 50));
        const RowPainter rows(sources_, look_);
        const QFontMetricsF titles(titleFont_);
        const auto& columns = job().grid->columns();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (!columns[i].visible) continue;
            const int gap = i == 0 ? 0 : units(job().columnGap * kPixelsPerInch / kUnitsPerInch);
            const double text = titles.horizontalAdvance(qtText(columns[i].title));
            const int title = static_cast<int>(std::ceil(text)) + 1 + 2 * units(kTitlePadding);
            wanted_.push_back({i, std::max(title, printedWidth(rows, *job().grid, rows_, i) + gap)});
        }
        if (wanted_.empty()) wanted_.push_back({0, 1});
    }

    void paintTitles(QPainter& painter, const std::vector<PaintedColumn>& columns) const {
        painter.setFont(titleFont_);
        painter.setPen(Qt::black);
        const QFontMetrics metrics(titleFont_);
        for (const PaintedColumn& each : columns) {
            const GridColumn& column = job().grid->columns()[each.column];
            const int padding = units(kTitlePadding);
            const QRect space(each.left + padding, 0, each.width - 2 * padding, rowHeight_);
            const auto side = column.alignment == Alignment::kRight ? Qt::AlignRight : Qt::AlignLeft;
            painter.drawText(space, static_cast<int>(side) | Qt::AlignVCenter | Qt::TextSingleLine,
                             metrics.elidedText(qtText(column.title), Qt::ElideRight, space.width()));
        }
        const int line = rowHeight_ + units(1);
        painter.fillRect(QRect(0, line, columns.back().left + columns.back().width, units(1)), Qt::black);
    }

    // The same object is used each time, so that a PDF contains it once.
    QIcon picture(int number) const {
        if (const auto found = pictures_.constFind(number); found != pictures_.constEnd()) return *found;
        const QIcon icon = icon_ ? icon_(number) : QIcon();
        const QPixmap drawn = icon.isNull() ? QPixmap() : icon.pixmap(QSize(kPictureSide, kPictureSide), 1.0);
        return *pictures_.insert(number, drawn.isNull() ? QIcon() : QIcon(drawn));
    }

    double pixel_;  ///< The units of a pixel at this zoom.
    VisibleRows rows_;
    CellTextFunction text_;
    IconSource icon_, picture_;
    RowSources sources_, flat_;
    RowLook look_;
    QFont titleFont_;
    int rowHeight_ = 1;
    std::size_t onPage_ = 1;
    std::vector<WantedColumn> wanted_;
    std::vector<std::vector<PaintedColumn>> pages_;
    mutable QHash<int, QIcon> pictures_;
};

}  // namespace

std::unique_ptr<PrintPages> gridPages(const PrintJob& job, IconSource icon) {
    return std::make_unique<GridPages>(job, std::move(icon));
}

}  // namespace hl
