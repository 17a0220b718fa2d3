// Turns the records of an open folder into a block of entries with their facts. Each reading thread has its
// own reader.
//
// A block is read in two steps, so that threads can share a long folder: fill() takes the names from the
// kernel; once that is done, another thread may already call fill() with its own reader for the folder's next
// block. build() then looks at each entry once.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/folder_reader.h"
#include "platform/linux/scan/directory_calls.h"
#include "platform/linux/scan/folder_record.h"
#include "platform/linux/scan/link_look.h"

namespace hl {

/// What was read of one folder at once. It does not change once built, so any thread may read it.
struct Block {
    std::unique_ptr<char[]> memory;  ///< Holds what the spans and `names` point to.
    std::size_t bytes = 0;           ///< The size of everything here.
    std::span<const Entry> entries;
    std::span<const EntryDetails> details;
    std::span<const std::uint32_t> entered;  ///< The indexes of the entries that are entered.
    const char* names = nullptr;             ///< Each name ends in a NUL.
    std::uint32_t filesLeftOut = 0;          ///< By rules.
    int entryError = 0;  ///< The system error code for the first entry that could not be looked at.
};

class BlockReader {
  public:
    /// `calls` and `links` must outlive it.
    BlockReader(DirectoryCalls& calls, LinkLook& links, const ReadOptions& options);

    struct Fill {
        int error = 0;            ///< A positive system error code; what was read before the error is kept.
        bool nothing = true;      ///< No record was read.
        bool more = false;        ///< There may be further records.
        std::int64_t cookie = 0;  ///< The place behind the last record.
    };
    /// Reads the next records of the folder, from its descriptor's position on and as many as fit. `folder`
    /// is open and stays the caller's.
    Fill fill(int folder);
    /// Returns what the open folder itself takes on the disk, in units of kBlockBytes.
    std::optional<std::uint64_t> ownBlocks(int folder);
    /// Returns the folder's own inode, if the records of the last fill() begin with it; else 0. File systems
    /// that have subvolumes begin a folder so.
    std::uint64_t folderInode() const;
    /// Drops the records of the last fill(), so that build() finds no entries.
    void dropRecords() { length_ = 0; }
    /// Returns the block of the records of the last fill(), without entries that are gone by now. REQUIRES:
    /// fill() was called, and `folder` is open on the same folder. `goOn` is called while it waits for a disk
    /// to which a link leads (link_look.h).
    /// With `linkSpace`, links to folders are looked at too. `place` is the folder's place for the rules of
    /// the options; without any it may be null.
    std::shared_ptr<const Block> build(int folder, const LinkLook::GoOn& goOn, bool linkSpace = false,
                                       const LeaveOut::Place* place = nullptr);
    /// Tells whether the open folder holds a file CACHEDIR.TAG that marks it as a cache. `more` says that the
    /// folder has entries which the last fill() did not read. One call for each folder that may have one.
    bool isMarkedAsCache(int folder, bool more);

    /// Returns how many answers the disk has given so far: names, and looks at entries. From any thread.
    std::uint32_t answers() const { return answers_.load(std::memory_order_relaxed); }

  private:
    void countAnswer() { answers_.store(answers() + 1, std::memory_order_relaxed); }
    bool wantsDetails() const { return options_.wantTimes || options_.wantSpace || options_.wantOwners; }
    bool enters(std::uint32_t tag) const;
    template <bool kRuled>
    void takeRecords(int folder, const LinkLook::GoOn& goOn, const LeaveOut::Place* place);
    bool isLeftOut(int folder, const FolderRecord& record, std::string_view name,
                   const LeaveOut::Place* place);
    void addFolder(std::string_view name, std::uint64_t inode, std::uint32_t attributes, std::uint32_t tag);
    void addLink(LinkLook::Place& place, const FolderRecord& record, std::size_t length,
                 const LinkLook::GoOn& goOn);
    void lookAtLink(int folder, const char* name);
    void addOther(int folder, const char* name, std::size_t length);
    void addChosen(int folder, const char* name, std::size_t length, std::uint8_t type);
    void addUnlooked(std::string_view name);
    void addFile(const struct statx& facts, std::string_view name);
    std::uint32_t keepName(std::string_view name);
    void noteError(int error);
    std::shared_ptr<const Block> pack();

    DirectoryCalls& calls_;
    LinkLook& links_;
    const ReadOptions options_;
    unsigned mask_;
    std::atomic<std::uint32_t> answers_{0};
    std::unique_ptr<char[]> records_;
    std::size_t length_ = 0;
    bool linkSpace_ = false;
    std::vector<Entry> entries_;
    std::vector<EntryDetails> details_;
    std::vector<std::uint32_t> entered_;
    std::string names_;
    std::uint32_t filesLeftOut_ = 0;
    int entryError_ = 0;
};

}  // namespace hl
