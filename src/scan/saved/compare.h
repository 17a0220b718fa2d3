// Compares two scans of a source, folder by folder. For one thread.
//
// A folder that has the same path in both is the same. One that is gone from its place and found at another
// one was renamed, if it is known to be the same folder: its inode and its creation time are equal, or, where
// no such time is known, its inode and the number and bytes of its own files, which must not be 0; and it
// lies on the disk of the source both times, or in a folder that was renamed, too. All others are gone and
// new. What was not read in one of the scans has neither grown nor shrunk, whatever is in the other.
#pragma once

#include <cstdint>
#include <vector>

#include "scan/saved/folder_list.h"

namespace hl {

struct FolderChange {
    enum class Kind : std::uint8_t {
        kSame,  ///< Both are there; what changed, if anything, are the files directly in it.
        kRenamed,
        kNew,   ///< A tree that was not there: the figures are those of all that is new in it.
        kGone,  ///< A tree that is not there any more.
    };
    Kind kind = Kind::kSame;
    /// Places in the lists. Of a gone one, `after` is the folder that it lay in.
    std::uint32_t before = FolderList::kNone, after = FolderList::kNone;
    FileSums was = {}, is = {};

    std::int64_t bytes() const {
        return static_cast<std::int64_t>(is.bytes) - static_cast<std::int64_t>(was.bytes);
    }
};

struct ScanChanges {
    /// In the order of paths in the later scan; those that are gone come last. Folders that are the same and
    /// whose own files take as many bytes as before are not in it.
    std::vector<FolderChange> folders;
    FileSums was, is;  ///< All that can be compared.

    /// Bytes of the files directly in a folder, as far as they can be compared.
    struct Own {
        std::uint64_t was = 0, is = 0;
    };
    std::vector<Own> own;  ///< Of each place in the later list.
};

ScanChanges compareScans(const FolderList& before, const FolderList& after);

}  // namespace hl
