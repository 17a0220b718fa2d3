#include "platform/linux/scan/file_system.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <climits>
#include <thread>

#include "platform/linux/process/system_error.h"
#include "platform/linux/scan/read_ahead.h"

namespace hl {

namespace {

// The descriptors left to the rest of the program.
constexpr rlim_t kOtherDescriptors = 32;
constexpr rlim_t kMostOpenFolders = 512;
constexpr rlim_t kLeastOpenFolders = 8;
constexpr unsigned kColdHelpers = 8;

std::string withoutTrailing(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return std::string(path);
}

}  // namespace

ReadAheadLimits limitsOfThisMachine(bool readAhead) {
    ReadAheadLimits limits;
    const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
    limits.helpersWarm = readAhead ? cores - 1 : 0;
    limits.helpersCold = readAhead ? std::max(kColdHelpers, cores - 1) : 0;
    struct rlimit files = {};
    if (::getrlimit(RLIMIT_NOFILE, &files) == 0) {
        const rlim_t free = files.rlim_cur > kOtherDescriptors ? files.rlim_cur - kOtherDescriptors : 0;
        limits.openFolders = std::clamp(free, kLeastOpenFolders, kMostOpenFolders);
        // Each helper needs descriptors of its own; if there are hardly any, the walk reads alone.
        if (free < kLeastOpenFolders) limits.helpersWarm = limits.helpersCold = 0;
    }
    return limits;
}

std::unique_ptr<FolderReader> LinuxFileSystem::read(std::string_view source, const ReadOptions& options,
                                                    WaitCallback* wait) {
    return std::make_unique<ReadAhead>(calls_, std::string(source), options, limits_, wait);
}

Result<PathFacts> LinuxFileSystem::look(std::string_view path) {
    struct statx facts;
    const unsigned mask = STATX_TYPE | STATX_INO | STATX_NLINK | STATX_SIZE;
    int error = calls_->look(AT_FDCWD, withoutTrailing(path).c_str(), false, mask, facts);
    if (error == -ENAMETOOLONG) {
        // The path is too long for one call: if it can be opened as a folder, step by step, it exists as one.
        const int folder = calls_->openSource(withoutTrailing(path));
        error = folder < 0 ? folder : calls_->look(folder, "", false, mask, facts);
        if (folder >= 0) calls_->close(folder);
    }
    if (error < 0) return systemError(-error);
    return PathFacts{.isFolder = S_ISDIR(facts.stx_mode),
                     .inode = facts.stx_ino,
                     .links = facts.stx_nlink,
                     .size = facts.stx_size};
}

Result<std::string> LinuxFileSystem::target(std::string_view path) {
    const std::string plain = withoutTrailing(path);
    std::array<char, PATH_MAX> text;
    const long got = calls_->readLink(AT_FDCWD, plain.c_str(), text.data(), text.size());
    if (got >= 0) return std::string(text.data(), static_cast<std::size_t>(got));
    struct statx facts;
    if (calls_->look(AT_FDCWD, plain.c_str(), false, STATX_MNT_ID, facts) == 0 &&
        (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0)
        for (const Mount& mount : readMountTable())
            if (mount.id == facts.stx_mnt_id) return whatIsMounted(mount);
    return systemError(static_cast<int>(-got));
}

bool LinuxFileSystem::countsBeforeCompression(std::string_view path) {
    const std::vector<Mount> mounts = readMountTable();
    const Mount* mount = mountOf(mounts, path);
    return mount != nullptr && mount->kind == "btrfs";
}

}  // namespace hl
