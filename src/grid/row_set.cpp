#include "grid/row_set.h"

#include <algorithm>

namespace hl {

void RowSet::add(Range added) {
    // The ranges that overlap or touch the new one are from `from` to before `to`.
    Range* const end = ranges_.data() + count_;
    Range* from = end;
    if (count_ > 0 && added.first <= end[-1].last)
        from = std::lower_bound(ranges_.data(), end, added.first,
                                [](const Range& range, Row row) { return range.last < row; });
    if (from != ranges_.data() && from[-1].last + 1 == added.first) --from;
    Range* to = from;
    for (; to != end && (to->first <= added.last || to->first - 1 == added.last); ++to)
        added = {std::min(added.first, to->first), std::max(added.last, to->last)};
    if (from != to) {
        *from = added;
        count_ = static_cast<std::size_t>(std::move(to, end, from + 1) - ranges_.data());
    } else if (count_ == kMost) {
        all_ = true;
    } else {
        std::move_backward(from, end, end + 1);
        *from = added;
        ++count_;
    }
}

void RowSet::add(const RowSet& other) {
    if (other.all_) all_ = true;
    for (const Range& range : other.ranges())
        if (!all_) add(range);
}

bool RowSet::isInAny(Row row) const {
    if (count_ == 0 || row > ranges_[count_ - 1].last) return false;
    return std::ranges::lower_bound(ranges(), row, {}, &Range::last)->first <= row;
}

std::size_t RowSet::size() const {
    std::size_t size = 0;
    for (const Range& range : ranges()) size += std::size_t{range.last} - range.first + 1;
    return size;
}

}  // namespace hl
