// What changes or opens files: the menus of report, drives and lists, names edited in their cells, and what
// the commands of fileops/ ask of the window. For the thread of the logic only.
#pragma once

#include <functional>
#include <string>

#include "fileops/delete_question.h"
#include "fileops/file_run.h"
#include "fileops/undo_steps.h"
#include "output/format_choice.h"

namespace hl {

struct MainForm;
class ListView;

class FilesControl final : public FileOpsHost, public SaveDialog {
  public:
    explicit FilesControl(MainForm& form) : form_(form) {}

    /// What the commands of fileops/ work with. REQUIRES: the window exists.
    FileOps ops();

    // --- menus; sources that are handed over while one is open are read afterwards
    /// `path` ends in a separator.
    void openReportMenu(Row row, const std::string& path, Point at);
    void openDriveMenu(Row row, Point at);
    void openListMenu(GridId list, Point at);

    void openFile(const std::string& path);
    /// These act on what is selected; without `forGood` it goes to the trash.
    void deleteFolders(bool forGood);
    void deleteFiles(GridId list, bool forGood);
    /// Shows what comes back if what is selected is deleted.
    void showComesBack(GridId grid);
    void showComesBack(const ToDelete& what);
    void takeBack();
    /// The command that takes back can be chosen if there is something to take back.
    void showCanTakeBack();
    /// `name` is the new name as bytes.
    void renameFolder(Row row, const std::string& name);
    void renameFile(ListView& list, Row row, const std::string& name);

    // --- SaveDialog
    std::string askSavePath(const SaveQuestion& question) override;

    // --- FileOpsHost
    void setFirstPanel(const std::string& text) override;
    void offerTakeBack(const std::string& text) override;
    void Preview_ShowFile() override;
    void filesWent(const std::function<bool(const std::string& path)>& went) override;
    void fileRenamed(const std::string& from, const std::string& to) override;
    void folderShown(Row row, const std::string& folder) override;
    bool closed() override;

  private:
    bool hasNoMenu(const char* routine, const std::string& path);

    MainForm& form_;
    UndoSteps undo_;
};

}  // namespace hl
