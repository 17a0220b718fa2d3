// The way through a tree; files; the figures.
#include "platform/linux/space/freed_walk.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <time.h>

#include <cstddef>
#include <cstring>

namespace hl {

namespace {

constexpr std::size_t kWalkRecordBytes = std::size_t{64} * 1024;
constexpr unsigned kWalkMask = STATX_TYPE | STATX_INO | STATX_NLINK | STATX_BLOCKS;
constexpr std::uint64_t kWalkSector = 512;
constexpr std::chrono::milliseconds kBetweenReports{50}, kBetweenSweeps{200};
constexpr unsigned kEntriesPerClock = 64;
constexpr int kSweepShare = 10;  // A sweep waits for so many times the duration of the last one.

struct WalkRecord {
    std::uint64_t inode;
    std::int64_t cookie;
    unsigned short length;
    unsigned char type;
    char name[1];
};

std::uint64_t deviceOf(const struct statx& facts) {
    return makedev(facts.stx_dev_major, facts.stx_dev_minor);
}

bool isOwnName(const char* name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

bool isMountRoot(const struct statx& facts) {
    return (facts.stx_attributes & facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
}

}  // namespace

FreedWalk::FreedWalk(DirectoryCalls& calls, Whereabouts& whereabouts, SurveyDesk& desk,
                     const OpenFilesAnswer& open, std::size_t budget)
    : calls_(calls),
      whereabouts_(whereabouts),
      desk_(desk),
      folders_(calls, budget),
      sum_(open),
      records_(std::make_unique<char[]>(kWalkRecordBytes)),
      nextReport_(Clock::now() + kBetweenReports),
      nextSweep_(nextReport_) {}

FreedWalk::~FreedWalk() {
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
    const bool mayCross = place.below.empty();  // A source may be where something is mounted.
    if (isMountRoot(facts) && !mayCross) return;
    device_ = deviceOf(facts);
    if (S_ISDIR(facts.stx_mode)) {
        if (!addedRoots_.emplace(device_, facts.stx_ino).second) return;
        enter(top.folder.number(), top.name, mayCross);
        return walk();
    }
    struct statx above {};
    if (calls_.look(top.folder.number(), "", false, STATX_INO, above) != 0) return;
    if (!rootFiles_.emplace(std::pair(deviceOf(above), above.stx_ino), top.name).second) return;
    meetDisk(device_, top.folder.number());
    addFile(top.folder.number(), top.name.c_str(), facts);
}

void FreedWalk::addSilent() {
    sum_.addUnreadFolder();
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
    while (!levels_.empty()) drop();
}

void FreedWalk::enterNext() {
    Level& level = levels_.back();
    const std::string name = std::move(level.folders.back());
    level.folders.pop_back();
    const int parent = folders_.pin(level.folder);
    if (parent < 0) return sum_.addUnreadFolder();
    Folder* const pinned = level.folder;
    enter(parent, name, false);
    folders_.unpin(pinned);
}

// A mount, a subvolume and a folder that is selected itself are passed over: the first two stay.
void FreedWalk::enter(int parent, const std::string& name, bool crossMounts) {
    int folder = calls_.openChild(parent, name.c_str(), false, crossMounts);
    while (isShortage(folder) && folders_.closeOne())
        folder = calls_.openChild(parent, name.c_str(), false, crossMounts);
    if (folder == -ENOTDIR || folder == -ELOOP) return addEntry(parent, name.c_str());
    if (folder < 0) {
        if (folder != -ENOENT && folder != -EXDEV) sum_.addUnreadFolder();
        return;
    }
    struct statx facts {};
    const bool known = calls_.look(folder, "", false, kWalkMask, facts) == 0;
    const bool isTop = levels_.empty();
    if (known && isTop) meetDisk(deviceOf(facts), folder);
    const bool selected = !isTop && roots_.contains({device_, facts.stx_ino});
    if (!known || deviceOf(facts) != device_ || selected) return calls_.close(folder);
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
    const int folder = folders_.pin(level.folder);
    const long got = folder < 0 ? folder : calls_.readEntries(folder, records_.get(), kWalkRecordBytes);
    level.atEnd = got <= 0;
    if (got < 0 && got != -ENOENT) sum_.addUnreadFolder();
    if (got > 0) readRecords(folder, got);
    if (folder >= 0) folders_.unpin(level.folder);
}

void FreedWalk::readRecords(int folder, long bytes) {
    for (long at = 0; at < bytes && !whereabouts_.unwanted();) {
        const auto* record = reinterpret_cast<const WalkRecord*>(records_.get() + at);
        at += record->length;
        const char* name = reinterpret_cast<const char*>(record) + offsetof(WalkRecord, name);
        if (isOwnName(name)) continue;
        if (record->type == DT_DIR) {
            levels_.back().folders.emplace_back(name);
        } else {
            addEntry(folder, name);
        }
        report(false);
    }
}

// --- files

/// Makes the disk of what is open the one of the walk.
void FreedWalk::meetDisk(std::uint64_t device, int open) {
    device_ = device;
    sharing_ = sharingOf(open);
    if (sharing_ == Sharing::kExtents) sum_.keepsWholeExtents();
}

void FreedWalk::addEntry(int folder, const char* name) {
    whereabouts_.at([&] { return path_; });
    struct statx facts {};
    const int error = calls_.look(folder, name, false, kWalkMask, facts);
    if (error == 0 && S_ISDIR(facts.stx_mode)) {  // The record does not tell on every file system.
        if (!levels_.empty()) levels_.back().folders.emplace_back(name);
    } else if (error == 0 && !isMountRoot(facts)) {
        addFile(folder, name, facts);
    } else if (error != 0 && error != -ENOENT) {
        sum_.addUntoldFile({});
    }
}

void FreedWalk::addFile(int folder, const char* name, const struct statx& facts) {
    const FreedName file{{deviceOf(facts), facts.stx_ino}, facts.stx_nlink, facts.stx_blocks * kWalkSector};
    if (!sum_.addName(file)) return;
    if (sharing_ == Sharing::kUntold) return sum_.addUntoldFile(file);
    const bool asks = sharing_ != Sharing::kNone && S_ISREG(facts.stx_mode) && facts.stx_blocks != 0;
    if (!asks) return sum_.addFile(file);
    if (!extents_.ask(folder, name, [&] { return !whereabouts_.unwanted(); }))
        return sum_.addUntoldFile(file);
    if (extents_.isInline()) return sum_.addInlineFile(file);
    sum_.addFile(file, extents_.found());
}

// --- the figures

// Looks at the clock only now and then.
void FreedWalk::report(bool last) {
    if (!last && ++untilClock_ % kEntriesPerClock != 0) return;
    const auto begin = Clock::now();
    if (!last && begin < nextReport_) return;
    if (last || begin >= nextSweep_) {
        sum_.sweep();
        const auto end = Clock::now();
        nextSweep_ = end + kBetweenSweeps + (end - begin) * kSweepShare;
    }
    FreedSpace figures = sum_.figures();
    figures.state = last ? SurveyState::kEnded : SurveyState::kRuns;
    figures.asOf = ::time(nullptr);
    desk_.put(figures);
    nextReport_ = Clock::now() + kBetweenReports;
}

void FreedWalk::end() {
    report(true);
}

}  // namespace hl
