// The menus of report, drives and lists: first the desktop's part, then the program's own entries. They also
// open files, for double clicks too.
//
// A menu acts on the rows for which it was opened: whoever opens it must not let rows change until it is
// answered. For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "fileops/file_run.h"

namespace hl {

class ListView;

/// The ids of the program's own entries, for each menu.
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

    /// Shows the menu of a folder's row of the report. Returns the id of the own entry that was chosen, else
    /// 0: entries of the desktop's part are carried out here.
    int ofReport(Row row, const std::string& path, Point at);
    int ofDrive(const std::string& path, Point at);
    /// Shows the menu of a list's selected rows; returns as ofReport does.
    int ofList(GridId list, const std::vector<std::string>& paths, Point at);

    /// Opens the file with the desktop's program for it, or asks for one if there is none. A file that would
    /// be executed is opened only after a question.
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
    std::vector<DesktopProgram> programs_;  ///< The programs in the menu that is open.
};

}  // namespace hl
