// Counts what lies in the folders of a file system that something else is mounted on, where no path leads.
// From any thread.
#pragma once

#include <vector>

#include "platform/disk_space.h"
#include "platform/linux/drives/mount_table.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/helper.h"

namespace hl {

/// Fills what the facts tell of hidden space. `folder` is open on the root of `mount`. It is counted in a
/// copy of the mount that is attached nowhere, which only root may make. Throws LeftBehind if it was
/// abandoned.
void findHidden(const std::vector<Mount>& mounts, const Mount& mount, const Descriptor& folder,
                Whereabouts& whereabouts, SpaceFacts& facts);

}  // namespace hl
