#include "platform/qt/grid/grid_places.h"

#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>

namespace hl {

void GridPlaces::measure() {
    rowHeight_ = RowPainter::rowHeight(table_);
    table_.verticalHeader()->setMinimumSectionSize(1);
    table_.verticalHeader()->setDefaultSectionSize(rowHeight_);
}

int GridPlaces::rowsOnPage() const {
    return table_.viewport()->height() / rowHeight_ + 1;
}

int GridPlaces::wholeRowsOnPage() const {
    return std::max(1, table_.viewport()->height() / rowHeight_);
}

std::size_t GridPlaces::topIndex() const {
    return static_cast<std::size_t>(table_.verticalScrollBar()->value());
}

int GridPlaces::scrollBarWidth() const {
    const QScrollBar* bar = table_.verticalScrollBar();
    return bar->maximum() > 0 ? bar->sizeHint().width() : 0;
}

QRect GridPlaces::rowRect(std::size_t index) const {
    const int line = static_cast<int>(index) - table_.verticalScrollBar()->value();
    return {-table_.horizontalScrollBar()->value(), line * rowHeight_, table_.horizontalHeader()->length(),
            rowHeight_};
}

QRect GridPlaces::nameCell(std::size_t index) const {
    return {table_.columnViewportPosition(0), rowRect(index).top(), table_.columnWidth(0), rowHeight_};
}

QRect GridPlaces::nameRect(std::size_t index) const {
    return RowPainter(sources_, table_).textRect(rows_.at(index), nameCell(index));
}

std::optional<std::size_t> GridPlaces::indexAt(const QPoint& point) const {
    if (point.y() < 0 || point.y() >= table_.viewport()->height()) return std::nullopt;
    const std::size_t index = topIndex() + static_cast<std::size_t>(point.y() / rowHeight_);
    if (index >= rows_.count()) return std::nullopt;
    return point.x() >= 0 && rowRect(index).contains(point) ? std::optional(index) : std::nullopt;
}

bool GridPlaces::onBranch(const QPoint& point, std::size_t index) const {
    const Row row = rows_.at(index);
    if (!sources_.tree || !sources_.grid.hasChildren(row) || table_.isColumnHidden(0)) return false;
    const QRect cell = nameCell(index);
    return RowPainter(sources_, table_).branchRect(row, cell).intersected(cell).contains(point);
}

int GridPlaces::beyondRight(Row row) const {
    constexpr int kOfName = 160;
    if (!sources_.tree || table_.isColumnHidden(0) || table_.viewport()->width() <= kOfName) return 0;
    const QRect cell(table_.columnViewportPosition(0), 0, table_.columnWidth(0), rowHeight_);
    const int end = RowPainter(sources_, table_).branchRect(row, cell).right() + kOfName;
    return std::max(0, end - table_.viewport()->width());
}

std::vector<std::size_t> GridPlaces::shownColumns() const {
    std::vector<std::size_t> shown;
    const std::vector<GridColumn>& columns = sources_.grid.columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].visible) shown.push_back(i);
    return shown;
}

std::vector<PaintedColumn> GridPlaces::paintedColumns() const {
    std::vector<PaintedColumn> painted;
    for (const std::size_t column : shownColumns()) {
        const int section = static_cast<int>(column);
        if (section >= table_.horizontalHeader()->count()) break;
        painted.push_back({column, table_.columnViewportPosition(section), table_.columnWidth(section)});
    }
    return painted;
}

}  // namespace hl
