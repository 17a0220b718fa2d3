#include "platform/linux/space/file_extents.h"

#include <fcntl.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>

#include <algorithm>
#include <new>

#include "platform/linux/process/descriptor.h"

namespace hl {

namespace {

constexpr std::uint64_t kJfs = 0x3153464a, kNtfs3 = 0x7366746e, kHfsPlus = 0x482b, kHfs = 0x4244;
constexpr std::uint64_t kRamfs = 0x858458f6, kExfat = 0x2011bab0, kUdf = 0x15013346;
constexpr std::uint64_t kAlone[] = {EXT4_SUPER_MAGIC,
                                    TMPFS_MAGIC,
                                    MSDOS_SUPER_MAGIC,
                                    F2FS_SUPER_MAGIC,
                                    REISERFS_SUPER_MAGIC,
                                    MINIX_SUPER_MAGIC,
                                    MINIX2_SUPER_MAGIC,
                                    MINIX3_SUPER_MAGIC,
                                    HUGETLBFS_MAGIC,
                                    kJfs,
                                    kNtfs3,
                                    kHfsPlus,
                                    kHfs,
                                    kRamfs,
                                    kExfat,
                                    kUdf};

constexpr unsigned kNoLength = FIEMAP_EXTENT_UNKNOWN | FIEMAP_EXTENT_DELALLOC | FIEMAP_EXTENT_DATA_INLINE;
constexpr unsigned kEncoded = FIEMAP_EXTENT_ENCODED | FIEMAP_EXTENT_DATA_ENCRYPTED;

}  // namespace

Sharing sharingOf(int open) {
    struct statfs facts {};
    if (::fstatfs(open, &facts) != 0) return Sharing::kUntold;
    const auto kind = static_cast<std::uint64_t>(facts.f_type) & 0xffffffffU;
    if (kind == XFS_SUPER_MAGIC) return Sharing::kBlocks;
    if (kind == BTRFS_SUPER_MAGIC) return Sharing::kExtents;
    return std::find(std::begin(kAlone), std::end(kAlone), kind) != std::end(kAlone) ? Sharing::kNone
                                                                                     : Sharing::kUntold;
}

// The entry was a regular file a moment ago. Should it be another thing by now, opening it waits for nobody.
bool FileExtents::ask(int folder, const char* name, const std::function<bool()>& goesOn) {
    found_.clear();
    inline_ = false;
    const Descriptor file = openAt(folder, name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW);
    if (!file.isOpen()) return false;
    bool atEnd = false;
    for (std::uint64_t from = 0; !atEnd && goesOn();)
        if (!askBatch(file.number(), from, atEnd)) return false;
    return true;
}

bool FileExtents::askBatch(int file, std::uint64_t& from, bool& atEnd) {
    auto* map = new (buffer_.data()) fiemap;
    map->fm_flags = map->fm_reserved = 0;
    map->fm_start = from;
    map->fm_length = FIEMAP_MAX_OFFSET - from;
    map->fm_extent_count = (kBytes - sizeof(fiemap)) / sizeof(fiemap_extent);
    if (::ioctl(file, FS_IOC_FIEMAP, map) != 0) return false;
    atEnd = map->fm_mapped_extents == 0;
    for (std::uint32_t i = 0; i < map->fm_mapped_extents; ++i) {
        const fiemap_extent& extent = map->fm_extents[i];
        const std::uint64_t next = extent.fe_logical + extent.fe_length;
        atEnd = (extent.fe_flags & FIEMAP_EXTENT_LAST) != 0 || next <= from;
        from = next;
        inline_ = inline_ || (extent.fe_flags & FIEMAP_EXTENT_DATA_INLINE) != 0;
        const bool encoded = (extent.fe_flags & kEncoded) != 0;
        const bool shared = (extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0;
        if ((extent.fe_flags & kNoLength) == 0 && (encoded || shared))
            found_.push_back({extent.fe_physical, extent.fe_length, shared, encoded});
    }
    return true;
}

}  // namespace hl
