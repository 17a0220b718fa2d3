// lvwFiles, the files directly in the folder that is selected in the report. It is read from the disk when
// the selection moves to another folder; which folder it shows is ScanState::currentFolder. Thread of the
// logic only.
#pragma once

#include "views/list_view.h"

namespace hl {

class FilesView final : public ListView {
  public:
    FilesView(const ListParts& parts, Grid& lvwFiles, CommandBar& cbrFiles);

    /// Lists the folder unless it is the one that is shown; with `lockControls` the window is locked
    /// meanwhile, unless a run has locked it already. Messages run before and while it is read: another
    /// folder that is asked for then takes the place of this one, and Esc ends the reading, with what was
    /// found until then. An empty path, and any path while the list is hidden, empties the list.
    void List_Files_ScanFolder(const std::string& path, bool lockControls);
    /// Reads the folder again. A list without rows stays as it is.
    void List_Files_Refresh();

    std::string pathOf(Row row) const override;
    void ownCommand() override { List_Files_Refresh(); }

  private:
    void rowsRemoved() override;
    std::string total() const override;
    void empty();
    void list(const std::string& folder);
    void listLocked(const std::string& folder);

    SizeValue FilesTotalSize_;  ///< Of all files that were listed.
};

}  // namespace hl
