// The lists, the reading of one item, and the walk's side. The work of helpers is in read_ahead_helpers.cpp.
#include "platform/linux/scan/read_ahead_core.h"

#include <errno.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <chrono>
#include <new>
#include <system_error>
#include <utility>

#include "platform/fault_signals.h"

namespace hl {

namespace {

// The kernel follows this many links on one path and then reports ELOOP. Folders are opened one by one here,
// so the links of the chain are counted instead.
constexpr std::uint32_t kMostLinks = 40;
// This is no system error code: this reader may not open the folder.
constexpr int kForAnother = -100'000;
constexpr auto kWaitStep = std::chrono::milliseconds(50);

// A block from the cache takes some 15 us and 2 us for each entry; one that waits for a disk takes 100 us and
// more. Each block that waited counts as much as eight others, so that every ninth is enough, but a single
// one is not.
constexpr auto kQuickBlock = std::chrono::microseconds(60);
constexpr auto kQuickEntry = std::chrono::microseconds(5);

}  // namespace

class ReadAheadCore::BlockListing final : public Listing {
  public:
    explicit BlockListing(Item& item) : block_(std::move(item.block)) {
        error = item.error;
        endError = item.endError;
        more = item.more;
        failure = item.failure;
        kind = item.folderKind;
        leftOut = item.leftOut;
        mountSource = std::move(item.mountSource);
        source = item.source;
        if (block_ == nullptr) return;
        entryError = block_->entryError;
        entries = block_->entries.data();
        count = block_->entries.size();
        times = block_->times.empty() ? nullptr : block_->times.data();
        names = block_->names;
    }

  private:
    std::shared_ptr<const Block> block_;
};

ReadAheadCore::ReadAheadCore(std::shared_ptr<DirectoryCalls> calls, std::string source,
                             const ReadOptions& options, const ReadAheadLimits& limits, WaitCallback* wait)
    : keptCalls_(std::move(calls)),
      calls_(*keptCalls_),
      source_(std::move(source)),
      options_(options),
      limits_(limits),
      wait_(wait),
      mounts_(readMountTable()),
      links_(keptCalls_, mounts_, limits.link),
      walk_(std::make_unique<Reader>(*this, false, 0)),
      folders_(calls_, limits.openFolders),
      wantedHelpers_(limits.helpersWarm) {
    orderFirst_ = workFirst_ = new Item;
    orderFirst_->folder = root_ = OpenFolders::make(nullptr, source_, false);
    OpenFolders::addReference(root_);
    root_->canHang = someCanHang_ = hl::canHang(mounts_, source_);
}

bool ReadAheadCore::mayHangWhenClosed() {
    const Lock lock(mutex_);
    return folders_.someOpenCanHang();
}

ReadAheadCore::~ReadAheadCore() {
    while (orderFirst_ != nullptr) discard(std::exchange(orderFirst_, orderFirst_->orderNext));
    folders_.release(root_);
    Lock lock(mutex_);
    folders_.closeClosable(lock);
}

// --- the lists

ReadAheadCore::Item* ReadAheadCore::append(Item* before, Item* made) {
    made->orderNext = std::exchange(before->orderNext, made);
    made->workPrevious = before;
    made->workNext = std::exchange(before->workNext, made);
    if (made->workNext != nullptr) made->workNext->workPrevious = made;
    return made;
}

void ReadAheadCore::unlinkWork(Item* item) {
    (item->workPrevious != nullptr ? item->workPrevious->workNext : workFirst_) = item->workNext;
    if (item->workNext != nullptr) item->workNext->workPrevious = item->workPrevious;
}

ReadAheadCore::Item* ReadAheadCore::firstFree() const {
    Item* item = workFirst_;
    while (item != nullptr && item->state != Item::State::kFree) item = item->workNext;
    return item;
}

// Takes the first subfolder of a range: the range's item becomes that folder's item, and a new range behind
// it has the rest. Whatever may fail for lack of memory comes first; until then the item is free as before.
ReadAheadCore::Item* ReadAheadCore::takeFrom(Item* item) {
    if (item->kind == Item::Kind::kRange) {
        Folder* parent = item->folder;
        const Block& block = *item->children;
        const Entry& entry = block.entries[block.entered[item->nextChild]];
        const bool last = item->nextChild + 1 == block.entered.size();
        auto rest = last ? nullptr : std::make_unique<Item>();
        Folder* child =
            OpenFolders::make(parent, std::string(block.names + entry.nameOffset, entry.nameLength),
                              entry.tag == kTagSymbolicLink);
        if (last) {
            item->lastOfRange = true;
            item->children.reset();
            folders_.release(parent);
        } else {
            rest->kind = Item::Kind::kRange;
            rest->folder = parent;
            rest->children = std::move(item->children);
            rest->nextChild = item->nextChild + 1;
            append(item, rest.release());
            folders_.addNeed(parent);
        }
        item->kind = Item::Kind::kFolder;
        item->folder = child;
    }
    item->state = Item::State::kTaken;
    return item;
}

void ReadAheadCore::putChildren(Item* item) {
    if (item->givenUp || item->block == nullptr || item->block->entered.empty()) return;
    auto* range = append(item, new Item);
    range->kind = Item::Kind::kRange;
    range->folder = item->folder;
    range->children = item->block;
    OpenFolders::addReference(item->folder);
    folders_.addNeed(item->folder);
}

void ReadAheadCore::discard(Item* item) {
    if (item->folder != nullptr) folders_.release(item->folder);
    delete item;
}

// --- reading one item

void ReadAheadCore::readItem(Item* item, Reader& reader, Lock& lock) {
    const GuardedRoutine guarded;
    bool read = true;
    try {
        read = readLocked(item, reader, lock);
    } catch (...) {
        // The exception is raised again in the walk, with this item's block.
        if (!lock.owns_lock()) lock.lock();
        item->failure = std::current_exception();
    }
    if (read) return finish(item);
    item->state = Item::State::kFree;
}

// Returns false if another reader has to do it.
bool ReadAheadCore::readLocked(Item* item, Reader& reader, Lock& lock) {
    const bool first = item->kind == Item::Kind::kFolder;
    const int descriptor = first ? openFolder(item, reader, lock) : folders_.pin(item->folder, &lock);
    if (descriptor == kForAnother) return false;
    if (descriptor < 0) {
        if (!first) folders_.dropNeed(item->folder);
        item->leftOut = descriptor == -EXDEV;
        if (!item->leftOut) (first ? item->error : item->endError) = -descriptor;
        return true;
    }
    if (item->givenUp || options_.onlyOpen) {
        folders_.unpin(item->folder);
        folders_.dropNeed(item->folder);
        return true;
    }
    lock.unlock();
    const auto start = Clock::now();
    const std::uint64_t waits = mayJudge() ? calls_.timesWaited() : 0;
    const BlockReader::Fill fill = reader.blocks.fill(descriptor);
    (first && fill.nothing ? item->error : item->endError) = fill.error;
    if (fill.more) {
        lock.lock();
        offerRest(item, fill);
        lock.unlock();
    }
    item->block = reader.blocks.build(descriptor, [this, &reader] { return goOnReading(reader); });
    const bool tookLong = Clock::now() - start > kQuickBlock + kQuickEntry * item->block->entries.size();
    // A long time alone may be due to other programs.
    const bool waited = mayJudge() && tookLong && calls_.timesWaited() != waits;
    lock.lock();
    folders_.unpin(item->folder);
    judge(waited);
    putChildren(item);
    folders_.dropNeed(item->folder);
    return true;
}

// Opens the item's folder and pins it, with a need for the time of reading.
int ReadAheadCore::openFolder(Item* item, Reader& reader, Lock& lock) {
    Folder* folder = item->folder;
    Folder* parent = folder->parent();
    int descriptor = -ELOOP;
    if (parent == nullptr) {
        lock.unlock();
        descriptor = calls_.openSource(source_);
        if (descriptor >= 0) calls_.identity(descriptor, item->source);
        if (options_.followLinks) wayDown_.begin(calls_, source_, options_.levelsAbove);
        lock.lock();
    } else {
        const int from = folders_.pin(parent, &lock);
        if (from < 0) {
            descriptor = from;
        } else {
            if (item->lastOfRange) reopenNextNeeded(item, parent);
            if (folder->linksAbove() <= kMostLinks) descriptor = openOnce(item, from, reader, lock);
            if (descriptor == -EXDEV) learnMount(item, from);
            folders_.unpin(parent);
            if (descriptor == kForAnother) return descriptor;
        }
        folders_.dropNeed(parent);
    }
    if (descriptor >= 0) descriptor = learnFolder(item, descriptor, lock);
    if (descriptor < 0) return descriptor;
    folders_.addNeed(folder);
    if (parent == nullptr) folders_.addNeed(folder);  // This need is never dropped: the source stays open.
    folders_.opened(folder, descriptor);
    return folders_.pin(folder);
}

// The folder that a reader needs after this one's parent may have been closed for lack of descriptors; the
// parent, still open, is the way back to it. Looking at a few items of the list suffices; a folder missed
// here is found by name.
void ReadAheadCore::reopenNextNeeded(const Item* item, Folder* parent) {
    constexpr int kMostLooks = 64;
    const Item* next = item->givenUp ? nullptr : item->workNext;
    for (int looks = 0; next != nullptr && looks < kMostLooks; ++looks, next = next->workNext) {
        if (next->kind == Item::Kind::kFolder || next->folder->depth() >= parent->depth()) continue;
        return folders_.reopenFromBelow(next->folder, parent);
    }
}

int ReadAheadCore::openOnce(Item* item, int parent, Reader& reader, Lock& lock) {
    Folder* folder = item->folder;
    const char* name = folder->name().c_str();
    if (leadsWhereItCanHang(folder, parent)) {
        if (!options_.followLinks) return -EXDEV;
        meetWhatCanHang(folder);
        if (!reader.isHelper || !enterDanger(reader, item)) return kForAnother;
    }
    for (;;) {
        lock.unlock();
        const int descriptor = calls_.openChild(parent, name, folder->throughLink(), options_.followLinks);
        lock.lock();
        if (!isShortage(descriptor) || !folders_.closeOne()) return descriptor;
        if (folder->canHang) folders_.closeClosable(lock);
    }
}

// The walk reads nothing there, so a helper is wanted, even if all of them had retired.
void ReadAheadCore::meetWhatCanHang(Folder* folder) {
    folder->canHang = someCanHang_ = true;
    retiredWait_.notify_all();
}

// Asked for links, and for the few folders that have the name of a mount point: opening one of those may
// already hang, if the system still has to mount something there.
bool ReadAheadCore::leadsWhereItCanHang(const Folder* folder, int parent) const {
    if (folder->canHang || !links_.someCanHang()) return false;
    if (!folder->throughLink() && !links_.isNameOfMount(folder->name())) return false;
    const std::string above = calls_.pathOf(parent);
    if (above.empty()) return options_.followLinks;  // The folder is too deep for the system to tell.
    return hl::canHang(mounts_, above + "/" + folder->name());
}

// Learns what has to be known of a folder that was just opened. Returns the descriptor, or an error; then it
// is closed.
int ReadAheadCore::learnFolder(Item* item, int descriptor, Lock& lock) {
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

// Notes what is mounted at the item's folder, the root of another mount. This is rare and done under the
// lock. A mount that can hang is not asked; the table of mounts knows it by its place.
void ReadAheadCore::learnMount(Item* item, int parent) {
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

void ReadAheadCore::noteMount(Item* item, const struct statx& facts) {
    item->folderKind = FolderKind::kMountRoot;
    if ((facts.stx_mask & STATX_MNT_ID) == 0) return;
    for (const Mount& mount : mounts_)
        if (mount.id == facts.stx_mnt_id) item->mountSource = whatIsMounted(mount);
}

// If links and mounts are followed: tells whether this folder is one on the way down to itself. Behind a link
// any folder may be: the link leads above the source, and from there the way goes down to it again. The one
// statx for each folder also tells mounts.
bool ReadAheadCore::leadsBack(Item* item, const struct statx& facts) {
    const Folder* folder = item->folder;
    if (folder->parent() == nullptr || folder->linksAbove() > 0) return wayDown_.leadsBack(folder);
    if ((facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) == 0) return false;
    noteMount(item, facts);
    return wayDown_.leadsBack(folder);
}

// Lets another reader read the next records of a long folder while this one looks at the entries it has.
void ReadAheadCore::offerRest(Item* item, const BlockReader::Fill& fill) {
    if (item->givenUp) return;
    item->more = true;
    item->folder->cookie = fill.cookie;
    auto* rest = append(item, new Item);
    rest->kind = Item::Kind::kRest;
    rest->folder = item->folder;
    OpenFolders::addReference(item->folder);
    folders_.addNeed(item->folder);
    changes_.fetch_add(1, std::memory_order_release);
    wakeReader();
}

void ReadAheadCore::finish(Item* item) {
    if (item->givenUp) return discard(item);
    item->state = Item::State::kDone;
    unlinkWork(item);
    folders_.release(std::exchange(item->folder, nullptr));
    if (item->block != nullptr) bytesAhead_ += item->block->bytes;
    ++blocksRead_;
    changes_.fetch_add(1, std::memory_order_release);
    if (walkWaits_ && item == orderFirst_) frontThere_.notify_one();
    if (enoughForTwo()) wakeReader();
}

// --- the walk's side

std::unique_ptr<Listing> ReadAheadCore::next() {
    Lock lock(mutex_);
    startHelpers();
    while (!stopped_ && orderFirst_ != nullptr) {
        Item* front = orderFirst_;
        if (front->state == Item::State::kDone) {
            orderFirst_ = front->orderNext;
            return handOver(front);
        }
        const bool isMine = front->state == Item::State::kFree && !canHang(front);
        Item* free = isMine ? front : freeForWalk();
        if (free != nullptr) {
            readItem(takeFrom(free), *walk_, lock);
        } else if (isRefused(front)) {
            refuse(front);
        } else if (!waitForFront(lock)) {
            stopped_ = true;
        }
    }
    return nullptr;
}

// Returns what the walk may read while a helper reads what the walk needs. Where reads wait for a disk and
// helpers make them, the walk reads nothing ahead, so that the window reacts.
ReadAheadCore::Item* ReadAheadCore::freeForWalk() const {
    const bool waits = isSlow() && helpers_.size() > limits_.helpersWarm;
    Item* free = waits || !mayReadAhead() ? nullptr : firstFree();
    return free == nullptr || canHang(free) ? nullptr : free;
}

bool ReadAheadCore::waitForFront(Lock& lock) {
    if (changesSoon(lock)) return true;
    if (someCanHang_) {
        giveUpWhatIsOverdue();
        startHelpers();
        if (orderFirst_->state == Item::State::kFree) workThere_.notify_one();
    }
    walkWaits_ = true;
    const bool there = frontThere_.wait_for(lock, kWaitStep, [&] {
        return orderFirst_->state == Item::State::kDone || freeForWalk() != nullptr;
    });
    walkWaits_ = false;
    if (there || wait_ == nullptr) return true;
    lock.unlock();
    const bool goOn = wait_->goOnWaiting();
    lock.lock();
    return goOn;
}

// Is called while a block waits to learn where a link leads.
bool ReadAheadCore::goOnReading(const Reader& reader) {
    if (!reader.isHelper && wait_ != nullptr && !wait_->goOnWaiting()) stopped_ = true;
    return !stopped_;
}

std::unique_ptr<Listing> ReadAheadCore::handOver(Item* item) {
    const bool wasFull = !mayReadAhead();
    if (item->block != nullptr) bytesAhead_ -= item->block->bytes;
    if (wasFull && mayReadAhead()) wakeReader();
    auto listing = std::make_unique<BlockListing>(*item);
    listing->silentMounts = links_.takeSilent();
    discard(item);
    return listing;
}

}  // namespace hl
