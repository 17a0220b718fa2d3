// Asks what a file system keeps for itself and counts as used, though no file or folder has it. From any
// thread.
#pragma once

#include <cstdint>
#include <string>

#include "platform/disk_space.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/helper.h"

namespace hl {

struct KeptSpace {
    std::uint64_t bytes = 0;
    Unknown unknown = Unknown::kNotTold;
};

/// Asks the file system of the open folder. `kind` is what the mount table calls it ("ext4"), and `used` the
/// bytes that it says are used.
KeptSpace keptSpace(const Descriptor& folder, const std::string& kind, std::uint64_t used,
                    Whereabouts& whereabouts);

/// Each of these asks one kind of file system. `device` is the disk of an ext4 file system, open for reading.
KeptSpace keptByExt4(const Descriptor& device);
KeptSpace keptByXfs(const Descriptor& folder, std::uint64_t used, Whereabouts& whereabouts);
KeptSpace keptByBtrfs(const Descriptor& folder);

}  // namespace hl
