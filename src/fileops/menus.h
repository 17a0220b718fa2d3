// What all menus of files and folders have: the desktop's part, which is carried out here. It also opens
// files for double clicks.
//
// A menu acts on the rows for which it was opened: whoever opens it must not let rows change until it is
// answered. For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "fileops/file_run.h"

namespace hl {

class Menus {
  public:
    /// `ops` must outlive it.
    explicit Menus(const FileOps& ops) : ops_(ops) {}

    /// Shows the menu of files or folders: the desktop's part, and then `own`. Returns the id of the own
    /// entry that was chosen, else 0: entries of the desktop's part are carried out here. REQUIRES: own ids
    /// are at least kFirstOwn.
    int show(const std::vector<std::string>& paths, std::vector<MenuEntry> own, Point at);
    static constexpr int kFirstOwn = 1000;
    /// The same for folders that may be gone: the desktop's part only copies them.
    int showForCopying(const std::vector<std::string>& paths, std::vector<MenuEntry> own, Point at);

    /// Opens the file with the desktop's program for it, or asks for one if there is none. A file that would
    /// be executed is opened only after a question.
    void openFile(const std::string& path);
    void showInFolder(const std::string& path);

  private:
    std::vector<MenuEntry> copyingPart() const;
    int show(std::vector<MenuEntry> entries, const std::vector<std::string>& paths,
             std::vector<MenuEntry> own, Point at);
    std::vector<MenuEntry> desktopPart(const std::vector<std::string>& paths);
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
