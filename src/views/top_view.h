// lvwTOP, the largest files of the source that was read last. For the thread of the logic only.
#pragma once

#include "views/list_view.h"

namespace hl {

class TopView final : public ListView {
  public:
    TopView(const ListParts& parts, Grid& lvwTOP, CommandBar& cbrTOP);

    /// Shows the status of the selection only, even if it is empty.
    void Toplist_ShowSelectedFilesize();
    /// Gives the row under the pointer its folder as a note, because the column may have cut it off.
    void MouseMove(Row row) override;

    // --- the box with the wanted length of the list
    /// Takes over what is typed at once, as it would be read after typing, because a scan may begin
    /// meanwhile.
    void countTyped(const std::string& text);
    /// Ends the typing. A text that is no number becomes 100, a number below 5 becomes 5; then the box keeps
    /// the focus.
    void countLeft();

  private:
    void showSelection() override { Toplist_ShowSelectedFilesize(); }

    Row noted_ = kNoRow;
};

}  // namespace hl
