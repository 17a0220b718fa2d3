#include "platform/linux/scan/folder_opener.h"

#include <errno.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <utility>

namespace hl {

namespace {
// The kernel follows this many links on one path and then reports ELOOP. Folders are opened one by one here,
// so the links of the chain are counted instead.
constexpr std::uint32_t kMostLinks = 40;
}  // namespace

FolderOpener::FolderOpener(std::shared_ptr<DirectoryCalls> calls, std::string source,
                           const ReadOptions& options, std::chrono::milliseconds linkLimit,
                           OpenFolders& folders)
    : calls_(*calls),
      source_(std::move(source)),
      options_(options),
      mounts_(readMountTable()),
      links_(std::move(calls), mounts_, linkLimit),
      folders_(folders) {}

// --- opening

Folder* FolderOpener::makeSource() const {
    Folder* source = OpenFolders::make(nullptr, source_, false);
    source->canHang = canHang(mounts_, source_);
    return source;
}

int FolderOpener::open(ReadItem* item, Reader& reader, Lock& lock) {
    Folder* folder = item->folder;
    Folder* parent = folder->parent();
    int descriptor = parent == nullptr ? openSource(item, lock) : openBelow(item, parent, reader, lock);
    if (descriptor >= 0) descriptor = learnFolder(item, descriptor, lock);
    if (descriptor < 0) return descriptor;
    folders_.addNeed(folder);
    if (parent == nullptr) folders_.addNeed(folder);  // This need is never dropped: the source stays open.
    folders_.opened(folder, descriptor);
    return folders_.pin(folder);
}

int FolderOpener::openSource(ReadItem* item, Lock& lock) {
    lock.unlock();
    const int descriptor = calls_.openSource(source_);
    if (descriptor >= 0) calls_.identity(descriptor, item->found.source);
    wantsOwnBlocks_ = options_.folderSpace == FolderSpace::kAlways ||
                      (options_.folderSpace == FolderSpace::kOfWholeDisk && isWholeDisk(descriptor));
    if (options_.followLinks) wayDown_.begin(calls_, source_, options_.levelsAbove);
    lock.lock();
    return descriptor;
}

// Where only a folder of a file system is mounted, the rest of it cannot be counted.
bool FolderOpener::isWholeDisk(int source) const {
    struct statx facts;
    if (source < 0 || calls_.look(source, "", false, STATX_MNT_ID, facts) < 0 ||
        (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) == 0 || (facts.stx_mask & STATX_MNT_ID) == 0)
        return false;
    return std::any_of(mounts_.begin(), mounts_.end(), [&](const Mount& mount) {
        return mount.id == facts.stx_mnt_id && showsWholeDisk(mount);
    });
}

int FolderOpener::openBelow(ReadItem* item, Folder* parent, Reader& reader, Lock& lock) {
    int descriptor = -ELOOP;
    const int from = folders_.pin(parent, &lock);
    if (from < 0) {
        descriptor = from;
    } else {
        if (item->lastOfRange) reopenNextNeeded(item, parent);
        if (item->folder->linksAbove() <= kMostLinks) descriptor = openOnce(item, from, reader, lock);
        if (descriptor == -EXDEV) learnMount(item, from);
        if (descriptor < 0 && descriptor != kForAnother) learnUnopened(item, from);
        folders_.unpin(parent);
        if (descriptor == kForAnother) return descriptor;
    }
    folders_.dropNeed(parent);
    return descriptor;
}

// The folder that a reader needs after this one's parent may have been closed for lack of descriptors; the
// parent, still open, is the way back to it. Looking at a few items of the list suffices; a folder missed
// here is found by name.
void FolderOpener::reopenNextNeeded(const ReadItem* item, Folder* parent) {
    constexpr int kMostLooks = 64;
    const ReadItem* next = item->givenUp ? nullptr : item->workNext;
    for (int looks = 0; next != nullptr && looks < kMostLooks; ++looks, next = next->workNext) {
        if (next->kind == ReadItem::Kind::kFolder || next->folder->depth() >= parent->depth()) continue;
        return folders_.reopenFromBelow(next->folder, parent);
    }
}

int FolderOpener::openOnce(ReadItem* item, int parent, Reader& reader, Lock& lock) {
    Folder* folder = item->folder;
    const char* name = folder->name().c_str();
    if (leadsWhereItCanHang(folder, parent)) {
        if (!options_.followLinks) return -EXDEV;
        folder->canHang = true;
        if (!reader.enter(item)) return kForAnother;
    }
    for (;;) {
        lock.unlock();
        const int descriptor = calls_.openChild(parent, name, folder->throughLink(), options_.followLinks);
        lock.lock();
        if (!isShortage(descriptor) || !folders_.closeOne()) return descriptor;
        if (folder->canHang) folders_.closeClosable(lock);
    }
}

// Asked for links, and for the few folders that have the name of a mount point: opening one of those may
// already hang, if the system still has to mount something there.
bool FolderOpener::leadsWhereItCanHang(const Folder* folder, int parent) const {
    if (folder->canHang || !links_.someCanHang()) return false;
    if (!folder->throughLink() && !links_.isNameOfMount(folder->name())) return false;
    const std::string above = calls_.pathOf(parent);
    if (above.empty()) return options_.followLinks;  // The folder is too deep for the system to tell.
    return hl::canHang(mounts_, above + "/" + folder->name());
}

// --- learning

// Learns what has to be known of a folder that was just opened. Returns the descriptor, or an error; then it
// is closed.
int FolderOpener::learnFolder(ReadItem* item, int descriptor, Lock& lock) {
    Folder* folder = item->folder;
    if (!options_.followLinks && !folder->canHang) return descriptor;
    struct statx facts;
    lock.unlock();
    const int looked = calls_.look(descriptor, "", false, STATX_INO | STATX_MNT_ID, facts);
    lock.lock();
    if (looked < 0) return descriptor;
    folder->setId({makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino});
    if (!options_.followLinks || !leadsBack(item, facts)) return descriptor;
    lock.unlock();
    calls_.close(descriptor);
    lock.lock();
    return -ELOOP;
}

// A folder that cannot be opened, or is another mount, can still be looked at by its name. That is rare and
// done under the lock.
void FolderOpener::learnUnopened(ReadItem* item, int parent) {
    if (!options_.folderFacts || item->folder->canHang || item->folder->throughLink()) return;
    const char* name = item->folder->name().c_str();
    if (links_.isNameOfMount(name) && leadsWhereItCanHang(item->folder, parent)) return;
    item->found.facts = factsOfFolder(calls_, parent, name);
}

// Notes what is mounted at the item's folder, the root of another mount. This is rare and done under the
// lock. A mount that can hang is not asked; the table of mounts knows it by its place.
void FolderOpener::learnMount(ReadItem* item, int parent) {
    const char* name = item->folder->name().c_str();
    const std::string above = links_.isNameOfMount(name) ? calls_.pathOf(parent) : "";
    const Mount* mount = above.empty() ? nullptr : mountThatCanHang(mounts_, above + "/" + name);
    struct statx facts = {};
    if (mount != nullptr) {
        facts.stx_mask = STATX_MNT_ID;
        facts.stx_mnt_id = mount->id;
    } else if (item->folder->canHang || calls_.look(parent, name, false, STATX_MNT_ID, facts) < 0) {
        facts = {};
    }
    noteMount(item, facts);
}

void FolderOpener::noteMount(ReadItem* item, const struct statx& facts) {
    item->folderKind = FolderKind::kMountRoot;
    if ((facts.stx_mask & STATX_MNT_ID) == 0) return;
    for (const Mount& mount : mounts_)
        if (mount.id == facts.stx_mnt_id) item->found.mountSource = whatIsMounted(mount);
}

// If links and mounts are followed: tells whether this folder is one on the way down to itself. Behind a link
// any folder may be: the link leads above the source, and from there the way goes down to it again. The one
// statx for each folder also tells mounts.
bool FolderOpener::leadsBack(ReadItem* item, const struct statx& facts) {
    const Folder* folder = item->folder;
    if (folder->parent() == nullptr || folder->linksAbove() > 0) return wayDown_.leadsBack(folder);
    if ((facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) == 0) return false;
    noteMount(item, facts);
    return wayDown_.leadsBack(folder);
}

}  // namespace hl
