#include "platform/linux/scan/directory_calls.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <string_view>

#include "platform/linux/scan/subvolumes.h"

namespace hl {

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Kernels before 5.6, and some sandboxes, lack openat2. This is found out once, as it does not change.
std::atomic<bool> openat2Works{true};

int resultOf(long value) {
    return value < 0 ? -errno : static_cast<int>(value);
}

// Opens the folder, then asks whether it is the root of a mount: for systems without openat2.
int openAndAskForMount(int parent, const char* name, int flags) {
    const int folder = resultOf(::openat(parent, name, flags));
    if (folder < 0) return folder;
    struct statx facts;
    const bool known = ::statx(folder, "", AT_EMPTY_PATH, 0, &facts) == 0 &&
                       (facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
    bool mountRoot = known && (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    if (!known) {
        struct stat own;
        struct stat above;
        mountRoot = ::fstat(folder, &own) == 0 && ::fstat(parent, &above) == 0 && own.st_dev != above.st_dev;
    }
    if (!mountRoot) return folder;
    ::close(folder);
    return -EXDEV;
}

}  // namespace

int DirectoryCalls::openSource(const std::string& path) {
    int folder = resultOf(::open(path.c_str(), kFolderFlags));
    if (folder != -ENAMETOOLONG) return folder;
    // The path is longer than the kernel takes at once, so it is opened in steps of whole names.
    folder = resultOf(::open(path.starts_with('/') ? "/" : ".", kFolderFlags));
    std::string_view rest = path;
    while (folder >= 0 && !rest.empty()) {
        std::size_t length = rest.size() < PATH_MAX ? rest.size() : rest.rfind('/', PATH_MAX - 2);
        if (length == std::string_view::npos) length = rest.size();
        std::string step(rest.substr(0, length));
        step.erase(0, step.find_first_not_of('/'));
        rest.remove_prefix(std::min(length + 1, rest.size()));
        if (step.empty()) continue;
        const int next = resultOf(::openat(folder, step.c_str(), kFolderFlags));
        ::close(folder);
        folder = next;
    }
    return folder;
}

int DirectoryCalls::openChild(int parent, const char* name, bool followLinks, bool crossMounts) {
    const int flags = kFolderFlags | (followLinks ? 0 : O_NOFOLLOW);
    if (crossMounts) return resultOf(::openat(parent, name, flags));
    if (openat2Works.load(std::memory_order_relaxed)) {
        struct open_how how = {};
        how.flags = static_cast<std::uint64_t>(flags);
        how.resolve = RESOLVE_NO_XDEV;
        const int folder = resultOf(::syscall(SYS_openat2, parent, name, &how, sizeof how));
        if (folder != -ENOSYS && folder != -EPERM) return folder;
        // Some sandboxes refuse the call with EPERM; a plain open shows whether this is one.
        const int plain = openAndAskForMount(parent, name, flags);
        if (folder == -ENOSYS || plain >= 0) openat2Works.store(false, std::memory_order_relaxed);
        return plain;
    }
    return openAndAskForMount(parent, name, flags);
}

int DirectoryCalls::openAbove(int folder, unsigned levels) {
    std::string up = "..";
    for (; levels > 1; --levels) up += "/..";
    return resultOf(::openat(folder, up.c_str(), kFolderFlags));
}

long DirectoryCalls::readEntries(int folder, void* buffer, std::size_t bytes) {
    const long got = ::syscall(SYS_getdents64, folder, buffer, bytes);
    return got < 0 ? -errno : got;
}

int DirectoryCalls::look(int folder, const char* name, bool followLinks, unsigned mask, struct statx& out) {
    const int flags =
        AT_NO_AUTOMOUNT | (followLinks ? 0 : AT_SYMLINK_NOFOLLOW) | (name[0] == '\0' ? AT_EMPTY_PATH : 0);
    return resultOf(::statx(folder, name, flags, mask, &out));
}

std::string DirectoryCalls::pathOf(int folder) {
    std::array<char, PATH_MAX> path;
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    const bool isWhole = length > 0 && static_cast<std::size_t>(length) < path.size();
    return isWhole ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
}

long DirectoryCalls::readLink(int folder, const char* name, char* buffer, std::size_t bytes) {
    const ssize_t got = ::readlinkat(folder, name, buffer, bytes);
    return got < 0 ? -errno : got;
}

// What is no file is not opened: that may wait, or do something.
long DirectoryCalls::beginning(int folder, const char* name, char* buffer, std::size_t bytes) {
    struct statx facts;
    if (const int looked = look(folder, name, false, STATX_TYPE, facts); looked < 0) return looked;
    if (!S_ISREG(facts.stx_mode)) return -EINVAL;
    const int file = resultOf(::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (file < 0) return file;
    const ssize_t got = ::pread(file, buffer, bytes, 0);
    const long result = got < 0 ? -errno : got;
    ::close(file);
    return result;
}

// An error that the path itself has here, it has in every call.
int DirectoryCalls::leadsToFolderHere(int folder, const char* name) {
    if (!openat2Works.load(std::memory_order_relaxed)) return -EXDEV;
    struct open_how how = {};
    how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_XDEV;
    const int found = resultOf(::syscall(SYS_openat2, folder, name, &how, sizeof how));
    if (found >= 0) return ::close(found), 1;
    const bool isNone = found == -ENOTDIR || found == -ENOENT || found == -ELOOP || found == -EACCES;
    return isNone ? 0 : -EXDEV;
}

int DirectoryCalls::identity(int folder, FolderId& id) {
    struct stat facts;
    const int result = resultOf(::fstat(folder, &facts));
    if (result == 0) id = {facts.st_dev, facts.st_ino};
    return result;
}

int DirectoryCalls::subvolume(int folder, Subvolume& out) {
    return subvolumeOf(folder, out);
}

int DirectoryCalls::seek(int folder, std::int64_t cookie) {
    return ::lseek(folder, cookie, SEEK_SET) < 0 ? -errno : 0;
}

void DirectoryCalls::close(int folder) {
    ::close(folder);
}

std::uint64_t DirectoryCalls::timesWaited() {
    struct rusage usage {};
    ::getrusage(RUSAGE_THREAD, &usage);
    return static_cast<std::uint64_t>(usage.ru_nvcsw);
}

std::optional<FolderFacts> factsOfFolder(DirectoryCalls& calls, int folder, const char* name) {
    struct statx facts;
    const unsigned mask = STATX_INO | STATX_SIZE | STATX_BLOCKS | STATX_MTIME | STATX_BTIME | STATX_UID;
    if (calls.look(folder, name, false, mask, facts) < 0) return std::nullopt;
    FolderFacts found = {.id = {makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino},
                         .size = facts.stx_size,
                         .blocks = facts.stx_blocks,
                         .written = facts.stx_mtime.tv_sec,
                         .owner = facts.stx_uid};
    if ((facts.stx_mask & STATX_BTIME) != 0) found.created = facts.stx_btime.tv_sec;
    return found;
}

}  // namespace hl
