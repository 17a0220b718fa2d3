// The trash, in this order: looking at entries; opening a trash; the text of an info file; moving an entry
// into an open trash; choosing the trash.
//
// An info file is made before its entry arrives and removed if that fails, so nobody sees an entry in the
// trash whose origin is unknown. Whoever makes the info file NAME.trashinfo owns NAME.

#include "platform/linux/change/trash.h"

#include <errno.h>
#include <fcntl.h>
#include <pwd.h>
#include <stdio.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"
#include "platform/linux/change/found_entry.h"
#include "platform/linux/change/opened_place.h"
#include "platform/linux/drives/mount_table.h"
#include "platform/linux/scan/subvolumes.h"

namespace hl {

namespace {

constexpr int kFolderFlags = O_PATH | O_DIRECTORY;
constexpr int kOwnFolderFlags = kFolderFlags | O_NOFOLLOW;
constexpr mode_t kOwnerOnly = 0700;
constexpr std::size_t kLongestName = 255;
constexpr unsigned kNamesInTurn = 100;  ///< "name", "name.2", ...; after that the numbers are random.
constexpr unsigned kMostNames = 200;

/// Returns the names of a path, without empty ones and ".".
std::vector<std::string> namesOf(std::string_view path) {
    std::vector<std::string> names;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (const auto name = path.substr(0, end); !name.empty() && name != ".") names.emplace_back(name);
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return names;
}

/// Opens `name` in the open folder, which it replaces. Returns a system error code.
int stepTo(Descriptor& folder, const std::string& name, int flags) {
    Descriptor next = openAt(folder.number(), name, flags);
    if (!next.isOpen()) return errno;
    folder = std::move(next);
    return 0;
}

/// Goes to `name` like stepTo, but only to a real folder, which is made if nothing is there.
int stepMaking(Descriptor& folder, const std::string& name) {
    if (mkdirat(folder.number(), name.c_str(), kOwnerOnly) != 0 && errno != EEXIST) return errno;
    return stepTo(folder, name, kOwnFolderFlags);
}

/// Goes to `name` like stepMaking, but gives EACCES if the folder is not the user's: its owner could replace
/// what is moved there.
int stepToOwn(Descriptor& folder, const std::string& name, unsigned user) {
    if (const int error = stepMaking(folder, name); error != 0) return error;
    FoundEntry own;
    if (const int error = look(folder.number(), "", own); error != 0) return error;
    return own.owner == user ? 0 : EACCES;
}

int expectMount(const Descriptor& folder, std::uint64_t mount) {
    FoundEntry found;
    if (const int error = look(folder.number(), "", found); error != 0) return error;
    return found.mount == mount ? 0 : EXDEV;
}

/// Returns a system error code; EXDEV if the home trash is not on this mount and cannot be made there.
int openHomeTrash(const std::string& path, std::uint64_t mount, Descriptor& trash) {
    if (!path.starts_with('/')) return ENOENT;
    trash = openAt(AT_FDCWD, "/", kFolderFlags);
    if (!trash.isOpen()) return errno;
    for (const std::string& name : namesOf(path)) {
        int error = stepTo(trash, name, kFolderFlags);
        if (error == ENOENT) {
            error = expectMount(trash, mount);
            if (error == 0) error = stepMaking(trash, name);
        }
        if (error != 0) return error;
    }
    return expectMount(trash, mount);
}

/// Opens the folder that all users share for their trashes. Its sticky bit protects them from one another.
int stepToShared(Descriptor& folder) {
    if (const int error = stepTo(folder, ".Trash", kOwnFolderFlags); error != 0) return error;
    FoundEntry shared;
    if (const int error = look(folder.number(), "", shared); error != 0) return error;
    return (shared.mode & S_ISVTX) != 0 ? 0 : EACCES;
}

/// Opens the user's trash at the top of a mount. Returns a system error code.
int openMountTrash(const Descriptor& top, unsigned user, Descriptor& trash) {
    const std::string number = std::to_string(user);
    trash = openAt(top.number(), ".", kFolderFlags);
    if (!trash.isOpen()) return errno;
    if (stepToShared(trash) == 0 && stepToOwn(trash, number, user) == 0) return 0;
    trash = openAt(top.number(), ".", kFolderFlags);
    return trash.isOpen() ? stepToOwn(trash, ".Trash-" + number, user) : errno;
}

/// Goes up from an open folder to the top of its mount. Returns a system error code; `levels` receives how
/// far that was.
int climbToTop(Descriptor& folder, std::size_t& levels) {
    FoundEntry here;
    if (const int error = look(folder.number(), "", here); error != 0) return error;
    for (levels = 0;; ++levels) {
        Descriptor above = openAt(folder.number(), "..", kFolderFlags);
        if (!above.isOpen()) return errno;
        FoundEntry there;
        if (const int error = look(above.number(), "", there); error != 0) return error;
        if (there.mount != here.mount || there.is(here)) return 0;
        folder = std::move(above);
        here = there;
    }
}

/// Returns the names from "/" to the entry. The kernel knows them with all links resolved; if it cannot tell
/// (no /proc, more than a page of text), they come from the place. For a removed folder it tells nonsense,
/// but nothing can be moved from there.
std::vector<std::string> truePath(const OpenedPlace& opened, const FilePlace& place) {
    const std::string folder = pathOfFolder(opened.folder);
    if (folder.empty()) return namesOf(place.below.empty() ? place.base : place.base + "/" + place.below);
    std::vector<std::string> names = namesOf(folder);
    names.push_back(opened.name);
    return names;
}

using Names = std::vector<std::string>;

bool isInside(const Names& inner, const Names& folder) {
    return std::mismatch(folder.begin(), folder.end(), inner.begin(), inner.end()).first == folder.end();
}

/// Returns the path within its file system, which may be mounted at several places, or in part.
Names placeIn(const Mount& mount, const Names& path) {
    Names names = namesOf(mount.root);
    const auto above = static_cast<std::ptrdiff_t>(namesOf(mount.mountPoint).size());
    names.insert(names.end(), path.begin() + std::min(above, std::ssize(path)), path.end());
    return names;
}

/// Tells whether something is mounted at the path on the mount `id` or below it, even on another mount of the
/// same file system: it would be moved along, and deleted with the trash. If there is no table of mounts, the
/// answer is yes.
bool holdsMount(const Names& path, std::uint64_t id) {
    const std::vector<Mount> mounts = readMountTable();
    const auto own = std::ranges::find(mounts, id, &Mount::id);
    return mounts.empty() || std::ranges::any_of(mounts, [&](const Mount& mount) {
               const Names point = namesOf(mount.mountPoint);
               if (isInside(point, path)) return true;
               const auto holder = std::ranges::find(mounts, mount.parent, &Mount::id);
               if (own == mounts.end() || holder == mounts.end() || holder->device != own->device)
                   return false;
               return isInside(placeIn(*holder, point), placeIn(*own, path));
           });
}

/// Tells whether an entry is the root of a subvolume, or a folder that holds one. `holder` is its folder.
/// What the user may not read is not known to hold one.
bool holdsSubvolume(const OpenedPlace& from, const FoundEntry& holder, const FoundEntry& entry) {
    if (!isOnBtrfs(from.folder.number())) return false;
    if (entry.device != holder.device) return true;
    const Descriptor folder =
        openAt(from.folder.number(), from.name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    return folder.isOpen() && hl::holdsSubvolume(folder.number());
}

void appendEncoded(std::string& out, std::string_view bytes) {
    constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~";
    constexpr char kDigits[] = "0123456789ABCDEF";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (kPlain.find(c) != std::string_view::npos)
            out += c;
        else
            (out += '%').append({kDigits[byte >> 4], kDigits[byte & 15]});
    }
}

/// Returns the last `count` names, encoded; empty if there are fewer, or if one leads up.
std::string encodedEnd(const std::vector<std::string>& names, std::size_t count) {
    if (count > names.size()) return {};
    std::string out;
    for (auto name = names.end() - static_cast<std::ptrdiff_t>(count); name != names.end(); ++name) {
        if (*name == "..") return {};
        if (!out.empty()) out += '/';
        appendEncoded(out, *name);
    }
    return out;
}

std::string infoText(const std::string& encodedPath) {
    const time_t now = time(nullptr);
    tm local{};
    char date[64] = {};
    if (localtime_r(&now, &local) != nullptr) strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + encodedPath + "\nDeletionDate=" + date + "\n";
}

/// Returns a system error code; after an error there is no file of ours.
int writeInfo(const Descriptor& folder, const std::string& name, const std::string& text) {
    Descriptor file =
        openAt(folder.number(), name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (!file.isOpen()) return errno;
    const int written = writeAll(file.number(), text);
    const int closed = file.close();
    if (written == 0 && closed == 0) return 0;
    unlinkat(folder.number(), name.c_str(), 0);
    return written != 0 ? written : closed;
}

/// Returns the name of an entry in the trash, cut behind a character if its info file's name would be too
/// long.
std::string nameInTrash(const std::string& name, unsigned attempt) {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const auto number = attempt <= kNamesInTurn ? attempt : kNamesInTurn + static_cast<unsigned>(now.tv_nsec);
    std::string ending;
    if (attempt > 1) ending.append(1, '.').append(std::to_string(number));
    const std::size_t room = kLongestName - kInfoEnding.size() - ending.size();
    std::size_t kept = 0;
    while (kept < name.size()) {
        const std::size_t character = firstCodePoint(std::string_view(name).substr(kept)).length;
        if (kept + character > room) break;
        kept += character;
    }
    return name.substr(0, kept) + ending;
}

/// Translates an error at the entry.
RecycleError entryFault(int error) {
    switch (error) {
        case 0:
            return RecycleError::kNone;
        case ENOENT:
        case ENOTDIR:
        case ELOOP:
            return RecycleError::kInvalidPath;
        case EACCES:
        case EPERM:
            return RecycleError::kAccess;
        case EROFS:
            return RecycleError::kReadOnly;
        case EBUSY:
            return RecycleError::kRoot;
        case ENAMETOOLONG:
            return RecycleError::kNameTooLong;
        case EXDEV:
            return RecycleError::kNoTrash;
        default:
            return RecycleError::kUnknown;
    }
}

/// Translates an error at the trash: if the trash cannot be reached or used, that says nothing about the
/// entry.
RecycleError trashFault(int error) {
    const RecycleError fault = entryFault(error);
    const bool notOfTheEntry = fault == RecycleError::kInvalidPath || fault == RecycleError::kAccess;
    return notOfTheEntry ? RecycleError::kNoTrash : fault;
}

/// A trash whose two folders are open.
struct Trash {
    Descriptor files;
    Descriptor info;
};

/// Returns a system error code.
int openParts(Descriptor folder, Trash& trash) {
    trash.info = openAt(folder.number(), ".", kFolderFlags);
    if (!trash.info.isOpen()) return errno;
    trash.files = std::move(folder);
    if (const int error = stepMaking(trash.info, "info"); error != 0) return error;
    return stepMaking(trash.files, "files");
}

/// What is moved, and who is told.
struct Order {
    const OpenedPlace& from;
    const FoundEntry& entry;
    Moved* now;
    Whereabouts* whereabouts;
    std::string path;
};

Moved movedTo(const Trash& trash, const std::string& name, const FoundEntry& entry) {
    const std::string files = pathOfFolder(trash.files);
    Moved moved{.id = entry.id(), .inTrash = true};
    if (!files.empty()) moved.now.base = files + "/" + name;
    return moved;
}

RecycleError moveInto(const Trash& trash, const Order& order, const std::string& text) {
    const OpenedPlace& from = order.from;
    for (unsigned attempt = 1; attempt <= kMostNames; ++attempt) {
        const std::string name = nameInTrash(from.name, attempt);
        const std::string info = name + std::string(kInfoEnding);
        if (order.whereabouts != nullptr) order.whereabouts->at([&] { return order.path; });
        int error = writeInfo(trash.info, info, text);
        if (error == EEXIST) continue;
        if (error != 0) return trashFault(error);
        error = order.whereabouts != nullptr && order.whereabouts->isLeft() ? ECANCELED : 0;
        if (error == 0) error = renameAnew(from.folder, from.name, trash.files, name);
        if (error == 0) {
            if (order.now != nullptr) *order.now = movedTo(trash, name, order.entry);
            return RecycleError::kNone;
        }
        unlinkat(trash.info.number(), info.c_str(), 0);
        if (error != EEXIST) return entryFault(error);
    }
    return RecycleError::kUnknown;
}

/// `folder` is the open trash.
RecycleError moveInto(Descriptor folder, const Order& order, const std::string& encodedPath) {
    Trash trash;
    if (const int error = openParts(std::move(folder), trash); error != 0) return trashFault(error);
    FoundEntry info;
    // The kernel refuses to move the trash's other folder, and the folders above, into themselves, but not
    // this one.
    if (look(trash.info.number(), "", info) != 0 || info.is(order.entry)) return RecycleError::kUnknown;
    return moveInto(trash, order, infoText(encodedPath));
}

RecycleError moveToMountTrash(const Order& order, unsigned user, const std::vector<std::string>& names) {
    Descriptor top = openAt(order.from.folder.number(), ".", kFolderFlags);
    if (!top.isOpen()) return entryFault(errno);
    std::size_t levels = 0;
    if (const int error = climbToTop(top, levels); error != 0) return entryFault(error);
    const std::string path = encodedEnd(names, levels + 1);
    if (path.empty()) return RecycleError::kUnknown;  // The text of the place leads there only by links.
    Descriptor trash;
    if (const int error = openMountTrash(top, user, trash); error != 0) return trashFault(error);
    return moveInto(std::move(trash), order, path);
}

/// Returns the home folder that the system knows for a user; empty if it knows none.
std::string homeOf(uid_t user) {
    std::vector<char> buffer(1024);
    passwd entry = {};
    passwd* found = nullptr;
    while (getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == ERANGE)
        buffer.resize(buffer.size() * 2);
    return found != nullptr ? found->pw_dir : "";
}

/// Returns an empty text unless the value is an absolute path.
std::string folderFromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? value : "";
}

}  // namespace

TrashSettings trashSettingsFromEnvironment() {
    const uid_t user = geteuid();
    std::string data = folderFromEnvironment("XDG_DATA_HOME");
    if (data.empty()) {
        std::string home = folderFromEnvironment("HOME");
        if (home.empty()) home = homeOf(user);
        if (home.starts_with('/')) data = home + "/.local/share";
    }
    return {data.empty() ? "" : data + "/Trash", user};
}

Error recycleError(RecycleError reason) {
    const ErrorKind kind = reason == RecycleError::kNoTrash    ? ErrorKind::kNoTrash
                           : reason == RecycleError::kNoAnswer ? ErrorKind::kNoAnswer
                                                               : ErrorKind::kOther;
    return {.number = static_cast<int>(reason), .kind = kind};
}

RecycleError moveToTrash(const FilePlace& place, const TrashSettings& settings, Moved* now,
                         Whereabouts* whereabouts) {
    const OpenedPlace from = openPlace(place);
    if (from.error != 0) return entryFault(from.error);
    FoundEntry folder;
    FoundEntry entry;
    if (const int error = look(from.folder.number(), "", folder); error != 0) return entryFault(error);
    if (const int error = look(from.folder.number(), from.name, entry); error != 0) return entryFault(error);
    if (entry.mount != folder.mount) return RecycleError::kRoot;
    const std::vector<std::string> names = truePath(from, place);
    if (S_ISDIR(entry.mode) && holdsMount(names, folder.mount)) return RecycleError::kRoot;
    if (S_ISDIR(entry.mode) && holdsSubvolume(from, folder, entry)) return RecycleError::kRoot;
    const Order order{from, entry, now, whereabouts, pathOf(place)};
    Descriptor home;
    if (openHomeTrash(settings.homeTrash, folder.mount, home) == 0) {
        const std::string path = encodedEnd(names, names.size());
        if (path.empty()) return RecycleError::kUnknown;
        const RecycleError result = moveInto(std::move(home), order, "/" + path);
        // To a rename, one file system may be several: if it is mounted twice, or laid over another one.
        if (result != RecycleError::kNoTrash) return result;
    }
    return moveToMountTrash(order, settings.user, names);
}

}  // namespace hl
