// lvwFiles, the files directly in the folder that is selected in the report. They are read from the disk when
// another folder is selected; FileListState::folder tells which one is shown. For the thread of the logic
// only.
#pragma once

#include "views/list_view.h"

namespace hl {

class FilesView final : public ListView {
  public:
    FilesView(const ListParts& parts, Grid& lvwFiles, CommandBar& cbrFiles);

    /// Lists the folder unless it is shown already; with `lockControls` the window is locked meanwhile,
    /// unless a run has locked it. Messages run before and during the reading: if they ask for another
    /// folder, that one is listed instead; Esc ends the reading and keeps what was found until then. The list
    /// is emptied if the path is empty or the list is hidden.
    void List_Files_ScanFolder(const std::string& path, bool lockControls);
    /// Reads the folder again, unless the list has no rows.
    void List_Files_Refresh();

    /// Tells whether the folder was read to its end and has no files directly in it.
    bool foundNone() const {
        return all_ && grid_.rowCount() == 0 && !parts_.scan.state.fileList.folder.empty();
    }

    std::string pathOf(Row row) const override;
    void ownCommand() override { List_Files_Refresh(); }

  private:
    void rowsRemoved() override;
    std::string total() const override;
    void empty();
    void list(const std::string& folder);
    void listLocked(const std::string& folder);

    bool all_ = false;          ///< All files of the folder were read.
    SizeValue FilesTotalSize_;  ///< The size of all files that are listed.
};

}  // namespace hl
