// Which disks may leave a call unanswered, and which do. Thread of the logic only.
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
    /// Number of the mount that a call with this path may hang on; 0 if there is none. Links on the way are
    /// followed. The table of mounts is
    /// read again when the system says that it has changed, so that to ask costs one call, and some more
    /// where there is a mount that can hang. What is mounted after the answer may still come between.
    std::uint64_t of(const std::string& path, LastName last = LastName::kFollowed);
    /// Whether a helper that was left behind still hangs there. Whoever asked next would hang beside it, so
    /// nobody asks.
    bool isSilent(std::uint64_t disk);
    void leaveBehind(std::uint64_t disk, std::shared_ptr<Helper> helper);

  private:
    const std::vector<Mount>& mounts();

    Descriptor table_;
    std::vector<Mount> mounts_;
    std::map<std::uint64_t, std::shared_ptr<Helper>> left_;  ///< By disk, the last one each.
};

}  // namespace hl
