// What is known but not yet handed to the walk, in the order of the walk. A part of ReadAheadCore, under its
// mutex.
//
// There are two lists: one has every item, also finished ones, and is what the walk consumes; the other has
// those not yet read, in the same order, so that the first free one is at most as many steps away as there
// are readers. The subfolders of a block are one item (a range) until somebody takes the first of them.
#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "platform/folder_reader.h"
#include "platform/linux/scan/block_reader.h"
#include "platform/linux/scan/open_folders.h"

namespace hl {

/// What opening a folder, and reading its first block, told of the folder itself.
struct FolderFinding {
    bool putOff = false;   ///< It is a snapshot that is not read now.
    bool isCache = false;  ///< It is marked as a cache, which is left out.
    std::string mountSource;
    std::optional<Subvolume> subvolume;
    std::optional<std::uint64_t> ownBlocks;
    FolderId source;  ///< Set in the first item only.
    std::optional<FolderFacts> facts;
};

/// Something to read, or read.
struct ReadItem {
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
    FolderFinding found;
    std::exception_ptr failure;
    ReadItem* orderNext = nullptr;
    ReadItem* workPrevious = nullptr;
    ReadItem* workNext = nullptr;

    bool isFree() const { return state == State::kFree; }
    bool canHang() const { return folder->canHang; }
    /// A folder that cannot be opened has another place for its error than one that cannot be read further.
    int& errorOf(Kind of) { return of == Kind::kFolder ? error : endError; }
};

class ReadAheadOrder {
  public:
    /// The finished blocks ahead of the walk should take at most `bytesAhead`. `folders` must outlive it.
    ReadAheadOrder(OpenFolders& folders, std::size_t bytesAhead)
        : folders_(folders), mostBytes_(bytesAhead) {}
    /// REQUIRES: clear() was called.
    ~ReadAheadOrder() = default;
    ReadAheadOrder(const ReadAheadOrder&) = delete;
    ReadAheadOrder& operator=(const ReadAheadOrder&) = delete;

    /// Makes the source the first item; the item takes over a reference to it.
    void begin(Folder* source);
    void clear();

    /// What the walk needs next; null at the end.
    ReadItem* front() const { return orderFirst_; }
    /// Removes the front, and returns what it has for the walk. REQUIRES: it is done.
    std::unique_ptr<Listing> handOver();
    /// Tells whether there is room for further blocks.
    bool mayReadAhead() const { return bytesAhead_ < mostBytes_; }

    ReadItem* firstFree() const;
    /// Tells whether two readers would find something to take.
    bool enoughForTwo() const;
    /// Takes a free item, of a range its first subfolder. REQUIRES: the item is free.
    ReadItem* takeFrom(ReadItem* item);
    /// These put behind an item the subfolders of its block, and the rest of its folder.
    void putChildren(ReadItem* item);
    void putRest(ReadItem* item);
    /// The item was read.
    void finish(ReadItem* item);
    /// Puts an item with an error in the place of one that hangs, which then belongs to its reader.
    void giveUp(ReadItem* item);
    /// Deletes an item that is in no list.
    void discard(ReadItem* item);

  private:
    static std::size_t bytesOf(const ReadItem& done);
    ReadItem* append(ReadItem* before, ReadItem* made);
    void unlinkWork(ReadItem* item);

    OpenFolders& folders_;
    const std::size_t mostBytes_;
    ReadItem* orderFirst_ = nullptr;
    ReadItem* workFirst_ = nullptr;
    std::size_t bytesAhead_ = 0;
};

}  // namespace hl
