// Sections: the lists; reading one item; the walk's side; helpers.
#include "platform/linux/read_ahead.h"

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

using Clock = std::chrono::steady_clock;

// The kernel follows this many links on one path and then says ELOOP. Folders are opened one by one here, so
// that the chain is counted instead.
constexpr std::uint32_t kMostLinks = 40;
// A tree of fewer blocks than this is read before a helper would have started.
constexpr std::uint64_t kBlocksBeforeHelpers = 4;
constexpr auto kPatience = std::chrono::microseconds(30);
constexpr auto kWaitStep = std::chrono::milliseconds(50);

// A block from the cache takes some 15 us and 2 us an entry; one that waits for a disk 100 us and more. Each
// block that waited weighs as much as kSlowWeight others, so that every ninth is enough; a single one is not.
constexpr auto kQuickBlock = std::chrono::microseconds(60);
constexpr auto kQuickEntry = std::chrono::microseconds(5);
constexpr int kSlowWeight = 8;
constexpr int kSlow = 2 * kSlowWeight;
constexpr int kSlownessPerHelper = 4;

}  // namespace

struct ReadAhead::Item {
    enum class Kind : std::uint8_t {
        kFolder,  ///< The first block of `folder`. Holds a need of its parent until the folder is open.
        kRest,    ///< A further block of `folder`. Holds a need of it.
        kRange,   ///< Subfolders of `folder`, from children->entered[nextChild] on. Holds a need of `folder`.
    };
    enum class State : std::uint8_t { kFree, kTaken, kDone };

    Kind kind = Kind::kFolder;
    State state = State::kFree;
    bool lastOfRange = false;
    bool more = false;
    FolderKind folderKind = FolderKind::kPlain;
    std::uint32_t nextChild = 0;
    int error = 0;
    int endError = 0;
    Folder* folder = nullptr;  ///< One reference, until the item is done.
    std::shared_ptr<const Block> children;
    std::shared_ptr<const Block> block;
    std::string mountSource;
    std::exception_ptr failure;
    Item* orderNext = nullptr;
    Item* workPrevious = nullptr;
    Item* workNext = nullptr;
};

class ReadAhead::BlockListing final : public Listing {
  public:
    explicit BlockListing(Item& item) : block_(std::move(item.block)) {
        error = item.error;
        endError = item.endError;
        more = item.more;
        failure = item.failure;
        kind = item.folderKind;
        mountSource = std::move(item.mountSource);
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

ReadAhead::ReadAhead(DirectoryCalls& calls, std::string source, const ReadOptions& options,
                     const ReadAheadLimits& limits, WaitCallback* wait, void (*prepareThread)())
    : calls_(calls),
      source_(std::move(source)),
      options_(options),
      limits_(limits),
      wait_(wait),
      prepareThread_(prepareThread),
      ownReader_(calls, options),
      folders_(calls, limits.openFolders),
      wantedHelpers_(limits.helpersWarm) {
    orderFirst_ = workFirst_ = new Item;
    orderFirst_->folder = root_ = OpenFolders::make(nullptr, source_, false);
    OpenFolders::addReference(root_);
}

ReadAhead::~ReadAhead() {
    {
        const Lock lock(mutex_);
        stopped_ = true;
    }
    workThere_.notify_all();
    retiredWait_.notify_all();
    for (std::thread& helper : helpers_) helper.join();
    while (orderFirst_ != nullptr) discard(std::exchange(orderFirst_, orderFirst_->orderNext));
    folders_.release(root_);
}

// --- the lists

ReadAhead::Item* ReadAhead::append(Item* before, Item* made) {
    made->orderNext = std::exchange(before->orderNext, made);
    made->workPrevious = before;
    made->workNext = std::exchange(before->workNext, made);
    if (made->workNext != nullptr) made->workNext->workPrevious = made;
    return made;
}

void ReadAhead::unlinkWork(Item* item) {
    (item->workPrevious != nullptr ? item->workPrevious->workNext : workFirst_) = item->workNext;
    if (item->workNext != nullptr) item->workNext->workPrevious = item->workPrevious;
}

ReadAhead::Item* ReadAhead::firstFree() const {
    Item* item = workFirst_;
    while (item != nullptr && item->state != Item::State::kFree) item = item->workNext;
    return item;
}

// A range gives its first subfolder: it becomes that item itself, and what is left of it a range behind it.
// Whatever may fail for want of memory comes first; until then the item is free as before.
ReadAhead::Item* ReadAhead::takeFrom(Item* item) {
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

void ReadAhead::putChildren(Item* item) {
    if (item->block == nullptr || item->block->entered.empty()) return;
    auto* range = append(item, new Item);
    range->kind = Item::Kind::kRange;
    range->folder = item->folder;
    range->children = item->block;
    OpenFolders::addReference(item->folder);
    folders_.addNeed(item->folder);
}

void ReadAhead::discard(Item* item) {
    if (item->folder != nullptr) folders_.release(item->folder);
    delete item;
}

// --- reading one item

void ReadAhead::readItem(Item* item, BlockReader& reader, Lock& lock) {
    const GuardedRoutine guarded;
    try {
        readLocked(item, reader, lock);
    } catch (...) {
        // It goes on in the walk, with this item's block.
        if (!lock.owns_lock()) lock.lock();
        item->failure = std::current_exception();
    }
    finish(item);
}

void ReadAhead::readLocked(Item* item, BlockReader& reader, Lock& lock) {
    const bool first = item->kind == Item::Kind::kFolder;
    const int descriptor = first ? openFolder(item, lock) : folders_.pin(item->folder);
    if (descriptor < 0) {
        if (!first) folders_.dropNeed(item->folder);
        if (descriptor != -EXDEV) (first ? item->error : item->endError) = -descriptor;
        return;
    }
    lock.unlock();
    const auto start = Clock::now();
    const std::uint64_t waits = mayJudge() ? calls_.timesWaited() : 0;
    const BlockReader::Fill fill = reader.fill(descriptor);
    (first && fill.nothing ? item->error : item->endError) = fill.error;
    item->more = fill.more;
    if (fill.more) {
        lock.lock();
        offerRest(item, fill);
        lock.unlock();
    }
    item->block = reader.build(descriptor);
    const bool tookLong = Clock::now() - start > kQuickBlock + kQuickEntry * item->block->entries.size();
    // A long time alone may be the work of other programs.
    const bool waited = mayJudge() && tookLong && calls_.timesWaited() != waits;
    lock.lock();
    folders_.unpin(item->folder);
    judge(waited);
    putChildren(item);
    folders_.dropNeed(item->folder);
}

// Opens the item's folder and pins it, with a need for the time of reading.
int ReadAhead::openFolder(Item* item, Lock& lock) {
    Folder* folder = item->folder;
    Folder* parent = folder->parent();
    int descriptor = -ELOOP;
    if (parent == nullptr) {
        lock.unlock();
        descriptor = calls_.openSource(source_);
        if (options_.followLinks) wayDown_.begin(calls_, source_, options_.levelsAbove);
        lock.lock();
    } else {
        const int from = folders_.pin(parent);
        if (from < 0) {
            descriptor = from;
        } else {
            if (item->lastOfRange) reopenNextNeeded(item, parent);
            if (folder->linksAbove() <= kMostLinks) descriptor = openOnce(item, from, lock);
            if (descriptor == -EXDEV) learnMount(item, from);
            folders_.unpin(parent);
        }
        folders_.dropNeed(parent);
    }
    if (descriptor >= 0 && options_.followLinks && leadsBack(item, descriptor)) {
        calls_.close(descriptor);
        descriptor = -ELOOP;
    }
    if (descriptor < 0) return descriptor;
    folders_.addNeed(folder);
    if (parent == nullptr) folders_.addNeed(folder);  // Never dropped: the source stays open.
    folders_.opened(folder, descriptor);
    folders_.pin(folder);
    return descriptor;
}

// The folder that a reader will need after this one's parent may have been closed for want of descriptors:
// the parent, still open, is the way back to it. A few items of the list suffice; who is missed is found by
// name.
void ReadAhead::reopenNextNeeded(const Item* item, Folder* parent) {
    constexpr int kMostLooks = 64;
    const Item* next = item->workNext;
    for (int looks = 0; next != nullptr && looks < kMostLooks; ++looks, next = next->workNext) {
        if (next->kind == Item::Kind::kFolder || next->folder->depth() >= parent->depth()) continue;
        return folders_.reopenFromBelow(next->folder, parent);
    }
}

int ReadAhead::openOnce(const Item* item, int parent, Lock& lock) {
    const char* name = item->folder->name().c_str();
    const bool follow = item->folder->throughLink();
    for (;;) {
        lock.unlock();
        const int descriptor = calls_.openChild(parent, name, follow, options_.followLinks);
        lock.lock();
        if (!isShortage(descriptor) || !folders_.closeOne()) return descriptor;
    }
}

// Rare, and under the lock: what is mounted at the item's folder, the root of another mount.
void ReadAhead::learnMount(Item* item, int parent) {
    struct statx facts;
    if (calls_.look(parent, item->folder->name().c_str(), false, STATX_MNT_ID, facts) < 0) facts = {};
    noteMount(item, facts);
}

void ReadAhead::noteMount(Item* item, const struct statx& facts) {
    item->folderKind = FolderKind::kMountRoot;
    if ((facts.stx_mask & STATX_MNT_ID) == 0) return;
    if (!std::exchange(mountsKnown_, true)) mounts_ = readMountTable();
    for (const Mount& mount : mounts_)
        if (mount.id == facts.stx_mnt_id) item->mountSource = whatIsMounted(mount);
}

// Where links and mounts are followed: whether this one is a folder on the way down to it. Behind a link any
// folder may be: the link leads above the source, and from there the way goes down to it again. The one look
// that it takes for each folder tells mounts as well.
bool ReadAhead::leadsBack(Item* item, int descriptor) {
    Folder* folder = item->folder;
    struct statx facts;
    if (calls_.look(descriptor, "", false, STATX_INO | STATX_MNT_ID, facts) < 0) return false;
    folder->setId({makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino});
    if (folder->parent() == nullptr || folder->linksAbove() > 0) return wayDown_.leadsBack(folder);
    if ((facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) == 0) return false;
    noteMount(item, facts);
    return wayDown_.leadsBack(folder);
}

// The next records of a long folder may be read by whoever is free while this reader looks at the entries it
// has.
void ReadAhead::offerRest(Item* item, const BlockReader::Fill& fill) {
    item->folder->cookie = fill.cookie;
    auto* rest = append(item, new Item);
    rest->kind = Item::Kind::kRest;
    rest->folder = item->folder;
    OpenFolders::addReference(item->folder);
    folders_.addNeed(item->folder);
    changes_.fetch_add(1, std::memory_order_release);
    wakeReader();
}

void ReadAhead::finish(Item* item) {
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

std::unique_ptr<Listing> ReadAhead::next() {
    Lock lock(mutex_);
    startHelpers();
    while (!stopped_ && orderFirst_ != nullptr) {
        Item* front = orderFirst_;
        if (front->state == Item::State::kDone) {
            orderFirst_ = front->orderNext;
            return handOver(front);
        }
        Item* free = front->state == Item::State::kFree ? front : nullptr;
        if (free == nullptr) free = freeForWalk();
        if (free != nullptr) {
            readItem(takeFrom(free), ownReader_, lock);
        } else if (!waitForFront(lock)) {
            stopped_ = true;
        }
    }
    return nullptr;
}

// What the walk may read while what it needs is in the hands of a helper. Where reads wait for a disk and
// helpers take them, the walk reads nothing ahead, so that the window stays alive.
ReadAhead::Item* ReadAhead::freeForWalk() const {
    const bool waits = isSlow() && helpers_.size() > limits_.helpersWarm;
    return waits || !mayReadAhead() ? nullptr : firstFree();
}

bool ReadAhead::waitForFront(Lock& lock) {
    if (changesSoon(lock)) return true;
    const Item* front = orderFirst_;
    walkWaits_ = true;
    const bool there = frontThere_.wait_for(
        lock, kWaitStep, [&] { return front->state == Item::State::kDone || freeForWalk() != nullptr; });
    walkWaits_ = false;
    if (there || wait_ == nullptr) return true;
    lock.unlock();
    const bool goOn = wait_->goOnWaiting();
    lock.lock();
    return goOn;
}

std::unique_ptr<Listing> ReadAhead::handOver(Item* item) {
    const bool wasFull = !mayReadAhead();
    if (item->block != nullptr) bytesAhead_ -= item->block->bytes;
    if (wasFull && mayReadAhead()) wakeReader();
    auto listing = std::make_unique<BlockListing>(*item);
    discard(item);
    return listing;
}

// --- helpers

// A folder takes some 10 us from the cache, and to sleep and be woken takes longer: so first look for a
// moment whether the lists change. True if they did.
bool ReadAhead::changesSoon(Lock& lock) {
    if (limits_.helpersWarm == 0 || isSlow()) return false;
    const std::uint32_t before = changes_.load(std::memory_order_relaxed);
    lock.unlock();
    const auto end = Clock::now() + kPatience;
    while (changes_.load(std::memory_order_acquire) == before && Clock::now() < end) {
    }
    lock.lock();
    return changes_.load(std::memory_order_relaxed) != before;
}

bool ReadAhead::isSlow() const {
    return slowness_ >= kSlow;
}

void ReadAhead::startHelpers() {
    if (blocksRead_ < kBlocksBeforeHelpers || firstFree() == nullptr) return;
    try {
        while (helpers_.size() < std::min(wantedHelpers_, mostHelpers_)) {
            const auto number = static_cast<unsigned>(helpers_.size());
            helpers_.emplace_back([this, number] { helperLoop(number); });
        }
    } catch (const std::system_error&) {
        mostHelpers_ = static_cast<unsigned>(helpers_.size());  // The system gives no more threads.
    }
}

// One is enough: who takes an item and leaves a free one wakes the next.
void ReadAhead::wakeReader() {
    if (walkWaits_ && freeForWalk() != nullptr) {
        frontThere_.notify_one();
    } else if (idleHelpers_ > 0 && mayReadAhead() && firstFree() != nullptr) {
        workThere_.notify_one();
    }
}

// Whoever finishes an item goes on with the first free one. While folders take microseconds, waking another
// pays only if there is a second: along a chain of single folders the readers would take turns in sleeping.
bool ReadAhead::enoughForTwo() const {
    const Item* free = firstFree();
    if (free == nullptr || isSlow()) return free != nullptr;
    if (free->kind == Item::Kind::kRange && free->children->entered.size() - free->nextChild > 1) return true;
    do free = free->workNext;
    while (free != nullptr && free->state != Item::State::kFree);
    return free != nullptr;
}

// A helper that gets no memory ends; the walk and the others read on.
void ReadAhead::helperLoop(unsigned number) {
    try {
        if (prepareThread_ != nullptr) prepareThread_();
        BlockReader reader(calls_, options_);
        helpUntilStopped(number, reader);
    } catch (const std::bad_alloc&) {
        return;
    }
}

void ReadAhead::helpUntilStopped(unsigned number, BlockReader& reader) {
    Lock lock(mutex_);
    while (!stopped_) {
        if (number >= wantedHelpers_) {
            wakeReader();  // This one may have been woken in the place of another.
            retiredWait_.wait(lock);
            continue;
        }
        const auto freeItem = [this] { return mayReadAhead() ? firstFree() : nullptr; };
        Item* item = freeItem();
        if (item == nullptr) {
            changesSoon(lock);
            item = freeItem();
        }
        if (item == nullptr && !stopped_) {
            ++idleHelpers_;
            workThere_.wait(lock);
            --idleHelpers_;
        }
        if (item == nullptr) continue;
        takeFrom(item);
        wakeReader();
        readItem(item, reader, lock);
    }
}

void ReadAhead::judge(bool waited) {
    if (!mayJudge()) return;
    const int more = static_cast<int>(limits_.helpersCold - limits_.helpersWarm);
    const int most = kSlow + more * kSlownessPerHelper;
    slowness_ = std::clamp(slowness_ + (waited ? kSlowWeight : -1), 0, most);
    const int wantedMore = std::min(isSlow() ? 1 + (slowness_ - kSlow) / kSlownessPerHelper : 0, more);
    const unsigned wanted = limits_.helpersWarm + static_cast<unsigned>(wantedMore);
    if (wanted > wantedHelpers_) retiredWait_.notify_all();
    wantedHelpers_ = wanted;
}

}  // namespace hl
