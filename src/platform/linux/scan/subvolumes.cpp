#include "platform/linux/scan/subvolumes.h"

#include <errno.h>
#include <linux/btrfs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>

#include <cstring>
#include <memory>

namespace hl {

namespace {

constexpr std::uint64_t kReadOnlyRoot = 1;  // BTRFS_ROOT_SUBVOL_RDONLY of the kernel's own headers.

SubvolumeId idOf(const __u8 (&bytes)[BTRFS_UUID_SIZE]) {
    SubvolumeId id;
    std::memcpy(&id.high, bytes, sizeof id.high);
    std::memcpy(&id.low, bytes + sizeof id.high, sizeof id.low);
    return id;
}

// The kernel looks for the way from `folder` down to the folder that holds the subvolume, and fails if there
// is none. Of a way that is too long it does not tell where it begins.
bool liesBelow(int folder, std::uint64_t holder, std::uint64_t subvolume) {
    const auto way = std::make_unique<btrfs_ioctl_ino_lookup_user_args>();
    way->dirid = holder;
    way->treeid = subvolume;
    return ::ioctl(folder, BTRFS_IOC_INO_LOOKUP_USER, way.get()) >= 0 || errno == ENAMETOOLONG;
}

}  // namespace

bool isOnBtrfs(int folder) {
    struct statfs facts;
    return ::fstatfs(folder, &facts) == 0 && facts.f_type == BTRFS_SUPER_MAGIC;
}

// Success may be a positive number here.
int subvolumeOf(int folder, Subvolume& out) {
    if (!isOnBtrfs(folder)) return -ENOTTY;
    btrfs_ioctl_get_subvol_info_args facts = {};
    if (::ioctl(folder, BTRFS_IOC_GET_SUBVOL_INFO, &facts) < 0) return -errno;
    out = {.id = idOf(facts.uuid),
           .origin = idOf(facts.parent_uuid),
           .readOnly = (facts.flags & kReadOnlyRoot) != 0};
    return 0;
}

// One call tells up to 255 subvolumes that lie in that of the folder; EOVERFLOW says that there are more.
bool holdsSubvolume(int folder) {
    const auto held = std::make_unique<btrfs_ioctl_get_subvol_rootref_args>();
    for (bool more = true; more;) {
        more = false;
        if (::ioctl(folder, BTRFS_IOC_GET_SUBVOL_ROOTREF, held.get()) < 0) {
            if (errno != EOVERFLOW) return false;
            more = held->num_items > 0;
        }
        for (unsigned i = 0; i < held->num_items; ++i)
            if (liesBelow(folder, held->rootref[i].dirid, held->rootref[i].treeid)) return true;
        if (more) held->min_treeid = held->rootref[held->num_items - 1].treeid + 1;
    }
    return false;
}

}  // namespace hl
