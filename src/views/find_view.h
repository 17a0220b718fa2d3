// lvwFind, the files that a search has found. For the thread of the logic only.
#pragma once

#include "views/list_view.h"

namespace hl {

class FindView final : public ListView {
  public:
    FindView(const ListParts& parts, Grid& lvwFind, CommandBar& cbrFind);
};

}  // namespace hl
