// Moves an entry: by renaming, to another spelling of its name, or to another file system.
#include "platform/linux/change/moving.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/linux/change/copying.h"
#include "platform/linux/change/opened_place.h"
#include "platform/linux/process/descriptor.h"

namespace hl {

namespace {

constexpr int kMostTries = 100;

bool sameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Sets errno on failure.
bool look(int folder, const std::string& name, struct stat& found) {
    return fstatat(folder, name.c_str(), &found, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) == 0;
}

bool lookAt(const OpenedPlace& place, struct stat& found) {
    return look(place.folder.number(), place.name, found);
}

bool sameFolder(const OpenedPlace& a, const OpenedPlace& b) {
    struct stat one {};
    struct stat other {};
    return fstat(a.folder.number(), &one) == 0 && fstat(b.folder.number(), &other) == 0 &&
           sameFile(one, other);
}

bool lacksFlags(int error) {
    return error == EINVAL || error == ENOSYS;
}

// Calls `use` with names that nobody can guess until one is free. Returns a system error code.
template <class Use>
int withFreshName(std::string& name, Use use) {
    for (int i = 0; i < kMostTries; ++i) {
        std::array<std::uint64_t, 2> numbers{};
        if (getrandom(numbers.data(), sizeof numbers, 0) != static_cast<ssize_t>(sizeof numbers))
            return EAGAIN;
        std::array<char, 64> text{};
        snprintf(text.data(), text.size(), ".harborlantern-%016llx%016llx",
                 static_cast<unsigned long long>(numbers[0]), static_cast<unsigned long long>(numbers[1]));
        name = text.data();
        if (const int error = use(); error != EEXIST) return error;
    }
    return EEXIST;
}

// Renaming ------------------------------------------------------------------------------------------------

// Renames unless the new name is taken (EEXIST). If the file system cannot guarantee that, an entry that gets
// the name after the look is replaced, as rename() does it.
int renameToFree(int folder, const std::string& name, int toFolder, const std::string& toName) {
    if (renameat2(folder, name.c_str(), toFolder, toName.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (!lacksFlags(errno)) return errno;
    struct stat found {};
    if (look(toFolder, toName, found)) return EEXIST;
    return renameat(folder, name.c_str(), toFolder, toName.c_str()) == 0 ? 0 : errno;
}

int takeAway(const OpenedPlace& place) {
    return unlinkat(place.folder.number(), place.name.c_str(), 0) == 0 ? 0 : errno;
}

// Handles two names in one folder that lead to the same file: these are either two entries, or one entry if
// case does not matter. Only moving the old name out of the way shows which, because rename() does nothing
// for one entry.
int respell(const OpenedPlace& old, const OpenedPlace& fresh) {
    const int folder = old.folder.number();
    std::string aside;
    int error = withFreshName(aside, [&] { return renameToFree(folder, old.name, folder, aside); });
    if (error != 0) return error;
    struct stat twin {};
    struct stat moved {};
    if (!lookAt(fresh, twin)) {
        error = renameToFree(folder, aside, folder, fresh.name);
    } else if (look(folder, aside, moved) && sameFile(twin, moved) && !S_ISDIR(moved.st_mode) &&
               moved.st_nlink > 1) {
        error = unlinkat(folder, aside.c_str(), 0) == 0 ? 0 : errno;
    } else {
        error = EEXIST;
    }
    if (error != 0) renameToFree(folder, aside, folder, old.name);
    return error;
}

int renameFolder(const OpenedPlace& old, const OpenedPlace& fresh) {
    const int error = renameToFree(old.folder.number(), old.name, fresh.folder.number(), fresh.name);
    if (error != EEXIST || !sameFolder(old, fresh)) return error;
    struct stat folder {};
    struct stat there {};
    const bool same = lookAt(old, folder) && lookAt(fresh, there) && sameFile(folder, there);
    return same ? respell(old, fresh) : error;
}

int renameFile(const OpenedPlace& old, const OpenedPlace& fresh) {
    if (renameat(old.folder.number(), old.name.c_str(), fresh.folder.number(), fresh.name.c_str()) != 0)
        return errno;
    // The kernel leaves two names of one file as they are.
    struct stat still {};
    struct stat there {};
    if (!lookAt(old, still) || !lookAt(fresh, there) || !sameFile(still, there)) return 0;
    if (sameFolder(old, fresh)) return respell(old, fresh);
    return still.st_nlink > 1 ? takeAway(old) : 0;
}

// To another file system ----------------------------------------------------------------------------------

// Checks whether the old name can be removed, before anything is copied. What cannot be seen here (rights
// that root lacks, a disk that fails) shows when it is removed. Returns a system error code.
int mayBeTakenAway(const OpenedPlace& old, int entry, const struct stat& facts) {
    if (faccessat(old.folder.number(), ".", W_OK | X_OK, AT_EACCESS) != 0) return errno;
    struct stat folder {};
    if (fstat(old.folder.number(), &folder) != 0) return errno;
    const uid_t user = geteuid();
    const bool theirs = user != 0 && user != facts.st_uid && user != folder.st_uid;
    if ((folder.st_mode & S_ISVTX) != 0 && theirs) return EPERM;
    struct statx more {};
    if (statx(entry, "", AT_EMPTY_PATH, STATX_TYPE, &more) != 0) return errno;
    if ((more.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0) return EPERM;
    return (more.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0 ? EBUSY : 0;
}

// An entry with a temporary name in a folder; it is removed with this object.
class TemporaryEntry {
  public:
    explicit TemporaryEntry(int folder) : folder_(folder) {}
    ~TemporaryEntry() {
        if (!name_.empty()) unlinkat(folder_, name_.c_str(), 0);
    }
    TemporaryEntry(const TemporaryEntry&) = delete;
    TemporaryEntry& operator=(const TemporaryEntry&) = delete;

    // `make(name)` returns a system error code, EEXIST if the name is taken.
    template <class Make>
    int make(Make make) {
        const int error = withFreshName(name_, [&] { return make(name_); });
        if (error == EEXIST) name_.clear();
        return error;
    }
    void release() { name_.clear(); }
    int folder() const { return folder_; }
    const std::string& name() const { return name_; }

  private:
    int folder_;
    std::string name_;
};

// The entry that moves, held open so that its inode number is not given to another one meanwhile.
struct Source {
    const OpenedPlace& place;
    Descriptor entry = Descriptor();  // Opened with O_PATH.
    struct stat facts = {};

    // Returns a system error code; EBUSY if it is another entry than `expected`.
    int open(const struct stat& expected) {
        entry = openAt(place.folder.number(), place.name, O_PATH | O_NOFOLLOW);
        if (!entry.isOpen() || fstat(entry.number(), &facts) != 0) return errno;
        return sameFile(facts, expected) ? 0 : EBUSY;
    }
    int checkUnchanged() const {
        struct stat now {};
        if (fstat(entry.number(), &now) != 0) return errno;
        const auto same = [](const timespec& a, const timespec& b) {
            return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
        };
        return now.st_size == facts.st_size && same(now.st_mtim, facts.st_mtim) &&
                       same(now.st_ctim, facts.st_ctim)
                   ? 0
                   : EBUSY;
    }
    // Another entry that has got the name meanwhile is left alone.
    int removeName() const {
        struct stat now {};
        if (!lookAt(place, now)) return errno == ENOENT ? 0 : errno;
        if (!sameFile(now, facts)) return 0;
        const int changed = checkUnchanged();
        return changed != 0 ? changed : takeAway(place);
    }
};

// Opens the file for reading. Only its owner may leave the time of access unchanged.
int openForReading(const Source& source, Descriptor& file) {
    constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK;
    const int folder = source.place.folder.number();
    file = openAt(folder, source.place.name, kFlags | O_NOATIME);
    if (!file.isOpen() && errno == EPERM) file = openAt(folder, source.place.name, kFlags);
    struct stat opened {};
    if (!file.isOpen() || fstat(file.number(), &opened) != 0) return errno;
    return sameFile(opened, source.facts) ? 0 : EBUSY;
}

int copyFile(const Source& source, TemporaryEntry& copy, const std::function<void()>& between) {
    Descriptor file;
    int error = openForReading(source, file);
    if (error != 0) return error;
    Descriptor target;
    error = copy.make([&](const std::string& name) {
        target = openAt(copy.folder(), name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        return target.isOpen() ? 0 : errno;
    });
    if (error == 0) error = copyContent(file.number(), target.number(), source.facts.st_size, between);
    if (error == 0) error = copyFacts(file.number(), target.number(), source.facts);
    if (error == 0 && fsync(target.number()) != 0) error = errno;
    return error == 0 ? target.close() : error;
}

int copyEntry(const Source& source, TemporaryEntry& copy, const std::function<void()>& between) {
    if (S_ISREG(source.facts.st_mode)) return copyFile(source, copy, between);
    return copy.make([&](const std::string& name) {
        return copyLink(source.entry.number(), source.facts, copy.folder(), name);
    });
}

// Gives the copy its name. A file that had the name is kept under a temporary one until the move is complete.
class Placing {
  public:
    Placing(TemporaryEntry& copy, const OpenedPlace& place)
        : copy_(copy), place_(place), second_(copy.folder()) {}

    // Returns a system error code.
    int place() {
        if (!look(copy_.folder(), copy_.name(), facts_)) return errno;
        for (int i = 0; i < kMostTries; ++i) {  // Others may make and remove the name meanwhile.
            if (renameTo(RENAME_NOREPLACE)) return named();
            if (lacksFlags(errno)) return replace();
            if (errno != EEXIST) return errno;
            if (renameTo(RENAME_EXCHANGE)) return swapped();
            if (lacksFlags(errno)) return replace();
            if (errno != ENOENT) return errno;
        }
        return EBUSY;
    }

    // Undoes a successful place(), as far as others did not change anything.
    void undo() {
        struct stat now {};
        if (!lookAt(place_, now) || !sameFile(now, facts_)) return copy_.release(), second_.release();
        if (state_ == State::kNamed) takeAway(place_);
        if (state_ == State::kLinked) putBack();
        if (state_ == State::kSwapped && !renameTo(RENAME_EXCHANGE)) copy_.release();
    }

  private:
    enum class State : std::uint8_t { kNone, kNamed, kSwapped, kLinked, kReplaced };

    bool renameTo(unsigned flags) {
        return renameat2(copy_.folder(), copy_.name().c_str(), copy_.folder(), place_.name.c_str(), flags) ==
               0;
    }
    int named() {
        state_ = State::kNamed;
        copy_.release();
        return 0;
    }
    int swapped() {
        state_ = State::kSwapped;
        struct stat before {};
        if (!look(copy_.folder(), copy_.name(), before) || !S_ISDIR(before.st_mode)) return 0;
        undo();
        return EISDIR;
    }
    // If names cannot be swapped, the file is kept under a second name, if it can get one.
    int replace() {
        const int folder = copy_.folder();
        struct stat before {};
        const bool there = lookAt(place_, before);
        const bool kept = there && second_.make([&](const std::string& name) {
            return linkat(folder, place_.name.c_str(), folder, name.c_str(), 0) == 0 ? 0 : errno;
        }) == 0;
        if (!renameTo(0)) return errno;
        state_ = !there ? State::kNamed : kept ? State::kLinked : State::kReplaced;
        copy_.release();
        return 0;
    }
    void putBack() {
        if (renameat(second_.folder(), second_.name().c_str(), second_.folder(), place_.name.c_str()) != 0)
            second_.release();
    }

    TemporaryEntry& copy_;
    const OpenedPlace& place_;
    TemporaryEntry second_;
    struct stat facts_ {};
    State state_ = State::kNone;
};

// Writes the names in the folder to the disk. Returns a system error code.
int flushNames(int folder) {
    const Descriptor readable = openAt(folder, ".", O_RDONLY | O_DIRECTORY);
    // A folder that may be written but not read cannot be flushed by itself.
    if (!readable.isOpen() && errno == EACCES) return sync(), 0;
    if (!readable.isOpen()) return errno;
    // Some file systems cannot flush folders.
    return fsync(readable.number()) == 0 || errno == EINVAL || errno == ENOTSUP ? 0 : errno;
}

int moveAcross(const OpenedPlace& old, const struct stat& expected, const OpenedPlace& fresh,
               const std::function<void()>& between) {
    struct stat there {};
    if (lookAt(fresh, there) && S_ISDIR(there.st_mode)) return EISDIR;
    Source source{old};
    int error = source.open(expected);
    if (error == 0) error = mayBeTakenAway(old, source.entry.number(), source.facts);
    if (error != 0) return error;
    TemporaryEntry copy(fresh.folder.number());
    error = copyEntry(source, copy, between);
    if (error == 0) error = source.checkUnchanged();
    if (error != 0) return error;
    Placing placing(copy, fresh);
    error = placing.place();
    if (error != 0) return error;
    error = flushNames(fresh.folder.number());
    if (error == 0) error = source.removeName();
    if (error != 0) placing.undo();
    return error;
}

}  // namespace

int moveEntry(const FilePlace& from, const FilePlace& to, Whereabouts& whereabouts) {
    const OpenedPlace old = openPlace(from);
    struct stat entry {};
    if (old.error != 0) return old.error;
    if (!lookAt(old, entry)) return errno;
    const OpenedPlace fresh = openPlace(to);
    if (fresh.error != 0) return fresh.error;
    if (fresh.name.find('\0') != std::string::npos) return EINVAL;
    if (sameFolder(old, fresh) && old.name == fresh.name) return 0;
    whereabouts.at([&] { return pathOf(from); });
    if (S_ISDIR(entry.st_mode)) return renameFolder(old, fresh);
    const int error = renameFile(old, fresh);
    if (error != EXDEV || !(S_ISREG(entry.st_mode) || S_ISLNK(entry.st_mode))) return error;
    return moveAcross(old, entry, fresh, [&] { whereabouts.at([&] { return pathOf(from); }); });
}

bool wouldReplace(const FilePlace& from, const FilePlace& to) {
    const OpenedPlace old = openPlace(from);
    const OpenedPlace fresh = openPlace(to);
    struct stat entry {};
    struct stat there {};
    return old.error == 0 && fresh.error == 0 && fresh.name.find('\0') == std::string::npos &&
           lookAt(old, entry) && !S_ISDIR(entry.st_mode) && lookAt(fresh, there) && !S_ISDIR(there.st_mode) &&
           !sameFile(entry, there);
}

}  // namespace hl
