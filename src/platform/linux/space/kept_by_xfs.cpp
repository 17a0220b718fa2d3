// What xfs counts as used besides files and folders: what it reserves of its free space, its trees, and the
// blocks of inodes. Its map of the disk (FS_IOC_GETFSMAP) tells what is really free; only root gets it.
#include <errno.h>
#include <linux/fsmap.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/linux/space/kept_space.h"

namespace hl {

namespace {

// These two are the kernel's xfs_fsop_geom_v1 and xfs_fsop_counts.
struct XfsGeometry {
    std::uint32_t blockSize, rtExtentSize, groupBlocks, groups, logBlocks, sectorSize, inodeSize,
        inodePercent;
    std::uint64_t dataBlocks, rtBlocks, rtExtents, logStart;
    std::uint8_t uuid[16];
    std::uint32_t stripeUnit, stripeWidth, version, flags, logSectorSize, rtSectorSize, folderBlockSize;
};
struct XfsCounts {
    std::uint64_t freeData, freeRtExtents, freeInodes, inodes;
};
constexpr unsigned long kAskGeometry = _IOR('X', 100, XfsGeometry);
constexpr unsigned long kAskCounts = _IOR('X', 113, XfsCounts);
constexpr std::uint32_t kHasFreeInodeTree = 1U << 18, kHasOwners = 1U << 19, kSharesExtents = 1U << 20;
constexpr std::uint64_t kLogOwner = std::uint64_t{'X'} << 32 | 2;

/// What the map tells of the disk of files, in bytes.
struct XfsMap {
    std::uint64_t free = 0;
    std::uint64_t own = 0;  ///< What the file system has itself, but the log; 0 if the map has no owners.
    int error = 0;
};

void addExtent(XfsMap& map, const struct fsmap& extent) {
    if ((extent.fmr_flags & FMR_OF_SPECIAL_OWNER) == 0) return;
    if (extent.fmr_owner == FMR_OWN_FREE) {
        map.free += extent.fmr_length;
    } else if (extent.fmr_owner != FMR_OWN_UNKNOWN && extent.fmr_owner != kLogOwner) {
        map.own += extent.fmr_length;
    }
}

XfsMap readMap(const Descriptor& folder, Whereabouts& whereabouts) {
    constexpr std::size_t kExtents = 1024;
    struct stat facts;
    if (::fstat(folder.number(), &facts) != 0) return {.error = errno};
    const auto disk = static_cast<std::uint32_t>(makedev(major(facts.st_dev), minor(facts.st_dev)));
    std::vector<std::uint64_t> memory((sizeof(fsmap_head) + kExtents * sizeof(struct fsmap)) / 8 + 1);
    auto* head = reinterpret_cast<fsmap_head*>(memory.data());
    head->fmh_count = kExtents;
    struct fsmap& last = head->fmh_keys[1];
    last.fmr_device = last.fmr_flags = UINT32_MAX;
    last.fmr_physical = last.fmr_owner = last.fmr_offset = UINT64_MAX;
    XfsMap map;
    for (bool more = true; more && !whereabouts.unwanted();) {
        whereabouts.at([] { return std::string(); });
        if (::ioctl(folder.number(), FS_IOC_GETFSMAP, head) != 0) return {.error = errno};
        for (std::uint32_t i = 0; i < head->fmh_entries; ++i)
            if (head->fmh_recs[i].fmr_device == disk) addExtent(map, head->fmh_recs[i]);
        more = head->fmh_entries > 0 && (head->fmh_recs[head->fmh_entries - 1].fmr_flags & FMR_OF_LAST) == 0;
        if (more) fsmap_advance(head);
    }
    return map;
}

// For each group: its four headers, and the first block of each of its trees.
std::uint64_t firstBlocks(const XfsGeometry& of) {
    std::uint64_t trees = 3;  // Free space by place and by length, inodes.
    if ((of.flags & kHasFreeInodeTree) != 0) ++trees;
    if ((of.flags & kSharesExtents) != 0) ++trees;
    const std::uint64_t headers = (4 * std::uint64_t{of.sectorSize} + of.blockSize - 1) / of.blockSize;
    return of.groups * (headers + trees) * of.blockSize;
}

}  // namespace

// What it says is used, less what is not free by the map, is what it reserves.
KeptSpace keptByXfs(const Descriptor& folder, std::uint64_t used, Whereabouts& whereabouts) {
    XfsGeometry geometry{};
    XfsCounts counts{};
    if (::ioctl(folder.number(), kAskGeometry, &geometry) != 0 ||
        ::ioctl(folder.number(), kAskCounts, &counts) != 0)
        return {};
    const XfsMap map = readMap(folder, whereabouts);
    if (map.error != 0) return {0, map.error == EPERM ? Unknown::kNeedsRoot : Unknown::kNotTold};
    const std::uint64_t log = geometry.logStart != 0 ? geometry.logBlocks : 0;
    const std::uint64_t notFree = (geometry.dataBlocks - log) * geometry.blockSize - map.free;
    const bool hasOwners = (geometry.flags & kHasOwners) != 0;
    const std::uint64_t own =
        hasOwners ? map.own : counts.inodes * geometry.inodeSize + firstBlocks(geometry);
    // Blocks that its trees of free space have are used by the map, but free by its count.
    const std::uint64_t kept = used + own;
    return {kept > notFree ? kept - notFree : 0, Unknown::kNo};
}

}  // namespace hl
