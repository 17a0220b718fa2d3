#include "platform/linux/drives/drives.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/text.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

constexpr std::size_t kLongestMountTable = std::size_t{64} << 20;

template <std::size_t Size>
bool oneOf(std::string_view text, const std::array<std::string_view, Size>& list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

// --- kinds of file systems

bool foldsNames(std::string_view kind) {
    constexpr auto kKinds = std::to_array<std::string_view>({"cifs", "smb3", "smbfs", "fuse.smbnetfs"});
    return oneOf(kind, kKinds);
}

bool isPool(std::string_view kind) {
    constexpr auto kKinds = std::to_array<std::string_view>({"btrfs", "zfs", "bcachefs", "fuse.mergerfs"});
    return oneOf(kind, kKinds);
}

bool isMemory(std::string_view kind) {
    return kind == "tmpfs" || kind == "ramfs";
}

bool isImage(std::string_view kind) {
    constexpr auto kKinds = std::to_array<std::string_view>({"squashfs", "erofs", "cramfs"});
    return oneOf(kind, kKinds);
}

bool isDisc(std::string_view kind) {
    return kind == "iso9660" || kind == "udf";
}

bool isOfTheSystem(std::string_view mountPoint) {
    constexpr auto kFolders =
        std::to_array<std::string_view>({"/dev", "/proc", "/run", "/sys", "/var/run", "/var/lib"});
    return std::any_of(kFolders.begin(), kFolders.end(),
                       [&](std::string_view folder) { return isAtOrBelow(mountPoint, folder); });
}

// --- the table

struct TableEntry {
    Mount mount;
    std::string device;  ///< "8:1"; the major number is 0 if the kernel made the number up.

    bool hasBlockDevice() const { return !device.empty() && !device.starts_with("0:"); }
};

std::string_view lastName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

// Returns the third field of each line by the first one.
std::unordered_map<std::uint64_t, std::string> devicesOf(std::string_view table) {
    std::unordered_map<std::uint64_t, std::string> devices;
    while (!table.empty()) {
        const std::string_view line = table.substr(0, table.find('\n'));
        table.remove_prefix(std::min(line.size() + 1, table.size()));
        const std::size_t first = line.find(' ');
        const std::size_t second = first == std::string_view::npos ? first : line.find(' ', first + 1);
        if (second == std::string_view::npos) continue;
        const std::string_view device = line.substr(second + 1, line.find(' ', second + 1) - second - 1);
        const auto id = parseInteger(line.substr(0, first));
        if (id && *id > 0) devices.emplace(static_cast<std::uint64_t>(*id), device);
    }
    return devices;
}

// Leaves out mounts that a later mount at the same place hides.
std::vector<TableEntry> visibleMounts(const std::string& root) {
    const std::string text = contentOf(root + "/proc/self/mountinfo", kLongestMountTable);
    auto devices = devicesOf(text);
    std::vector<TableEntry> entries;
    std::unordered_set<std::string> seen;
    std::vector<Mount> mounts = parseMountTable(text);
    for (auto mount = mounts.rbegin(); mount != mounts.rend(); ++mount)
        if (seen.insert(mount->mountPoint).second)
            entries.push_back({std::move(*mount), std::move(devices[mount->id])});
    std::reverse(entries.begin(), entries.end());
    return entries;
}

bool isRealFileSystem(const TableEntry& entry) {
    const Mount& mount = entry.mount;
    if (mount.mountPoint == "/" || isRemoteKind(mount.kind) || isPool(mount.kind)) return true;
    if (isMemory(mount.kind)) return !isOfTheSystem(mount.mountPoint);
    return entry.hasBlockDevice() && !isImage(mount.kind);
}

// Returns a text of which the list may have only one entry.
std::string identityOf(const TableEntry& entry) {
    const Mount& mount = entry.mount;
    if (isRemoteKind(mount.kind)) return mount.source;
    if (mount.kind == "zfs") return "zfs:" + mount.source.substr(0, mount.source.find('/'));
    return entry.device;
}

// Tells whether a single file is mounted, as containers do with /etc/hosts. The kernel has that in memory, so
// asking does not wait, unless the path leads over a mount that can hang.
bool isFile(const TableEntry& entry, const std::vector<std::string>& mayHang, const std::string& root) {
    if (entry.mount.root == "/" || kindCanHang(entry.mount.kind)) return false;
    const auto leadsOver = [&](const std::string& folder) {
        return isAtOrBelow(entry.mount.mountPoint, folder);
    };
    if (std::any_of(mayHang.begin(), mayHang.end(), leadsOver)) return false;
    struct stat facts = {};
    return ::lstat((root + entry.mount.mountPoint).c_str(), &facts) == 0 && !S_ISDIR(facts.st_mode);
}

// --- what /sys and /dev know

// Returns "sda1", found by the device's number, or by its name if the file system made its number up.
std::string deviceName(const TableEntry& entry, const std::string& root) {
    if (entry.hasBlockDevice())
        return std::string(lastName(linkTarget(root + "/sys/dev/block/" + entry.device)));
    if (!entry.mount.source.starts_with("/dev/")) return {};
    const std::string target = linkTarget(root + entry.mount.source);
    return std::string(lastName(target.empty() ? entry.mount.source : target));
}

// For a partition, the facts of the disk are in the folder above its own.
std::string diskFact(const std::string& folder, const char* fact) {
    const std::string own = contentOf(folder + "/" + fact, 64);
    return std::string(trimWhite(own.empty() ? contentOf(folder + "/../" + fact, 64) : own));
}

DriveType typeOf(const TableEntry& entry, const std::string& device, const std::string& root) {
    constexpr std::string_view kScsiDisc = "5";
    const std::string& kind = entry.mount.kind;
    if (isRemoteKind(kind)) return DriveType::kRemote;
    if (isMemory(kind)) return DriveType::kRam;
    if (isDisc(kind) || entry.device.starts_with("11:")) return DriveType::kDisc;
    if (device.empty()) return DriveType::kFixed;
    const std::string folder = root + "/sys/class/block/" + device;
    if (diskFact(folder, "device/type") == kScsiDisc) return DriveType::kDisc;
    return diskFact(folder, "removable") == "1" ? DriveType::kRemovable : DriveType::kFixed;
}

int hexDigit(char c) {
    return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

// Undoes "\x20" and the like, by which udev writes characters that cannot be in a file's name.
std::string unescapedLabel(std::string_view name) {
    std::string label;
    while (!name.empty()) {
        const bool escape =
            name.size() >= 4 && name.starts_with("\\x") && hexDigit(name[2]) >= 0 && hexDigit(name[3]) >= 0;
        label += escape ? static_cast<char>(hexDigit(name[2]) * 16 + hexDigit(name[3])) : name[0];
        name.remove_prefix(escape ? 4 : 1);
    }
    return label;
}

struct Labels {
    std::unordered_map<std::string, std::string> byDevice;  ///< "sda1"
    int error = 0;
};

Labels readLabels(const std::string& root) {
    Labels labels;
    const std::string folder = root + "/dev/disk/by-label";
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.c_str()), ::closedir);
    if (entries == nullptr) {
        labels.error = errno;
        return labels;
    }
    while (const dirent* entry = ::readdir(entries.get())) {
        const std::string_view name = entry->d_name;
        const std::string target = linkTarget(folder + "/" + entry->d_name);
        if (!target.empty()) labels.byDevice.emplace(lastName(target), unescapedLabel(name));
    }
    return labels;
}

void setLabel(Drive& drive, const Mount& mount, const std::string& device, const Labels& labels) {
    if (drive.type == DriveType::kRemote || mount.kind == "zfs") {
        drive.label = mount.source;
    } else if (!device.empty()) {
        const auto found = labels.byDevice.find(device);
        if (found != labels.byDevice.end()) drive.label = found->second;
        if (labels.error != 0) drive.label = systemError(labels.error);
    }
}

Drive driveOf(const TableEntry& entry, const Labels& labels, const std::string& root) {
    Drive drive{.root = entry.mount.mountPoint, .fileSystem = entry.mount.kind};
    const std::string device = deviceName(entry, root);
    drive.type = typeOf(entry, device, root);
    setLabel(drive, entry.mount, device, labels);
    return drive;
}

// --- shares by their names

// Returns "server/share/folder" for "\\server\share\folder", "//server/share", "server:/share" and
// "user@server:folder".
std::string shareName(std::string_view source) {
    std::string name(source);
    std::replace(name.begin(), name.end(), '\\', '/');
    const std::size_t colon = name.find(':');
    if (!name.starts_with('/') && colon != std::string::npos) {
        name.replace(colon, 1, "/");
        name.erase(0, name.rfind('@', colon) + 1);
    }
    std::string clean;
    for (const char c : name)
        if (c != '/' || (!clean.empty() && clean.back() != '/')) clean += c;
    if (clean.ends_with('/')) clean.pop_back();
    const std::size_t server = std::min(clean.find('/'), clean.size());
    return lowerCase(clean.substr(0, server)) + clean.substr(server);
}

// Returns the part of `unc` behind the share, which begins with "/" or is empty; nothing if it is another
// share.
std::optional<std::string> behindShare(const std::string& unc, const Mount& mount) {
    if (!isRemoteKind(mount.kind)) return std::nullopt;
    const std::string share = shareName(mount.source);
    const std::string front = unc.substr(0, share.size());
    const bool same = foldsNames(mount.kind) ? compareFolded(front, share) == 0 : front == share;
    const bool ends = unc.size() <= share.size() || unc[share.size()] == '/';
    if (share.empty() || front.size() < share.size() || !same || !ends) return std::nullopt;
    return unc.substr(share.size());
}

}  // namespace

LinuxDrives::LinuxDrives(DriveSources sources)
    : root_(std::move(sources.root)), probe_(std::move(sources.space), sources.limit) {}

std::vector<Drive> LinuxDrives::drives() {
    const std::vector<TableEntry> entries = visibleMounts(root_);
    std::vector<std::string> mayHang;
    for (const TableEntry& entry : entries)
        if (kindCanHang(entry.mount.kind)) mayHang.push_back(entry.mount.mountPoint);
    const Labels labels = readLabels(root_);
    std::unordered_set<std::string> seen;
    std::vector<Drive> drives;
    for (const TableEntry& entry : entries) {
        if (!isRealFileSystem(entry) || isFile(entry, mayHang, root_)) continue;
        if (seen.insert(identityOf(entry)).second) drives.push_back(driveOf(entry, labels, root_));
    }
    return drives;
}

std::optional<Drive> LinuxDrives::network(std::string_view unc) {
    const std::string name = shareName(unc);
    std::optional<Drive> nearest;
    std::size_t shortest = std::string::npos;
    for (const TableEntry& entry : visibleMounts(root_)) {
        const auto behind = behindShare(name, entry.mount);
        if (!behind || behind->size() >= shortest) continue;
        shortest = behind->size();
        nearest = driveOf(entry, {}, root_);
        nearest->root += nearest->root == "/" && !behind->empty() ? behind->substr(1) : *behind;
    }
    return nearest;
}

void LinuxDrives::ask(const Drive& drive, std::function<void(const DriveAnswer&)> answered) {
    probe_.ask(drive.root, drive.type == DriveType::kRemote, std::move(answered));
}

}  // namespace hl
