#include "platform/qt/grid/grid_view.h"

#include <QApplication>
#include <QResizeEvent>
#include <QScrollBar>
#include <algorithm>

#include "base/scope_exit.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/forms/dialogs.h"
#include "platform/qt/grid/cell_editor.h"
#include "platform/qt/grid/grid_accessible.h"
#include "platform/qt/grid/grid_header.h"
#include "platform/qt/grid/grid_view_own.h"

namespace hl {

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kFitMargin = 96;
// The number of rows from the top, and of root rows, by which a column is measured.
constexpr int kSample = 256;
constexpr int kWidestColumn = 4000;
// In a list, the column of texts keeps this percentage of the view's width, but at least this many pixels;
// the latter holds in a hierarchy, too.
constexpr int kTextShare = 40, kTextAtLeast = 160;
// The widths of columns that were not measured yet.
constexpr int kFirstWidth = 220, kOtherWidth = 90;
// After how many milliseconds a change that came while redraw was off is checked again.
constexpr int kRetry = 30;

}  // namespace

// --- life

GridView::GridView(Grid& grid, GridId id, bool tree, CellTextFunction cellText, WindowEvents& events,
                   QWidget* parent)
    : QTableView(parent),
      grid_(grid),
      id_(id),
      tree_(tree),
      cellText_(std::move(cellText)),
      events_(events),
      levelCaption_(QStringLiteral("Level")),
      rows_(grid),
      model_(grid, id, rows_, cellText_, events),
      selection_(grid, rows_),
      sources_{grid, id, tree, cellText_, icon_} {
    setUp();
    grid_.attach(this);
    GridChange all;
    all.structure = all.columns = all.current = true;
    GridView::gridChanged(all);
}

GridView::~GridView() {
    editor_.reset();  // It would still be told of the focus, and would ask a view that is half destroyed.
    grid_.attach(nullptr);
    // The model is a member, and would be destroyed before the base class releases it.
    setModel(nullptr);
}

void GridView::setUp() {
    installGridAccessible();
    setHorizontalHeader(makeHeader());
    horizontalHeader()->setSortIndicatorShown(true);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setModel(&model_);
    setShowGrid(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setAutoScroll(false);
    setMouseTracking(!tree_);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    font_.name = font().family().toStdString();
    font_.points = font().pointSizeF();
    measureRows();
}

GridHeader* GridView::makeHeader() {
    HeaderCalls calls;
    calls.click = [this](int column) {
        qtGuard(events_, "GridView::titleClick", [&] {
            if (takesInput()) listener_->GridColumnTitleClick(static_cast<std::size_t>(column));
            // The toolkit has turned its mark at the click, whatever the click did.
            showSort();
        });
    };
    calls.sizing = [this] {
        if (takesInput()) listener_->columnSizing();
    };
    calls.sized = [this](int column, int width) { storeWidth(static_cast<std::size_t>(column), width); };
    calls.fit = [this](int column) {
        qtGuard(events_, "GridView::fitColumn", [&] {
            setWidth(static_cast<std::size_t>(column),
                     fittingWidth(static_cast<std::size_t>(column), kFitMargin));
        });
    };
    return new GridHeader(std::move(calls), events_, this);
}

void GridView::setIconSource(IconSource icon) {
    icon_ = std::move(icon);
    viewport()->update();
}

// --- changes

void GridView::gridChanged(const GridChange& change) {
    if (own_ && !change.structure) {
        viewport()->update();
        return;
    }
    pending_.structure |= change.structure;
    pending_.columns |= change.columns;
    pending_.current |= change.current;
    dirty_ = true;
    // A scan switches redraw on for this one notice: painting walks the grid as it is now.
    viewport()->update();
    if (!timer_.isActive()) timer_.start(0, this);
}

void GridView::timerEvent(QTimerEvent* event) {
    qtGuard(events_, "GridView::timerEvent", [&] {
        if (event->timerId() != timer_.timerId()) return QTableView::timerEvent(event);
        timer_.stop();
        if (!sync()) timer_.start(kRetry, this);
    });
}

bool GridView::sync() {
    if (!grid_.redraw()) return false;
    if (dirty_ && !applying_) apply();
    return true;
}

void GridView::apply() {
    applying_ = true;
    const ScopeExit done([this] { applying_ = false; });
    const OwnChange own(*this);
    timer_.stop();
    dirty_ = false;
    const GridChange change = std::exchange(pending_, {});
    const int shown = verticalScrollBar()->value();
    if (change.columns) applyColumns();
    if (change.structure) applyRows();
    applyTop(shown, change.structure);
    applyCurrent();
    showSort();
    viewport()->update();
    if (change.structure) accessibleRowsChanged(*this);
    if (change.structure && editor_) editor_->cancel();
    moveEditor();
}

// Returns the column by which the rows are sorted; in a tree, those below the sources. The drives have an
// order of their own.
std::optional<std::size_t> GridView::sortedColumn() const {
    if (id_ == GridId::kDrives) return std::nullopt;
    const std::string& key = grid_.levelSort(tree_ ? 1 : 0).key;
    const std::vector<GridColumn>& columns = grid_.columns();
    const auto found = std::ranges::find(columns, key, &GridColumn::key);
    return found == columns.end() ? std::nullopt : std::optional<std::size_t>(found - columns.begin());
}

void GridView::showSort() {
    const auto column = sortedColumn();
    const bool down = grid_.levelSort(tree_ ? 1 : 0).descending;
    horizontalHeader()->setSortIndicator(column ? static_cast<int>(*column) : -1,
                                         down ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void GridView::applyColumns() {
    model_.columnsChanged();
    const std::vector<GridColumn>& columns = grid_.columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const int section = static_cast<int>(i);
        const double width = columns[i].width > 0 ? columns[i].width : i == 0 ? kFirstWidth : kOtherWidth;
        setColumnHidden(section, !columns[i].visible);
        if (columns[i].visible) setColumnWidth(section, static_cast<int>(width));
    }
}

void GridView::applyRows() {
    model_.beginRows();
    rows_.rebuild();
    model_.endRows();
    executeDelayedItemsLayout();
    updateGeometries();
}

// If the user has not scrolled, the first row stays first; any other top row stays where it is.
void GridView::applyTop(int shown, bool structure) {
    const Row wanted = grid_.topRow();
    const bool moved = wanted != lastTop_;
    const bool scrolled = std::exchange(userScrolled_, false);
    if (!structure && !moved && !scrolled) return;
    std::optional<std::size_t> index;
    if (wanted != kNoRow && (moved || (shown > 0 && !scrolled))) index = rows_.findShown(wanted);
    setTopIndex(index.value_or(static_cast<std::size_t>(shown)));
}

void GridView::setTopIndex(std::size_t index) {
    verticalScrollBar()->setValue(static_cast<int>(index));
    storeTop();
}

void GridView::storeTop() {
    const auto index = static_cast<std::size_t>(verticalScrollBar()->value());
    const OwnChange own(*this);
    lastTop_ = index < rows_.count() ? rows_.at(index) : kNoRow;
    if (grid_.topRow() != lastTop_) grid_.setTopRow(lastTop_);
}

void GridView::applyCurrent() {
    if (grid_.currentRow() == lastCurrent_) return;
    lastCurrent_ = grid_.currentRow();
    if (lastCurrent_ == kNoRow) return;
    if (const auto index = rows_.find(lastCurrent_)) {
        ensureVisible(*index);
        accessibleCurrentChanged(*this, *index);
    }
}

// The logic, which is told of scrolling, may let messages run and rows be removed: afterwards nothing is
// asked about them.
void GridView::ensureVisible(std::size_t index) {
    showStartOf(rows_.at(index));
    const auto top = static_cast<std::size_t>(verticalScrollBar()->value());
    const auto page = static_cast<std::size_t>(std::max(1, viewport()->height() / rowHeight_));
    if (index < top) {
        setTopIndex(index);
    } else if (index >= top + page) {
        setTopIndex(index - page + 1);
    }
}

// Scrolls sideways for a deep row, whose name may begin to the right of what is visible.
void GridView::showStartOf(Row row) {
    if (!tree_ || isColumnHidden(0)) return;
    constexpr int kOfName = 160;
    const QRect cell(columnViewportPosition(0), 0, columnWidth(0), rowHeight_);
    const int beyond =
        RowPainter(sources_, *this).branchRect(row, cell).right() + kOfName - viewport()->width();
    if (beyond > 0 && viewport()->width() > kOfName)
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + beyond);
}

void GridView::scrollContentsBy(int dx, int dy) {
    qtGuard(events_, "GridView::scrollContentsBy", [&] {
        QTableView::scrollContentsBy(dx, dy);
        // Drawing starts at the grid's top row, which may differ from what was visible.
        viewport()->update();
        moveEditor();
        if (dy == 0 || applying_) return;
        if (dirty_ || !grid_.redraw()) {
            userScrolled_ = true;
        } else {
            storeTop();
            listener_->VScroll();
        }
    });
}

void GridView::resizeEvent(QResizeEvent* event) {
    qtGuard(events_, "GridView::resizeEvent", [&] {
        QTableView::resizeEvent(event);
        moveEditor();
        if (event->size().height() > event->oldSize().height() && grid_.rowCount() > 0 && upToDate())
            listener_->VScroll();
    });
}

std::optional<RowRange> GridView::visibleRows() {
    if (!isVisible() || !sync() || rows_.count() == 0) return std::nullopt;
    const auto first = static_cast<std::size_t>(verticalScrollBar()->value());
    const std::size_t last = first + static_cast<std::size_t>(rowsOnPage()) - 1;
    return RowRange{first, std::min(last, rows_.count() - 1)};
}

std::size_t GridView::columnAt(Point at) {
    const int section = QTableView::columnAt(viewport()->mapFromGlobal(QPoint(at.x, at.y)).x());
    return section < 0 ? grid_.columns().size() : static_cast<std::size_t>(section);
}

// --- columns and sizes

void GridView::storeWidth(std::size_t column, int width) {
    if (column >= grid_.columns().size() || grid_.columns()[column].width == width) return;
    const OwnChange own(*this);
    grid_.changeColumn(column).width = width;
}

// Walks the grid, not the list, because callers also measure while redraw is off.
int GridView::widest(const std::function<int(const RowPainter&, Row)>& widthOf) const {
    const RowPainter painter(sources_, *this);
    int widest = 0;
    const auto measure = [&](Row from, int count, auto&& next) {
        for (Row row = from; row != kNoRow && count > 0; row = next(row), --count)
            widest = std::max(widest, widthOf(painter, row));
    };
    const auto shownNext = [this](Row row) { return VisibleRows::following(grid_, row); };
    measure(grid_.firstRoot(), kSample, shownNext);
    measure(grid_.topRow(), rowsOnPage(), shownNext);
    measure(grid_.firstRoot(), kSample, [this](Row row) { return grid_.nextSibling(row); });
    return widest;
}

void GridView::autosizeColumn(std::size_t column, int margin) {
    if (column >= grid_.columns().size()) return;
    sync();
    const int fitting = fittingWidth(column, margin);
    setWidth(column, tree_ && column == 0 ? besideNumbers(fitting) : std::min(fitting, widestFit(column)));
}

// A long name must not push the sizes out of sight, but a deep folder must not lose its name.
int GridView::besideNumbers(int fitting) const {
    int room = contentsRect().width() - scrollBarWidth();
    for (std::size_t column = 1; column < grid_.columns().size(); ++column)
        if (grid_.columns()[column].visible) room -= static_cast<int>(grid_.columns()[column].width);
    if (fitting <= room) return fitting;
    const auto start = [](const RowPainter& painter, Row row) { return painter.textRect(row, {}).left(); };
    return std::min(fitting, std::max(room, widest(start) + kTextAtLeast));
}

int GridView::fittingWidth(std::size_t column, int margin) const {
    const auto whole = [column](const RowPainter& painter, Row row) {
        return painter.contentWidth(row, column);
    };
    const int content = widest(whole) + (margin + kTwipsPerPixel - 1) / kTwipsPerPixel;
    const QFontMetrics titles = horizontalHeader()->fontMetrics();
    const int title =
        titles.horizontalAdvance(QString::fromStdString(grid_.columns()[column].title)) +
        4 * style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, this) + 8 +
        (sortedColumn() == column ? style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, this) : 0);
    return std::clamp(std::max(content, title), horizontalHeader()->minimumSectionSize(), kWidestColumn);
}

// A number that is cut looks like another number; a name that is cut shows it.
int GridView::widestFit(std::size_t column) const {
    const GridColumn& of = grid_.columns()[column];
    if (tree_ || of.alignment == Alignment::kRight || of.barColor) return kWidestColumn;
    return std::max(kTextAtLeast, contentsRect().width() * kTextShare / 100);
}

void GridView::setWidth(std::size_t column, int width) {
    const int section = static_cast<int>(column);
    storeWidth(column, width);
    if (section < horizontalHeader()->count() && grid_.columns()[column].visible)
        setColumnWidth(section, width);
}

// Returns the width of the vertical scroll bar; 0 while the rows fit.
int GridView::scrollBarWidth() const {
    return verticalScrollBar()->maximum() > 0 ? verticalScrollBar()->sizeHint().width() : 0;
}

int GridView::widthBesideColumns() {
    sync();
    return 2 * frameWidth() + scrollBarWidth();
}

int GridView::heightOfRows() {
    std::size_t count = 0;
    if (sync()) {
        count = rows_.count();
    } else {
        for (Row row = grid_.firstRoot(); row != kNoRow; row = VisibleRows::following(grid_, row)) ++count;
    }
    constexpr std::size_t kMost = 1 << 24;
    const int rows = static_cast<int>(std::min(count * static_cast<std::size_t>(rowHeight_), kMost));
    const int bar = horizontalScrollBar()->sizeHint().height();
    return horizontalHeader()->sizeHint().height() + rows + bar + 2 * frameWidth();
}

void GridView::scrollIntoView(Row row) {
    if (row == kNoRow) return;
    for (Row above = grid_.parent(row); above != kNoRow; above = grid_.parent(above))
        grid_.setExpanded(above, true);
    if (!sync()) return;
    if (const auto index = rows_.find(row)) ensureVisible(*index);
}

void GridView::refresh() {
    sync();
    viewport()->update();
}

GridFont GridView::gridFont() const {
    GridFont font = font_;
    if (!(font.points > 0)) font.points = QFontInfo(this->font()).pointSizeF();
    return font;
}

void GridView::setGridFont(const GridFont& font) {
    font_ = font;
    setFont(qtFont(font));
}

void GridView::measureRows() {
    rowHeight_ = RowPainter::rowHeight(*this);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(rowHeight_);
    viewport()->update();
}

void GridView::changeEvent(QEvent* event) {
    qtGuard(events_, "GridView::changeEvent", [&] {
        QTableView::changeEvent(event);
        const QEvent::Type type = event->type();
        if (type == QEvent::FontChange || type == QEvent::StyleChange) measureRows();
        moveEditor();
    });
}

// --- editing

void GridView::editCell(Row row) {
    if (!editor_) editor_ = std::make_unique<CellEditor>(*this);
    editor_->begin(row);
}

void GridView::moveEditor() {
    if (editor_) editor_->follow();
}

}  // namespace hl
