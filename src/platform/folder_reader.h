// Reads a tree of folders; the walk learns only through this what is on a disk.
//
// A FolderReader reads one source, depth-first, in the order in which the file system delivers the entries,
// and returns a block of entries at a time, with names and facts together, so that no call is made for each
// entry. The walk takes blocks with next() in exactly the order in which it needs them, and returns each by
// destroying it. An implementation may read ahead on threads of its own; the result and its order are those
// of one thread. All calls come from the thread of the logic.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "platform/file_choice.h"
#include "platform/folder_id.h"
#include "platform/leave_out.h"
#include "platform/subvolume.h"

namespace hl {

/// Tags of reparse entries.
enum ReparseTag : std::uint32_t {
    kTagNone = 0,
    kTagMountPoint = 0xa0000003,  ///< The root of another mount.
    kTagSymbolicLink = 0xa000000c,
};

/// A bit of Entry::attributes that no file system has: the reader enters the entry and returns its blocks.
inline constexpr std::uint32_t kEntered = 0x8000'0000;

/// Another bit of Entry::attributes that no file system has: something else is mounted on the file, and the
/// entry has the facts of what is mounted. The reader sets it only if the options ask for space.
inline constexpr std::uint32_t kMountedFile = 0x4000'0000;

/// A third one: a rule leaves the folder out (ReadOptions::leaveOut).
inline constexpr std::uint32_t kLeftOutByRule = 0x2000'0000;

/// A fourth one: the entry is neither a file with content nor a link (ReadOptions::wantTypes).
inline constexpr std::uint32_t kSpecialFile = 0x1000'0000;

/// The facts of one entry. "." and ".." are never entries.
struct Entry {
    /// The apparent size in bytes; 0 for a folder, but for a link to one if the options ask for their facts.
    std::uint64_t size = 0;
    std::uint64_t inode = 0;   ///< 0 unless the options ask for links; of a folder, for folders' facts.
    std::uint32_t device = 0;  ///< The number of the disk, or 0 as for inode. Both together identify a file.
    std::uint32_t links = 1;   ///< The number of the file's names. With kLeftOutByRule, the rule's number.
    std::uint32_t attributes = 0;  ///< AttributeBits (base/size_text.h), kEntered, kMountedFile,
                                   ///< kLeftOutByRule.
    std::uint32_t tag = kTagNone;  ///< The tag of a symbolic link, wherever it leads. A mount point is
                                   ///< recognised by its block.
    std::uint32_t nameOffset = 0;
    std::uint16_t nameLength = 0;
    std::uint16_t targetLength = 0;  ///< The length of a link's text, if it leads to a folder; the text is
                                     ///< behind the name.

    bool isEntered() const { return (attributes & kEntered) != 0; }
    bool isLeftOutByRule() const { return (attributes & kLeftOutByRule) != 0; }
};

// The size counts, since millions of entries pass from the readers to the walk.
static_assert(sizeof(Entry) == 40);

/// The unit of EntryDetails::blocks, whatever the file system's own blocks are.
inline constexpr std::uint64_t kBlockBytes = 512;

/// Facts of an entry that are there only if asked for; times are in seconds since 1970.
struct EntryDetails {
    std::int64_t written = 0, created = 0, accessed = 0;
    /// What the file takes on the disk, in units of kBlockBytes; of a link to a folder only with FolderSpace.
    std::uint64_t blocks = 0;
    std::uint32_t owner = 0;  ///< The uid; only with wantOwners.
};

/// What a folder is by a look at itself. Times are in seconds since 1970.
struct FolderFacts {
    FolderId id = {};
    std::uint64_t size = 0;
    std::uint64_t blocks = 0;  ///< In units of kBlockBytes.
    std::int64_t written = 0;
    std::optional<std::int64_t> created = {};  ///< Nothing if the file system keeps no such time.
    std::uint32_t owner = 0;
};

/// What a block tells about its folder.
enum class FolderKind : std::uint8_t {
    kPlain,
    kMountRoot,  ///< The root of another mount.
};

/// A block of entries of one folder. It owns the memory that names and targets point into.
class Listing {
  public:
    virtual ~Listing() = default;

    /// Why the folder could not be opened, or its first entries could not be read.
    std::optional<Error> error;
    /// Why the facts of an entry could not be learned, for the first such entry; it counts 0 bytes.
    std::optional<Error> entryError;
    /// Why the listing ended before the end of the folder; the entries until then are here.
    std::optional<Error> endError;
    /// A fault that happened while this block was read; the walk raises it again when it gets here.
    std::exception_ptr failure;
    /// Another block of the same folder follows this one.
    bool more = false;
    FolderKind kind = FolderKind::kPlain;
    /// The folder is not read after all, although it was entered; this is its only block, and it is empty.
    bool leftOut = false;
    /// The folder is a read-only snapshot that is not read now (ReadOptions::putOffSnapshots); this is its
    /// only block, and it is empty.
    bool putOff = false;
    /// The folder is marked as a cache and is left out (LeaveOut::leavesCachesOut); this is its only block,
    /// and it is empty.
    bool isCache = false;
    /// The number of files and links that rules have left out of this block; they are no entries.
    std::uint32_t filesLeftOut = 0;
    /// Set in the first block of a subvolume's root, if the options ask for it.
    std::optional<Subvolume> subvolume;
    /// The identity of the source; set in its first block.
    FolderId source;
    /// What the folder itself takes on the disk, in units of kBlockBytes; in its first block, if
    /// ReadOptions::folderSpace asks for it.
    std::optional<std::uint64_t> ownBlocks;
    /// In the first block, if ReadOptions::folderFacts asks for them, and if the folder, or at least its name
    /// in the folder above, could be looked at.
    std::optional<FolderFacts> facts;
    /// What is mounted there, if the folder is a mount root.
    std::string mountSource;
    /// The disks, named by their mount points, that links lead to and that did not answer; each is told once
    /// in a scan. Such a link is an entry as if it led nowhere.
    std::vector<Error> silentMounts;

    const Entry* entries = nullptr;
    std::size_t count = 0;
    const EntryDetails* details = nullptr;  ///< One for each entry, or null.
    const char* names = nullptr;            ///< Each name ends in a NUL.

    /// Returns the details of the entry with this index; all of them are 0 if there are none.
    const EntryDetails& detailsOf(std::size_t index) const {
        static constexpr EntryDetails kNone;
        return details == nullptr ? kNone : details[index];
    }
    std::string_view name(const Entry& e) const { return {names + e.nameOffset, e.nameLength}; }
    std::string_view target(const Entry& e) const {
        return {names + e.nameOffset + e.nameLength + 1, e.targetLength};
    }
};

/// Whether to ask what folders themselves, and links to folders, take on the disk: one call for each.
enum class FolderSpace : std::uint8_t {
    kNever,
    kOfWholeDisk,  ///< If the source is the root of a file system that counts its own blocks.
    kAlways,
};

struct ReadOptions {
    bool recursive = true;     ///< If false, only the source itself is read.
    bool onlyOpen = false;     ///< The source is only opened; the block has no entries.
    bool followLinks = false;  ///< Links to folders, and other mounts, are entered.
    /// With followLinks, this many folders of the source's path, right above it, count as being on the way
    /// down.
    std::uint32_t levelsAbove = 0;
    bool wantLinks = false;  ///< Fills inode, device and links.
    // With one of these three, Listing::details is not null.
    bool wantSpace = false;   ///< Fills the blocks and the time of the last writing.
    bool wantTimes = false;   ///< Fills all details but the owner, and all attributes.
    bool wantOwners = false;  ///< Fills the owner.
    bool wantTypes = false;   ///< Marks entries with kSpecialFile.
    FolderSpace folderSpace = FolderSpace::kNever;
    bool folderFacts = false;     ///< Tells what each folder is: one call for each.
    bool wantSubvolumes = false;  ///< Tells which folders are roots of subvolumes.
    /// With wantSubvolumes: read-only snapshots below the source are not read, unless a link leads to them.
    bool putOffSnapshots = false;
    /// If it is known: the source is read only if it is the root of this subvolume. Otherwise somebody has
    /// put another folder in its place, which is the error of its only block.
    SubvolumeId onlySubvolume = {};
    bool putOffSource = false;  ///< With putOffSnapshots: a source that is a snapshot is not read.
    bool wantFileNames = true;  ///< If false, the names of entries that are no folders may be empty.
    /// Says what is left out below the source; null if nothing is. A link counts as a file there, wherever it
    /// leads. A folder that is left out is an entry, but is not entered.
    std::shared_ptr<const LeaveOut> leaveOut = {};
    /// If it is set, files are only those that it takes; links that are not followed are files then, wherever
    /// they lead, and are not asked where.
    std::shared_ptr<const FileChoice> choice = {};
    /// With `choice`: if false, a file whose folder tells its type is not looked at, and has no facts.
    bool wantFacts = true;
};

class FolderReader {
  public:
    virtual ~FolderReader() = default;

    /// Returns the next block in the order of the walk: first the source's own; then, each time the walk
    /// meets an entry that is entered, the first block of that folder; and after the last entry of a block
    /// with `more`, the next block of the same folder. Which entries are entered is the reader's decision
    /// alone: with `recursive` every folder, and with followLinks also links to folders. A folder that turns
    /// out to be another mount has the kind kMountRoot, and is left out unless followLinks is set. A link or
    /// a mount that is one of the folders above it has one empty block, with the error of too many links.
    ///
    /// It may wait for a disk. Meanwhile it calls the reader's wait callback about every 15 ms; if that
    /// returns false, the result is null, and the reader must not be called again.
    virtual std::unique_ptr<Listing> next() = 0;
};

/// Is called while a reader waits, on the thread of the logic; returning false gives up.
class WaitCallback {
  public:
    virtual ~WaitCallback() = default;
    virtual bool goOnWaiting() = 0;
};

/// Facts of a single path.
struct PathFacts {
    bool isFolder = false;
    std::uint64_t inode = 0;
    std::uint32_t links = 0;
    std::uint64_t size = 0;
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    /// Returns a reader for the folder `source`, with or without a trailing separator; if it is a link or a
    /// mount point, its target is read. It never fails: errors are in the first block. `wait` may be null and
    /// must outlive the reader.
    virtual std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                               WaitCallback* wait) = 0;
    /// Looks at the path; a link at its end is not followed, so a dangling one exists.
    virtual Result<PathFacts> look(std::string_view path) = 0;
    /// Returns the target of a link, or what is mounted on a mount point; it is an error if it is neither.
    virtual Result<std::string> target(std::string_view path) = 0;
    /// Tells whether look() may wait as long as the disk does; a reader never does.
    virtual bool mayHang(std::string_view) { return false; }
    /// Tells whether the blocks of files at an absolute path are counted before they are compressed. Never
    /// waits for a disk. The answer is that of a path without links.
    virtual bool countsBeforeCompression(std::string_view path) = 0;
};

}  // namespace hl
