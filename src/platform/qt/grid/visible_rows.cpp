#include "platform/qt/grid/visible_rows.h"

#include <algorithm>

namespace hl {

namespace {
// With more gaps than this, searching for each takes longer than making the list.
constexpr std::size_t kMostGaps = 64;
// How many rows on either side are near: many times what a screen shows.
constexpr std::ptrdiff_t kNear = 4096;
}  // namespace

void VisibleRows::rebuild() {
    ++rebuilds_;
    ++changes_;
    rows_.clear();
    // The system provides no memory that is never written to, so folded rows cost nothing here; a list that
    // grew by doubling would take twice its size for a moment.
    rows_.reserve(grid_.rowCount());
    if (const auto sorted = grid_.tree().sortedRoots(); !sorted.empty()) {
        rows_.assign(sorted.begin(), sorted.end());
        return;
    }
    for (Row row = grid_.firstRoot(); row != kNoRow; row = following(grid_, row)) rows_.push_back(row);
}

// The rows that are asked for are mostly near each other: those that the user sees.
std::optional<std::size_t> VisibleRows::find(Row row) const {
    const auto begin = rows_.begin(), end = rows_.end();
    const auto last = begin + static_cast<std::ptrdiff_t>(std::min(found_, rows_.size()));
    const auto from = last - std::min(kNear, last - begin), to = last + std::min(kNear, end - last);
    auto found = std::find(from, to, row);
    if (found == to) found = std::find(to, end, row);
    if (found == end && (found = std::find(begin, from, row)) == from) return std::nullopt;
    found_ = static_cast<std::size_t>(found - begin);
    return found_;
}

std::optional<std::size_t> VisibleRows::findShown(Row row) const {
    Row shown = row;
    for (Row above = row; above != kNoRow; above = grid_.parent(above))
        if (above != row && !grid_.expanded(above)) shown = above;
    return find(shown);
}

// --- bringing the list up to date

bool VisibleRows::update(const GridChange& change, RowListObserver& observer) {
    if (change.newList() || change.gaps.size() + change.folded.size() > kMostGaps) return false;
    ++changes_;
    for (const RowSet* set : {&change.gaps, &change.folded})
        for (const auto [first, last] : set->ranges())
            for (std::size_t number = first; number <= last; ++number) {
                const auto gap = static_cast<Row>(number);
                const bool done = set == &change.folded && change.gaps.contains(gap);
                if (!done && !isCovered(gap, change) && !splice(gap, change, observer)) return false;
            }
    return true;
}

// Tells whether nothing has to be done behind this row: it is hidden, or gone, or what stands there is put in
// place with the rows of another gap.
bool VisibleRows::isCovered(Row gap, const GridChange& change) const {
    if (gap == kNoRow) return false;
    if (!grid_.tree().exists(gap) || change.added.contains(gap)) return true;
    for (Row above = grid_.parent(gap); above != kNoRow; above = grid_.parent(above))
        if (!grid_.expanded(above) || change.folded.contains(above)) return true;
    return false;
}

// Lists what stands behind the row `gap` until a row comes that stood in the list before, and puts it in the
// place of what was there. If that row was folded or unfolded, all rows below it count as new, too.
bool VisibleRows::splice(Row gap, const GridChange& change, RowListObserver& observer) {
    const auto before = gap == kNoRow ? std::nullopt : find(gap);
    if (gap != kNoRow && !before) return false;
    std::vector<Row> fresh;
    Row row = gap == kNoRow ? grid_.firstRoot() : following(grid_, gap);
    if (gap != kNoRow && change.folded.contains(gap))
        for (; row != kNoRow && grid_.level(row) > grid_.level(gap); row = following(grid_, row))
            fresh.push_back(row);
    for (; row != kNoRow && change.added.contains(row); row = following(grid_, row)) fresh.push_back(row);

    const std::size_t first = before ? *before + 1 : 0;
    const auto start = rows_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = row == kNoRow ? rows_.end() : std::find(start, rows_.end(), row);
    if (row != kNoRow && end == rows_.end()) return false;
    if (start != end) {
        observer.beforeRemoval(first, static_cast<std::size_t>(end - rows_.begin()) - 1);
        rows_.erase(start, end);
        observer.afterRemoval();
    }
    if (!fresh.empty()) {
        observer.beforeInsertion(first, first + fresh.size() - 1);
        rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(first), fresh.begin(), fresh.end());
        observer.afterInsertion();
    }
    return true;
}

// --- without the list

Row VisibleRows::following(const Grid& grid, Row row) {
    if (grid.expanded(row) && grid.hasChildren(row)) return grid.firstChild(row);
    while (row != kNoRow) {
        if (const Row next = grid.nextSibling(row); next != kNoRow) return next;
        row = grid.parent(row);
    }
    return kNoRow;
}

}  // namespace hl
