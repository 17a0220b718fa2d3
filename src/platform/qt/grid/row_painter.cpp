#include "platform/qt/grid/row_painter.h"

#include <QApplication>
#include <QPaintEngine>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <optional>

#include "base/scope_exit.h"
#include "base/text.h"
#include "platform/icons.h"
#include "platform/percent_bar.h"
#include "platform/qt/grid/grid_colors.h"

namespace hl {

namespace {

constexpr int kPadding = 4;
constexpr int kGap = 4;
constexpr int kPale = 170;  // How far a pale selection is on the way from its colour to the ground, of 255.
constexpr std::uint32_t kBarColor = 0x0000FF;
// In a dark palette a bar's colour is lightened by the first, and then moved towards the ground by the second
// at its left end, by the third at its right end.
constexpr int kDarkLightening = 80, kDarkLeft = 110, kDarkRight = 160;
// How far a bar behind a text, and the third tone of a bar, are moved towards the ground.
constexpr int kBehindTone = 160, kMoreTone = 185;
// The room in pixels that even the deepest name keeps, where the column is wide enough.
constexpr int kNameAtLeast = 100;

RowLook lookOf(const QWidget& widget) {
    const QStyle& style = *widget.style();
    const QWidget* holder = QApplication::focusWidget();
    const bool focus = holder != nullptr && (holder == &widget || widget.isAncestorOf(holder));
    return {.font = widget.font(),
            .palette = widget.palette(),
            .group = focus ? QPalette::Active : QPalette::Inactive,
            .step = style.pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, &widget),
            .iconSize = style.pixelMetric(QStyle::PM_SmallIconSize, nullptr, &widget),
            .focus = focus};
}

/// A picture drawn much smaller than it is loses its thin lines; so on a screen it is first reduced to the
/// size it is seen at. On paper and in a PDF it stays as it is.
void paintFitted(QPainter& painter, const QRect& box, const QPixmap& picture) {
    const QTransform toScreen = painter.deviceTransform();
    const QRect seen = toScreen.mapRect(QRectF(box)).toRect();
    const bool onScreen = painter.paintEngine()->type() == QPaintEngine::Raster;
    if (!onScreen || seen.isEmpty() || seen.width() >= picture.width())
        return painter.drawPixmap(box, picture);
    const QImage fitted =
        picture.toImage().scaled(seen.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(toScreen.inverted().mapRect(QRectF(seen)), fitted);
}

}  // namespace

RowPainter::RowPainter(const RowSources& sources, const QWidget& widget)
    : RowPainter(sources, lookOf(widget)) {}

RowPainter::RowPainter(const RowSources& sources, const RowLook& look)
    : sources_(sources), look_(look), metrics_(look.font), padding_(units(kPadding)), gap_(units(kGap)) {}

int RowPainter::rowHeight(const QWidget& widget) {
    return rowHeight(lookOf(widget));
}

int RowPainter::rowHeight(const RowLook& look) {
    return std::max(QFontMetrics(look.font).height(), look.iconSize) +
           static_cast<int>(std::lround(kPadding * look.pixel));
}

// --- widths

int RowPainter::units(double pixels) const {
    return static_cast<int>(std::lround(pixels * look_.pixel));
}

int RowPainter::wholeIndentation(Row row) const {
    if (!sources_.tree) return padding_;
    const std::uint32_t level = std::min(sources_.grid.level(row), look_.deepest);
    return static_cast<int>(level + 1) * look_.step;
}

// In three quarters of the room beside the names a level has its whole step; from there on the steps get
// smaller and smaller, so that the deepest name has its room, too. In a narrow column, where names have no
// room, levels differ all the same. A row's place depends on its level alone, so it stays where it is
// whatever is unfolded.
int RowPainter::indentation(Row row, int width) const {
    const int whole = wholeIndentation(row);
    if (!sources_.tree || !look_.onScreen) return whole;
    const int room = std::max(width - besideIndentation(row), width / 4);
    const int from = std::max(look_.step, room * 3 / 4), most = std::max(from, room);
    if (whole <= from) return whole;
    if (most == from) return from;
    const double span = most - from;
    return from + static_cast<int>(span * (1 - std::exp(-(whole - from) / span)));
}

int RowPainter::besideIndentation(Row row) const {
    return units(kNameAtLeast) + look_.iconSize + gap_ + barRoom(row);
}

int RowPainter::iconWidth(Row row) const {
    return sources_.grid.picture(row) > 0 ? look_.iconSize + gap_ : 0;
}

int RowPainter::barWidth() const {
    return metrics_.horizontalAdvance(QStringLiteral("100%")) + units(16);
}

int RowPainter::twoSidedWidth() const {
    return barWidth() * 3 / 2;
}

int RowPainter::barRoom(Row row) const {
    return sources_.grid.barPicture(row) >= 0 ? barWidth() + gap_ : 0;
}

int RowPainter::textWidth(const QString& shown) const {
    // Cutting a text measures fractions of a pixel, so a rounded width may be too small for it.
    return static_cast<int>(std::ceil(QFontMetricsF(metrics_).horizontalAdvance(shown))) + 1 + 2 * padding_;
}

// The note of a list's row comes and goes with the pointer, and must not move the columns.
int RowPainter::contentWidth(Row row, std::size_t column) const {
    const int text = textWidth(sources_.tree ? fullText(row, column) : cellText(row, column));
    if (column > 0) {
        const GridColumn& of = sources_.grid.columns()[column];
        if (of.barTwoSided) return text + twoSidedWidth() + gap_;
        return of.barColor ? std::max(text, barWidth() + 2 * padding_) : text;
    }
    const int whole = wholeIndentation(row), shown = whole + iconWidth(row) + barRoom(row) + text;
    if (!sources_.tree || sources_.grid.level(row) == 0) return shown;
    // In a column of this width, indentation() gives the row its whole steps.
    return std::max(shown, (whole * 4 + 2) / 3 + besideIndentation(row));
}

bool RowPainter::isCut(Row row, std::size_t column, int width) const {
    const int text = textWidth(fullText(row, column));
    return column == 0 ? textRect(row, {0, 0, width, 0}).left() + text - padding_ > width : text > width;
}

QRect RowPainter::textRect(Row row, const QRect& cell) const {
    return cell.adjusted(indentation(row, cell.width()) + iconWidth(row) + barRoom(row), 0, -padding_, 0);
}

QRect RowPainter::branchRect(Row row, const QRect& cell) const {
    return {cell.left() + indentation(row, cell.width()) - look_.step, cell.top(), look_.step, cell.height()};
}

// --- texts

QString RowPainter::cellText(Row row, std::size_t column) const {
    return QString::fromStdString(sources_.cellText(sources_.id, column, row));
}

QString RowPainter::note(Row row) const {
    const std::string_view text = sources_.grid.rowNote(row);
    return text.empty() ? QString() : QString::fromStdString(visible(trimBlanks(text)));
}

QString RowPainter::fullText(Row row, std::size_t column) const {
    const QString text = cellText(row, column);
    const QString more = column == 0 ? note(row) : QString();
    return more.isEmpty() ? text : text + QStringLiteral("  ") + more;
}

// --- drawing

RowPainter::Colors RowPainter::colorsOf(Row row) const {
    const bool selected = look_.onScreen && sources_.grid.selected(row);
    if (selected && look_.focus)
        return {look_.palette.color(look_.group, QPalette::Highlight),
                look_.palette.color(look_.group, QPalette::HighlightedText)};
    const QColor text = look_.palette.color(look_.group, QPalette::Text);
    if (selected) {
        // Where the keys do not go, a selection is pale.
        const QColor base = look_.palette.color(look_.group, QPalette::Base);
        const QColor pale =
            readableTint(look_.palette.color(QPalette::Active, QPalette::Highlight), base, text, kPale);
        return {pale, text};
    }
    const std::optional<std::uint32_t> own = sources_.grid.backColor(row);
    if (!own) return {look_.palette.color(look_.group, QPalette::Base), text};
    const QColor ground = rowBackground(*own, look_.palette);
    return {ground, readableOn(ground, text)};
}

bool RowPainter::paint(QPainter& painter, Row row, const QRect& area,
                       const std::vector<PaintedColumn>& columns) const {
    const Colors colors = colorsOf(row);
    if (look_.onScreen || sources_.grid.backColor(row)) painter.fillRect(area, colors.ground);
    painter.setPen(colors.text);
    bool whole = true;
    for (const PaintedColumn& column : columns) {
        const QRect cell(column.left, area.top(), column.width, area.height());
        const bool clips = look_.onScreen || (column.column == 0 && textRect(row, cell).width() <= 0);
        if (clips) {
            painter.save();
            painter.setClipRect(cell, Qt::IntersectClip);
        }
        const ScopeExit restore([&painter, clips] {
            if (clips) painter.restore();
        });
        if (column.column == 0) {
            paintFirst(painter, row, cell, colors);
        } else {
            painter.setPen(colors.text);
            whole = paintOther(painter, row, column, cell, colors) && whole;
        }
    }
    if (row != sources_.grid.currentRow() || !look_.focus) return whole;
    // Some styles fill their frame, and would so tint what is drawn below.
    painter.setPen(QPen(tintTowards(colors.text, colors.ground, 90), 0, Qt::DotLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(area.adjusted(0, 0, -1, -1));
    return whole;
}

void RowPainter::paintFirst(QPainter& painter, Row row, const QRect& cell, const Colors& colors) const {
    const Grid& grid = sources_.grid;
    if (sources_.tree && grid.hasChildren(row))
        paintBranch(painter, branchRect(row, cell), grid.expanded(row));
    const int left = cell.left() + indentation(row, cell.width());
    if (const int picture = grid.picture(row); picture > 0) {
        const QRect box(left, cell.top() + (cell.height() - look_.iconSize) / 2, look_.iconSize,
                        look_.iconSize);
        paintPicture(painter, row, box);
        if (grid.mark(row) > 0) paintMark(painter, box);
    }
    if (const int percent = grid.barPicture(row); percent >= 0) {
        const QRect bar(left + iconWidth(row), cell.top() + units(1), barWidth(), cell.height() - units(2));
        const std::uint32_t base = grid.columns()[0].barColor.value_or(kBarColor);
        paintBar(painter, bar, {percent * 1.0, 0, QString::number(percent) + QLatin1Char('%')}, base);
    }
    paintTexts(painter, row, textRect(row, cell), colors);
}

void RowPainter::paintPicture(QPainter& painter, Row row, const QRect& box) const {
    if (!sources_.icon) return;
    const QIcon icon = sources_.icon(sources_.grid.picture(row));
    const bool light = look_.onScreen && look_.focus && sources_.grid.selected(row);
    if (look_.pictureSide == 0)
        return icon.paint(&painter, box, Qt::AlignCenter, light ? QIcon::Selected : QIcon::Normal);
    const QPixmap picture = icon.pixmap(QSize(look_.pictureSide, look_.pictureSide), 1.0);
    if (!picture.isNull()) paintFitted(painter, box, picture);
}

// A disc with an edge in the ground's colour, so that it is seen on any picture.
void RowPainter::paintMark(QPainter& painter, const QRect& box) const {
    const double side = box.width() * 0.5;
    const QRectF disc(box.right() + 1 - side, box.bottom() + 1 - side, side, side);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(look_.palette.color(QPalette::Base), look_.pixel));
    painter.setBrush(QColor(0xc0392b));
    painter.drawEllipse(disc);
    painter.restore();
}

void RowPainter::paintTexts(QPainter& painter, Row row, const QRect& space, const Colors& colors) const {
    if (space.width() <= 0) return;
    // The end of a name or a path says more than its middle.
    const QString text = metrics_.elidedText(cellText(row, 0), Qt::ElideMiddle, space.width());
    const int picture = sources_.grid.picture(row);
    const bool grey = picture == kIconLeftOut || picture == kIconGone;
    painter.setPen(grey ? dimmedOn(colors.ground, colors.text) : colors.text);
    painter.drawText(space, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    const QString more = note(row);
    if (more.isEmpty()) return;
    const QRect rest = space.adjusted(metrics_.horizontalAdvance(text + QStringLiteral("  ")), 0, 0, 0);
    if (rest.width() <= 0) return;
    painter.setPen(dimmedOn(colors.ground, colors.text));
    painter.drawText(rest, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics_.elidedText(more, Qt::ElideRight, rest.width()));
}

// A column that is empty for a row has NaN for its bar, or no such cell.
double RowPainter::numberOf(Row row, const std::string& key) const {
    const CellId cell = key.empty() ? kNoCell : sources_.grid.cell(key);
    return cell == kNoCell ? 0 : sources_.grid.number(row, cell);
}

// Returns false if the text is a number that does not fit.
bool RowPainter::paintOther(QPainter& painter, Row row, const PaintedColumn& column, const QRect& cell,
                            const Colors& colors) const {
    const GridColumn& of = sources_.grid.columns()[column.column];
    const QString text = cellText(row, column.column);
    const QRect space = cell.adjusted(padding_, 0, -padding_, 0);
    const bool number = of.alignment == Alignment::kRight;
    if (of.barColor && !text.isEmpty()) {
        const QRect bar = space.adjusted(0, units(1), 0, -units(1));
        const double value = numberOf(row, of.key);
        if (of.barTwoSided) {
            const QRect side(space.left(), space.top() + units(3), twoSidedWidth(),
                             space.height() - units(6));
            const bool fits = metrics_.horizontalAdvance(text) + gap_ <= space.right() - side.right();
            if (fits) paintTwoSided(painter, side, value / of.barMost, colors);
        } else if (of.barBehind) {
            paintBehind(painter, bar, value, *of.barColor, colors);
        } else {
            paintBar(painter, bar, {value, numberOf(row, of.barMoreKey), text}, *of.barColor);
            return true;
        }
    }
    const QString shown = metrics_.elidedText(text, number ? Qt::ElideRight : Qt::ElideMiddle, space.width());
    const Qt::Alignment place = (number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    painter.drawText(space, static_cast<int>(place.toInt()) | static_cast<int>(Qt::TextSingleLine), shown);
    return !number || shown == text;
}

// Draws a triangle that points right if folded and down if open.
void RowPainter::paintBranch(QPainter& painter, const QRect& box, bool open) const {
    const double half = std::max(3.0 * look_.pixel, std::min(box.width(), box.height()) * 0.2);
    const QPointF middle = QRectF(box).center();
    QPolygonF triangle;
    if (open) {
        triangle << middle + QPointF(-half, -half / 2) << middle + QPointF(half, -half / 2)
                 << middle + QPointF(0, half / 2);
    } else {
        triangle << middle + QPointF(-half / 2, -half) << middle + QPointF(half / 2, 0)
                 << middle + QPointF(-half / 2, half);
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(painter.pen().color());
    painter.setPen(Qt::NoPen);
    painter.drawPolygon(triangle);
    painter.restore();
}

// The tints lead towards the palette's ground, so that its text is readable on the whole bar.
RowPainter::BarLook RowPainter::barLook(std::uint32_t base) const {
    const QColor ground = look_.palette.color(QPalette::Base), ink = look_.palette.color(QPalette::Text);
    if (ground.lightness() < ink.lightness()) {
        const QColor color = QColor::fromRgb(tint(base, kDarkLightening));
        return {ground, ink, readableTint(color, ground, ink, kDarkLeft),
                readableTint(color, ground, ink, kDarkRight), readableTint(ink, ground, ink, kMoreTone)};
    }
    const BarEnds ends = barEnds(base);
    const QColor left = QColor::fromRgb(ends.left);
    return {ground, readableOn(left, ink), left, QColor::fromRgb(ends.right),
            readableTint(ink, ground, ink, kMoreTone)};
}

// The bar's tint is made for the row's own ground and text: it may be selected, or have a colour.
void RowPainter::paintBehind(QPainter& painter, const QRect& space, double percent, std::uint32_t base,
                             const Colors& colors) const {
    const bool dark = colors.ground.lightness() < colors.text.lightness();
    const QColor color = dark ? QColor::fromRgb(tint(base, kDarkLightening)) : QColor::fromRgb(base);
    const double part = std::clamp(percent / 100, 0.0, 1.0);
    const QRectF filled(space.left(), space.top(), space.width() * part, space.height());
    if (part > 0) painter.fillRect(filled, readableTint(color, colors.ground, colors.text, kBehindTone));
}

// The part is that of the largest number, whose bar takes half of the space. Even the smallest has a line of
// a pixel.
void RowPainter::paintTwoSided(QPainter& painter, const QRect& space, double part,
                               const Colors& colors) const {
    if (part == 0 || std::isnan(part)) return;
    const int middle = space.left() + space.width() / 2;  // Where the axis stands, a pixel wide.
    const double length = std::max(std::min(std::abs(part), 1.0) * space.width() / 2, look_.pixel);
    const QRectF filled(part > 0 ? middle + look_.pixel : middle - length, space.top(), length,
                        space.height());
    painter.fillRect(filled, sideColor(part > 0 ? kAboveColor : kBelowColor, colors));
    const QRectF axis(middle, space.top() - units(2), look_.pixel, space.height() + units(4));
    painter.fillRect(axis, dimmedOn(colors.ground, colors.text));
}

// On the ground of a selection, which may be of the same brightness, both sides have the colour of the text.
QColor RowPainter::sideColor(std::uint32_t base, const Colors& colors) const {
    constexpr double kSeen = 2;
    const bool dark = colors.ground.lightness() < colors.text.lightness();
    const QColor color = QColor::fromRgb(dark ? tint(base, kDarkLightening) : base);
    return contrast(color, colors.ground) < kSeen ? colors.text : color;
}

// Lengths are whole pixels of the device.
void RowPainter::paintBar(QPainter& painter, const QRect& space, const Bar& bar, std::uint32_t base) const {
    const BarLook look = barLook(base);
    const double ratio = painter.device()->devicePixelRatioF() / look_.pixel;
    const int length = filledLength(bar.percent, static_cast<int>(space.width() * ratio));
    // If a page is shown small, a line of one of its pixels would disappear.
    const double line = std::max(1 / ratio, 1 / std::abs(painter.deviceTransform().m11()));
    const double inset = std::max(kBarInset / ratio, line);
    const QRectF filled =
        QRectF(space.left() + inset, space.top() + inset, length / ratio, space.height() - 2 * inset);
    QLinearGradient gradient(filled.topLeft(), filled.topRight());
    gradient.setColorAt(0, look.left);
    gradient.setColorAt(1, look.right);
    painter.fillRect(space, tintTowards(look.ink, look.ground, 150));
    painter.fillRect(QRectF(space).adjusted(line, line, -line, -line), look.ground);
    if (length > 0) painter.fillRect(filled, gradient);
    if (const int both = filledLength(bar.percent + bar.more, static_cast<int>(space.width() * ratio));
        bar.more > 0 && both > length)
        painter.fillRect(QRectF(filled.topRight(), QSizeF((both - length) / ratio, filled.height())),
                         look.more);
    const QPen before = painter.pen();
    painter.setPen(look.ink);
    painter.drawText(space, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, bar.text);
    painter.setPen(before);
}

}  // namespace hl
