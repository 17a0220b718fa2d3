#include "platform/linux/space/open_files.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>

#include "platform/linux/drives/mount_table.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/space/loop_file.h"

namespace hl {

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY;
constexpr std::string_view kDeleted = " (deleted)";  // The kernel writes it behind the path.

/// A range of memory that shows a file: a line of /proc/PID/maps.
struct Mapping {
    std::string_view range;  ///< "7f00a000-7f00b000", which is the name in map_files, too.
    FolderId file;           ///< The device is that of the file system, which btrfs has beside st_dev.
    std::string_view path;
};

/// Calls `use` for each name in an open folder.
template <class Use>
void forEachName(const Descriptor& folder, Use use) {
    const int copy = ::fcntl(folder.number(), F_DUPFD_CLOEXEC, 0);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(copy < 0 ? nullptr : ::fdopendir(copy), ::closedir);
    while (const dirent* entry = entries ? ::readdir(entries.get()) : nullptr)
        if (entry->d_name[0] != '.') use(entry->d_name);
}

std::string_view nextWord(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(word.size());
    return word;
}

std::uint64_t numberOf(std::string_view digits, int base) {
    std::uint64_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    return number;
}

// A line reads "7f00a000-7f00b000 r--p 00000000 08:01 1234    /usr/lib/libc.so".
Mapping mappingOf(std::string_view line) {
    Mapping mapping;
    mapping.range = nextWord(line);
    nextWord(line);
    nextWord(line);
    const std::string_view device = nextWord(line);
    const std::size_t colon = std::min(device.find(':'), device.size());
    const auto part = [](std::string_view digits) { return static_cast<unsigned>(numberOf(digits, 16)); };
    if (colon < device.size())
        mapping.file.device = makedev(part(device.substr(0, colon)), part(device.substr(colon + 1)));
    mapping.file.inode = numberOf(nextWord(line), 10);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    mapping.path = line;
    return mapping;
}

/// Lists the files of one process after the other.
class HeldListing {
  public:
    explicit HeldListing(const OpenFiles::Wanted& wanted) : wanted_(wanted) {}

    void addProcess(int process, long number);
    void addLoopDevices(const std::string& blockDevices);
    void addSwapFiles(int proc);
    OpenFilesAnswer answer;

  private:
    void addDescriptors(int process, HeldFile file);
    void addMappings(int process, HeldFile file);
    const std::optional<HeldFile>& mapped(int process, const Mapping& mapping);
    bool canHang(std::string_view path) const;
    static int look(int folder, const std::string& name, int flags, HeldFile& file);
    void add(int process, HeldFile& file);
    void addOfKernel(const std::string& path, std::string holder);
    void addDeletedOfLoop(const std::string& device);
    void refused(int error) {
        if (error == EACCES || error == EPERM) answer.sawAll = false;
    }

    const OpenFiles::Wanted& wanted_;
    const std::vector<Mount> mounts_ = readMountTable();
    std::set<std::pair<std::uint64_t, std::uint64_t>> seen_;  ///< Files of the process, by device and inode.
    /// What mapped files are, by their device in the maps and inode: most processes map the same libraries.
    std::map<std::pair<std::uint64_t, std::uint64_t>, std::optional<HeldFile>> mapped_;
};

bool HeldListing::canHang(std::string_view path) const {
    const auto mayHold = [&](const Mount& mount) {
        return mount.canHang && isAtOrBelow(path, mount.mountPoint);
    };
    if (std::none_of(mounts_.begin(), mounts_.end(), mayHold)) return false;
    const Mount* mount = mountOf(mounts_, path);
    return mount == nullptr || mount->canHang;
}

/// Returns a system error code; EINVAL if it is no regular file. No server is asked: a dead one would never
/// answer.
int HeldListing::look(int folder, const std::string& name, int flags, HeldFile& file) {
    constexpr unsigned kMask = STATX_TYPE | STATX_INO | STATX_NLINK | STATX_BLOCKS | STATX_MNT_ID;
    constexpr std::uint64_t kBlock = 512;
    struct statx facts {};
    const int quiet = flags | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
    if (::statx(folder, name.c_str(), quiet, kMask, &facts) != 0) return errno;
    if (!S_ISREG(facts.stx_mode)) return EINVAL;
    file.id = {makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino};
    file.mount = (facts.stx_mask & STATX_MNT_ID) != 0 ? facts.stx_mnt_id : 0;
    file.bytes = facts.stx_blocks * kBlock;
    file.links = facts.stx_nlink;
    return 0;
}

void HeldListing::add(int process, HeldFile& file) {
    if (!seen_.emplace(file.id.device, file.id.inode).second) return;
    if (wanted_ && !wanted_(file)) return;
    if (file.program.empty()) {
        const Descriptor comm = openAt(process, "comm", O_RDONLY);
        readAll(comm.number(), PATH_MAX, file.program);
        if (file.program.ends_with('\n')) file.program.pop_back();
    }
    answer.files.push_back(file);
}

void HeldListing::addProcess(int process, long number) {
    seen_.clear();
    const HeldFile file{.id = {}, .process = number};
    addDescriptors(process, file);
    addMappings(process, file);
}

// The text of a link tells what is no file ("socket:[7]") and what lies on a disk that may not answer,
// without a question to that disk.
void HeldListing::addDescriptors(int process, HeldFile file) {
    const Descriptor folder = openAt(process, "fd", kFolderFlags);
    if (!folder.isOpen()) return refused(errno);
    char target[PATH_MAX];
    forEachName(folder, [&](const char* name) {
        const ssize_t length = ::readlinkat(folder.number(), name, target, sizeof target);
        if (length < 0) refused(errno);
        if (length <= 0 || target[0] != '/') return;
        if (canHang({target, static_cast<std::size_t>(length)})) return;
        if (look(folder.number(), name, 0, file) == 0) add(process, file);
    });
}

void HeldListing::addMappings(int process, HeldFile file) {
    constexpr std::size_t kMostBytes = std::size_t{64} << 20U;
    const Descriptor maps = openAt(process, "maps", O_RDONLY);
    std::string text;
    if (!maps.isOpen()) return refused(errno);
    readAll(maps.number(), kMostBytes, text);
    FolderId last;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const Mapping mapping = mappingOf(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (mapping.file.inode == 0 || !mapping.path.starts_with('/') || mapping.file == last) continue;
        last = mapping.file;  // A library has several ranges, one behind the other.
        const std::optional<HeldFile>& known = mapped(process, mapping);
        if (!known) continue;
        const std::string program = std::move(file.program);
        file = {known->id, known->mount, known->bytes, known->links, file.process, program};
        add(process, file);
    }
}

// A path that still leads to the file tells all; else only root may follow the link in map_files.
const std::optional<HeldFile>& HeldListing::mapped(int process, const Mapping& mapping) {
    const auto [at, isNew] = mapped_.try_emplace({mapping.file.device, mapping.file.inode});
    if (!isNew || canHang(mapping.path)) return at->second;
    const bool deleted = mapping.path.ends_with(kDeleted);
    HeldFile file{.id = {}};
    const bool byPath = !deleted && look(AT_FDCWD, std::string(mapping.path), AT_SYMLINK_NOFOLLOW, file) == 0;
    if (byPath && file.id.inode == mapping.file.inode) return at->second = file;
    const int error = look(process, "map_files/" + std::string(mapping.range), 0, file);
    if (error != 0 && error != EPERM && error != EACCES) return at->second;  // No regular file, or gone.
    if (error != 0) file = {.id = mapping.file, .links = deleted ? 0U : 1U};
    return at->second = file;
}

void HeldListing::addOfKernel(const std::string& path, std::string holder) {
    HeldFile file{.id = {}, .program = std::move(holder)};
    if (!path.starts_with('/') || canHang(path)) return;
    if (look(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, file) != 0 || (wanted_ && !wanted_(file))) return;
    answer.files.push_back(std::move(file));
}

void HeldListing::addLoopDevices(const std::string& blockDevices) {
    const Descriptor folder = openAt(AT_FDCWD, blockDevices, kFolderFlags);
    if (!folder.isOpen()) return;
    forEachName(folder, [&](const char* name) {
        if (!std::string_view(name).starts_with("loop")) return;
        const Descriptor file = openAt(folder.number(), std::string(name) + "/loop/backing_file", O_RDONLY);
        std::string path;
        if (file.isOpen()) readAll(file.number(), PATH_MAX, path);
        if (path.ends_with('\n')) path.pop_back();
        path.ends_with(kDeleted) ? addDeletedOfLoop(name) : addOfKernel(path, name);
    });
}

// No path leads to the file any more.
void HeldListing::addDeletedOfLoop(const std::string& device) {
    HeldFile file{.id = {}, .program = device};
    if (const int error = deletedFileOfLoop(device, mounts_, file); error != 0) return refused(error);
    if (!wanted_ || wanted_(file)) answer.files.push_back(std::move(file));
}

// A line reads "/swapfile    file    1048572    0    -2"; a path with a blank has an escape and is not found.
void HeldListing::addSwapFiles(int proc) {
    const Descriptor file = openAt(proc, "swaps", O_RDONLY);
    std::string text;
    if (file.isOpen()) readAll(file.number(), std::size_t{1} << 16U, text);
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        addOfKernel(std::string(nextWord(line)), "swap");
    }
}

}  // namespace

OpenFilesAnswer LinuxOpenFiles::list(const Wanted& wanted) const {
    HeldListing listing(wanted);
    const Descriptor proc = openAt(AT_FDCWD, proc_, kFolderFlags);
    if (!proc.isOpen()) return {};
    // Where processes of others are hidden, the first one is missing.
    listing.answer.sawAll = ::faccessat(proc.number(), "1", F_OK, 0) == 0;
    forEachName(proc, [&](const char* name) {
        const std::string_view digits(name);
        if (digits.find_first_not_of("0123456789") != std::string_view::npos) return;
        const Descriptor process = openAt(proc.number(), name, O_PATH | O_DIRECTORY);
        if (process.isOpen()) listing.addProcess(process.number(), static_cast<long>(numberOf(name, 10)));
    });
    listing.addLoopDevices(blockDevices_);
    listing.addSwapFiles(proc.number());
    return std::move(listing.answer);
}

}  // namespace hl
