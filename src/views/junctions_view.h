// lvwJunctions, the links and mount points that were found in the source that was read last. It has no files,
// so nothing can be previewed, opened, renamed or deleted. For the thread of the logic only.
#pragma once

#include "views/list_view.h"

namespace hl {

class JunctionsView final : public ListView {
  public:
    JunctionsView(const ListParts& parts, Grid& lvwJunctions, CommandBar& cbrJunctions);

    /// Returns the path of the link itself.
    std::string pathOf(Row row) const override;
    /// Returns the links, or their targets after a right click in the column of targets.
    std::vector<std::string> menuPaths() const override;

  private:
    std::string targetOf(Row row) const;
    std::string total() const override;
    void beforeMenu(Point at) override;

    bool menuForTargets_ = false;
};

}  // namespace hl
