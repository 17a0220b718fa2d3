// The mounts that this process sees, from the text of /proc/self/mountinfo. All functions may be called from
// any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace hl {

struct Mount {
    std::uint64_t id = 0;      ///< The number that statx reports (STATX_MNT_ID).
    std::uint64_t parent = 0;  ///< The mount that holds the mount point.
    std::string device;        ///< The number of the file system's device: "8:1".
    std::string root;          ///< The folder of the file system that is mounted; "/" except for bind mounts.
    std::string mountPoint;
    std::string kind;      ///< "ext4", "tmpfs", ...
    bool canHang = false;  ///< The value of kindCanHang() for its kind.
    std::string source;    ///< A device, "server:/share", or a name such as "tmpfs".
};

/// Parses the table; lines that make no sense are skipped, and escapes (\040) are undone.
std::vector<Mount> parseMountTable(std::string_view text);

/// Tells whether an absolute path is the folder or lies below it.
bool isAtOrBelow(std::string_view path, std::string_view folder);

/// Returns the target of a link as it stands there; empty if the path is no link.
std::string linkTarget(const std::string& path);

/// Returns the source and, if only a folder of it is mounted, that folder behind it.
std::string whatIsMounted(const Mount& mount);

/// Tells whether all of a file system is mounted, so that what is found there can add up to what it says is
/// used. One that is made of others has no blocks of its own.
bool showsWholeDisk(const Mount& mount);

/// Reads the table; empty if there is no /proc or no descriptor.
std::vector<Mount> readMountTable();

/// Tells whether the kind is a network's, served by the kernel or by a process.
bool isRemoteKind(std::string_view kind);

/// Tells whether a file system of this kind may leave a call unanswered for any time, because a server or a
/// user's process answers: network kinds, FUSE, and autofs, which waits for one of them.
bool kindCanHang(std::string_view kind);

/// Returns the last names of the mount points of mounts that can hang.
std::unordered_set<std::string> namesOfWhatCanHang(const std::vector<Mount>& mounts);

/// Returns the mount that an absolute path lies on if none of its names is a link; null if the table does not
/// tell. Only the table is asked.
const Mount* mountOf(const std::vector<Mount>& mounts, std::string_view path);

/// Tells whether a call with this path may hang. Links are followed, the last one too, but only on mounts
/// that cannot hang, so that this question never does; at the first mount that can hang the answer is yes. If
/// somebody changes the path after the answer, it may lead anywhere.
bool canHang(const std::vector<Mount>& mounts, const std::string& path);
/// Returns the first mount on the path that can hang; null if there is none. Without `followLast` the last
/// name is not followed as a link.
const Mount* mountThatCanHang(const std::vector<Mount>& mounts, const std::string& path,
                              bool followLast = true);
/// Reads the table as it is now and asks that.
bool canHang(const std::string& path);

}  // namespace hl
