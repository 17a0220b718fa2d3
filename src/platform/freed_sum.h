// Adds up what a delete would give back, file by file: the arithmetic of FreedSpace, which asks nobody. For
// one thread.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/freed_space.h"
#include "platform/open_files.h"
#include "platform/several_names.h"

namespace hl {

/// A range of the disk that a file uses and that is not its own alone, or whose length says little.
struct SpecialExtent {
    std::uint64_t start = 0;   ///< On the disk, in bytes.
    std::uint64_t length = 0;  ///< In bytes.
    bool shared = false;       ///< Other files, or this one again, use it too.
    /// Compressed or encrypted: its length is that of the content, and its start alone identifies it.
    bool encoded = false;
};

/// One name of a file, and what the system tells of the file.
struct FreedName {
    FolderId id;
    std::uint64_t links = 1;
    std::uint64_t bytes = 0;  ///< On the disk.
};

class FreedSum {
  public:
    /// Tells which files are open, once; nothing if that is not known. It may come at any time: what was
    /// added before is put right.
    void takeOpenFiles(const std::optional<OpenFilesAnswer>& open);

    /// Notes a name that goes. Returns true if the file goes with it: then one of the four below follows.
    bool addName(const FreedName& name);
    /// The file is on a file system that shares nothing, or `special` has what it shares.
    void addFile(const FreedName& name, std::span<const SpecialExtent> special = {});
    /// The content lies within the file system's own tree, which may shrink by less than a block for each
    /// such file, or not at all while a snapshot has the same part of the tree.
    void addInlineFile(const FreedName& name);
    /// The file system does not tell what it shares, or the file cannot be looked at.
    void addUntoldFile(const FreedName& name);

    /// Notes a folder that goes, and what it takes itself; `told` is false if the file system does not tell
    /// what comes back of it.
    void addFolder(std::uint64_t bytes, bool told = true);
    void addUnreadFolder() { ++sum_.foldersUnknown; }
    /// A subvolume, or another mount: it stays, with all that is in it.
    void addMount() { ++sum_.mounts; }
    void addSilentPlace() { ++sum_.silentPlaces; }
    /// From now on: the file system keeps an extent as a whole as long as a part of it is used, so that what
    /// overlaps goes or stays together, and parts that were overwritten come back, too.
    void keepsWholeExtents() { wholeExtents_ = sum_.mayBeMore = true; }

    /// Compares the shared ranges. Costs a sort of them all.
    void sweep();
    /// Returns the figures, those of shared ranges as of the last sweep.
    const FreedSpace& figures() const { return sum_; }

  private:
    /// A shared range, or an encoded one.
    struct Range {
        std::uint64_t start = 0;    ///< In bytes.
        std::uint32_t sectors = 0;  ///< Of 512 bytes. A longer range is several.
        std::uint32_t file = 0;     ///< A number; of an encoded range the highest bit says that it is shared.
    };
    static_assert(sizeof(Range) <= 16);

    /// A file that was added before it was known whether it is open.
    struct Early {
        FolderId id;
        std::uint64_t bytes = 0;
        bool isInline = false;
    };

    struct Sweep;
    void keep(const SpecialExtent& extent, std::uint32_t file);
    void addOwn(const Early& file);
    void addHolder(const HeldFile& file);
    void addHeld(const std::vector<FileHolder>& holders, std::uint64_t bytes);
    void sweepShared(Sweep& sweep);
    std::size_t sweepGroup(Sweep& sweep, std::size_t first);
    void sweepEncoded(Sweep& sweep);

    FreedSpace sum_;
    FreedAmount inline_ = {};  ///< Files within the tree.
    std::vector<Early> early_;
    bool wholeExtents_ = false;
    SeveralNames names_;
    std::vector<Range> shared_, encoded_;
    std::uint32_t files_ = 0;  ///< The number of files with such ranges.
    using Key = std::pair<std::uint64_t, std::uint64_t>;
    std::map<Key, std::vector<FileHolder>> holders_;  ///< By device and inode.
};

}  // namespace hl
