#include "platform/linux/scan/read_ahead_order.h"

#include <errno.h>

#include <utility>

#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

class BlockListing final : public Listing {
  public:
    explicit BlockListing(ReadItem& item) : block_(std::move(item.block)) {
        error = errorOf(item.error);
        endError = errorOf(item.endError);
        more = item.more;
        failure = item.failure;
        kind = item.folderKind;
        leftOut = item.leftOut;
        putOff = item.found.putOff;
        isCache = item.found.isCache;
        subvolume = item.found.subvolume;
        mountSource = std::move(item.found.mountSource);
        source = item.found.source;
        ownBlocks = item.found.ownBlocks;
        facts = item.found.facts;
        if (block_ == nullptr) return;
        entryError = errorOf(block_->entryError);
        entries = block_->entries.data();
        count = block_->entries.size();
        details = block_->details.empty() ? nullptr : block_->details.data();
        names = block_->names;
        filesLeftOut = block_->filesLeftOut;
    }

  private:
    static std::optional<Error> errorOf(int number) {
        return number == 0 ? std::nullopt : std::optional(systemError(number));
    }

    std::shared_ptr<const Block> block_;
};

}  // namespace

void ReadAheadOrder::begin(Folder* source) {
    orderFirst_ = workFirst_ = new ReadItem;
    orderFirst_->folder = source;
}

void ReadAheadOrder::clear() {
    while (orderFirst_ != nullptr) discard(std::exchange(orderFirst_, orderFirst_->orderNext));
}

std::unique_ptr<Listing> ReadAheadOrder::handOver() {
    ReadItem* item = std::exchange(orderFirst_, orderFirst_->orderNext);
    bytesAhead_ -= bytesOf(*item);
    auto listing = std::make_unique<BlockListing>(*item);
    discard(item);
    return listing;
}

// Of a folder with few entries the item is most of what is held.
std::size_t ReadAheadOrder::bytesOf(const ReadItem& done) {
    return sizeof done + (done.block != nullptr ? done.block->bytes : 0);
}

ReadItem* ReadAheadOrder::append(ReadItem* before, ReadItem* made) {
    made->orderNext = std::exchange(before->orderNext, made);
    made->workPrevious = before;
    made->workNext = std::exchange(before->workNext, made);
    if (made->workNext != nullptr) made->workNext->workPrevious = made;
    return made;
}

void ReadAheadOrder::unlinkWork(ReadItem* item) {
    (item->workPrevious != nullptr ? item->workPrevious->workNext : workFirst_) = item->workNext;
    if (item->workNext != nullptr) item->workNext->workPrevious = item->workPrevious;
}

ReadItem* ReadAheadOrder::firstFree() const {
    ReadItem* item = workFirst_;
    while (item != nullptr && !item->isFree()) item = item->workNext;
    return item;
}

// Takes the first subfolder of a range: the range's item becomes that folder's item, and a new range behind
// it has the rest. Whatever may fail for lack of memory comes first; until then the item is free as before.
ReadItem* ReadAheadOrder::takeFrom(ReadItem* item) {
    if (item->kind == ReadItem::Kind::kRange) {
        Folder* parent = item->folder;
        const Block& block = *item->children;
        const Entry& entry = block.entries[block.entered[item->nextChild]];
        const bool last = item->nextChild + 1 == block.entered.size();
        auto rest = last ? nullptr : std::make_unique<ReadItem>();
        Folder* child =
            OpenFolders::make(parent, std::string(block.names + entry.nameOffset, entry.nameLength),
                              entry.tag == kTagSymbolicLink);
        if (last) {
            item->lastOfRange = true;
            item->children.reset();
            folders_.release(parent);
        } else {
            rest->kind = ReadItem::Kind::kRange;
            rest->folder = parent;
            rest->children = std::move(item->children);
            rest->nextChild = item->nextChild + 1;
            append(item, rest.release());
            folders_.addNeed(parent);
        }
        item->kind = ReadItem::Kind::kFolder;
        item->folder = child;
    }
    item->state = ReadItem::State::kTaken;
    return item;
}

void ReadAheadOrder::putChildren(ReadItem* item) {
    if (item->givenUp || item->block == nullptr || item->block->entered.empty()) return;
    auto* range = append(item, new ReadItem);
    range->kind = ReadItem::Kind::kRange;
    range->folder = item->folder;
    range->children = item->block;
    OpenFolders::addReference(item->folder);
    folders_.addNeed(item->folder);
}

void ReadAheadOrder::discard(ReadItem* item) {
    if (item->folder != nullptr) folders_.release(item->folder);
    delete item;
}

// While folders take microseconds, waking another reader pays only if there is a second item: along a chain
// of single folders the readers would only take turns in sleeping.
bool ReadAheadOrder::enoughForTwo() const {
    const ReadItem* free = firstFree();
    if (free == nullptr) return false;
    if (free->kind == ReadItem::Kind::kRange && free->children->entered.size() - free->nextChild > 1)
        return true;
    do free = free->workNext;
    while (free != nullptr && !free->isFree());
    return free != nullptr;
}

void ReadAheadOrder::putRest(ReadItem* item) {
    auto* rest = append(item, new ReadItem);
    rest->kind = ReadItem::Kind::kRest;
    rest->folder = item->folder;
    OpenFolders::addReference(item->folder);
    folders_.addNeed(item->folder);
}

void ReadAheadOrder::finish(ReadItem* item) {
    item->state = ReadItem::State::kDone;
    unlinkWork(item);
    folders_.release(std::exchange(item->folder, nullptr));
    bytesAhead_ += bytesOf(*item);
}

void ReadAheadOrder::giveUp(ReadItem* item) {
    auto* instead = new ReadItem;
    instead->state = ReadItem::State::kDone;
    instead->more = item->more;
    instead->folderKind = item->folderKind;
    instead->found.mountSource = item->found.mountSource;
    instead->errorOf(item->kind) = ETIMEDOUT;
    instead->orderNext = item->orderNext;
    ReadItem** place = &orderFirst_;
    while (*place != item) place = &(*place)->orderNext;
    *place = instead;
    bytesAhead_ += bytesOf(*instead);
    unlinkWork(item);
    item->givenUp = true;
}

}  // namespace hl
