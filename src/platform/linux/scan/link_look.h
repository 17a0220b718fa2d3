// Whether a link leads to a folder, asked so that no thread that reads folders hangs on it.
//
// The table of mounts and the texts of links tell where a link leads without asking there. What cannot hang
// is then asked as ever. For the rest a thread asks, with a limit; when that is over, the link is a link, and
// so is from then on each other one that leads to that mount.
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
    /// Asked about every 50 ms while an answer is waited for; false gives up.
    using GoOn = std::function<bool()>;

    LinkLook(std::shared_ptr<DirectoryCalls> calls, const std::vector<Mount>& mounts,
             std::chrono::milliseconds limit);

    /// The folder in which links lie, as far as it had to be learned.
    struct Place {
        int folder = -1;  ///< Open.
        bool known = false;
        std::string path = {};         ///< Empty: too long for the system.
        const Mount* mount = nullptr;  ///< If it can hang.
    };

    /// `name` is a link in the folder.
    bool leadsToFolder(Place& place, const char* name, const GoOn& goOn);
    bool someCanHang() const { return !names_.empty(); }
    /// Whether a mount that can hang has this name.
    bool isNameOfMount(const std::string& name) const { return names_.contains(name); }
    /// Mount points that did not answer since this was asked last.
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
    std::set<std::string> silent_;  ///< Mount points.
    std::vector<std::string> untold_;
    std::unordered_set<std::string> harmless_;  ///< Folders on mounts that cannot hang.
};

}  // namespace hl
