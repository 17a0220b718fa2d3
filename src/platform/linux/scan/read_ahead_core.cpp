// The reading of one item, and the walk's side. The work of helpers is in read_ahead_helpers.cpp.
#include "platform/linux/scan/read_ahead_core.h"

#include <errno.h>

#include <exception>
#include <utility>

#include "platform/fault_signals.h"
#include "platform/linux/process/system_error.h"
#include "platform/linux/scan/subvolumes.h"

namespace hl {

namespace {

constexpr auto kFrontStep = std::chrono::milliseconds(15);  // A click must not wait longer for a slow disk.

// A block from the cache takes some 15 us and 2 us for each entry; one that waits for a disk takes 100 us and
// more.
constexpr auto kQuickBlock = std::chrono::microseconds(60);
constexpr auto kQuickEntry = std::chrono::microseconds(5);

}  // namespace

ReadAheadCore::ReadAheadCore(std::shared_ptr<DirectoryCalls> calls, std::string source,
                             const ReadOptions& options, const ReadAheadLimits& limits, WaitCallback* wait)
    : calls_(std::move(calls)),
      limits_(limits),
      wait_(wait),
      folders_(*calls_, limits.openFolders),
      opener_(calls_, std::move(source), options, limits.link, folders_),
      order_(folders_, limits.bytesAhead),
      pace_(limits_),
      root_(opener_.makeSource()),
      walk_(std::make_unique<Reader>(*this, false, 0)) {
    OpenFolders::addReference(root_);
    order_.begin(root_);
    if (root_->canHang) pace_.meetWhatCanHang();
}

bool ReadAheadCore::mayHangWhenClosed() {
    const Lock lock(mutex_);
    return folders_.someOpenCanHang();
}

ReadAheadCore::~ReadAheadCore() {
    order_.clear();
    folders_.release(root_);
    Lock lock(mutex_);
    folders_.closeClosable(lock);
}

// --- reading one item

void ReadAheadCore::readItem(ReadItem* item, Reader& reader, Lock& lock) {
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
    item->state = ReadItem::State::kFree;
}

// Returns false if another reader has to do it.
bool ReadAheadCore::readLocked(ReadItem* item, Reader& reader, Lock& lock) {
    const bool first = item->kind == ReadItem::Kind::kFolder;
    const int descriptor = first ? opener_.open(item, reader, lock) : folders_.pin(item->folder, &lock);
    if (descriptor == FolderOpener::kForAnother) return false;
    if (descriptor < 0) {
        if (!first) folders_.dropNeed(item->folder);
        item->leftOut = descriptor == -EXDEV;
        if (!item->leftOut) item->errorOf(item->kind) = -descriptor;
        return true;
    }
    if (item->givenUp || opener_.options().onlyOpen) {
        folders_.unpin(item->folder);
        folders_.dropNeed(item->folder);
        return true;
    }
    return build(item, reader, descriptor, lock), true;
}

// Reads a block of the item's folder, which is pinned and needed.
void ReadAheadCore::build(ReadItem* item, Reader& reader, int descriptor, Lock& lock) {
    const bool first = item->kind == ReadItem::Kind::kFolder;
    lock.unlock();
    const auto start = Clock::now();
    const std::uint64_t waits = pace_.judges() ? calls_->timesWaited() : 0;
    const BlockReader::Fill fill = reader.blocks.fill(descriptor);
    (first && fill.nothing ? item->error : item->endError) = fill.error;
    const bool isRead = !first || (learnSubvolume(item, reader, descriptor) &&
                                   !learnCache(item, reader, descriptor, fill.more));
    if (first) learnPlace(item);
    if (!isRead) reader.blocks.dropRecords();
    if (fill.more && isRead) {
        lock.lock();
        offerRest(item, fill);
        lock.unlock();
    }
    if (first && opener_.options().folderFacts) item->found.facts = factsOfFolder(*calls_, descriptor, "");
    const bool ownBlocks = opener_.wantsOwnBlocks();
    if (first && ownBlocks && isRead)
        item->found.ownBlocks =
            item->found.facts ? item->found.facts->blocks : reader.blocks.ownBlocks(descriptor);
    item->block = reader.blocks.build(
        descriptor, [this, &reader] { return goOnReading(reader); }, ownBlocks,
        item->folder->rulesPlace.get());
    const bool tookLong = Clock::now() - start > kQuickBlock + kQuickEntry * item->block->entries.size();
    // A long time alone may be due to other programs.
    const bool waited = pace_.judges() && tookLong && calls_->timesWaited() != waits;
    lock.lock();
    folders_.unpin(item->folder);
    if (pace_.judge(waited)) retiredWait_.notify_all();
    order_.putChildren(item);
    folders_.dropNeed(item->folder);
}

// Returns false if the folder is not read after all. No call is made for one that is no subvolume: its own
// inode is in the records that were just read. A file system that can hang has none.
bool ReadAheadCore::learnSubvolume(ReadItem* item, Reader& reader, int descriptor) {
    const ReadOptions& options = opener_.options();
    const bool isSource = item->folder->parent() == nullptr;
    Subvolume found;
    if (options.wantSubvolumes && reader.blocks.folderInode() == kSubvolumeInode && !item->canHang() &&
        calls_->subvolume(descriptor, found) >= 0)
        item->found.subvolume = found;
    if (isSource && options.onlySubvolume.isKnown() && found.id != options.onlySubvolume)
        item->error = ESTALE;
    item->found.putOff = options.putOffSnapshots && found.readOnly && found.isSnapshot() &&
                         !item->folder->throughLink() && (!isSource || options.putOffSource);
    return item->error == 0 && !item->found.putOff;
}

// Nobody else uses the place before the folder's first block is done or its rest is offered.
void ReadAheadCore::learnPlace(const ReadItem* item) const {
    const LeaveOut* rules = opener_.options().leaveOut.get();
    if (rules == nullptr) return;
    Folder* folder = item->folder;
    folder->rulesPlace = folder->parent() == nullptr
                             ? rules->start()
                             : rules->below(folder->parent()->rulesPlace, folder->name());
}

// Returns true if the folder is left out as a cache. The source never is.
bool ReadAheadCore::learnCache(ReadItem* item, Reader& reader, int descriptor, bool more) {
    const LeaveOut* rules = opener_.options().leaveOut.get();
    item->found.isCache = rules != nullptr && rules->leavesCachesOut() && item->folder->parent() != nullptr &&
                          reader.blocks.isMarkedAsCache(descriptor, more);
    return item->found.isCache;
}

// Lets another reader read the next records of a long folder while this one looks at the entries it has.
void ReadAheadCore::offerRest(ReadItem* item, const BlockReader::Fill& fill) {
    if (item->givenUp) return;
    item->more = true;
    item->folder->cookie = fill.cookie;
    order_.putRest(item);
    changes_.fetch_add(1, std::memory_order_release);
    wakeReader();
}

void ReadAheadCore::finish(ReadItem* item) {
    if (item->givenUp) return order_.discard(item);
    order_.finish(item);
    pace_.countBlock();
    changes_.fetch_add(1, std::memory_order_release);
    if (walkWaits_ && item == order_.front()) frontThere_.notify_one();
    // Whoever finished an item goes on with the first free one.
    if (pace_.isSlow() ? order_.firstFree() != nullptr : order_.enoughForTwo()) wakeReader();
}

// --- the walk's side

std::unique_ptr<Listing> ReadAheadCore::next() {
    Lock lock(mutex_);
    startHelpers();
    while (!stopped_ && order_.front() != nullptr) {
        ReadItem* front = order_.front();
        if (front->state == ReadItem::State::kDone) return handOver();
        const bool isMine = front->isFree() && !front->canHang();
        ReadItem* free = isMine ? front : freeForWalk();
        if (free != nullptr) {
            readItem(order_.takeFrom(free), *walk_, lock);
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
ReadItem* ReadAheadCore::freeForWalk() const {
    const bool waits = pace_.isSlow() && helpers_.size() > limits_.helpersWarm;
    ReadItem* free = waits || !order_.mayReadAhead() ? nullptr : order_.firstFree();
    return free == nullptr || free->canHang() ? nullptr : free;
}

bool ReadAheadCore::waitForFront(Lock& lock) {
    if (changesSoon(lock)) return true;
    if (pace_.someCanHang()) {
        giveUpWhatIsOverdue();
        startHelpers();
        if (order_.front()->isFree()) workThere_.notify_one();
    }
    walkWaits_ = true;
    const bool there = frontThere_.wait_for(lock, kFrontStep, [&] {
        return order_.front()->state == ReadItem::State::kDone || freeForWalk() != nullptr;
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

std::unique_ptr<Listing> ReadAheadCore::handOver() {
    const bool wasFull = !order_.mayReadAhead();
    auto listing = order_.handOver();
    for (std::string& mount : opener_.links().takeSilent())
        listing->silentMounts.push_back(systemError(ETIMEDOUT, std::move(mount)));
    if (wasFull && order_.mayReadAhead()) wakeReader();
    return listing;
}

}  // namespace hl
