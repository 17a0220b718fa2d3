// Removes a folder with everything in it, relative to open folders.
//
// Every step names an entry of a folder that is held open, so nothing that others swap meanwhile leads out of
// the chosen folder: what has become a link is removed as a link. Nothing recurses, and only so many folders
// are open as OpenFolders may keep; depth and width have no limit. Held in memory are the names of one block
// of a folder's records for each level on the way, and the few that could not go.
//
// Why it is fast: an entry costs one unlinkat, its kind being known from the record; a folder costs opening,
// reading and closing it, and no look (docs/performance.md has it against rm).
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/file_operations.h"
#include "platform/linux/beside.h"
#include "platform/linux/open_folders.h"
#include "platform/linux/opened_place.h"

namespace hl {

/// For one removal. One thread.
class TreeRemoval {
  public:
    /// `budget`: open folders at most. All of it outlives the removal.
    TreeRemoval(DirectoryCalls& calls, Whereabouts& whereabouts, std::size_t budget);
    ~TreeRemoval();
    TreeRemoval(const TreeRemoval&) = delete;
    TreeRemoval& operator=(const TreeRemoval&) = delete;

    Removal run(const FilePlace& place);

  private:
    struct Level {
        Folder* folder = nullptr;
        std::vector<std::string> folders = {};  ///< Read, and not yet entered.
        /// Names that could not go: another pass leaves them alone. Null for none.
        std::unique_ptr<std::unordered_set<std::string>> kept = {};
        int passes = 0;
        bool removedSome = false;  ///< In this pass.
        bool madeWritable = false;
        bool atEnd = false;
    };

    void enterTop();
    void enter(int parent, const std::string& name);
    void enterNext();
    int openFolder(int parent, const std::string& name);
    void removeBlock();
    void removeEntry(int folder, const char* name);
    void leave();
    bool removeFolder(Level& level, int folder);
    int removeEmpty(int parent, const std::string& name);
    bool startAgain(Level& level, int folder);
    void drop();
    bool makeWritable(int folder);
    void gone();
    void failed(const std::string& name, int error, bool folder = true);
    void keep(Level& level, std::string name);
    std::string pathOf(std::string_view name) const;

    DirectoryCalls& calls_;
    Whereabouts& whereabouts_;
    OpenFolders folders_;
    std::string path_;  ///< Of the chosen folder.
    OpenedPlace top_;
    std::vector<Level> levels_;
    std::unique_ptr<char[]> records_;
    Removal result_;
};

/// Removes what is no folder. System error code, 0 for success.
int removeFile(const FilePlace& place);

}  // namespace hl
