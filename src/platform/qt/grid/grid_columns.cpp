#include "platform/qt/grid/grid_columns.h"

#include <QGuiApplication>
#include <QStyle>
#include <algorithm>

#include "platform/qt/common/qt_guard.h"
#include "platform/qt/grid/grid_header.h"
#include "platform/qt/grid/grid_view.h"

namespace hl {

namespace {

constexpr QtGuard kGridColumnsGuard{"GridView"};

constexpr int kTwipsPerPixel = 15;
constexpr int kFitMargin = 96;
// The number of rows from the top, and of root rows, by which a column is measured.
constexpr int kSample = 256;
constexpr int kWidestColumn = 4000;
// In a list, the column of texts keeps this percentage of the view's width, but at least this many pixels.
constexpr int kTextShare = 40, kTextAtLeast = 160;
// In a hierarchy, the pixels that a name of the first level keeps.
constexpr int kNarrowestName = 100;
// The widths of columns that were not measured yet.
constexpr int kFirstWidth = 220, kOtherWidth = 90;

}  // namespace

// --- the title row

GridHeader* GridColumns::makeHeader() {
    HeaderCalls calls;
    calls.click = [this](int column) {
        kGridColumnsGuard(view_.events(), "titleClick", [&] { clicked(static_cast<std::size_t>(column)); });
    };
    calls.sizing = [this] {
        if (view_.looksOnly()) return view_.listener().looked(Look::kColumn);
        if (view_.takesInput()) view_.listener().columnSizing();
    };
    calls.menu = [this](const QPoint& at) {
        if (view_.takesInput()) view_.listener().columnMenu({at.x(), at.y()});
    };
    calls.sized = [this](int column, int width) {
        if (column == 0) wantedName_ = width;
        store(static_cast<std::size_t>(column), width);
    };
    calls.fit = [this](int column) {
        kGridColumnsGuard(view_.events(), "fitColumn", [&] {
            const auto fitted = static_cast<std::size_t>(column);
            setWidth(fitted, fittingWidth(fitted, kFitMargin));
            if (view_.looksOnly()) view_.listener().looked(Look::kColumn);
        });
    };
    auto* header = new GridHeader(std::move(calls), view_.events(), &view_);
    header->setSortIndicatorShown(true);
    return header;
}

// The toolkit has turned its mark at the click, whatever the click does.
void GridColumns::clicked(std::size_t column) {
    if (view_.takesInput()) view_.listener().GridColumnTitleClick(column);
    showSort();
    view_.viewport()->update();  // A drag that has ended may have cut numbers.
}

// Returns the column by which the rows are sorted; in a tree, those below the sources. The drives have an
// order of their own.
std::optional<std::size_t> GridColumns::sortedColumn() const {
    if (sources_.id == GridId::kDrives) return std::nullopt;
    const std::string& key = view_.grid().levelSort(sources_.tree ? 1 : 0).key;
    const std::vector<GridColumn>& columns = view_.grid().columns();
    const auto found = std::ranges::find(columns, key, &GridColumn::key);
    return found == columns.end() ? std::nullopt : std::optional<std::size_t>(found - columns.begin());
}

void GridColumns::showSort() {
    const auto column = sortedColumn();
    const bool down = view_.grid().levelSort(sources_.tree ? 1 : 0).descending;
    view_.horizontalHeader()->setSortIndicator(column ? static_cast<int>(*column) : -1,
                                               down ? Qt::DescendingOrder : Qt::AscendingOrder);
}

// --- widths

void GridColumns::apply() {
    const std::vector<GridColumn>& columns = view_.grid().columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const int section = static_cast<int>(i);
        const double width = columns[i].width > 0 ? columns[i].width : i == 0 ? kFirstWidth : kOtherWidth;
        view_.setColumnHidden(section, !columns[i].visible);
        if (columns[i].visible) view_.setColumnWidth(section, static_cast<int>(width));
    }
}

void GridColumns::store(std::size_t column, int width) {
    Grid& grid = view_.grid();
    if (column >= grid.columns().size() || grid.columns()[column].width == width) return;
    const GridSync::OwnChange own(view_.changes());
    grid.changeColumn(column).width = width;
}

void GridColumns::setWidth(std::size_t column, int width) {
    const int section = static_cast<int>(column);
    store(column, width);
    if (section < view_.horizontalHeader()->count() && view_.grid().columns()[column].visible)
        view_.setColumnWidth(section, width);
}

// During a run the numbers change all the time, and a border that follows them to and fro disturbs.
void GridColumns::autosize(std::size_t column, int margin) {
    int fitting = fittingWidth(column, margin);
    if (!sources_.tree || column > 0) {
        fitting = std::min(fitting, widestFit(column));
        if (view_.looksOnly()) fitting = std::max(fitting, view_.columnWidth(static_cast<int>(column)));
        return setWidth(column, fitting);
    }
    wantedName_ = fitting;
    nameGivesWay();
}

void GridColumns::widenNumbers() {
    if (QGuiApplication::mouseButtons() != Qt::NoButton) return;  // A border is being dragged.
    for (const std::size_t column : view_.places().shownColumns())
        if (hasNumbers(column))
            setWidth(column,
                     std::max(view_.columnWidth(static_cast<int>(column)), fittingWidth(column, kFitMargin)));
    nameGivesWay();
}

void GridColumns::nameGivesWay() {
    if (sources_.tree && wantedName_ > 0) setWidth(0, besideNumbers(wantedName_));
}

// Walks the grid, not the list, because callers also measure while redraw is off.
int GridColumns::widest(std::size_t column) const {
    const Grid& grid = sources_.grid;
    const RowPainter painter(sources_, view_);
    int widest = 0;
    const auto measure = [&](Row from, int count, auto&& next) {
        for (Row row = from; row != kNoRow && count > 0; row = next(row), --count)
            widest = std::max(widest, painter.contentWidth(row, column));
    };
    const auto shownNext = [&grid](Row row) { return VisibleRows::following(grid, row); };
    measure(grid.firstRoot(), kSample, shownNext);
    measure(grid.topRow(), view_.places().rowsOnPage(), shownNext);
    measure(grid.firstRoot(), kSample, [&grid](Row row) { return grid.nextSibling(row); });
    return widest;
}

int GridColumns::fittingWidth(std::size_t column, int margin) const {
    const int content = widest(column) + (margin + kTwipsPerPixel - 1) / kTwipsPerPixel;
    const QHeaderView& header = *view_.horizontalHeader();
    const auto pixels = [this](QStyle::PixelMetric of) {
        return view_.style()->pixelMetric(of, nullptr, &view_);
    };
    const QString text = QString::fromStdString(sources_.grid.columns()[column].title);
    const int title = header.fontMetrics().horizontalAdvance(text) + 4 * pixels(QStyle::PM_HeaderMargin) + 8 +
                      (sortedColumn() == column ? pixels(QStyle::PM_HeaderMarkSize) : 0);
    return std::clamp(std::max(content, title), header.minimumSectionSize(), kWidestColumn);
}

// Neither a long name nor a deep folder must push the sizes out of sight.
int GridColumns::besideNumbers(int fitting) const {
    const std::vector<GridColumn>& columns = sources_.grid.columns();
    int room = view_.innerWidth() - view_.places().scrollBarWidth();
    for (std::size_t column = 1; column < columns.size(); ++column)
        if (columns[column].visible) room -= static_cast<int>(columns[column].width);
    const int least = RowPainter(sources_, view_).firstLevelStart() + kNarrowestName;
    return std::min(fitting, std::max(room, least));
}

bool GridColumns::hasNumbers(std::size_t column) const {
    const GridColumn& of = sources_.grid.columns()[column];
    return column > 0 && (of.alignment == Alignment::kRight || of.barColor);
}

// A number that is cut looks like another number; a name that is cut shows it.
int GridColumns::widestFit(std::size_t column) const {
    if (sources_.tree || hasNumbers(column)) return kWidestColumn;
    return std::max(kTextAtLeast, view_.innerWidth() * kTextShare / 100);
}

}  // namespace hl
