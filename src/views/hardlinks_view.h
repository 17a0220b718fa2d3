// lvwHardlinks, the files with more than one name in the source that was read last. For the thread of the
// logic only.
#pragma once

#include "views/list_view.h"

namespace hl {

class HardlinksView final : public ListView {
  public:
    HardlinksView(const ListParts& parts, Grid& lvwHardlinks, CommandBar& cbrHardlinks);

    /// Brings the names of each file together and shades the files, white and grey in turn. A row keeps its
    /// colour when the order changes.
    void List_Hardlinks_ShowDups();
    void ownCommand() override { List_Hardlinks_ShowDups(); }

  private:
    void sortRows() override;
    void shadeGroups();
};

}  // namespace hl
