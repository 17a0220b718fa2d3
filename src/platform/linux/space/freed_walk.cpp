// The way through a tree; files; the figures.
#include "platform/linux/space/freed_walk.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <time.h>

#include <cstddef>
#include <utility>

#include "platform/linux/scan/folder_record.h"

namespace hl {

namespace {

constexpr std::size_t kWalkRecordBytes = std::size_t{64} * 1024;
constexpr unsigned kWalkMask = STATX_TYPE | STATX_INO | STATX_BLOCKS;
constexpr std::uint64_t kWalkSector = 512;
constexpr std::chrono::milliseconds kBetweenReports{50}, kBetweenSweeps{200}, kAtOnce{0};
constexpr std::size_t kMostHeld = 16;  // Folders.
constexpr int kSweepShare = 10;        // A sweep waits for so many times the duration of the last one.

std::uint64_t deviceOf(const struct statx& facts) {
    return makedev(facts.stx_dev_major, facts.stx_dev_minor);
}

bool isMountRoot(const struct statx& facts) {
    return (facts.stx_attributes & facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
}

}  // namespace

FreedWalk::FreedWalk(DirectoryCalls& calls, Whereabouts& whereabouts, SurveyDesk& desk,
                     AwaitedOpenFiles& open, std::size_t budget)
    : calls_(calls),
      whereabouts_(whereabouts),
      desk_(desk),
      folders_(calls, budget),
      open_(open),
      looks_(calls, whereabouts, path_),
      records_(std::make_unique<char[]>(kWalkRecordBytes)),
      nextReport_(Clock::now() + kBetweenReports),
      nextSweep_(nextReport_) {}

FreedWalk::~FreedWalk() {
    letGo();
    while (!levels_.empty()) drop();
}

// --- the way through the tree

void FreedWalk::expect(const FilePlace& place) {
    const OpenedPlace at = openPlace(place);
    struct statx facts {};
    if (at.error == 0 && calls_.look(at.folder.number(), at.name.c_str(), false, kWalkMask, facts) == 0 &&
        S_ISDIR(facts.stx_mode))
        roots_.emplace(deviceOf(facts), facts.stx_ino);
}

void FreedWalk::add(const FilePlace& place) {
    if (whereabouts_.unwanted()) return;
    path_ = pathOf(place);
    whereabouts_.at([&] { return path_; });
    FilePlace at = place;
    OpenedPlace top = openPlace(at);
    if (top.error == EBUSY) {  // The root of the file system is in no folder.
        top.folder = openAt(AT_FDCWD, "/", O_PATH | O_DIRECTORY);
        top.name.assign(1, '.');
        top.error = top.folder.isOpen() ? 0 : errno;
    }
    struct statx facts {};
    const int error = top.error != 0
                          ? -top.error
                          : calls_.look(top.folder.number(), top.name.c_str(), false, kWalkMask, facts);
    if (error != 0 && error != -ENOENT) sum_.addUnreadFolder();
    if (error != 0) return;
    struct statx above {};
    const bool mayCross = place.below.empty();  // A source may be where something is mounted.
    const int unplaced = calls_.look(top.folder.number(), "", false, STATX_INO, above);
    device_ = deviceOf(facts);
    const bool isFolder = S_ISDIR(facts.stx_mode);
    if (isFolder && !addedRoots_.emplace(device_, facts.stx_ino).second) return;
    const bool isSubvolume = isFolder && unplaced == 0 && deviceOf(above) != device_;
    if (!mayCross && (isMountRoot(facts) || isSubvolume)) return sum_.addMount();
    if (isFolder) {
        enter(top.folder.number(), top.name, mayCross);
        return walk();
    }
    if (unplaced != 0) return;
    if (!rootFiles_.emplace(std::pair(deviceOf(above), above.stx_ino), top.name).second) return;
    meetDisk(device_, top.folder.number());
    addEntry(top.folder.number(), top.name.c_str());
}

void FreedWalk::addSilent() {
    sum_.addSilentPlace();
}

// A folder is read to its end before one in it is entered: it may be closed meanwhile, and would be read from
// its beginning again.
void FreedWalk::walk() {
    while (!levels_.empty() && !whereabouts_.unwanted()) {
        if (!levels_.back().atEnd) {
            readBlock();
        } else if (!levels_.back().folders.empty()) {
            enterNext();
        } else {
            drop();
        }
    }
    addEntries();
    while (!levels_.empty()) drop();
}

// Folders of entries that are not looked at yet need descriptors, too.
int FreedWalk::pin(Folder* folder) {
    const int open = folders_.pin(folder);
    if (!isShortage(open) || held_.empty()) return open;
    addEntries();
    return folders_.pin(folder);
}

void FreedWalk::enterNext() {
    Level& level = levels_.back();
    const std::string name = std::move(level.folders.back());
    level.folders.pop_back();
    const int parent = pin(level.folder);
    if (parent < 0) return sum_.addUnreadFolder();
    Folder* const pinned = level.folder;
    enter(parent, name, false);
    folders_.unpin(pinned);
}

// A mount, a subvolume and a folder that is selected itself are passed over: the first two stay.
void FreedWalk::enter(int parent, const std::string& name, bool crossMounts) {
    const auto open = [&] { return calls_.openChild(parent, name.c_str(), false, crossMounts); };
    int folder = open();
    if (isShortage(folder)) {
        addEntries();
        folder = open();
    }
    while (isShortage(folder) && folders_.closeOne()) folder = open();
    if (folder == -ENOTDIR || folder == -ELOOP) return addEntry(parent, name.c_str());
    if (folder == -EXDEV) return sum_.addMount();
    if (folder < 0) {
        if (folder != -ENOENT) sum_.addUnreadFolder();
        return;
    }
    struct statx facts {};
    const bool known = calls_.look(folder, "", false, kWalkMask, facts) == 0;
    const bool isTop = levels_.empty();
    if (known && isTop) meetDisk(deviceOf(facts), folder);
    const bool selected = !isTop && roots_.contains({deviceOf(facts), facts.stx_ino});
    const bool isSubvolume = known && deviceOf(facts) != device_;
    if (isSubvolume && !selected) sum_.addMount();
    if (!known || isSubvolume || selected) return calls_.close(folder);
    sum_.addFolder(facts.stx_blocks * kWalkSector, sharing_ != Sharing::kUntold);
    levels_.push_back({.folder = OpenFolders::make(isTop ? nullptr : levels_.back().folder, name, false)});
    folders_.addNeed(levels_.back().folder);
    folders_.opened(levels_.back().folder, folder);
}

void FreedWalk::drop() {
    folders_.dropNeed(levels_.back().folder);
    folders_.release(levels_.back().folder);
    levels_.pop_back();
}

void FreedWalk::readBlock() {
    Level& level = levels_.back();
    const int folder = pin(level.folder);
    const long got = folder < 0 ? folder : calls_.readEntries(folder, records_.get(), kWalkRecordBytes);
    level.atEnd = got <= 0;
    if (got < 0 && got != -ENOENT) sum_.addUnreadFolder();
    if (got > 0) readRecords(folder, got);
    if (folder >= 0) folders_.unpin(level.folder);
}

void FreedWalk::readRecords(int folder, long bytes) {
    bool allTold = true;
    for (long at = 0; at < bytes && !whereabouts_.unwanted();) {
        const FolderRecord* record = folderRecord(records_.get(), static_cast<std::size_t>(at));
        at += record->length;
        if (isDots(record->name)) continue;
        if (record->type == DT_DIR) {
            levels_.back().folders.emplace_back(record->name);
        } else {
            addLater(folder, record->name, record->type == DT_UNKNOWN);
            allTold = allTold && record->type != DT_UNKNOWN;
        }
    }
    if (!allTold || !looks_.areShared()) addEntries();
}

// --- files

/// Makes the disk of what is open the one of the walk.
void FreedWalk::meetDisk(std::uint64_t device, int open) {
    device_ = device;
    sharing_ = sharingOf(open);
    looks_.setSharing(sharing_);
    if (sharing_ == Sharing::kExtents) sum_.keepsWholeExtents();
}

void FreedWalk::addEntry(int folder, const char* name) {
    addEntries();
    looks_.add(folder, name, false);
    addEntries();
}

// Entries of several folders are looked at together, since a few are not worth a second thread.
void FreedWalk::addLater(int folder, const char* name, bool mayBeFolder) {
    Folder* const own = levels_.back().folder;
    if (looks_.isFull() || held_.size() == kMostHeld) addEntries();
    if (held_.empty() || held_.back() != own) {
        folders_.pin(own);  // It is open.
        OpenFolders::addReference(own);
        held_.push_back(own);
    }
    looks_.add(folder, name, mayBeFolder);
}

void FreedWalk::letGo() {
    for (Folder* folder : std::exchange(held_, {})) {
        folders_.unpin(folder);
        folders_.release(folder);
    }
}

void FreedWalk::addEntries() {
    for (EntryLook& entry : looks_.look()) {
        switch (entry.kind) {
            case EntryLook::Kind::kGone:
                break;
            case EntryLook::Kind::kUnknown:
                sum_.addUntoldFile({});
                break;
            case EntryLook::Kind::kFolder:
                addFoundFolder(entry);
                break;
            case EntryLook::Kind::kMount:
                sum_.addMount();
                break;
            case EntryLook::Kind::kFile:
                addFile(entry);
                break;
        }
    }
    letGo();
    report();
}

// Where the record does not tell, the entry is one of the folder that is being read. Else it has become a
// folder just now.
void FreedWalk::addFoundFolder(const EntryLook& entry) {
    if (!entry.mayBeFolder) return sum_.addUnreadFolder();
    levels_.back().folders.emplace_back(looks_.nameOf(entry));
}

void FreedWalk::addFile(EntryLook& entry) {
    if (!sum_.addName(entry.file)) return;
    if (sharing_ == Sharing::kUntold) return sum_.addUntoldFile(entry.file);
    if (!entry.hasExtents) return sum_.addFile(entry.file);
    if (entry.extents == EntryLook::Extents::kNotAsked) looks_.askExtents(entry);
    if (entry.extents == EntryLook::Extents::kUntold) return sum_.addUntoldFile(entry.file);
    if (entry.extents == EntryLook::Extents::kInline) return sum_.addInlineFile(entry.file);
    sum_.addFile(entry.file, entry.special);
}

// --- the figures

bool FreedWalk::hasOpenFiles(std::chrono::milliseconds wait) {
    if (hasOpenFiles_ || !open_.isDecided(wait)) return hasOpenFiles_;
    hasOpenFiles_ = true;
    sum_.takeOpenFiles(open_.take());
    return true;
}

void FreedWalk::report() {
    const auto begin = Clock::now();
    if (begin < nextReport_) return;
    hasOpenFiles(kAtOnce);
    if (begin >= nextSweep_) {
        sum_.sweep();
        const auto end = Clock::now();
        nextSweep_ = end + kBetweenSweeps + (end - begin) * kSweepShare;
    }
    put(SurveyState::kRuns);
    nextReport_ = Clock::now() + kBetweenReports;
}

void FreedWalk::put(SurveyState state) {
    FreedSpace figures = sum_.figures();
    figures.state = state;
    figures.asOf = ::time(nullptr);
    desk_.put(figures);
}

void FreedWalk::end() {
    sum_.sweep();
    if (!hasOpenFiles(kAtOnce)) put(SurveyState::kRuns);
    while (!whereabouts_.unwanted() && !hasOpenFiles(kBetweenReports)) whereabouts_.at([&] { return path_; });
    put(SurveyState::kEnded);
}

}  // namespace hl
