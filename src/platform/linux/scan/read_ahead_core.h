// What the threads that read folders ahead of the walk share: see read_ahead.h.
//
// The core is a list of everything known but not yet read, in the order of the walk. A reader takes the first
// item that nobody has taken, reads it, and puts the subfolders it found in its place. So whoever is free
// reads what the walk needs next. The walk takes finished blocks from the front, and reads too if the one it
// needs is not there.
//
// Lists: `order_` has every item, also finished ones, and is what the walk consumes; `work_` has those not
// yet read, in the same order, so that the first free one is at most as many steps away as there are readers.
// The subfolders of a block are one item (a range) until somebody takes the first of them.
//
// Helpers: while folders come from the cache, there is one for each core beyond the first; while reads wait
// for a disk or a server, up to helpersCold. The finished blocks ahead of the walk are limited in bytes;
// above the limit helpers wait, but the walk never does.
//
// Hanging: a mount whose server or process does not answer holds whoever asks it for any time. There the walk
// reads nothing and does not even close a folder; only helpers do, and the walk waits for them. An item that
// takes longer than the limit is given up: an item with an error takes its place, its helper is abandoned
// with it, another helper takes over, and the late result is dropped. Each helper holds this object, so that
// it exists as long as one of them needs it.
//
// Locking: one mutex guards all lists, folders and counts. System calls are made outside of it, except quick
// ones that cannot hang: closing a folder, opening it again, what is mounted there, where a link leads. The
// order of items never depends on who reads.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/folder_reader.h"
#include "platform/linux/drives/mount_table.h"
#include "platform/linux/process/helper_slot.h"
#include "platform/linux/scan/block_reader.h"
#include "platform/linux/scan/link_look.h"
#include "platform/linux/scan/read_ahead_limits.h"
#include "platform/linux/scan/way_down.h"

namespace hl {

class ReadAheadCore : public std::enable_shared_from_this<ReadAheadCore> {
  public:
    ReadAheadCore(std::shared_ptr<DirectoryCalls> calls, std::string source, const ReadOptions& options,
                  const ReadAheadLimits& limits, WaitCallback* wait);
    ~ReadAheadCore();

    std::unique_ptr<Listing> next();
    /// For the walk, which then asks no more: ends the helpers, except those that hang.
    void leave();
    /// Tells whether folders are open that only a thread that may hang can close.
    bool mayHangWhenClosed();

    std::size_t mostOpen() const { return folders_.mostOpen(); }

  private:
    struct Item;
    struct Reader;
    class BlockListing;
    using Clock = std::chrono::steady_clock;
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
    void readItem(Item* item, Reader& reader, Lock& lock);
    bool readLocked(Item* item, Reader& reader, Lock& lock);
    int openFolder(Item* item, Reader& reader, Lock& lock);
    int openOnce(Item* item, int parent, Reader& reader, Lock& lock);
    void meetWhatCanHang(Folder* folder);
    bool leadsWhereItCanHang(const Folder* folder, int parent) const;
    int learnFolder(Item* item, int descriptor, Lock& lock);
    void learnMount(Item* item, int parent);
    void noteMount(Item* item, const struct statx& facts);
    bool leadsBack(Item* item, const struct statx& facts);
    void offerRest(Item* item, const BlockReader::Fill& fill);
    void reopenNextNeeded(const Item* item, Folder* parent);
    void finish(Item* item);

    // What can hang.
    static bool canHang(const Item* item);
    bool enterDanger(Reader& reader, Item* item);
    static void leaveDanger(Reader& reader);
    bool isRefused(const Item* item) const;
    void refuse(Item* item);
    void giveUpWhatIsOverdue();
    void giveUp(Reader& reader);

    // Helpers.
    unsigned helpersNow() const;
    void startHelpers();
    void wakeReader();
    bool enoughForTwo() const;
    bool isSlow() const;
    void helperLoop(Reader& reader);
    void helpUntilStopped(Reader& reader, Lock& lock);
    Item* freeForHelper() const;
    bool mayJudge() const { return limits_.helpersCold > limits_.helpersWarm; }
    void judge(bool waited);
    bool mayReadAhead() const { return bytesAhead_ < limits_.bytesAhead; }
    bool changesSoon(Lock& lock);
    bool waitForFront(Lock& lock);
    bool goOnReading(const Reader& reader);
    std::unique_ptr<Listing> handOver(Item* item);

    const std::shared_ptr<DirectoryCalls> keptCalls_;
    DirectoryCalls& calls_;
    const std::string source_;
    const ReadOptions options_;
    const ReadAheadLimits limits_;
    WaitCallback* const wait_;
    const std::vector<Mount> mounts_;
    LinkLook links_;
    std::unique_ptr<Reader> walk_;

    std::mutex mutex_;
    std::condition_variable workThere_;    ///< Helpers wait here for items.
    std::condition_variable retiredWait_;  ///< Helpers beyond the wanted number wait here.
    std::condition_variable frontThere_;   ///< The walk waits here.
    std::condition_variable helperEnded_;  ///< leave() waits here until helpers have ended or may hang.
    OpenFolders folders_;
    WayDown wayDown_;
    Folder* root_ = nullptr;  ///< The source; from it every folder can be found again by name.
    Item* orderFirst_ = nullptr;
    Item* workFirst_ = nullptr;
    std::size_t bytesAhead_ = 0;
    std::atomic<std::uint32_t> changes_ = 0;  ///< Counts the blocks that were finished or offered.
    unsigned idleHelpers_ = 0;
    bool walkWaits_ = false;
    std::atomic<bool> stopped_ = false;
    int slowness_ = 0;  ///< 0 if all comes from the cache; else the helpers that the reads are worth.
    unsigned wantedHelpers_ = 0;
    unsigned mostHelpers_ = ~0U;  ///< Reduced once the system refused a thread.
    std::uint64_t blocksRead_ = 0;
    bool someCanHang_ = false;  ///< A folder that can hang was met.
    unsigned leftBehind_ = 0;   ///< The number of abandoned helpers, which others have replaced.
    std::vector<std::unique_ptr<Reader>> helpers_;
};

struct ReadAheadCore::Item {
    enum class Kind : std::uint8_t {
        kFolder,  ///< The first block of `folder`; it holds a need of its parent until the folder is open.
        kRest,    ///< A further block of `folder`; it holds a need of it.
        kRange,   ///< Subfolders of `folder`, from children->entered[nextChild] on; it holds a need of it.
    };
    enum class State : std::uint8_t { kFree, kTaken, kDone };

    Kind kind = Kind::kFolder;
    State state = State::kFree;
    bool lastOfRange = false;
    bool more = false;
    bool givenUp = false;  ///< It is in no list any more and belongs to the helper that hangs on it.
    FolderKind folderKind = FolderKind::kPlain;
    bool leftOut = false;
    std::uint32_t nextChild = 0;
    int error = 0;
    int endError = 0;
    Folder* folder = nullptr;  ///< Holds one reference until the item is done.
    std::shared_ptr<const Block> children;
    std::shared_ptr<const Block> block;
    std::string mountSource;
    FolderId source;  ///< Set in the first item only.
    std::exception_ptr failure;
    Item* orderNext = nullptr;
    Item* workPrevious = nullptr;
    Item* workNext = nullptr;
};

/// A reader: the walk, or a helper.
struct ReadAheadCore::Reader {
    Reader(ReadAheadCore& core, bool helper, unsigned n)
        : isHelper(helper), number(n), blocks(core.calls_, core.links_, core.options_) {}

    const bool isHelper;
    const unsigned number;  ///< The number of a helper.
    BlockReader blocks;
    // The rest is for helpers, under the mutex.
    std::thread thread;
    bool ended = false;
    bool isLeft = false;  ///< It was abandoned: another helper replaces it, and it ends when it returns.
    // These are set while it is where it can hang.
    std::optional<HelperSlot> slot;
    Item* item = nullptr;  ///< The item being read; null while it closes folders.
    Clock::time_point since = {};
    std::uint32_t seen = 0;  ///< The number of answers at that time.
};

}  // namespace hl
