// The menus of report, drives and lists: the desktop's part first, then the program's own entries. And the
// opening of files, which a double click shares with them.
//
// A menu acts on the rows for which it was opened: whoever opens it holds back what would change rows until
// it is answered. Thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "fileops/file_run.h"

namespace hl {

class ListView;

/// Ids of the program's own entries, per menu.
namespace report_menu {
enum Id {
    kReadAgain = 999,
    kRemoveSource = 1000,
    kRecycle = 1003,
    kDelete = 1004,
    kFoldAll = 1006,
    kUnfoldAll = 1007,
    kRename = 1008,
};
}  // namespace report_menu

namespace list_menu {
enum Id { kRecycle = 1000, kDelete = 1001, kRename = 1004, kShowInFolder = 1006 };
}  // namespace list_menu

constexpr int kDriveMenuRead = 2000;

class Menus {
  public:
    explicit Menus(const FileOps& ops) : ops_(ops) {}

    /// For a folder's row of the report. The id of an own entry that was chosen, else 0: what the desktop's
    /// part is asked is done here.
    int ofReport(Row row, const std::string& path, Point at);
    int ofDrive(const std::string& path, Point at);
    /// For the selected rows of a list.
    int ofList(GridId list, const std::vector<std::string>& paths, Point at);

    /// With the desktop's program for it; asks which one where there is none. What runs when it is opened is
    /// opened only after a question.
    void openFile(const std::string& path);
    void showInFolder(const std::string& path);

  private:
    std::vector<MenuEntry> desktopPart(const std::vector<std::string>& paths);
    int show(std::vector<MenuEntry> desktop, std::vector<MenuEntry> own,
             const std::vector<std::string>& paths, Point at);
    void runDesktopEntry(int id, const std::vector<std::string>& paths);
    bool openOne(const std::string& path);
    void openAll(const std::vector<std::string>& paths);
    bool wantsToRun(const std::string& path);
    void openWithOther(const std::vector<std::string>& paths);
    void cannotBeOpened(const std::string& path);
    std::string text(int id, const char* german) const { return ops_.scan.texts.TL(id, german); }

    const FileOps& ops_;
    std::vector<DesktopProgram> programs_;  ///< Of the menu that stands open.
};

}  // namespace hl
