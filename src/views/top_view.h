// lvwTOP, the largest files of the source that was read last. Thread of the logic only.
#pragma once

#include "views/list_view.h"

namespace hl {

class TopView final : public ListView {
  public:
    TopView(const ListParts& parts, Grid& lvwTOP, CommandBar& cbrTOP);

    /// The status is that of the selection alone, also of an empty one.
    void Toplist_ShowSelectedFilesize();
    /// The note of the row under the pointer is its folder, which the column may have cut off.
    void MouseMove(Row row) override;

    // --- the box with the wanted length of the list
    /// What is typed counts at once, as it would read when the typing ends: a scan may begin meanwhile.
    void countTyped(const std::string& text);
    /// The typing has ended. What is no number becomes 100, one below 5 becomes 5; the box then keeps the
    /// focus.
    void countLeft();

  private:
    void showSelection() override { Toplist_ShowSelectedFilesize(); }

    Row noted_ = kNoRow;
};

}  // namespace hl
