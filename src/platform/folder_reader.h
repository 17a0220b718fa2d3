// Reading a tree of folders: the one road by which the walk learns what is on a disk.
//
// A FolderReader reads one source, depth-first, in the order in which the file system delivers the entries,
// and hands over a block of entries at a time: their names and facts together, so that no call is made per
// entry. The walk takes blocks with next() in exactly the order in which it needs them, and hands each back
// by destroying it. Implementations may read ahead with threads of their own; what comes out, and its order,
// is that of one thread. All calls come from the thread of the logic.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/folder_id.h"

namespace hl {

/// Tags of reparse entries.
enum ReparseTag : std::uint32_t {
    kTagNone = 0,
    kTagMountPoint = 0xa0000003,  ///< The root of another mount.
    kTagSymbolicLink = 0xa000000c,
};

/// The facts of one entry. "." and ".." are never entries.
struct Entry {
    std::uint64_t size = 0;    ///< Apparent size in bytes; 0 for a folder.
    std::uint64_t inode = 0;   ///< 0 where the reader was not asked for links.
    std::uint32_t device = 0;  ///< Number of the disk; likewise. With the inode it tells a file from others.
    std::uint32_t links = 1;   ///< Number of names of the file.
    std::uint32_t attributes = 0;  ///< AttributeBits (base/size_text.h).
    std::uint32_t tag =
        kTagNone;  ///< Of a symbolic link, to whatever it leads. A mount point shows in its block.
    std::uint32_t nameOffset = 0;
    std::uint16_t nameLength = 0;
    std::uint16_t targetLength = 0;  ///< Of a link to a folder: the text of the link, kept behind the name.
};

// Millions of them pass from the readers to the walk.
static_assert(sizeof(Entry) == 40);

/// Seconds since 1970 of an entry, only where asked for.
struct EntryTimes {
    std::int64_t written = 0, created = 0, accessed = 0;
};

/// What a folder's block says of the folder itself.
enum class FolderKind : std::uint8_t {
    kPlain,
    kMountRoot,  ///< The root of another mount. Read only if the reader follows links.
};

/// A run of entries of one folder. Owns the memory that names and targets point into.
class Listing {
  public:
    virtual ~Listing() = default;

    /// System error code if the folder could not be opened or its first entries not be read; 0 if it was.
    int error = 0;
    /// System error code of the first entry whose facts could not be learned; that entry counts with 0 bytes.
    int entryError = 0;
    /// System error code if the listing ended before the end of the folder; its entries so far are here.
    int endError = 0;
    /// A fault while this block was read; the walk raises it again where it would have met it.
    std::exception_ptr failure;
    /// Another block of the same folder follows once this one is done with.
    bool more = false;
    FolderKind kind = FolderKind::kPlain;
    /// Of the source, in its first block.
    FolderId source;
    /// Of a mount root: what is mounted there.
    std::string mountSource;
    /// Mount points of disks that did not answer where a link leads, each of them told once in a scan. The
    /// link is an entry as if it led nowhere.
    std::vector<std::string> silentMounts;

    const Entry* entries = nullptr;
    std::size_t count = 0;
    const EntryTimes* times = nullptr;  ///< Parallel to entries, or null.
    const char* names = nullptr;        ///< A NUL stands behind each name.

    std::string_view name(const Entry& e) const { return {names + e.nameOffset, e.nameLength}; }
    std::string_view target(const Entry& e) const {
        return {names + e.nameOffset + e.nameLength + 1, e.targetLength};
    }
};

struct ReadOptions {
    bool recursive = true;     ///< False: only the source itself is read.
    bool onlyOpen = false;     ///< The source is opened, and has no entries.
    bool followLinks = false;  ///< Enter links to folders, and other mounts.
    /// With followLinks: so many folders of the source's path, those right above it, are on the way down too.
    std::uint32_t levelsAbove = 0;
    bool wantLinks = false;     ///< Fill inode, device and links.
    bool wantTimes = false;     ///< Fill times and all attributes.
    bool wantFileNames = true;  ///< False: the names of entries that are no folders may be empty.
};

class FolderReader {
  public:
    virtual ~FolderReader() = default;

    /// The next block in the order of the walk: first the source's own, then, each time the walk meets an
    /// entry that is entered, that folder's first block; after the last entry of a block with `more`, the
    /// next block of the same folder. Entered is every directory entry that is no link, and links to folders
    /// if followLinks (their first block then comes like any other folder's). A directory that turns out to
    /// be another mount has one block, of kind kMountRoot, empty unless followLinks. A link or a mount that
    /// is one of the folders on the way down to it has one empty block, with the error of too many links.
    ///
    /// May wait for a disk. While it waits it calls the wait callback of the reader about every 50 ms; if
    /// that answers false the result is null, and the reader must not be asked again.
    virtual std::unique_ptr<Listing> next() = 0;
};

/// Asked while a reader waits; false gives up. Called on the thread of the logic.
class WaitCallback {
  public:
    virtual ~WaitCallback() = default;
    virtual bool goOnWaiting() = 0;
};

/// Facts of a single path.
struct PathFacts {
    int error = 0;  ///< 0 if the path exists. A dangling link exists.
    bool isFolder = false;
    std::uint64_t inode = 0;
    std::uint32_t links = 0;
    std::uint64_t size = 0;
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    /// A reader for the folder `source` (with or without a trailing separator; a link or a mount point as the
    /// source itself is read). Never fails: what is wrong shows in the first block. `wait` may be null and
    /// must outlive the reader.
    virtual std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                               WaitCallback* wait) = 0;
    /// Does not follow a link at the end of the path.
    virtual PathFacts look(std::string_view path) = 0;
    /// The target of a link, or what is mounted on a mount point; empty with `error` set if it is neither.
    virtual std::string target(std::string_view path, int& error) = 0;
    /// Whether look() may wait for as long as the disk likes, where a reader does not.
    virtual bool mayHang(std::string_view) { return false; }
};

}  // namespace hl
