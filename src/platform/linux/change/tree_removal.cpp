// The removal of a tree: the way through it; entries; folders; what could not be removed.
#include "platform/linux/change/tree_removal.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "platform/linux/process/system_error.h"
#include "platform/linux/scan/folder_record.h"
#include "platform/linux/scan/subvolumes.h"

namespace hl {

namespace {

constexpr std::size_t kMostKept = 10'000;  // These are names of one folder, about 1 MB.
constexpr std::size_t kRecordBytes = std::size_t{64} * 1024;
// Up to these limits a removal ends by itself, and no folder's time of birth is asked for.
constexpr std::uint64_t kManyGone = 100'000;
constexpr std::size_t kDeep = 500;

bool isRefusal(int error) {
    return error == EACCES || error == EPERM;
}

int unlinkError(int folder, const char* name, int flags) {
    return ::unlinkat(folder, name, flags) == 0 ? 0 : errno;
}

/// Lets the owner read, write and enter the folder. Returns false if it is not ours, or allowed all that
/// already.
bool giveOwnerAll(int folder, const char* changeBy) {
    struct stat facts;
    if (::fstat(folder, &facts) != 0 || facts.st_uid != ::geteuid()) return false;
    const mode_t mode = facts.st_mode & 07777;
    return (mode & S_IRWXU) != S_IRWXU && ::chmod(changeBy, mode | S_IRWXU) == 0;
}

/// Tells whether the folder is the root of another mount, which without openat2 the opening does not tell.
bool isOtherMount(int parent, int folder) {
    struct statx facts;
    if (::statx(folder, "", AT_EMPTY_PATH, 0, &facts) == 0 &&
        (facts.stx_attributes & facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0)
        return true;
    struct stat own;
    struct stat above;
    return ::fstat(folder, &own) != 0 || ::fstat(parent, &above) != 0 || own.st_dev != above.st_dev;
}

std::int64_t nanoseconds(std::int64_t seconds, std::int64_t rest) {
    return seconds * 1'000'000'000 + rest;
}

/// Returns a time that no stamp of a file system is later than. Stamps are usually those of the coarse clock,
/// which advances some hundred times a second; but since Linux 6.13 they can be ahead of it.
std::int64_t fileTime() {
    struct timespec time;
    ::clock_gettime(CLOCK_REALTIME, &time);
    return nanoseconds(time.tv_sec, time.tv_nsec);
}

std::string byDescriptor(int folder) {
    return "/proc/self/fd/" + std::to_string(folder);
}

}  // namespace

TreeRemoval::TreeRemoval(DirectoryCalls& calls, Whereabouts& whereabouts, std::size_t budget)
    : calls_(calls),
      whereabouts_(whereabouts),
      folders_(calls, budget),
      records_(std::make_unique<char[]>(kRecordBytes)),
      begin_(fileTime()) {}

TreeRemoval::~TreeRemoval() {
    while (!levels_.empty()) drop();
}

// --- the way through the tree

Removal TreeRemoval::run(const FilePlace& place) {
    path_ = hl::pathOf(place);
    top_ = openPlace(place);
    if (top_.error == 0) {
        enterTop();
    } else {
        failed("", top_.error);
        result_.vanished = top_.error == ENOENT;
    }
    while (!levels_.empty() && !whereabouts_.unwanted()) {
        if (!levels_.back().folders.empty()) {
            enterNext();
        } else if (!levels_.back().atEnd) {
            removeBlock();
        } else {
            leave();
        }
    }
    result_.stopped = !levels_.empty();
    return std::move(result_);
}

void TreeRemoval::enterTop() {
    enter(top_.folder.number(), top_.name);
    result_.removed = result_.removed || (levels_.empty() && result_.entries > 0);
}

void TreeRemoval::enterNext() {
    Level& level = levels_.back();
    const std::string name = std::move(level.folders.back());
    level.folders.pop_back();
    const int parent = folders_.pin(level.folder);
    if (parent < 0) return failed(name, -parent);
    Folder* const pinned = level.folder;
    enter(parent, name);
    folders_.unpin(pinned);
}

// The entry may have become something else since its record was read: it is removed as what it is now.
void TreeRemoval::enter(int parent, const std::string& name) {
    const int folder = openFolder(parent, name);
    if (folder >= 0 && isLater(folder)) {
        calls_.close(folder);
        return keep(levels_.back(), name);
    }
    if (folder >= 0) {
        Folder* const above = levels_.empty() ? nullptr : levels_.back().folder;
        levels_.push_back({.folder = OpenFolders::make(above, name, false)});
        folders_.addNeed(levels_.back().folder);
        folders_.opened(levels_.back().folder, folder);
        return;
    }
    whereabouts_.at([&] { return pathOf(name); });
    int error = -folder;
    if (error == ENOTDIR || error == ELOOP) error = unlinkError(parent, name.c_str(), 0);
    if (error == EACCES && removeEmpty(parent, name) == 0) error = 0;
    if (error == 0) return gone();
    if (error == ENOENT && !levels_.empty()) return;
    if (levels_.empty()) result_.vanished = error == ENOENT;
    failed(name, error == EXDEV ? EBUSY : error);
}

int TreeRemoval::openFolder(int parent, const std::string& name) {
    int folder = calls_.openChild(parent, name.c_str(), false, false);
    while (isShortage(folder) && folders_.closeOne())
        folder = calls_.openChild(parent, name.c_str(), false, false);
    if (folder != -EACCES) return folder;
    // This is a folder of ours that may not be read. The descriptor is used for nothing else, so no link can
    // be meant.
    const Descriptor own = openAt(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (own.isOpen() && isOtherMount(parent, own.number())) return -EXDEV;
    if (!own.isOpen() || !giveOwnerAll(own.number(), byDescriptor(own.number()).c_str())) return folder;
    return calls_.openChild(parent, name.c_str(), false, false);
}

/// Tells whether the folder was made after the removal began, as far as that matters and can be told. A time
/// in the future means that the clock was wrong then.
bool TreeRemoval::isLater(int folder) {
    if (levels_.empty() || (result_.entries < kManyGone && levels_.size() < kDeep)) return false;
    struct statx facts;
    if (calls_.look(folder, "", false, STATX_BTIME, facts) != 0 || (facts.stx_mask & STATX_BTIME) == 0)
        return false;
    const std::int64_t made = nanoseconds(facts.stx_btime.tv_sec, facts.stx_btime.tv_nsec);
    return made > begin_ && made <= fileTime();
}

// --- entries

// Tells whether the folder whose first records were just read is the root of a subvolume. No other folder
// costs a call.
bool TreeRemoval::isSubvolume(int folder, long bytes) const {
    const auto* first = folderRecord(records_.get(), 0);
    Subvolume found;
    return bytes > 0 && std::strcmp(first->name, ".") == 0 && first->inode == kSubvolumeInode &&
           calls_.subvolume(folder, found) >= 0;
}

// Removing while reading skips some entries on some file systems; another pass finds those. Somebody who adds
// entries as fast as they are removed is not followed forever: a folder with more than a few entries is
// counted, and only that many are removed.
void TreeRemoval::removeBlock() {
    Level& level = levels_.back();
    const int folder = folders_.pin(level.folder);
    const long got = folder < 0 ? folder : calls_.readEntries(folder, records_.get(), kRecordBytes);
    if (isSubvolume(folder, got)) {
        folders_.unpin(level.folder);
        failed("", EBUSY);
        return drop();
    }
    level.atEnd = got <= 0;
    if (got < 0) failed("", static_cast<int>(-got));
    removeRecords(folder, got);
    if (level.left == 0 && !level.counted && !level.atEnd) countTheRest(level, folder);
    level.atEnd = level.atEnd || level.left == 0;
    if (folder >= 0) folders_.unpin(level.folder);
}

void TreeRemoval::removeRecords(int folder, long bytes) {
    Level& level = levels_.back();
    for (long at = 0; at < bytes && !whereabouts_.unwanted();) {
        const auto* record = folderRecord(records_.get(), static_cast<std::size_t>(at));
        at += record->length;
        if (isDots(record->name) || (level.kept && level.kept->contains(record->name))) continue;
        if (level.counted && level.left == 0) return;
        if (level.left > 0) --level.left;
        if (record->type == DT_DIR) {
            level.folders.emplace_back(record->name);
        } else {
            removeEntry(folder, record->name);
        }
    }
}

// Entries removed before are not counted. Counting is much faster than adding.
void TreeRemoval::countTheRest(Level& level, int folder) {
    level.counted = true;
    if (calls_.seek(folder, 0) < 0) return;
    long got = 0;
    while (!whereabouts_.unwanted() && (got = calls_.readEntries(folder, records_.get(), kRecordBytes)) > 0)
        for (long at = 0; at < got; at += folderRecord(records_.get(), static_cast<std::size_t>(at))->length)
            ++level.left;
    if (calls_.seek(folder, 0) < 0) level.left = 0;
}

void TreeRemoval::removeEntry(int folder, const char* name) {
    whereabouts_.at([&] { return pathOf(name); });
    int error = unlinkError(folder, name, 0);
    if (isRefusal(error) && makeWritable(folder)) error = unlinkError(folder, name, 0);
    if (error == 0) return gone();
    if (error == EISDIR) return levels_.back().folders.emplace_back(name), void();
    if (error != ENOENT) failed(name, error, false);
}

bool TreeRemoval::makeWritable(int folder) {
    if (std::exchange(levels_.back().madeWritable, true)) return false;
    return giveOwnerAll(folder, byDescriptor(folder).c_str());
}

// --- folders

void TreeRemoval::leave() {
    Level& level = levels_.back();
    const int folder = folders_.pin(level.folder);
    if (folder < 0) {
        const std::string name = level.folder->name();
        drop();
        return failed(name, -folder);
    }
    if (!removeFolder(level, folder)) return folders_.unpin(level.folder);
    folders_.unpin(level.folder);
    drop();
}

// Returns false if there is more to do in it.
bool TreeRemoval::removeFolder(Level& level, int folder) {
    const std::string name = level.folder->name();
    whereabouts_.at([&] { return pathOf(""); });
    Folder* const above = level.folder->parent();
    int parent = top_.folder.number();
    if (above != nullptr) {
        folders_.reopenFromBelow(above, level.folder);
        parent = folders_.pin(above);
    }
    const int error = parent < 0 ? -parent : removeEmpty(parent, name);
    if (above != nullptr && parent >= 0) folders_.unpin(above);
    if ((error == ENOTEMPTY || error == EEXIST) && startAgain(level, folder)) return false;
    if (above == nullptr) {
        result_.removed = error == 0;
        result_.vanished = error == ENOENT;
    }
    if (error == 0) {
        ++result_.entries;
        if (above != nullptr) levels_[levels_.size() - 2].removedSome = true;
    } else if (error != ENOENT || above == nullptr) {
        failed("", error);
    }
    return true;
}

// The folder above the chosen one is not changed, because it is outside.
int TreeRemoval::removeEmpty(int parent, const std::string& name) {
    int error = unlinkError(parent, name.c_str(), AT_REMOVEDIR);
    if (isRefusal(error) && parent != top_.folder.number() &&
        giveOwnerAll(parent, byDescriptor(parent).c_str()))
        error = unlinkError(parent, name.c_str(), AT_REMOVEDIR);
    return error;
}

bool TreeRemoval::startAgain(Level& level, int folder) {
    if (level.kept && level.kept->size() >= kMostKept) return false;  // Some would be tried twice.
    if (!level.removedSome || level.left == 0 || calls_.seek(folder, 0) < 0) return false;
    level.removedSome = false;
    level.atEnd = false;
    return true;
}

void TreeRemoval::drop() {
    Folder* const folder = levels_.back().folder;
    levels_.pop_back();
    folders_.dropNeed(folder);
    folders_.release(folder);
}

// --- what could not go

void TreeRemoval::gone() {
    ++result_.entries;
    if (!levels_.empty()) levels_.back().removedSome = true;
}

// `name` is that of an entry of the current folder; empty for the folder itself, which the folder above then
// keeps.
void TreeRemoval::failed(const std::string& name, int error, bool folder) {
    ++result_.failureCount;
    if (result_.failures.size() < Removal::kMostFailures)
        result_.failures.push_back({systemError(error, pathOf(name)), folder});
    if (!name.empty() && !levels_.empty()) {
        keep(levels_.back(), name);
    } else if (levels_.size() > 1) {
        keep(levels_[levels_.size() - 2], levels_.back().folder->name());
    }
}

void TreeRemoval::keep(Level& level, std::string name) {
    if (!level.kept) level.kept = std::make_unique<std::unordered_set<std::string>>();
    if (level.kept->size() < kMostKept) level.kept->insert(std::move(name));
}

std::string TreeRemoval::pathOf(std::string_view name) const {
    std::string path = path_;
    for (std::size_t level = 1; level < levels_.size(); ++level) path += "/" + levels_[level].folder->name();
    return name.empty() || levels_.empty() ? path : path + "/" + std::string(name);
}

int removeFile(const FilePlace& place, Whereabouts& whereabouts) {
    const OpenedPlace at = openPlace(place);
    whereabouts.at([&] { return pathOf(place); });
    return at.error != 0 ? at.error : unlinkError(at.folder.number(), at.name.c_str(), 0);
}

}  // namespace hl
