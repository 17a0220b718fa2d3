#include "platform/linux/change/found_entry.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace hl {

int look(int folder, const std::string& name, FoundEntry& entry) {
    constexpr unsigned kWanted = STATX_TYPE | STATX_MODE | STATX_UID | STATX_INO | STATX_MNT_ID;
    struct statx facts {};
    if (statx(folder, name.c_str(), AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, kWanted, &facts) !=
        0)
        return errno;
    entry.device = makedev(facts.stx_dev_major, facts.stx_dev_minor);
    entry.mount = (facts.stx_mask & STATX_MNT_ID) != 0 ? facts.stx_mnt_id : entry.device;
    entry.inode = facts.stx_ino;
    entry.mode = facts.stx_mode;
    entry.owner = facts.stx_uid;
    return 0;
}

int renameAnew(const Descriptor& from, const std::string& name, const Descriptor& to,
               const std::string& newName) {
    if (renameat2(from.number(), name.c_str(), to.number(), newName.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
    FoundEntry there;
    if (const int error = look(to.number(), newName, there); error != ENOENT)
        return error == 0 ? EEXIST : error;
    return renameat(from.number(), name.c_str(), to.number(), newName.c_str()) == 0 ? 0 : errno;
}

}  // namespace hl
