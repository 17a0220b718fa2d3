// Walks over what is selected, for the figures of a survey (FreedSpace).
//
// Like a removal, it names each entry in an open folder, follows no link, and enters neither another mount
// nor a subvolume. Only some folders are open at once; depth and width have no limit. For one thread; what it
// finds goes to a SurveyDesk, from which another thread takes it.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/freed_sum.h"
#include "platform/linux/change/opened_place.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/scan/open_folders.h"
#include "platform/linux/space/awaited_open_files.h"
#include "platform/linux/space/entry_looks.h"
#include "platform/linux/space/file_extents.h"

namespace hl {

/// Hands the figures from the survey's thread to another one.
class SurveyDesk {
  public:
    void put(const FreedSpace& figures) {
        const std::lock_guard lock(mutex_);
        figures_ = figures;
    }
    FreedSpace get() {
        const std::lock_guard lock(mutex_);
        return figures_;
    }

  private:
    std::mutex mutex_;
    FreedSpace figures_;
};

class FreedWalk {
  public:
    /// `budget` is the largest number of open folders. The arguments must outlive the walk.
    FreedWalk(DirectoryCalls& calls, Whereabouts& whereabouts, SurveyDesk& desk, AwaitedOpenFiles& open,
              std::size_t budget);
    ~FreedWalk();
    FreedWalk(const FreedWalk&) = delete;
    FreedWalk& operator=(const FreedWalk&) = delete;

    /// Tells of a folder that is added later: where it lies in another one, that one passes it over.
    void expect(const FilePlace& place);
    /// Looks at a place and all below it. A place that is gone adds nothing.
    void add(const FilePlace& place);
    /// Tells that a place is not looked at, since its disk does not answer.
    void addSilent();
    /// Waits for the list of open files, and puts the last figures on the desk.
    void end();

  private:
    struct Level {
        Folder* folder = nullptr;
        std::vector<std::string> folders = {};  ///< Those that were read but not yet entered.
        bool atEnd = false;
    };
    using Clock = std::chrono::steady_clock;

    void walk();
    void enter(int parent, const std::string& name, bool crossMounts);
    void enterNext();
    void readBlock();
    void readRecords(int folder, long bytes);
    int pin(Folder* folder);
    void addEntry(int folder, const char* name);
    void addLater(int folder, const char* name, bool mayBeFolder);
    void addEntries();
    void addFoundFolder(const EntryLook& entry);
    void addFile(EntryLook& entry);
    void letGo();
    void drop();
    void meetDisk(std::uint64_t device, int open);
    bool hasOpenFiles(std::chrono::milliseconds wait);
    void report();
    void put(SurveyState state);

    DirectoryCalls& calls_;
    Whereabouts& whereabouts_;
    SurveyDesk& desk_;
    OpenFolders folders_;
    AwaitedOpenFiles& open_;
    bool hasOpenFiles_ = false;  ///< The sum knows of them, or that nothing is known.
    FreedSum sum_;
    EntryLooks looks_;
    std::vector<Level> levels_;
    std::vector<Folder*> held_;  ///< Those of entries that are not looked at yet; they are pinned.
    std::unique_ptr<char[]> records_;
    std::uint64_t device_ = 0;  ///< The disk of the place; nothing on another one is entered.
    Sharing sharing_ = Sharing::kUntold;
    /// The folders and files that are selected, by device and inode or by the folder's and the name: two
    /// paths may lead to the same.
    std::set<std::pair<std::uint64_t, std::uint64_t>> roots_, addedRoots_;
    std::set<std::pair<std::pair<std::uint64_t, std::uint64_t>, std::string>> rootFiles_;
    Clock::time_point nextReport_, nextSweep_;
    std::string path_;
};

}  // namespace hl
