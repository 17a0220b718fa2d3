// Removes a folder with everything in it, relative to open folders.
//
// Every step names an entry of a folder that is held open, so nothing that others swap meanwhile leads out of
// the chosen folder: what has become a link is removed as a link, and another mount or the root of a
// subvolume is busy and stays. Nothing recurses, and only as many folders are open as OpenFolders may keep;
// depth and width have no limit. Memory holds the names of one block of a folder's records for each level on
// the way, and the few that could not be removed.
//
// It ends even if somebody keeps adding: of each folder it removes as many entries as it had, and some
// thousand more, and once much is removed it enters no folder that was made after the removal began (on file
// systems that know when that was). It can be ended between two entries.
//
// It is fast because an entry costs one unlinkat, as its kind is known from the record, and a folder costs
// opening, reading and closing it, without a look (docs/performance.md compares it with rm).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/file_operations.h"
#include "platform/linux/change/opened_place.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/scan/open_folders.h"

namespace hl {

/// Is for one removal, on one thread.
class TreeRemoval {
  public:
    /// `budget` is the largest number of open folders. The arguments must outlive the removal.
    TreeRemoval(DirectoryCalls& calls, Whereabouts& whereabouts, std::size_t budget);
    ~TreeRemoval();
    TreeRemoval(const TreeRemoval&) = delete;
    TreeRemoval& operator=(const TreeRemoval&) = delete;

    Removal run(const FilePlace& place);

  private:
    static constexpr std::uint64_t kFewRecords = 4096;

    struct Level {
        Folder* folder = nullptr;
        std::vector<std::string> folders = {};  ///< The folders that were read but not yet entered.
        /// The names that could not be removed; another pass skips them. Null if there are none.
        std::unique_ptr<std::unordered_set<std::string>> kept = {};
        /// The number of records that may still be looked at; see removeBlock.
        std::uint64_t left = kFewRecords;
        bool counted = false;
        bool removedSome = false;  ///< Something was removed in this pass.
        bool madeWritable = false;
        bool atEnd = false;
    };

    void enterTop();
    void enter(int parent, const std::string& name);
    void enterNext();
    int openFolder(int parent, const std::string& name);
    void removeBlock();
    bool isSubvolume(int folder, long bytes) const;
    void removeRecords(int folder, long bytes);
    void countTheRest(Level& level, int folder);
    bool isLater(int folder);
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
    std::string path_;  ///< The path of the chosen folder.
    OpenedPlace top_;
    std::vector<Level> levels_;
    std::unique_ptr<char[]> records_;
    const std::int64_t begin_;  ///< In nanoseconds since 1970.
    Removal result_;
};

/// Removes anything but a folder. Returns a system error code, 0 for success.
int removeFile(const FilePlace& place, Whereabouts& whereabouts);

}  // namespace hl
