// Sorting level by level, and searching.
#include <algorithm>
#include <charconv>
#include <functional>
#include <utility>

#include "base/text.h"
#include "grid/grid.h"

namespace hl {

namespace {

// Keys are read once per row and carried with it: a comparison touches no column.
template <class Key, class Less>
bool sortKeyed(std::vector<std::pair<Key, Row>>& keyed, bool descending, Less less) {
    const auto before = [&](const auto& a, const auto& b) {
        return descending ? less(b.first, a.first) : less(a.first, b.first);
    };
    if (std::is_sorted(keyed.begin(), keyed.end(), before)) return false;
    std::stable_sort(keyed.begin(), keyed.end(), before);
    return true;
}

// A text sorted as a number: what stands at its front, 0 where that is no number.
double leadingNumber(std::string_view text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

template <class Key>
std::vector<Row> rowsOf(const std::vector<std::pair<Key, Row>>& keyed) {
    std::vector<Row> rows;
    rows.reserve(keyed.size());
    for (const auto& [key, row] : keyed) rows.push_back(row);
    return rows;
}

}  // namespace

void Grid::sortChildren(Row parent, const LevelSort& sort, CellId cell) {
    const Row first = firstChild(parent);
    if (first == kNoRow || nextSibling(first) == kNoRow) return;
    const auto sortBy = [&](auto keyOf, auto less) {
        std::vector<std::pair<decltype(keyOf(first)), Row>> keyed;
        for (Row row = first; row != kNoRow; row = nextSibling(row)) keyed.emplace_back(keyOf(row), row);
        if (sortKeyed(keyed, sort.descending, less)) tree_.reorder(parent, rowsOf(keyed));
    };
    const auto textOf = [&](Row row) { return cell == kNoCell ? text(row) : cellText(row, cell); };
    const bool isText = cell == kNoCell || cells_.isText(cell);
    const auto folded = [](std::string_view a, std::string_view b) { return compareFolded(a, b) < 0; };
    if (!isText) {
        sortBy([&](Row row) { return number(row, cell); }, std::less<double>());
    } else if (sort.numbers) {
        sortBy([&](Row row) { return leadingNumber(textOf(row)); }, std::less<double>());
    } else {
        sortBy(textOf, folded);
    }
}

void Grid::sortLevels(std::uint32_t deepest, const std::function<void()>& between) {
    // Parents by level, in one pass over the rows and 4 bytes for each parent.
    std::vector<std::size_t> ends(std::size_t{deepest} + 1, 0);
    for (Row row = firstRoot(); row != kNoRow; row = tree_.following(row))
        if (hasChildren(row) && level(row) < deepest) ++ends[level(row)];
    for (std::size_t sum = 0; std::size_t & end : ends) sum = end += sum;
    std::vector<Row> parents(ends.empty() ? 0 : ends.back());
    std::vector<std::size_t> fill(ends.size(), 0);
    for (std::size_t i = 1; i < ends.size(); ++i) fill[i] = ends[i - 1];
    for (Row row = firstRoot(); row != kNoRow; row = tree_.following(row))
        if (hasChildren(row) && level(row) < deepest) parents[fill[level(row)]++] = row;

    for (std::uint32_t level = 0; level <= deepest; ++level) {
        const LevelSort& sort = levelSort(level);
        const CellId cell = sort.key.empty() ? kNoCell : cells_.find(sort.key);
        if (level == 0) {
            sortChildren(kNoRow, sort, cell);
        } else {
            for (std::size_t i = level == 1 ? 0 : ends[level - 2]; i < ends[level - 1]; ++i)
                sortChildren(parents[i], sort, cell);
        }
        if (between) between();
    }
    changed(&GridChange::structure);
}

Row Grid::find(std::string_view part, std::size_t from, std::size_t to) const {
    FoldedPart sought(part);
    Row row = rowAt(from);
    for (std::size_t index = from; index <= to && row != kNoRow; ++index, row = tree_.following(row))
        if (sought.isIn(text(row))) return row;
    return kNoRow;
}

}  // namespace hl
