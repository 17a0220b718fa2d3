// lvwChanges: the folders that differ most between an earlier scan and the report. Whoever compares the two
// fills the list. There is nothing to preview, open, rename or delete. For the thread of the logic only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "views/changes_list.h"
#include "views/list_view.h"

namespace hl {

/// A folder that differs. Sizes are bytes.
struct ShownChange {
    enum class State : std::uint8_t { kGrown, kShrunk, kNew, kGone, kRenamed };
    State state = State::kGrown;
    std::string path;  ///< Its full path, without a slash at its end; of one that is gone, where it was.
    std::string was;   ///< The full path that it had; empty unless it was renamed.
    std::uint64_t before = 0, now = 0;
};

class ChangesView final : public ListView {
  public:
    /// Of more changes than these, those with the smallest differences are left out.
    static constexpr std::size_t kMostRows = 100'000;

    ChangesView(const ListParts& parts, Grid& lvwChanges, CommandBar& cbrChanges);

    /// Replaces the rows. Paths are shown below the source of the report that holds them.
    void show(std::vector<ShownChange> changes);
    /// Takes all rows away, since nothing is compared any longer.
    void clear();
    /// False until show() was called, and again after clear().
    bool isFilled() const { return filled_; }
    /// Says how many of the changes show, if not all do.
    std::string title() const;

    /// A click shows the folder if the report shows; a double click, or Return, in any case. Of a folder that
    /// is gone the status says so.
    void MouseUp(Row row, MouseButton button, bool shift, Point at) override;
    void DblClick() override;
    void KeyUp(int key) override;

  private:
    void fill(const std::vector<ShownChange>& changes);
    void rowsCame();
    void goToFolder(bool opensReport);
    ShownChange::State stateOf(Row row) const;
    std::string total() const override;

    std::size_t found_ = 0;  ///< The changes that show() was given.
    bool filled_ = false;
};

}  // namespace hl
