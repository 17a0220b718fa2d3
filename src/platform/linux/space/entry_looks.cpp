#include "platform/linux/space/entry_looks.h"

#include <errno.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <utility>

namespace hl {

namespace {

constexpr unsigned kEntryMask = STATX_TYPE | STATX_INO | STATX_NLINK | STATX_BLOCKS;
constexpr std::uint64_t kEntrySector = 512;

EntryLook::Kind kindOf(const struct statx& facts) {
    if (S_ISDIR(facts.stx_mode)) return EntryLook::Kind::kFolder;
    const bool isMount = (facts.stx_attributes & facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
    return isMount ? EntryLook::Kind::kMount : EntryLook::Kind::kFile;
}

}  // namespace

void EntryLooks::add(int folder, const char* name, bool mayBeFolder) {
    if (count_ == 0) names_.clear();
    EntryLook& entry = entries_[count_++];
    entry.folder = folder;
    entry.name = names_.size();
    entry.mayBeFolder = mayBeFolder;
    names_.append(name).push_back('\0');
}

// One look alone is quicker than a second thread is awake.
std::span<EntryLook> EntryLooks::look() {
    const std::size_t count = std::exchange(count_, 0);
    if (areShared()) {
        work_.run(count, [&](std::size_t thread, std::size_t item) { lookAt(thread, entries_[item]); });
    } else {
        for (std::size_t item = 0; item < count; ++item) lookAt(0, entries_[item]);
    }
    return std::span(entries_).first(count);
}

// The caller's thread alone tells where it is, so that a disk is silent if either of them waits for it.
void EntryLooks::lookAt(std::size_t thread, EntryLook& entry) {
    entry.kind = EntryLook::Kind::kGone;
    entry.extents = EntryLook::Extents::kNotAsked;
    if (whereabouts_.unwanted()) return;
    if (thread == 0) whereabouts_.at([&] { return place_; });
    struct statx facts {};
    const int error = calls_.look(entry.folder, nameOf(entry), false, kEntryMask, facts);
    if (error == -ENOENT) return;
    entry.kind = error == 0 ? kindOf(facts) : EntryLook::Kind::kUnknown;
    if (entry.kind != EntryLook::Kind::kFile) return;
    entry.file = {{makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino},
                  facts.stx_nlink,
                  facts.stx_blocks * kEntrySector};
    entry.hasExtents = areShared() && S_ISREG(facts.stx_mode) && facts.stx_blocks != 0;
    if (entry.hasExtents && entry.file.links <= 1) askExtents(thread, entry);
}

void EntryLooks::askExtents(std::size_t thread, EntryLook& entry) {
    FileExtents& extents = extents_[thread];
    if (!extents.ask(entry.folder, nameOf(entry), goesOn_)) {
        entry.extents = EntryLook::Extents::kUntold;
        return;
    }
    entry.extents = extents.isInline() ? EntryLook::Extents::kInline : EntryLook::Extents::kTold;
    entry.special = extents.found();
}

}  // namespace hl
