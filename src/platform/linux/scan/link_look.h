// Finds out whether a link leads to a folder, without letting a thread that reads folders hang on that.
//
// A link that stays on the mount of its folder costs one call, as where nothing can hang. Of others, the
// table of mounts and the texts of links tell where they lead, without a question there. A place that cannot
// hang is then asked directly. Any other is asked by a separate thread, with a time limit; after that the
// link counts as a link, and so does every later one that leads to that mount.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/linux/drives/mount_table.h"
#include "platform/linux/scan/directory_calls.h"

namespace hl {

/// Safe from several threads.
class LinkLook {
  public:
    /// Is called about every 50 ms while an answer is waited for; returning false gives up.
    using GoOn = std::function<bool()>;

    LinkLook(std::shared_ptr<DirectoryCalls> calls, const std::vector<Mount>& mounts,
             std::chrono::milliseconds limit);

    /// The folder that holds the links, as far as it had to be examined.
    struct Place {
        int folder = -1;  ///< A descriptor.
        bool known = false;
        std::string path = {};         ///< Empty if it is too long for the system.
        const Mount* mount = nullptr;  ///< Set if it can hang.
        bool linksLeave = false;       ///< A link leads to another mount; others may, too.
    };

    /// `name` is a link in the folder.
    bool leadsToFolder(Place& place, const char* name, const GoOn& goOn);
    bool someCanHang() const { return !names_.empty(); }
    /// Tells whether a mount that can hang has this name.
    bool isNameOfMount(const std::string& name) const { return names_.contains(name); }
    /// Returns the mount points that did not answer since the last call.
    std::vector<std::string> takeSilent();

  private:
    bool askBeside(int folder, const char* name, const Mount& mount, const GoOn& goOn);
    void learn(Place& place);
    const Mount* mountOfTarget(const Place& place, const std::string& target);
    bool isSilent(const Mount& mount);

    const std::shared_ptr<DirectoryCalls> calls_;
    const std::vector<Mount>& mounts_;
    const std::unordered_set<std::string> names_;
    const std::chrono::milliseconds limit_;
    std::mutex mutex_;
    std::set<std::string> silent_;  ///< The mount points of disks that did not answer.
    std::vector<std::string> untold_;
    std::unordered_set<std::string> harmless_;  ///< Folders on mounts that cannot hang.
};

}  // namespace hl
