// What the threads that read folders ahead of the walk share: see read_ahead.h.
//
// The core is a list of everything known but not yet read, in the order of the walk. A reader takes the first
// item that nobody has taken, reads it, and puts the subfolders it found in its place. So whoever is free
// reads what the walk needs next. The walk takes finished blocks from the front, and reads too if the one it
// needs is not there.
//
// Parts: ReadAheadOrder has the lists, ReadAheadPace says how many helpers are worth it, FolderOpener opens
// what is read.
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
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/folder_reader.h"
#include "platform/linux/process/helper_slot.h"
#include "platform/linux/scan/folder_opener.h"
#include "platform/linux/scan/read_ahead_pace.h"

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
    struct Reader;
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;

    // Reading one item.
    void readItem(ReadItem* item, Reader& reader, Lock& lock);
    bool readLocked(ReadItem* item, Reader& reader, Lock& lock);
    void build(ReadItem* item, Reader& reader, int descriptor, Lock& lock);
    bool learnSubvolume(ReadItem* item, Reader& reader, int descriptor);
    void learnPlace(const ReadItem* item) const;
    bool learnCache(ReadItem* item, Reader& reader, int descriptor, bool more);
    void offerRest(ReadItem* item, const BlockReader::Fill& fill);
    void finish(ReadItem* item);

    // What can hang.
    bool enterDanger(Reader& reader, ReadItem* item);
    static void leaveDanger(Reader& reader);
    bool isRefused(const ReadItem* item) const;
    void refuse(ReadItem* item);
    void giveUpWhatIsOverdue();
    void giveUp(Reader& reader);

    // The walk.
    ReadItem* freeForWalk() const;
    bool waitForFront(Lock& lock);
    bool goOnReading(const Reader& reader);
    std::unique_ptr<Listing> handOver();

    // Helpers.
    void startHelpers();
    void wakeReader();
    void helperLoop(Reader& reader);
    void helpUntilStopped(Reader& reader, Lock& lock);
    ReadItem* freeForHelper() const;
    bool changesSoon(Lock& lock);

    const std::shared_ptr<DirectoryCalls> calls_;
    const ReadAheadLimits limits_;
    WaitCallback* const wait_;

    std::mutex mutex_;
    std::condition_variable workThere_;    ///< Helpers wait here for items.
    std::condition_variable retiredWait_;  ///< Helpers beyond the wanted number wait here.
    std::condition_variable frontThere_;   ///< The walk waits here.
    std::condition_variable helperEnded_;  ///< leave() waits here until helpers have ended or may hang.
    OpenFolders folders_;
    FolderOpener opener_;
    ReadAheadOrder order_;
    ReadAheadPace pace_;
    Folder* root_;  ///< The source; from it every folder can be found again by name.
    std::atomic<std::uint32_t> changes_ = 0;  ///< Counts the blocks that were finished or offered.
    unsigned idleHelpers_ = 0;
    bool walkWaits_ = false;
    std::atomic<bool> stopped_ = false;
    std::unique_ptr<Reader> walk_;
    std::vector<std::unique_ptr<Reader>> helpers_;
};

/// A reader: the walk, or a helper.
struct ReadAheadCore::Reader final : FolderOpener::Reader {
    Reader(ReadAheadCore& of, bool helper, unsigned n)
        : core(of),
          isHelper(helper),
          number(n),
          blocks(*of.calls_, of.opener_.links(), of.opener_.options()) {}

    // The walk reads nothing that can hang, so a helper is wanted there, even if all of them had retired.
    bool enter(ReadItem* what) override {
        core.pace_.meetWhatCanHang();
        core.retiredWait_.notify_all();
        return isHelper && core.enterDanger(*this, what);
    }

    ReadAheadCore& core;
    const bool isHelper;
    const unsigned number;  ///< The number of a helper.
    BlockReader blocks;
    // The rest is for helpers, under the mutex.
    std::thread thread;
    bool ended = false;
    bool isLeft = false;  ///< It was abandoned: another helper replaces it, and it ends when it returns.
    // These are set while it is where it can hang.
    std::optional<HelperSlot> slot;
    ReadItem* item = nullptr;  ///< The item being read; null while it closes folders.
    Clock::time_point since = {};
    std::uint32_t seen = 0;  ///< The number of answers at that time.
};

}  // namespace hl
