#include "platform/qt/bars/bar_flow.h"

#include <algorithm>

namespace hl {

namespace {

/// Fills one row after the other; the heights in a row are set when it is full.
class Filler {
  public:
    Filler(const std::vector<FlowItem>& items, int width, const FlowRule& rule)
        : items_(items), width_(std::max(width, 2 * rule.margin + 1)), rule_(rule) {
        flow_.places.resize(items.size());
        flow_.height = rule.margin;
    }

    Flow wrapped() {
        for (std::size_t i = 0; i < items_.size(); ++i) {
            const int behind = joinedBehind(i);
            const bool fits = x_ + gapBefore(i) + items_[i].smallest + behind <= end();
            const bool stays = items_[i].joined && x_ + gapBefore(i) < end();
            if (!row_.empty() && !fits && !stays) endRow();
            put(i, end() - behind);
        }
        return finished();
    }

    /// Makes one row: an item without room gets no place, and the button that shows the rest gets one.
    Flow clipped() {
        bool full = false;
        end_ = width_ - rule_.margin - rule_.extensionWidth;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            const int limit = end() - reservedBehind(i);
            const bool fits = !full && x_ + gapBefore(i) + items_[i].smallest <= limit;
            if (fits || items_[i].grows) {
                put(i, limit);
            } else {
                full = true;
            }
        }
        // If no item has room, the row is as high as the highest item, for the button that shows them all.
        if (row_.empty()) {
            int highest = 0;
            for (const FlowItem& item : items_) highest = std::max(highest, item.size.height());
            flow_.height += highest + rule_.spacing;
        }
        Flow flow = finished();
        flow.extension = QRect(width_ - rule_.margin - rule_.extensionWidth, rule_.margin,
                               rule_.extensionWidth, std::max(0, flow.height - 2 * rule_.margin));
        return flow;
    }

  private:
    int end() const { return end_ >= 0 ? end_ : width_ - rule_.margin; }

    int gapBefore(std::size_t i) const {
        if (row_.empty()) return 0;
        return items_[i].beginGroup ? rule_.groupGap : rule_.spacing;
    }

    /// Returns the room for the next item, if it must stay on the same row.
    int joinedBehind(std::size_t i) const {
        const bool joined = i + 1 < items_.size() && items_[i + 1].joined;
        return joined ? rule_.spacing + items_[i + 1].smallest : 0;
    }

    /// Returns the room for later items that are never left out.
    int reservedBehind(std::size_t i) const {
        int room = 0;
        for (std::size_t later = i + 1; later < items_.size(); ++later)
            if (items_[later].grows) room += items_[later].smallest + rule_.groupGap;
        return room;
    }

    void put(std::size_t i, int limit) {
        const int gap = gapBefore(i);
        if (gap == rule_.groupGap && items_[i].beginGroup) separatorsOfRow_.push_back(x_ + gap / 2);
        const int left = std::min(x_ + gap, std::max(rule_.margin, end() - 1));
        const int room = std::max(1, std::max(limit, left + items_[i].smallest) - left);
        const int width = std::max(1, std::min({items_[i].size.width(), room, end() - left}));
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

    Flow finished() {
        endRow();
        flow_.height += rule_.margin - (flow_.height > rule_.margin ? rule_.spacing : 0);
        return std::move(flow_);
    }

    const std::vector<FlowItem>& items_;
    const int width_;
    const FlowRule& rule_;
    Flow flow_;
    std::vector<std::size_t> row_;
    std::vector<int> separatorsOfRow_;
    int x_ = rule_.margin;
    int end_ = -1;
};

/// Returns the width of all items in one row, at their smallest.
int smallestRow(const std::vector<FlowItem>& items, const FlowRule& rule) {
    int width = 2 * rule.margin;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) width += items[i].beginGroup ? rule.groupGap : rule.spacing;
        width += items[i].smallest;
    }
    return width;
}

}  // namespace

Flow flowOf(const std::vector<FlowItem>& items, int width, const FlowRule& rule) {
    Filler filler(items, width, rule);
    return rule.clips && smallestRow(items, rule) > width ? filler.clipped() : filler.wrapped();
}

}  // namespace hl
