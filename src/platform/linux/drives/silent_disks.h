// Knows which disks may leave a call unanswered, and which ones do. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/drives/mount_table.h"
#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/helper.h"
#include "platform/patience.h"

namespace hl {

class SilentDisks {
  public:
    /// Returns the number of the mount that a call with this path may hang on; 0 if there is none. Links on
    /// the way are followed. The table of mounts is read again when the system reports a change, so that this
    /// costs one call, and some more if there is a mount that can hang. Something mounted after the answer is
    /// not covered.
    std::uint64_t of(const std::string& path, LastName last = LastName::kFollowed);
    /// Returns where disks are mounted that may not answer.
    std::vector<std::string> places();
    /// Tells whether a helper that was abandoned still hangs there. Another one would hang too, so nobody
    /// asks that disk.
    bool isSilent(std::uint64_t disk);
    void leaveBehind(std::uint64_t disk, std::shared_ptr<Helper> helper);

  private:
    const std::vector<Mount>& mounts();

    Descriptor table_;
    std::vector<Mount> mounts_;
    std::map<std::uint64_t, std::shared_ptr<Helper>> left_;  ///< The last helper of each disk.
};

}  // namespace hl
