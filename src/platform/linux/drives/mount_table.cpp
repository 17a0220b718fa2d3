#include "platform/linux/drives/mount_table.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <utility>

#include "base/text.h"
#include "platform/linux/process/descriptor.h"

namespace hl {

namespace {

bool octal(char c) {
    return c >= '0' && c <= '7';
}

// Undoes "\040" and the like, by which the table writes blank, tab, line break and backslash.
std::string unescaped(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        if (text.size() >= 4 && text[0] == '\\' && octal(text[1]) && octal(text[2]) && octal(text[3])) {
            out += static_cast<char>((text[1] - '0') * 64 + (text[2] - '0') * 8 + (text[3] - '0'));
            text.remove_prefix(4);
        } else {
            out += text[0];
            text.remove_prefix(1);
        }
    }
    return out;
}

std::string_view nextField(std::string_view& line) {
    const std::size_t end = line.find(' ');
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    return field;
}

// A line reads "36 35 98:0 /root /point rw,noatime shared:1 - ext3 /dev/root rw,errors=continue".
bool parseLine(std::string_view line, Mount& mount) {
    const auto id = parseInteger(nextField(line));
    const auto parent = parseInteger(nextField(line));
    mount.device = nextField(line);
    mount.root = unescaped(nextField(line));
    mount.mountPoint = unescaped(nextField(line));
    nextField(line);  // These are the options of the mount.
    while (!line.empty() && nextField(line) != "-") {
    }
    mount.kind = unescaped(nextField(line));
    mount.source = unescaped(nextField(line));
    mount.canHang = kindCanHang(mount.kind);
    mount.id = static_cast<std::uint64_t>(id.value_or(0));
    mount.parent = static_cast<std::uint64_t>(parent.value_or(0));
    return id.value_or(0) > 0 && mount.mountPoint.starts_with('/') && !mount.kind.empty();
}

std::string currentFolder() {
    std::array<char, PATH_MAX> path;
    return ::getcwd(path.data(), path.size()) == nullptr ? "/" : path.data();
}

}  // namespace

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return true;
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string linkTarget(const std::string& path) {
    std::array<char, PATH_MAX> target;
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : std::string();
}

std::vector<Mount> parseMountTable(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        Mount mount;
        if (parseLine(text.substr(0, end), mount)) mounts.push_back(std::move(mount));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return mounts;
}

std::string whatIsMounted(const Mount& mount) {
    return mount.root == "/" || mount.root.empty() ? mount.source : mount.source + ":" + mount.root;
}

bool showsWholeDisk(const Mount& mount) {
    return mount.root == "/" && mount.kind != "overlay" && mount.kind != "aufs" && mount.kind != "ecryptfs";
}

std::vector<Mount> readMountTable() {
    const Descriptor file = openAt(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY);
    if (!file.isOpen()) return {};
    std::string text;
    std::array<char, 16384> buffer;
    for (ssize_t got = 0; (got = ::read(file.number(), buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(got));
    return parseMountTable(text);
}

bool isRemoteKind(std::string_view kind) {
    constexpr auto kKinds = std::to_array<std::string_view>(
        {"nfs",       "nfs4",          "cifs",        "smb3",           "smbfs",           "ncpfs",
         "afs",       "ceph",          "coda",        "lustre",         "orangefs",        "beegfs",
         "davfs",     "fuse.smbnetfs", "fuse.sshfs",  "fuse.curlftpfs", "fuse.davfs",      "fuse.rclone",
         "fuse.s3fs", "fuse.ceph",     "fuse.davfs2", "fuse.gcsfuse",   "fuse.glusterfs",  "9p",
         "virtiofs",  "vboxsf",        "prl_fs",      "vmhgfs",         "fuse.vmhgfs-fuse"});
    return std::find(kKinds.begin(), kKinds.end(), kind) != kKinds.end();
}

bool kindCanHang(std::string_view kind) {
    const bool isFuse = kind == "fuse" || kind == "fuseblk" || kind.starts_with("fuse.");
    return isFuse || kind == "autofs" || isRemoteKind(kind);
}

std::unordered_set<std::string> namesOfWhatCanHang(const std::vector<Mount>& mounts) {
    std::unordered_set<std::string> names;
    for (const Mount& mount : mounts)
        if (mount.canHang) names.insert(mount.mountPoint.substr(mount.mountPoint.rfind('/') + 1));
    return names;
}

// Goes from mount to mount, as the kernel goes down a path: of the mounts in a mount, it enters the one whose
// mount point comes first. A mount that covers another one is in that one.
const Mount* mountOf(const std::vector<Mount>& mounts, std::string_view path) {
    const auto isListed = [&](std::uint64_t id) {
        return std::any_of(mounts.begin(), mounts.end(), [&](const Mount& mount) { return mount.id == id; });
    };
    const Mount* at = nullptr;
    for (std::size_t steps = 0; steps <= mounts.size(); ++steps) {
        const Mount* next = nullptr;
        for (const Mount& mount : mounts) {
            const bool liesHere = at == nullptr ? mount.parent == mount.id || !isListed(mount.parent)
                                                : mount.parent == at->id && &mount != at;
            if (!liesHere || !isAtOrBelow(path, mount.mountPoint)) continue;
            if (next == nullptr || mount.mountPoint.size() < next->mountPoint.size()) next = &mount;
        }
        if (next == nullptr) break;
        at = next;
    }
    return at;
}

namespace {

// Returns the mount that a path without links is on, if it can hang. Few mounts can: most paths are on none
// of them by their names alone.
const Mount* whichCanHang(const std::vector<Mount>& mounts, const std::string& path) {
    const auto mayHold = [&](const Mount& mount) {
        return mount.canHang && isAtOrBelow(path, mount.mountPoint);
    };
    if (std::none_of(mounts.begin(), mounts.end(), mayHold)) return nullptr;
    const Mount* mount = mountOf(mounts, path);
    return mount != nullptr && mount->canHang ? mount : nullptr;
}

}  // namespace

const Mount* mountThatCanHang(const std::vector<Mount>& mounts, const std::string& path, bool followLast) {
    constexpr int kMostLinks = 40;  // The kernel follows no more.
    const bool some = std::any_of(mounts.begin(), mounts.end(), [](const Mount& m) { return m.canHang; });
    if (!some) return nullptr;
    if (const Mount* root = whichCanHang(mounts, "/")) return root;
    std::string at;  // The path so far; empty means "/".
    std::string rest = path.starts_with('/') ? path : currentFolder() + "/" + path;
    for (int links = 0; !rest.empty();) {
        const std::size_t slash = rest.find('/');
        const std::string name = rest.substr(0, slash);
        rest.erase(0, slash == std::string::npos ? rest.size() : slash + 1);
        if (name.empty() || name == ".") continue;
        if (name == "..") {
            at.resize(at.empty() ? 0 : at.rfind('/'));
            continue;
        }
        std::string next = at;
        next.append("/").append(name);
        if (const Mount* mount = whichCanHang(mounts, next)) return mount;
        if (rest.empty() && !followLast) break;
        const std::string target = linkTarget(next);
        if (target.empty() || ++links > kMostLinks) {
            at = std::move(next);
            continue;
        }
        if (target.starts_with('/')) at.clear();
        rest.insert(0, "/").insert(0, target);
    }
    return nullptr;
}

bool canHang(const std::vector<Mount>& mounts, const std::string& path) {
    return mountThatCanHang(mounts, path) != nullptr;
}

bool canHang(const std::string& path) {
    return canHang(readMountTable(), path);
}

}  // namespace hl
