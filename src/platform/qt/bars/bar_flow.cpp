#include "platform/qt/bars/bar_flow.h"

#include <algorithm>
#include <functional>

namespace hl {

namespace {

/// Fills one row after the other; the heights in a row are set when it is full.
class Filler {
  public:
    /// Places the items that `stays` tells. With `tight` each is as narrow as it may be.
    Filler(const std::vector<FlowItem>& items, const std::vector<bool>& stays, int width,
           const FlowRule& rule, bool tight)
        : items_(items),
          stays_(stays),
          width_(std::max(width, 2 * rule.margin + 1)),
          rule_(rule),
          tight_(tight),
          leavesOut_(std::ranges::find(stays, false) != stays.end()) {
        flow_.places.resize(items.size());
        flow_.height = rule.margin;
    }

    void fill() {
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (!stays_[i]) continue;
            const int behind = joinedBehind(i);
            const bool fits = x_ + gapBefore(i) + items_[i].smallest + behind <= end();
            const bool stays = items_[i].joined && x_ + gapBefore(i) < end();
            if (!row_.empty() && !fits && !stays) endRow();
            put(i, end() - behind);
        }
        // If no item has room, the row is as high as the highest item, for the button that shows them all.
        if (leavesOut_ && row_.empty()) {
            for (const FlowItem& item : items_) lastHeight_ = std::max(lastHeight_, item.size.height());
            flow_.height += lastHeight_ + rule_.spacing;
        }
        endRow();
    }
    /// Tells whether the rule allows so many rows, and whether no item that might be left out was cut.
    bool fits() const { return rows_ <= rule_.mostRows && !cut_; }

    Flow finished() {
        flow_.height += rule_.margin - (flow_.height > rule_.margin ? rule_.spacing : 0);
        if (leavesOut_)
            flow_.extension =
                QRect(width_ - rule_.margin - rule_.extensionWidth, flow_.height - rule_.margin - lastHeight_,
                      rule_.extensionWidth, lastHeight_);
        return std::move(flow_);
    }

  private:
    /// There is room for the button that shows what is left out, in any row, since any may be the last.
    int end() const {
        return width_ - rule_.margin - (leavesOut_ ? rule_.extensionWidth + rule_.spacing : 0);
    }

    int gapBefore(std::size_t i) const {
        if (row_.empty()) return 0;
        return items_[i].beginGroup ? rule_.groupGap : rule_.spacing;
    }

    /// Returns the room for the next item, if it must stay on the same row.
    int joinedBehind(std::size_t i) const {
        const bool joined = i + 1 < items_.size() && items_[i + 1].joined && stays_[i + 1];
        return joined ? rule_.spacing + items_[i + 1].smallest : 0;
    }

    void put(std::size_t i, int limit) {
        const int gap = gapBefore(i);
        if (gap == rule_.groupGap && items_[i].beginGroup) separatorsOfRow_.push_back(x_ + gap / 2);
        const int left = std::min(x_ + gap, std::max(rule_.margin, end() - 1));
        const int room = std::max(1, std::max(limit, left + items_[i].smallest) - left);
        const int wanted = tight_ ? items_[i].smallest : items_[i].size.width();
        const int width = std::max(1, std::min({wanted, room, end() - left}));
        cut_ = cut_ || (width < items_[i].smallest && !items_[i].grows);
        flow_.places[i] = QRect(left, flow_.height, width, items_[i].size.height());
        x_ = left + width;
        row_.push_back(i);
    }

    void endRow() {
        if (row_.empty()) return;
        growInRow();
        int height = 0;
        for (const std::size_t i : row_) height = std::max(height, items_[i].size.height());
        for (const std::size_t i : row_) flow_.places[i].translate(0, (height - items_[i].size.height()) / 2);
        for (const int x : separatorsOfRow_)
            flow_.separators.emplace_back(x, flow_.height + 2, 1, height - 4);
        flow_.height += height + rule_.spacing;
        lastHeight_ = height;
        ++rows_;
        row_.clear();
        separatorsOfRow_.clear();
        x_ = rule_.margin;
    }

    /// Gives the rest of the row to the first item that grows.
    void growInRow() {
        const int left = end() - x_;
        const auto grower =
            std::find_if(row_.begin(), row_.end(), [this](auto i) { return items_[i].grows; });
        if (left <= 0 || grower == row_.end()) return;
        const int from = flow_.places[*grower].right();
        flow_.places[*grower].setRight(from + left);
        for (auto later = grower + 1; later != row_.end(); ++later) flow_.places[*later].translate(left, 0);
        for (int& x : separatorsOfRow_)
            if (x > from) x += left;
    }

    const std::vector<FlowItem>& items_;
    const std::vector<bool>& stays_;
    const int width_;
    const FlowRule& rule_;
    const bool tight_;
    const bool leavesOut_;
    Flow flow_;
    std::vector<std::size_t> row_;
    std::vector<int> separatorsOfRow_;
    int x_ = rule_.margin;
    int rows_ = 0;  ///< The number of full rows.
    int lastHeight_ = 0;
    bool cut_ = false;
};

/// Returns the items in the order in which they are left out: those of the largest rank first, and of one
/// rank the last first.
std::vector<std::size_t> leavingOrder(const std::vector<FlowItem>& items) {
    std::vector<std::size_t> order;
    for (std::size_t i = items.size(); i-- > 0;)
        if (!items[i].grows) order.push_back(i);
    std::ranges::stable_sort(order, std::greater(), [&](std::size_t i) { return items[i].rank; });
    return order;
}

}  // namespace

Flow flowOf(const std::vector<FlowItem>& items, int width, const FlowRule& rule) {
    std::vector<bool> stays(items.size(), true);
    const std::vector<std::size_t> order = leavingOrder(items);
    for (std::size_t left = 0;; ++left) {
        for (const bool tight : {false, true}) {
            Filler filler(items, stays, width, rule, tight);
            filler.fill();
            if (filler.fits() || (tight && left == order.size())) return filler.finished();
        }
        stays[order[left]] = false;
    }
}

}  // namespace hl
