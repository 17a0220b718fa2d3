#include <QHeaderView>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QScrollBar>
#include <QToolTip>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/grid/grid_view.h"

namespace hl {

std::vector<std::size_t> GridView::shownColumns() const {
    std::vector<std::size_t> shown;
    for (std::size_t i = 0; i < grid_.columns().size(); ++i)
        if (grid_.columns()[i].visible) shown.push_back(i);
    return shown;
}

std::vector<PaintedColumn> GridView::paintedColumns() const {
    std::vector<PaintedColumn> painted;
    for (const std::size_t column : shownColumns()) {
        const int section = static_cast<int>(column);
        if (section >= horizontalHeader()->count()) break;
        painted.push_back({column, columnViewportPosition(section), columnWidth(section)});
    }
    return painted;
}

int GridView::rowsOnPage() const {
    return viewport()->height() / rowHeight_ + 1;
}

void GridView::paintEvent(QPaintEvent* event) {
    qtGuard(events_, "GridView::paintEvent", [&] { paintRows(event->rect()); });
}

void GridView::paintRows(const QRect& dirty) {
    QPainter painter(viewport());
    painter.fillRect(dirty, palette().color(QPalette::Base));
    if (grid_.firstRoot() == kNoRow) return paintEmptyHint(painter);
    std::vector<PaintedColumn> columns = paintedColumns();
    if (columns.empty()) return;
    const int right = columns.back().left + columns.back().width;
    std::erase_if(columns, [&dirty](const PaintedColumn& column) {
        return column.left > dirty.right() || column.left + column.width <= dirty.left();
    });
    const RowPainter rows(sources_, *this);
    const int left = -horizontalScrollBar()->value();
    Row row = grid_.topRow() != kNoRow ? grid_.topRow() : grid_.firstRoot();
    for (int top = 0; row != kNoRow && top <= dirty.bottom(); top += rowHeight_) {
        const QRect area(left, top, right - left, rowHeight_);
        if (area.bottom() >= dirty.top()) rows.paint(painter, row, area, columns);
        row = VisibleRows::following(grid_, row);
    }
}

void GridView::paintEmptyHint(QPainter& painter) const {
    if (!emptyHint_) return;
    constexpr int kMargin = 12;
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, emptyHint_());
}

QRect GridView::rowRect(std::size_t index) const {
    const int line = static_cast<int>(index) - verticalScrollBar()->value();
    return {-horizontalScrollBar()->value(), line * rowHeight_, horizontalHeader()->length(), rowHeight_};
}

std::optional<QRect> GridView::nameRect(Row row) const {
    const auto index = upToDate() && !isColumnHidden(0) ? rows_.find(row) : std::nullopt;
    if (!index) return std::nullopt;
    const QRect line = rowRect(*index);
    const QRect cell(columnViewportPosition(0), line.top(), columnWidth(0), line.height());
    return RowPainter(sources_, *this).textRect(row, cell);
}

QString GridView::cellText(std::size_t column, Row row) const {
    return QString::fromStdString(cellText_(id_, column, row));
}

// Shows the full text of a cell that does not show all of it, else the note of the row.
bool GridView::showTooltip(const QPoint& point, const QPoint& global) {
    const int section = QTableView::columnAt(point.x());
    const auto index = sync() && section >= 0 ? indexAtPoint(point) : std::nullopt;
    QString text;
    if (index) {
        const RowPainter painter(sources_, *this);
        const auto column = static_cast<std::size_t>(section);
        if (painter.contentWidth(rows_.at(*index), column) > columnWidth(section))
            text = painter.fullText(rows_.at(*index), column);
        else
            text = shownName(grid_.rowNote(rows_.at(*index)));
    }
    // A name must never be read as rich text.
    if (!text.isEmpty()) text = QStringLiteral("<p style='white-space:pre'>") + text.toHtmlEscaped();
    QToolTip::showText(global, text, this);
    return true;
}

bool GridView::viewportEvent(QEvent* event) {
    return qtGuard(events_, "GridView::viewportEvent", [&] {
        if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
        const auto* help = static_cast<QHelpEvent*>(event);
        return showTooltip(help->pos(), help->globalPos());
    });
}

}  // namespace hl
