// Holds what a scan learned of the space of one source, for its balance. For the thread of the logic.
#pragma once

#include <cstdint>
#include <optional>

#include "base/result.h"
#include "platform/disk_space.h"
#include "platform/space_count.h"

namespace hl {

struct SourceSpace {
    /// Sets in `options` what a reader has to find out. `isSource` tells whether it reads the source itself,
    /// or a folder of it that was put off.
    void choose(ReadOptions& options, bool isSource) const {
        options.wantLinks = true;
        options.folderSpace = isSource      ? FolderSpace::kOfWholeDisk
                              : isWholeDisk ? FolderSpace::kAlways
                                            : FolderSpace::kNever;
    }

    SpaceCount count;
    bool isWholeDisk = false;  ///< The source is the root of a file system; else nothing was counted.
    bool complete = true;      ///< The source was read to its end.
    bool changed = false;      ///< Something below the source was changed, or read again, since the scan.
    std::int64_t ended = 0;    ///< When the scan ended, in seconds since 1970.
    std::optional<UsedSpace> before, after;  ///< What the file system said at the scan's start and end.
};

/// Returns the sums to which the walk adds; null if nothing is counted. `space` may be null.
inline SpaceCount* countOf(SourceSpace* space) {
    return space != nullptr && space->isWholeDisk ? &space->count : nullptr;
}

}  // namespace hl
