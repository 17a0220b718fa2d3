// The mounts that this process sees, from the text of /proc/self/mountinfo.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace hl {

struct Mount {
    std::uint64_t id = 0;      ///< As statx answers it (STATX_MNT_ID).
    std::uint64_t parent = 0;  ///< The mount that holds the mount point.
    std::string device;        ///< Of the file system, by number: "8:1".
    std::string root;          ///< Folder of the file system that is mounted; "/" but for bind mounts.
    std::string mountPoint;
    std::string kind;      ///< "ext4", "tmpfs", ...
    bool canHang = false;  ///< By its kind: kindCanHang().
    std::string source;    ///< Device, "server:/share", or a name such as "tmpfs".
};

/// Lines that make no sense are passed over. Escapes (\040) are undone.
std::vector<Mount> parseMountTable(std::string_view text);

/// What is mounted there: the source, and behind it the mounted folder where that is not the whole.
std::string whatIsMounted(const Mount& mount);

/// Reads the table. Empty if there is no /proc, or no descriptor. From any thread, as all here.
std::vector<Mount> readMountTable();

/// Whether the kind is one of the network's, in a process of its own or not.
bool isRemoteKind(std::string_view kind);

/// Whether a file system of this kind may leave a call unanswered for as long as it likes, since a server or
/// a process of some user answers: the network's kinds, FUSE, and autofs, which waits for one of them.
bool kindCanHang(std::string_view kind);

/// The last names of the mount points of those that can hang.
std::unordered_set<std::string> namesOfWhatCanHang(const std::vector<Mount>& mounts);

/// The mount that an absolute path lies on if none of its names is a link; null if the table does not tell.
/// The table alone is asked.
const Mount* mountOf(const std::vector<Mount>& mounts, std::string_view path);

/// Whether a call with this path may hang. Links are followed, the last one too, but only on mounts that
/// cannot hang, so that the question itself never does; where the first mount that can hang is met the answer
/// is yes. A path that somebody changes after the answer may lead anywhere.
bool canHang(const std::vector<Mount>& mounts, const std::string& path);
/// The mount that can hang which such a call meets first; null for none. Without `followLast` the last name
/// is taken for no link.
const Mount* mountThatCanHang(const std::vector<Mount>& mounts, const std::string& path,
                              bool followLast = true);
/// The same by the table as it is now.
bool canHang(const std::string& path);

}  // namespace hl
