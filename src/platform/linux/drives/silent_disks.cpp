#include "platform/linux/drives/silent_disks.h"

#include <fcntl.h>
#include <poll.h>

#include <utility>

namespace hl {

std::uint64_t SilentDisks::of(const std::string& path, LastName last) {
    const Mount* mount = mountThatCanHang(mounts(), path, last == LastName::kFollowed);
    return mount != nullptr ? mount->id : 0;
}

// The open table reports "exceptional" data once for each change since it was last checked.
const std::vector<Mount>& SilentDisks::mounts() {
    if (!table_.isOpen()) {
        table_ = openAt(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
        mounts_ = readMountTable();
        return mounts_;
    }
    pollfd change{table_.number(), POLLPRI, 0};
    if (mounts_.empty() || ::poll(&change, 1, 0) != 0) mounts_ = readMountTable();
    return mounts_;
}

std::vector<std::string> SilentDisks::places() {
    std::vector<std::string> found;
    for (const Mount& mount : mounts())
        if (mount.canHang) found.push_back(mount.mountPoint);
    return found;
}

bool SilentDisks::isSilent(std::uint64_t disk) {
    const auto found = left_.find(disk);
    if (found == left_.end()) return false;
    if (!found->second->endsWithin(std::chrono::milliseconds(0))) return true;
    left_.erase(found);
    return false;
}

void SilentDisks::leaveBehind(std::uint64_t disk, std::shared_ptr<Helper> helper) {
    helper->leave();
    left_.insert_or_assign(disk, std::move(helper));
}

}  // namespace hl
