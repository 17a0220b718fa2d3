// What threads share that read folders ahead of the walk: see read_ahead.h.
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
// What can hang: a mount whose server or process does not answer holds whoever asks it for as long as it
// likes. There the walk reads nothing, not even closes a folder; helpers alone do, and the walk waits for
// them. An item that takes longer than the limit is given up: an item with an error takes its place, its
// helper is left behind with it, another one takes over, and what the first finds in the end is dropped. Each
// helper holds this object, so that it stays for as long as one of them needs it.
//
// Locking: one mutex around all lists, folders and counts. The kernel is asked outside of it, but for quick
// questions that cannot hang: closing a folder, opening it again, what is mounted there, where a link leads.
// The order of items never depends on who reads.
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
    /// For the walk, which then asks no more: ends the helpers but for those that hang.
    void leave();
    /// Whether folders are open that only a thread that may hang can close.
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
    std::condition_variable workThere_;    ///< For helpers.
    std::condition_variable retiredWait_;  ///< For helpers beyond the number that is wanted now.
    std::condition_variable frontThere_;   ///< For the walk.
    std::condition_variable helperEnded_;  ///< For leave(): one has ended, or is where it can hang.
    OpenFolders folders_;
    WayDown wayDown_;
    Folder* root_ = nullptr;  ///< The source; from it every folder can be found again by name.
    Item* orderFirst_ = nullptr;
    Item* workFirst_ = nullptr;
    std::size_t bytesAhead_ = 0;
    std::atomic<std::uint32_t> changes_ = 0;  ///< Counts blocks finished and offered.
    unsigned idleHelpers_ = 0;
    bool walkWaits_ = false;
    std::atomic<bool> stopped_ = false;
    int slowness_ = 0;  ///< 0: all from the cache. How many helpers it is worth: judge().
    unsigned wantedHelpers_ = 0;
    unsigned mostHelpers_ = ~0U;  ///< Fewer once the system refused a thread.
    std::uint64_t blocksRead_ = 0;
    bool someCanHang_ = false;  ///< A folder that can hang was met.
    unsigned leftBehind_ = 0;   ///< Helpers of which others have taken the place.
    std::vector<std::unique_ptr<Reader>> helpers_;
};

struct ReadAheadCore::Item {
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
    bool givenUp = false;  ///< In no list any more; belongs to the helper that hangs on it.
    FolderKind folderKind = FolderKind::kPlain;
    std::uint32_t nextChild = 0;
    int error = 0;
    int endError = 0;
    Folder* folder = nullptr;  ///< One reference, until the item is done.
    std::shared_ptr<const Block> children;
    std::shared_ptr<const Block> block;
    std::string mountSource;
    FolderId source;  ///< Of the first item alone.
    std::exception_ptr failure;
    Item* orderNext = nullptr;
    Item* workPrevious = nullptr;
    Item* workNext = nullptr;
};

/// One that reads: the walk, or a helper.
struct ReadAheadCore::Reader {
    Reader(ReadAheadCore& core, bool helper, unsigned n)
        : isHelper(helper), number(n), blocks(core.calls_, core.links_, core.options_) {}

    const bool isHelper;
    const unsigned number;  ///< Of a helper.
    BlockReader blocks;
    // Of a helper, under the mutex.
    std::thread thread;
    bool ended = false;
    bool isLeft = false;  ///< Left behind: another has its place, and it ends when it comes back.
    // While it is where it can hang:
    std::optional<HelperSlot> slot;
    Item* item = nullptr;  ///< What it reads; null: it closes folders.
    Clock::time_point since = {};
    std::uint32_t seen = 0;  ///< How many answers there were at that time.
};

}  // namespace hl
