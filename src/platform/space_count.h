// Adds up what is found on a file system, in the parts that lead from the sizes of files to what the file
// system says is used. Pure arithmetic; for one thread at a time.
#pragma once

#include <cstdint>
#include <unordered_set>

#include "platform/folder_id.h"
#include "platform/folder_reader.h"

namespace hl {

/// All sums are in bytes. A file with several names takes its space once, with the name that is met first;
/// only such files are remembered, some 40 bytes for each.
class SpaceCount {
  public:
    /// REQUIRES: the entry has inode, device and links.
    void addFile(const Entry& entry, std::uint64_t blocks) {
        if ((entry.attributes & kMountedFile) != 0) return;
        apparent += entry.size;
        if (entry.links > 1 && !seen_.insert({entry.device, entry.inode}).second) {
            furtherNames += entry.size;
            return;
        }
        const std::uint64_t taken = blocks * kBlockBytes;
        if (taken >= entry.size) {
            roundedUp += taken - entry.size;
        } else {
            holes += entry.size - taken;
        }
        if (taken > 0 && taken <= kTinyBlock && entry.size <= kTiny) tiny += taken;
    }
    /// Adds what a folder itself takes, or a link to a folder.
    void addFolder(std::uint64_t blocks) { ofFolders += blocks * kBlockBytes; }

    /// Returns what all of it takes on the disk.
    std::uint64_t taken() const { return apparent - furtherNames + roundedUp - holes + ofFolders; }
    /// Forgets the files with several names. Nothing can be added any more.
    void finish() { seen_ = {}; }

    std::uint64_t apparent = 0;      ///< The size of every name.
    std::uint64_t furtherNames = 0;  ///< The part of `apparent` that names of files met before have.
    std::uint64_t roundedUp = 0;     ///< What files take beyond their size: whole blocks, and preallocation.
    std::uint64_t holes = 0;         ///< What files take less than their size: holes, and compression.
    std::uint64_t ofFolders = 0;
    std::uint64_t tiny = 0;  ///< What files that may lie within the file system's own tree are said to take,
                             ///< a part of the sums above.

    /// Where a file system keeps small files within its own tree, it does so up to kTiny bytes, and says that
    /// they take one block. A file that takes more has space allocated in advance.
    static constexpr std::uint64_t kTiny = 2048, kTinyBlock = 4096;

  private:
    struct Hash {
        std::size_t operator()(const FolderId& id) const {
            return (id.inode ^ id.device << 40) * 0x9e37'79b9'7f4a'7c15U;
        }
    };
    std::unordered_set<FolderId, Hash> seen_;
};

}  // namespace hl
