// The hierarchy of a grid's rows: their parents, their order, and where a row stands from the top. For one
// thread.
//
// A row is a number that stays the same until the row is removed; numbers of removed rows are used again.
// Following a link takes constant time. The index of a row (its place when all rows are read from the top,
// folded ones too) comes from a flat list. The first question after a change makes that list anew, which
// takes some 9 ms for a million rows; further questions cost nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "grid/column.h"

namespace hl {

using Row = std::uint32_t;
inline constexpr Row kNoRow = 0xFFFFFFFF;

class RowTree {
  public:
    /// Bytes that one row takes here.
    static constexpr std::size_t kRowBytes = 6 * sizeof(std::uint32_t);

    /// Adds a row behind the last child of `parent`, or behind the last root for kNoRow.
    Row add(Row parent);
    /// Removes the row and all below it; `removed` receives their numbers, each one after its children.
    void remove(Row row, std::vector<Row>& removed);
    void clear();

    std::size_t count() const { return count_; }
    /// One more than the highest row number used since clear().
    Row limit() const { return limit_; }
    Row parent(Row row) const { return links_[row].parent; }
    Row firstChild(Row row) const { return row == kNoRow ? firstRoot_ : links_[row].first; }
    Row lastChild(Row row) const { return row == kNoRow ? lastRoot_ : links_[row].last; }
    Row nextSibling(Row row) const { return links_[row].next; }
    /// Returns the sibling before; kNoRow for a first one.
    Row previousSibling(Row row) const { return links_[row].previous; }
    std::uint32_t level(Row row) const { return links_[row].level; }
    /// Tells whether the number belongs to a row now. Everything else may be asked of such rows only.
    bool exists(Row row) const { return row < limit_ && links_[row].level != kGone; }
    /// Returns the next row from the top, which is the row's first child if it has one; kNoRow after the last
    /// row.
    Row following(Row row) const;
    /// Returns the row whose following() is `row`; for kNoRow this is the last row of all.
    Row preceding(Row row) const;

    Row rowAt(std::size_t index) const;
    std::size_t indexOf(Row row) const;
    /// Returns all rows from the top if they are all roots and were put in order, else nothing. Following the
    /// links of a sorted list instead would wait for memory at each row.
    std::span<const Row> sortedRoots() const {
        return sorted_ ? std::span<const Row>(order_) : std::span<const Row>();
    }

    /// Puts the children of `parent` in this order. REQUIRES: `children` holds exactly its children.
    void reorder(Row parent, const std::vector<Row>& children);

  private:
    struct Links {
        Row parent, first, last, next, previous;
        std::uint32_t level;
    };
    static_assert(sizeof(Links) == kRowBytes);
    static constexpr std::uint32_t kGone = 0xFFFFFFFF;  ///< The level of a number that belongs to no row.

    void unlink(Row row);
    void listRows() const;
    void placeRows() const;
    void changed() { sorted_ = ordered_ = placed_ = false; }

    Column<Links> links_;
    std::vector<Row> free_;
    Row firstRoot_ = kNoRow;
    Row lastRoot_ = kNoRow;
    Row limit_ = 0;
    std::size_t count_ = 0;
    bool sorted_ = false;           ///< True if order_ is valid and all rows are roots.
    mutable bool ordered_ = false;  ///< True if order_ is valid.
    mutable bool placed_ = false;   ///< True if position_ is valid.
    mutable std::vector<Row> order_;
    mutable std::vector<std::uint32_t> position_;
};

}  // namespace hl
