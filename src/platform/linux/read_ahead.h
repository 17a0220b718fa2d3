// Reads folders ahead of the walk, and hands their blocks over in the order of one thread.
//
// The heart is a list of everything known but not yet read, in the order of the walk. A reader takes the
// first item that nobody has taken, reads it, and puts the subfolders it found in its place. So whoever is
// free reads what the walk needs next. The walk takes finished blocks from the front, and reads too when the
// one it needs is not there.
//
// Parts: `order_` has every item, finished ones too, and is what the walk consumes; `work_` has those still
// to be read or in reading, in the same order, so that the first free one is at most as many steps away as
// there are readers. Subfolders of one block are one item (a range) until somebody takes the first of them.
//
// How many helpers read: one for each core beyond the first while folders come from the cache; while reads
// wait for a disk or a server, up to helpersCold. Blocks that lie finished in front of the walk are bounded
// in bytes; a helper above the bound waits, the walk itself never does.
//
// Locking: one mutex around all lists, folders and counts. The kernel is asked outside of it, but for the
// rare reopening of a folder. The order of items never depends on who reads.
#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/folder_reader.h"
#include "platform/linux/block_reader.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/way_down.h"

namespace hl {

struct ReadAheadLimits {
    unsigned helpersWarm = 1;  ///< Helpers while folders come from the cache.
    unsigned helpersCold = 8;  ///< The most while reads wait. With 0 in both the walk reads alone.
    std::size_t bytesAhead = std::size_t{1} << 20;
    std::size_t openFolders = 64;  ///< Budget of descriptors.
};

class ReadAhead final : public FolderReader {
  public:
    /// `calls` and `wait` (may be null) must outlive the reader. `prepareThread` (may be null) runs first in
    /// each helper.
    ReadAhead(DirectoryCalls& calls, std::string source, const ReadOptions& options,
              const ReadAheadLimits& limits, WaitCallback* wait, void (*prepareThread)());
    /// Waits for what the helpers have in hand, at most one folder each.
    ~ReadAhead() override;

    std::unique_ptr<Listing> next() override;

    /// The most descriptors for folders that were open at once.
    std::size_t mostOpen() const { return folders_.mostOpen(); }

  private:
    struct Item;
    class BlockListing;
    using Lock = std::unique_lock<std::mutex>;

    // The lists.
    Item* append(Item* before, Item* made);
    void unlinkWork(Item* item);
    Item* firstFree() const;
    Item* freeForWalk() const;
    Item* takeFrom(Item* item);
    void putChildren(Item* item);
    void discard(Item* item);

    // Reading one item.
    void readItem(Item* item, BlockReader& reader, Lock& lock);
    void readLocked(Item* item, BlockReader& reader, Lock& lock);
    int openFolder(Item* item, Lock& lock);
    int openOnce(const Item* item, int parent, Lock& lock);
    void learnMount(Item* item, int parent);
    void noteMount(Item* item, const struct statx& facts);
    bool leadsBack(Item* item, int descriptor);
    void offerRest(Item* item, const BlockReader::Fill& fill);
    void reopenNextNeeded(const Item* item, Folder* parent);
    void finish(Item* item);

    // Helpers.
    void startHelpers();
    void wakeReader();
    bool enoughForTwo() const;
    bool isSlow() const;
    void helperLoop(unsigned number);
    void helpUntilStopped(unsigned number, BlockReader& reader);
    bool mayJudge() const { return limits_.helpersCold > limits_.helpersWarm; }
    void judge(bool waited);
    bool mayReadAhead() const { return bytesAhead_ < limits_.bytesAhead; }
    bool changesSoon(Lock& lock);
    bool waitForFront(Lock& lock);
    std::unique_ptr<Listing> handOver(Item* item);

    DirectoryCalls& calls_;
    const std::string source_;
    const ReadOptions options_;
    const ReadAheadLimits limits_;
    WaitCallback* const wait_;
    void (*const prepareThread_)();
    BlockReader ownReader_;

    std::mutex mutex_;
    std::condition_variable workThere_;    ///< For helpers.
    std::condition_variable retiredWait_;  ///< For helpers beyond the number that is wanted now.
    std::condition_variable frontThere_;   ///< For the walk.
    OpenFolders folders_;
    WayDown wayDown_;
    Folder* root_ = nullptr;  ///< The source; from it every folder can be found again by name.
    Item* orderFirst_ = nullptr;
    Item* workFirst_ = nullptr;
    std::size_t bytesAhead_ = 0;
    std::atomic<std::uint32_t> changes_ = 0;  ///< Counts blocks finished and offered.
    unsigned idleHelpers_ = 0;
    bool walkWaits_ = false;
    bool stopped_ = false;
    int slowness_ = 0;  ///< 0: all from the cache. How many helpers it is worth: judge().
    unsigned wantedHelpers_ = 0;
    unsigned mostHelpers_ = ~0U;  ///< Fewer once the system refused a thread.
    std::uint64_t blocksRead_ = 0;
    bool mountsKnown_ = false;
    std::vector<Mount> mounts_;
    std::vector<std::thread> helpers_;
};

}  // namespace hl
