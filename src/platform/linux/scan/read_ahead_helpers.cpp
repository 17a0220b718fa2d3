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

constexpr auto kPatience = std::chrono::microseconds(30);
// A disk that is merely slow answers within this time after nobody waits for it any more.
constexpr auto kGrace = std::chrono::milliseconds(100);
constexpr std::ptrdiff_t kMostInDanger = HelperSlot::kMost / 2;

}  // namespace

// Reading a folder takes some 10 us from the cache, while sleeping and being woken takes longer; so this
// first watches for a moment whether the lists change. Returns true if they did.
bool ReadAheadCore::changesSoon(Lock& lock) {
    if (limits_.helpersWarm == 0 || pace_.isSlow()) return false;
    const std::uint32_t before = changes_.load(std::memory_order_relaxed);
    lock.unlock();
    const auto end = Clock::now() + kPatience;
    while (changes_.load(std::memory_order_acquire) == before && Clock::now() < end) {
    }
    lock.lock();
    return changes_.load(std::memory_order_relaxed) != before;
}

void ReadAheadCore::startHelpers() {
    if (!pace_.isWorthHelpers() || order_.firstFree() == nullptr) return;
    try {
        while (helpers_.size() < pace_.startable()) {
            const auto number = static_cast<unsigned>(helpers_.size());
            helpers_.reserve(number + 1);  // Once its thread runs, nothing may fail.
            auto reader = std::make_unique<Reader>(*this, true, number);
            reader->thread =
                std::thread([self = shared_from_this(), made = reader.get()] { self->helperLoop(*made); });
            helpers_.push_back(std::move(reader));
        }
    } catch (const std::exception&) {
        pace_.limitTo(helpers_.size());  // No more threads, or no memory.
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
ReadItem* ReadAheadCore::freeForHelper() const {
    if (order_.mayReadAhead()) return order_.firstFree();
    const bool mustHelp = order_.front() != nullptr && order_.front()->isFree() && order_.front()->canHang();
    return mustHelp ? order_.front() : nullptr;
}

// A helper that gets no memory ends and is not replaced; the walk and the other helpers read on.
void ReadAheadCore::helperLoop(Reader& reader) {
    Lock lock(mutex_);
    try {
        LinuxFaultSignals().prepareThread();
        helpUntilStopped(reader, lock);
    } catch (const std::bad_alloc&) {
        if (!lock.owns_lock()) lock.lock();
        if (!std::exchange(reader.isLeft, true)) pace_.countAbandoned();
        pace_.limitTo(helpers_.size());
        retiredWait_.notify_all();
    }
    reader.ended = true;
    reader.slot.reset();
    helperEnded_.notify_all();
}

void ReadAheadCore::helpUntilStopped(Reader& reader, Lock& lock) {
    while (!stopped_ && !reader.isLeft) {
        if (reader.number >= pace_.wanted()) {
            wakeReader();  // This one may have been woken in the place of another.
            retiredWait_.wait(lock);
            continue;
        }
        if (folders_.hasClosable() && enterDanger(reader, nullptr)) {
            folders_.closeClosable(lock);
            leaveDanger(reader);
            continue;
        }
        ReadItem* item = freeForHelper();
        if (item == nullptr) {
            changesSoon(lock);
            if (stopped_) continue;
            item = freeForHelper();
        }
        const bool mayTake = item != nullptr && (!item->canHang() || enterDanger(reader, item));
        if (!mayTake && !stopped_) {
            ++idleHelpers_;
            workThere_.wait(lock);
            --idleHelpers_;
        }
        if (!mayTake) continue;
        order_.takeFrom(item);
        wakeReader();
        readItem(item, reader, lock);
        leaveDanger(reader);
    }
}

// --- what can hang

// Returns false if there are as many threads in danger as allowed. A disk that answers leaves some to others.
bool ReadAheadCore::enterDanger(Reader& reader, ReadItem* item) {
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

void ReadAheadCore::giveUp(Reader& reader) {
    reader.isLeft = true;
    pace_.countAbandoned();
    pace_.wantAll();
    retiredWait_.notify_all();
    if (reader.item == nullptr) return;
    order_.giveUp(reader.item);
    pace_.countBlock();
}

// Tells whether no helper reads it, and none is to be had.
bool ReadAheadCore::isRefused(const ReadItem* item) const {
    if (!item->isFree() || !item->canHang()) return false;
    if (pace_.noneToBeHad()) return true;
    const auto works = [](const auto& helper) { return helper->slot && !helper->isLeft; };
    return HelperSlot::taken() >= HelperSlot::kMost && std::none_of(helpers_.begin(), helpers_.end(), works);
}

void ReadAheadCore::refuse(ReadItem* item) {
    order_.takeFrom(item);
    const bool first = item->kind == ReadItem::Kind::kFolder;
    item->errorOf(item->kind) = ETIMEDOUT;
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
