// The grid's sorting, level by level, and its searching.
#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <functional>
#include <numeric>
#include <utility>

#include "base/scope_exit.h"
#include "base/text.h"
#include "grid/grid.h"

namespace hl {

namespace {

// Each row's key is read once and sorted together with the row, so that a comparison touches no column.
template <class Key>
using Keyed = std::vector<std::pair<Key, Row>>;

struct TextKey {
    FoldedKey folded;
    std::string_view text;
};

// Most texts differ in their first characters; those that do not are often the same stored text.
int compare(const TextKey& a, const TextKey& b) {
    if (a.folded != b.folded) return a.folded < b.folded ? -1 : 1;
    return a.text.data() == b.text.data() ? 0 : compareFolded(a.text, b.text);
}

/// Returns false if the rows were in order already. `rowBefore` decides between equal keys.
template <class RowBefore>
bool sortKeyed(Keyed<TextKey>& keyed, bool descending, const RowBefore& rowBefore) {
    const auto before = [&](const auto& a, const auto& b) {
        const int order = compare(a.first, b.first);
        return order == 0 ? rowBefore(a.second, b.second) : (order < 0) != descending;
    };
    if (std::is_sorted(keyed.begin(), keyed.end(), before)) return false;
    std::stable_sort(keyed.begin(), keyed.end(), before);
    return true;
}

// Numbers are sorted by radix, from the lowest digit to the highest. That takes some 10 ms for half a million
// of them, during which clicks wait; comparing them takes 50 ms.
using NumberKey = std::uint64_t;
constexpr unsigned kDigitBits = 11;
constexpr std::size_t kDigits = std::size_t{1} << kDigitBits;

/// Returns a key that rises with the number, or falls with it if `descending`.
NumberKey numberKey(double number, bool descending) {
    constexpr NumberKey kSign = NumberKey{1} << 63;
    const auto bits = std::bit_cast<NumberKey>(number + 0.0);  // The sum turns -0.0 into 0.0.
    const NumberKey rising = (bits & kSign) != 0 ? ~bits : bits | kSign;
    return descending ? ~rising : rising;
}

void sortByDigit(Keyed<NumberKey>& keyed, Keyed<NumberKey>& sorted, unsigned shift) {
    const auto digitOf = [shift](NumberKey key) { return key >> shift & (kDigits - 1); };
    std::array<std::size_t, kDigits> place{};
    for (const auto& [key, row] : keyed) ++place[digitOf(key)];
    if (place[digitOf(keyed.front().first)] == keyed.size()) return;
    std::exclusive_scan(place.begin(), place.end(), place.begin(), std::size_t{0});
    for (const auto& one : keyed) sorted[place[digitOf(one.first)]++] = one;
    std::swap(keyed, sorted);
}

/// Sorts number keys by radix, or few of them by comparison. Returns false if the rows were in order already.
/// `rowBefore` decides between equal keys.
template <class RowBefore>
bool sortKeyed(Keyed<NumberKey>& keyed, const RowBefore& rowBefore) {
    const auto before = [&](const auto& a, const auto& b) {
        return a.first == b.first ? rowBefore(a.second, b.second) : a.first < b.first;
    };
    if (std::is_sorted(keyed.begin(), keyed.end(), before)) return false;
    if (keyed.size() < kDigits) {
        std::stable_sort(keyed.begin(), keyed.end(), before);
        return true;
    }
    Keyed<NumberKey> sorted(keyed.size());
    for (unsigned shift = 0; shift < 64; shift += kDigitBits) sortByDigit(keyed, sorted, shift);
    for (auto from = keyed.begin(), to = from; from != keyed.end(); from = to) {
        to = std::find_if(from, keyed.end(), [&](const auto& one) { return one.first != from->first; });
        if (to - from > 1) std::stable_sort(from, to, before);
    }
    return true;
}

// Returns the number at the front of a text, or 0 if there is none.
double leadingNumber(std::string_view text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

template <class Key>
std::vector<Row> rowsOf(const Keyed<Key>& keyed) {
    std::vector<Row> rows;
    rows.reserve(keyed.size());
    for (const auto& [key, row] : keyed) rows.push_back(row);
    return rows;
}

/// The rows that have children, sorted by level; `ends` holds where each level ends in `rows`.
struct Parents {
    std::vector<Row> rows;
    std::vector<std::size_t> ends;
};

// Collects the parents in two passes over the rows, with 4 bytes for each. The roots' parent, kNoRow, is left
// out.
Parents parentsByLevel(const Grid& grid, std::uint32_t deepest) {
    std::vector<std::size_t> ends(std::size_t{deepest} + 1, 0);
    const Row from = deepest > 0 ? grid.firstRoot() : kNoRow;
    for (Row row = from; row != kNoRow; row = grid.tree().following(row))
        if (grid.hasChildren(row) && grid.level(row) < deepest) ++ends[grid.level(row)];
    for (std::size_t sum = 0; std::size_t & end : ends) sum = end += sum;
    std::vector<Row> rows(ends.back());
    std::vector<std::size_t> fill(ends.size(), 0);
    for (std::size_t i = 1; i < ends.size(); ++i) fill[i] = ends[i - 1];
    for (Row row = from; row != kNoRow; row = grid.tree().following(row))
        if (grid.hasChildren(row) && grid.level(row) < deepest) rows[fill[grid.level(row)]++] = row;
    return {std::move(rows), std::move(ends)};
}

}  // namespace

/// Returns false if the rows were in order already.
bool Grid::sortChildren(Row parent, const LevelSort& sort, CellId cell) {
    const Row first = firstChild(parent);
    if (first == kNoRow || nextSibling(first) == kNoRow) return false;
    const auto keyed = [&](auto keyOf) {
        Keyed<decltype(keyOf(first))> all;
        if (parent == kNoRow) all.reserve(rowCount());
        for (const Row row : parent == kNoRow ? tree_.sortedRoots() : std::span<const Row>())
            all.emplace_back(keyOf(row), row);
        if (!all.empty()) return all;
        for (Row row = first; row != kNoRow; row = nextSibling(row)) all.emplace_back(keyOf(row), row);
        return all;
    };
    const auto textOf = [&](Row row) { return cell == kNoCell ? text(row) : cellText(row, cell); };
    const CellId folder = cells_.find("IsFolder");
    const auto before = [&](Row a, Row b) {
        if (sort.keepsTies) return false;
        const bool last = folder != kNoCell && number(a, folder) == 0;
        const bool otherLast = folder != kNoCell && number(b, folder) == 0;
        return last != otherLast ? otherLast : text(a) < text(b);
    };
    const bool isText = cell == kNoCell || cells_.isText(cell);
    if (isText && !sort.numbers) {
        auto texts = keyed([&](Row row) { return TextKey{foldedKey(textOf(row)), textOf(row)}; });
        if (!sortKeyed(texts, sort.descending, before)) return false;
        tree_.reorder(parent, rowsOf(texts));
        return true;
    }
    auto numbers = keyed([&](Row row) {
        return numberKey(isText ? leadingNumber(textOf(row)) : number(row, cell), sort.descending);
    });
    if (!sortKeyed(numbers, before)) return false;
    tree_.reorder(parent, rowsOf(numbers));
    return true;
}

void Grid::sortChildren(Row parent) {
    const LevelSort& sort = levelSort(parent == kNoRow ? 0 : level(parent) + 1);
    if (sortChildren(parent, sort, sort.key.empty() ? kNoCell : cells_.find(sort.key))) changedOrder();
}

void Grid::sortLevels(std::uint32_t deepest, const std::function<void()>& between) {
    const auto [parents, ends] = parentsByLevel(*this, deepest);
    // The observer is told even if memory runs out, since some levels are sorted by then.
    const ScopeExit tell([this] { changedOrder(); });
    for (std::uint32_t level = 0; level <= deepest; ++level) {
        const LevelSort& sort = levelSort(level);
        const CellId cell = sort.key.empty() ? kNoCell : cells_.find(sort.key);
        if (level == 0) {
            sortChildren(kNoRow, sort, cell);
        } else {
            for (std::size_t i = level == 1 ? 0 : ends[level - 2]; i < ends[level - 1]; ++i)
                sortChildren(parents[i], sort, cell);
        }
        if (!between) continue;
        changedOrder();  // What runs between the levels may show the grid.
        between();
    }
}

Row Grid::find(std::string_view part, std::size_t from, std::size_t to) const {
    FoldedPart sought(part);
    Row row = rowAt(from);
    for (std::size_t index = from; index <= to && row != kNoRow; ++index, row = tree_.following(row))
        if (sought.isIn(text(row))) return row;
    return kNoRow;
}

}  // namespace hl
