// The kinds of file systems; ext4; btrfs. That of xfs is in kept_by_xfs.cpp.
#include "platform/linux/space/kept_space.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/btrfs.h>
#include <linux/btrfs_tree.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/linux/drives/mount_table.h"

namespace hl {

namespace {

Unknown whyUnknown(int error) {
    return error == EPERM || error == EACCES ? Unknown::kNeedsRoot : Unknown::kNotTold;
}

// Opens the disk that a folder lies on.
Descriptor diskOf(const Descriptor& folder) {
    struct stat facts;
    if (::fstat(folder.number(), &facts) != 0) return Descriptor();
    const std::string number =
        std::to_string(major(facts.st_dev)) + ":" + std::to_string(minor(facts.st_dev));
    const std::string target = linkTarget("/sys/dev/block/" + number);
    if (target.empty()) return Descriptor();
    return openAt(AT_FDCWD, "/dev" + target.substr(target.rfind('/')), O_RDONLY | O_NONBLOCK);
}

// --- ext4

/// Reads numbers of a disk at places that the file system's format gives them, the lower bytes first.
class OnDisk {
  public:
    explicit OnDisk(const Descriptor& disk) : disk_(disk.number()) {}
    template <class Number>
    Number at(std::uint64_t place) {
        std::array<unsigned char, sizeof(Number)> bytes{};
        const auto got = ::pread(disk_, bytes.data(), bytes.size(), static_cast<off_t>(place));
        failed_ |= got != static_cast<ssize_t>(bytes.size());
        Number number = 0;
        for (std::size_t i = bytes.size(); i-- > 0;) number = static_cast<Number>(number << 8 | bytes[i]);
        return number;
    }
    bool failed() const { return failed_; }

  private:
    int disk_;
    bool failed_ = false;
};

constexpr std::uint64_t kSuperBlock = 1024;
constexpr std::uint32_t kHasResizeInode = 0x10, kMetaGroups = 0x10, k64Bit = 0x80, kBigClusters = 0x200;
constexpr std::uint16_t kExtMagic = 0xef53;

/// The files of an ext4 file system that are in no folder.
class ExtInodes {
  public:
    explicit ExtInodes(OnDisk& disk) : disk_(disk) {
        blockBytes_ = std::uint64_t{1024} << std::min(super<std::uint32_t>(24), 6U);
        perGroup_ = super<std::uint32_t>(40);
        inodeBytes_ = super<std::uint16_t>(88);
        wide_ = (super<std::uint32_t>(96) & k64Bit) != 0;
        groupBytes_ = wide_ ? super<std::uint16_t>(254) : 32U;
    }
    template <class Number>
    Number super(std::uint64_t place) {
        return disk_.at<Number>(kSuperBlock + place);
    }
    std::uint64_t blockBytes() const { return blockBytes_; }
    /// Returns what the file takes, in bytes; 0 for the number 0.
    std::uint64_t taken(std::uint32_t number) {
        if (number == 0 || perGroup_ == 0) return 0;
        const std::uint64_t firstGroup = (super<std::uint32_t>(20) + std::uint64_t{1}) * blockBytes_;
        const std::uint64_t group = firstGroup + (number - 1) / perGroup_ * std::uint64_t{groupBytes_};
        std::uint64_t table = disk_.at<std::uint32_t>(group + 8);
        if (wide_) table |= std::uint64_t{disk_.at<std::uint32_t>(group + 40)} << 32;
        const std::uint64_t inode = table * blockBytes_ + (number - 1) % perGroup_ * inodeBytes_;
        constexpr std::uint32_t kCountsBlocks = 0x40000;
        const bool countsBlocks = (disk_.at<std::uint32_t>(inode + 32) & kCountsBlocks) != 0;
        const std::uint64_t count =
            disk_.at<std::uint32_t>(inode + 28) | std::uint64_t{disk_.at<std::uint16_t>(inode + 116)} << 32;
        return count * (countsBlocks ? blockBytes_ : kBlockBytes);
    }

  private:
    OnDisk& disk_;
    std::uint64_t blockBytes_ = 0, inodeBytes_ = 0;
    std::uint32_t perGroup_ = 0, groupBytes_ = 0;
    bool wide_ = false;
};

// --- btrfs

// Returns how often a block group of this kind stores each byte. Those with parity count it once.
std::uint64_t copies(std::uint64_t flags) {
    if ((flags & BTRFS_BLOCK_GROUP_RAID1C4) != 0) return 4;
    if ((flags & BTRFS_BLOCK_GROUP_RAID1C3) != 0) return 3;
    constexpr std::uint64_t kTwice =
        BTRFS_BLOCK_GROUP_RAID1 | BTRFS_BLOCK_GROUP_RAID10 | BTRFS_BLOCK_GROUP_DUP;
    return (flags & kTwice) != 0 ? 2 : 1;
}

struct SpaceKinds {
    alignas(btrfs_ioctl_space_args) std::array<char, 16384> memory{};
    btrfs_ioctl_space_args* args() { return reinterpret_cast<btrfs_ioctl_space_args*>(memory.data()); }
};

}  // namespace

// The journal and the tables of inodes are no part of what is used. Files without a folder are: the list of
// orphans, quotas, and of the blocks reserved for growing the one that lists them.
KeptSpace keptByExt4(const Descriptor& device) {
    OnDisk disk(device);
    ExtInodes inodes(disk);
    const bool isExt = inodes.super<std::uint16_t>(56) == kExtMagic;
    const auto incompatible = inodes.super<std::uint32_t>(96);
    const auto readOnly = inodes.super<std::uint32_t>(100);
    if (!isExt || (incompatible & kMetaGroups) != 0 || (readOnly & kBigClusters) != 0) return {};
    constexpr std::uint32_t kResizeInode = 7;
    std::uint64_t kept = 0;
    if ((inodes.super<std::uint32_t>(92) & kHasResizeInode) != 0 && inodes.taken(kResizeInode) > 0)
        kept = inodes.blockBytes();
    for (const std::uint64_t quotaOrOrphans : {576, 580, 620, 640})
        kept += inodes.taken(inodes.super<std::uint32_t>(quotaOrOrphans));
    return disk.failed() ? KeptSpace{} : KeptSpace{kept, Unknown::kNo};
}

// Used counts the space of each copy, divided by the copies of files' data, and all of the reserve for the
// tree's own changes.
KeptSpace keptByBtrfs(const Descriptor& folder) {
    constexpr std::uint64_t kReserve = std::uint64_t{1} << 49;
    SpaceKinds kinds;
    kinds.args()->space_slots =
        (kinds.memory.size() - sizeof(btrfs_ioctl_space_args)) / sizeof(btrfs_ioctl_space_info);
    if (::ioctl(folder.number(), BTRFS_IOC_SPACE_INFO, kinds.args()) != 0) return {0, whyUnknown(errno)};
    std::uint64_t tree = 0, reserve = 0, factor = 1;
    for (std::uint64_t i = 0; i < kinds.args()->total_spaces && i < kinds.args()->space_slots; ++i) {
        const btrfs_ioctl_space_info& space = kinds.args()->spaces[i];
        const bool isData = (space.flags & BTRFS_BLOCK_GROUP_DATA) != 0;
        if (isData && (space.flags & BTRFS_BLOCK_GROUP_METADATA) != 0) return {};
        if ((space.flags & kReserve) != 0) {
            reserve += space.total_bytes;
        } else if (isData) {
            factor = std::max(factor, copies(space.flags));
        } else {
            tree += space.used_bytes * copies(space.flags);
        }
    }
    return {tree / factor + reserve, Unknown::kNo};
}

KeptSpace keptSpace(const Descriptor& folder, const std::string& kind, std::uint64_t used,
                    Whereabouts& whereabouts) {
    if (kind == "tmpfs") return {0, Unknown::kNo};
    if (kind == "xfs") return keptByXfs(folder, used, whereabouts);
    if (kind == "btrfs") return keptByBtrfs(folder);
    if (kind != "ext4" && kind != "ext3" && kind != "ext2") return {};
    const Descriptor disk = diskOf(folder);
    return disk.isOpen() ? keptByExt4(disk) : KeptSpace{0, whyUnknown(errno)};
}

}  // namespace hl
