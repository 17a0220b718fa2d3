// The mounts that this process sees, from the text of /proc/self/mountinfo.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

struct Mount {
    std::uint64_t id = 0;  ///< As statx answers it (STATX_MNT_ID).
    std::string root;      ///< Folder of the file system that is mounted; "/" but for bind mounts.
    std::string mountPoint;
    std::string kind;    ///< "ext4", "tmpfs", ...
    std::string source;  ///< Device, "server:/share", or a name such as "tmpfs".
};

/// Lines that make no sense are passed over. Escapes (\040) are undone.
std::vector<Mount> parseMountTable(std::string_view text);

/// What is mounted there: the source, and behind it the mounted folder where that is not the whole.
std::string whatIsMounted(const Mount& mount);

/// Reads the table. Empty if there is no /proc.
std::vector<Mount> readMountTable();

}  // namespace hl
