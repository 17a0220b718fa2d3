// Recognises the subvolumes of btrfs. Everything here works without rights, on kernels from 4.18 on; on older
// ones no folder is a subvolume. It has no state and may be used from any thread.
#pragma once

#include <cstdint>

#include "platform/subvolume.h"

namespace hl {

/// The root of every subvolume has this inode, which no other folder of btrfs has. Other file systems use it
/// for anything.
inline constexpr std::uint64_t kSubvolumeInode = 256;

/// Tells whether the folder, which may be open only to reach names below it (O_PATH), lies on btrfs.
bool isOnBtrfs(int folder);

/// Fills `out` for the open root of a subvolume. Returns a negative system error code; -ENOTTY if the file
/// system knows no subvolumes. REQUIRES: the folder has the inode kSubvolumeInode.
int subvolumeOf(int folder, Subvolume& out);

/// Tells whether the root of a subvolume lies below the open folder, on any level. What the user may not
/// enter is not found. The cost is that of the subvolumes that lie in this one, not of the folders.
bool holdsSubvolume(int folder);

}  // namespace hl
