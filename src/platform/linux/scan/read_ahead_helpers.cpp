// The helpers of ReadAheadCore, and what becomes of those that hang.
#include <errno.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <utility>

#include "platform/linux/process/fault_signals.h"
#include "platform/linux/scan/read_ahead_core.h"

namespace hl {

namespace {

// A smaller tree is read before a helper would have started.
constexpr std::uint64_t kBlocksBeforeHelpers = 4;
constexpr auto kPatience = std::chrono::microseconds(30);
constexpr int kSlowWeight = 8;
constexpr int kSlow = 2 * kSlowWeight;
constexpr int kSlownessPerHelper = 4;
// A disk that is merely slow answers within this time after nobody waits for it any more.
constexpr auto kGrace = std::chrono::milliseconds(100);
constexpr std::ptrdiff_t kMostInDanger = HelperSlot::kMost / 2;

}  // namespace

// Reading a folder takes some 10 us from the cache, while sleeping and being woken takes longer; so this
// first watches for a moment whether the lists change. Returns true if they did.
bool ReadAheadCore::changesSoon(Lock& lock) {
    if (limits_.helpersWarm == 0 || isSlow()) return false;
    const std::uint32_t before = changes_.load(std::memory_order_relaxed);
    lock.unlock();
    const auto end = Clock::now() + kPatience;
    while (changes_.load(std::memory_order_acquire) == before && Clock::now() < end) {
    }
    lock.lock();
    return changes_.load(std::memory_order_relaxed) != before;
}

bool ReadAheadCore::isSlow() const {
    return slowness_ >= kSlow;
}

// The walk reads nothing that can hang, so one more helper is wanted there.
unsigned ReadAheadCore::helpersNow() const {
    return std::max(wantedHelpers_, someCanHang_ ? limits_.helpersWarm + 1 : 0) + leftBehind_;
}

void ReadAheadCore::startHelpers() {
    if ((blocksRead_ < kBlocksBeforeHelpers && !someCanHang_) || firstFree() == nullptr) return;
    try {
        while (helpers_.size() < std::min(helpersNow(), mostHelpers_)) {
            const auto number = static_cast<unsigned>(helpers_.size());
            helpers_.reserve(number + 1);  // Once its thread runs, nothing may fail.
            auto reader = std::make_unique<Reader>(*this, true, number);
            reader->thread =
                std::thread([self = shared_from_this(), made = reader.get()] { self->helperLoop(*made); });
            helpers_.push_back(std::move(reader));
        }
    } catch (const std::exception&) {
        mostHelpers_ = static_cast<unsigned>(helpers_.size());  // No more threads, or no memory.
    }
}

// Waking one is enough: whoever takes an item and leaves a free one wakes the next.
void ReadAheadCore::wakeReader() {
    if (walkWaits_ && freeForWalk() != nullptr) {
        frontThere_.notify_one();
    } else if (idleHelpers_ > 0 && freeForHelper() != nullptr) {
        workThere_.notify_one();
    }
}

// Returns also the walk's next item when enough was read ahead, if the walk itself may not read it.
ReadAheadCore::Item* ReadAheadCore::freeForHelper() const {
    if (mayReadAhead()) return firstFree();
    const bool mustHelp =
        orderFirst_ != nullptr && orderFirst_->state == Item::State::kFree && canHang(orderFirst_);
    return mustHelp ? orderFirst_ : nullptr;
}

// Whoever finishes an item goes on with the first free one. While folders take microseconds, waking another
// reader pays only if there is a second item: along a chain of single folders the readers would only take
// turns in sleeping.
bool ReadAheadCore::enoughForTwo() const {
    const Item* free = firstFree();
    if (free == nullptr || isSlow()) return free != nullptr;
    if (free->kind == Item::Kind::kRange && free->children->entered.size() - free->nextChild > 1) return true;
    do free = free->workNext;
    while (free != nullptr && free->state != Item::State::kFree);
    return free != nullptr;
}

// A helper that gets no memory ends and is not replaced; the walk and the other helpers read on.
void ReadAheadCore::helperLoop(Reader& reader) {
    Lock lock(mutex_);
    try {
        LinuxFaultSignals().prepareThread();
        helpUntilStopped(reader, lock);
    } catch (const std::bad_alloc&) {
        if (!lock.owns_lock()) lock.lock();
        if (!std::exchange(reader.isLeft, true)) ++leftBehind_;
        mostHelpers_ = static_cast<unsigned>(helpers_.size());
        retiredWait_.notify_all();
    }
    reader.ended = true;
    reader.slot.reset();
    helperEnded_.notify_all();
}

void ReadAheadCore::helpUntilStopped(Reader& reader, Lock& lock) {
    while (!stopped_ && !reader.isLeft) {
        if (reader.number >= helpersNow()) {
            wakeReader();  // This one may have been woken in the place of another.
            retiredWait_.wait(lock);
            continue;
        }
        if (folders_.hasClosable() && enterDanger(reader, nullptr)) {
            folders_.closeClosable(lock);
            leaveDanger(reader);
            continue;
        }
        Item* item = freeForHelper();
        if (item == nullptr) {
            changesSoon(lock);
            if (stopped_) continue;
            item = freeForHelper();
        }
        const bool mayTake = item != nullptr && (!canHang(item) || enterDanger(reader, item));
        if (!mayTake && !stopped_) {
            ++idleHelpers_;
            workThere_.wait(lock);
            --idleHelpers_;
        }
        if (!mayTake) continue;
        takeFrom(item);
        wakeReader();
        readItem(item, reader, lock);
        leaveDanger(reader);
    }
}

void ReadAheadCore::judge(bool waited) {
    if (!mayJudge()) return;
    const int more = static_cast<int>(limits_.helpersCold - limits_.helpersWarm);
    const int most = kSlow + more * kSlownessPerHelper;
    slowness_ = std::clamp(slowness_ + (waited ? kSlowWeight : -1), 0, most);
    const int wantedMore = std::min(isSlow() ? 1 + (slowness_ - kSlow) / kSlownessPerHelper : 0, more);
    const unsigned wanted = limits_.helpersWarm + static_cast<unsigned>(wantedMore);
    if (wanted > wantedHelpers_) retiredWait_.notify_all();
    wantedHelpers_ = wanted;
}

// --- what can hang

bool ReadAheadCore::canHang(const Item* item) {
    return item->folder->canHang;
}

// Returns false if there are as many threads in danger as allowed. A disk that answers leaves some to others.
bool ReadAheadCore::enterDanger(Reader& reader, Item* item) {
    const auto works = [](const auto& helper) { return helper->slot && !helper->isLeft; };
    if (!reader.slot) {
        if (std::count_if(helpers_.begin(), helpers_.end(), works) >= kMostInDanger) return false;
        auto slot = HelperSlot::take();
        if (!slot) return false;
        reader.slot.emplace(std::move(*slot));
    }
    reader.item = item;
    reader.since = Clock::now();
    if (stopped_) helperEnded_.notify_all();
    return true;
}

void ReadAheadCore::leaveDanger(Reader& reader) {
    reader.item = nullptr;
    if (!reader.isLeft) reader.slot.reset();
}

// Each answer starts the time anew: a slow disk with a long folder does not count as hanging.
void ReadAheadCore::giveUpWhatIsOverdue() {
    const auto now = Clock::now();
    for (const auto& helper : helpers_) {
        if (!helper->slot || helper->isLeft) continue;
        if (const auto answers = helper->blocks.answers(); std::exchange(helper->seen, answers) != answers)
            helper->since = now;
        if (now - helper->since >= limits_.answer) giveUp(*helper);
    }
}

// Where one helper hangs others will, so all possible helpers are wanted at once, and not one after the
// other.
void ReadAheadCore::giveUp(Reader& reader) {
    reader.isLeft = true;
    ++leftBehind_;
    wantedHelpers_ = std::max(limits_.helpersCold, 1U);
    retiredWait_.notify_all();
    Item* item = reader.item;
    if (item == nullptr) return;
    auto* instead = new Item;
    instead->state = Item::State::kDone;
    instead->more = item->more;
    instead->folderKind = item->folderKind;
    instead->mountSource = item->mountSource;
    (item->kind == Item::Kind::kFolder ? instead->error : instead->endError) = ETIMEDOUT;
    instead->orderNext = item->orderNext;
    Item** place = &orderFirst_;
    while (*place != item) place = &(*place)->orderNext;
    *place = instead;
    unlinkWork(item);
    item->givenUp = true;
    ++blocksRead_;
}

// Tells whether no helper reads it, and none is to be had.
bool ReadAheadCore::isRefused(const Item* item) const {
    if (item->state != Item::State::kFree || !canHang(item)) return false;
    if (mostHelpers_ <= leftBehind_) return true;
    const auto works = [](const auto& helper) { return helper->slot && !helper->isLeft; };
    return HelperSlot::taken() >= HelperSlot::kMost && std::none_of(helpers_.begin(), helpers_.end(), works);
}

void ReadAheadCore::refuse(Item* item) {
    takeFrom(item);
    const bool first = item->kind == Item::Kind::kFolder;
    (first ? item->error : item->endError) = ETIMEDOUT;
    Folder* needed = first ? item->folder->parent() : item->folder;
    if (needed != nullptr) folders_.dropNeed(needed);
    finish(item);
}

void ReadAheadCore::leave() {
    Lock lock(mutex_);
    stopped_ = true;
    workThere_.notify_all();
    retiredWait_.notify_all();
    const auto end = Clock::now() + kGrace;
    for (const auto& helper : helpers_) {
        const auto ended = [&] { return helper->ended; };
        helperEnded_.wait(lock, [&] { return helper->ended || helper->slot; });
        if (helper->ended || helperEnded_.wait_until(lock, end, ended)) {
            helper->thread.join();
        } else {
            helper->isLeft = true;
            helper->thread.detach();
        }
    }
}

}  // namespace hl
