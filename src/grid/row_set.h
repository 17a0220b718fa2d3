// A set of row numbers, as sorted ranges that neither overlap nor touch. It takes no memory beside itself: a
// set that would have more than kMost ranges holds every number instead. For one thread.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "grid/row_tree.h"

namespace hl {

class RowSet {
  public:
    static constexpr std::size_t kMost = 32;
    struct Range {
        Row first, last;  ///< Both belong to it.
    };

    /// Takes constant time for a number of the last range or right behind it, as when a grid is filled; at
    /// most a step for each range.
    void add(Row row) {
        if (all_ || isInLast(row)) return;
        if (count_ > 0 && row > ranges_[count_ - 1].last && row - 1 == ranges_[count_ - 1].last) {
            ranges_[count_ - 1].last = row;
        } else {
            add(Range{row, row});
        }
    }
    void add(const RowSet& other);
    void addAll() { all_ = true; }
    void clear() {
        count_ = 0;
        all_ = false;
    }

    bool contains(Row row) const { return all_ || isInLast(row) || isInAny(row); }
    bool isEmpty() const { return count_ == 0 && !all_; }
    bool isAll() const { return all_; }
    /// REQUIRES: isAll() is false.
    std::span<const Range> ranges() const { return {ranges_.data(), count_}; }
    /// Returns how many numbers the ranges hold. REQUIRES: isAll() is false.
    std::size_t size() const;

  private:
    bool isInLast(Row row) const {
        return count_ > 0 && ranges_[count_ - 1].first <= row && row <= ranges_[count_ - 1].last;
    }
    bool isInAny(Row row) const;
    void add(Range added);

    std::array<Range, kMost> ranges_ = {};  ///< The first count_ of them.
    std::size_t count_ = 0;
    bool all_ = false;
};

}  // namespace hl
