// What the user does with the report while a run fills it, and what therefore stays as it is. Ticks are
// milliseconds of the message pump's clock. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/grid_pane.h"

namespace hl {

class RunLook {
  public:
    /// A source begins. Only the widths that the user has set in this run count on.
    void beginSource() { moved_ = false; }
    void did(Look what, std::uint64_t tick) {
        if (what == Look::kKey) lastKey_ = tick;
        moved_ |= what == Look::kScroll || what == Look::kPick;
        widthsSet_ |= what == Look::kColumn;
    }

    /// Since the source began the user has scrolled, or has picked or unfolded a row: nothing is scrolled for
    /// him.
    bool hasMoved() const { return moved_; }
    bool hasSetWidths() const { return widthsSet_; }
    /// Rows keep their places, because the user has just pressed a key.
    bool holdsRows(std::uint64_t tick) const {
        constexpr std::uint64_t kAfterKey = 2000;
        return lastKey_ && tick < *lastKey_ + kAfterKey;
    }

  private:
    bool moved_ = false, widthsSet_ = false;
    std::optional<std::uint64_t> lastKey_;
};

}  // namespace hl
