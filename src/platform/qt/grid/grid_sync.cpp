#include "platform/qt/grid/grid_sync.h"

#include <QScrollBar>
#include <algorithm>

#include "base/scope_exit.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/grid/grid_accessible.h"
#include "platform/qt/grid/grid_view.h"

namespace hl {

namespace {

constexpr QtGuard kGridSyncGuard{"GridSync"};
// After how many milliseconds a change that came while redraw was off is checked again.
constexpr int kRetry = 30;
}  // namespace

GridSync::Glance::Glance(GridSync& sync)
    : grid_(sync.view_.looksOnly() && !sync.grid_.redraw() ? &sync.grid_ : nullptr) {
    if (grid_ == nullptr) return;
    grid_->setRedraw(true);
    sync.sync();
}

GridSync::Glance::~Glance() {
    if (grid_ != nullptr) grid_->setRedraw(false);
}

GridSync::GridSync(GridView& view, Grid& grid, GridId id, const CellTextFunction& cellText,
                   WindowEvents& events)
    : view_(view),
      grid_(grid),
      id_(id),
      events_(events),
      rows_(grid),
      model_(grid, id, rows_, cellText, events) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
        kGridSyncGuard(events_, "timeout", [&] {
            // Otherwise rows that come are shown when the logic says so.
            if (userScrolled_) const Glance glance(*this);
            if (!sync()) timer_.start(kRetry);
        });
    });
    telling_.setSingleShot(true);
    QObject::connect(&telling_, &QTimer::timeout, &telling_, [this] {
        kGridSyncGuard(events_, "telling",
                       [&] { events_.gridContentChanged(id_, std::exchange(rowsChanged_, false)); });
    });
}

GridSync::~GridSync() {
    grid_.attach(nullptr);
}

void GridSync::start() {
    grid_.attach(this);
    GridChange all;
    all.structure = all.columns = all.current = true;
    all.added.addAll();
    gridChanged(all);
}

// --- the notices

void GridSync::gridChanged(const GridChange& change) {
    repaint(change);
    tellLogic();
    rowsChanged_ |= change.structure || !change.cells.isEmpty();
    if (!telling_.isActive()) telling_.start(0);
    if (own_ && !change.structure) return;
    pending_.add(change);
    dirty_ = true;
    if (!timer_.isActive()) timer_.start(0);
}

void GridSync::tellLogic() {
    const bool rows = grid_.rowCount() > 0, selection = grid_.selectedCount() > 0;
    if (rows == hasRows_ && selection == hasSelection_) return;
    hasRows_ = rows;
    hasSelection_ = selection;
    events_.gridChanged(id_);
}

// This comes at once, because a scan switches redraw on for this one notice. Painting walks the grid as it is
// then; changed cells leave the other rows as they are on screen.
void GridSync::repaint(const GridChange& change) {
    QWidget& viewport = *view_.viewport();
    if (!change.cellsAlone() || change.cells.isAll()) return viewport.update();
    const int height = view_.places().rowHeight();
    Row row = VisibleRows::firstPainted(grid_);
    for (int top = 0; row != kNoRow && top < viewport.height(); top += height) {
        if (change.cells.contains(row)) viewport.update(0, top, viewport.width(), height);
        row = VisibleRows::following(grid_, row);
    }
}

bool GridSync::sync() {
    if (!grid_.redraw()) return false;
    if ((dirty_ || listing_) && !applying_) apply();
    return true;
}

void GridSync::apply() {
    applying_ = true;
    const ScopeExit done([this] { applying_ = false; });
    const OwnChange own(*this);
    timer_.stop();
    dirty_ = false;
    GridChange change = std::exchange(pending_, {});
    if (listing_) change.structure = true, change.added.addAll();
    const int shown = view_.verticalScrollBar()->value();
    if (change.columns) {
        model_.columnsChanged();
        view_.columns().apply();
    }
    if (change.structure) applyRows(change);
    applyTop(shown, change.structure);
    applyCurrent();
    view_.columns().showSort();
    if (!change.cellsAlone()) view_.viewport()->update();
    if (change.structure) accessibleRowsChanged(view_);
    view_.moveEditor(change.structure);
}

void GridSync::applyRows(const GridChange& change) {
    listing_ = true;
    if (!rows_.update(change, model_)) {
        model_.beginRows();
        rows_.rebuild();
        model_.endRows();
    }
    listing_ = false;
    view_.layOut();
}

// --- the top row

// If the user has not scrolled, the first row stays first; any other top row stays where it is.
void GridSync::applyTop(int shown, bool structure) {
    const Row wanted = grid_.topRow();
    const bool moved = wanted != lastTop_;
    const bool scrolled = std::exchange(userScrolled_, false);
    if (!structure && !moved && !scrolled) return;
    std::optional<std::size_t> index;
    if (wanted != kNoRow && (moved || (shown > 0 && !scrolled))) index = rows_.findShown(wanted);
    setTopIndex(index.value_or(static_cast<std::size_t>(shown)));
}

void GridSync::setTopIndex(std::size_t index) {
    view_.verticalScrollBar()->setValue(static_cast<int>(index));
    storeTop();
}

void GridSync::storeTop() {
    const std::size_t index = view_.places().topIndex();
    const OwnChange own(*this);
    lastTop_ = index < rows_.count() ? rows_.at(index) : kNoRow;
    if (grid_.topRow() != lastTop_) grid_.setTopRow(lastTop_);
}

void GridSync::scrolled() {
    if (applying_) return;
    if (!upToDate()) {
        userScrolled_ = true;
        if (view_.looksOnly()) timer_.start(0);
    } else {
        storeTop();
        view_.listener().VScroll();
    }
    if (view_.looksOnly()) view_.listener().looked(Look::kScroll);
}

// --- the current row

void GridSync::applyCurrent() {
    if (grid_.currentRow() == lastCurrent_) return;
    currentIsKnown();
    if (lastCurrent_ == kNoRow) return;
    if (const auto index = rows_.find(lastCurrent_)) {
        ensureVisible(*index);
        accessibleCurrentChanged(view_, *index);
    }
}

// The name of a deep row may begin to the right of what is visible.
void GridSync::ensureVisible(std::size_t index) {
    if (const int beyond = view_.places().beyondRight(rows_.at(index)); beyond > 0)
        view_.horizontalScrollBar()->setValue(view_.horizontalScrollBar()->value() + beyond);
    const std::size_t top = view_.places().topIndex();
    const auto page = static_cast<std::size_t>(view_.places().wholeRowsOnPage());
    if (index < top) {
        setTopIndex(index);
    } else if (index >= top + page) {
        setTopIndex(index - page + 1);
    }
}

void GridSync::showInMiddle(std::size_t index) {
    ensureVisible(index);
    const auto half = static_cast<std::size_t>(view_.places().wholeRowsOnPage() / 2);
    setTopIndex(index - std::min(index, half));
}

}  // namespace hl
