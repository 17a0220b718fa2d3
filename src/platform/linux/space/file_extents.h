// Asks which ranges of the disk a file shares (FIEMAP), and which file systems can share any. Works without
// rights for every file that the user may read. For one thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/freed_sum.h"

namespace hl {

enum class Sharing : std::uint8_t {
    kNone,     ///< Files share nothing: their blocks are theirs alone.
    kBlocks,   ///< Blocks can be shared, and FIEMAP tells which (xfs).
    kExtents,  ///< Extents can be shared, in parts, and are kept as a whole (btrfs).
    kUntold,   ///< Nobody tells: a network, FUSE, layers of folders, or a file system that is not known here.
};

/// Returns what the file system of an open folder or file can share.
Sharing sharingOf(int open);

class FileExtents {
  public:
    /// Finds the shared and the encoded extents of a regular file in the open folder, without writing out
    /// what the system still holds back; such parts, and those inside the inode, are in none. `goesOn` is
    /// asked now and then. Returns false if they cannot be told. The result is in found().
    bool ask(int folder, const char* name, const std::function<bool()>& goesOn);
    const std::vector<SpecialExtent>& found() const { return found_; }
    /// Tells whether the content, or the end of it, lies within the file system's own tree.
    bool isInline() const { return inline_; }

  private:
    static constexpr std::size_t kBytes = 16'384;  ///< Room for 291 extents.

    bool askBatch(int file, std::uint64_t& from, bool& atEnd);

    alignas(std::uint64_t) std::array<std::byte, kBytes> buffer_;
    std::vector<SpecialExtent> found_;
    bool inline_ = false;
};

}  // namespace hl
