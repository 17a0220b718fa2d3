#include "platform/linux/space/disk_space.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include "platform/linux/drives/mount_table.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/process/system_error.h"
#include "platform/linux/scan/subvolumes.h"
#include "platform/linux/space/hidden_space.h"
#include "platform/linux/space/kept_space.h"

namespace hl {

namespace {

using std::chrono::milliseconds;
constexpr milliseconds kBetweenLooks{15};

// Waits for the work; gives up when `wait` does, and where the disk may hang also when it is silent for too
// long.
bool ends(Helper& helper, bool mayHang, milliseconds limit, WaitCallback* wait) {
    auto heard = std::chrono::steady_clock::now();
    while (!helper.endsWithin(kBetweenLooks)) {
        bool isNew = false;
        helper.whereabouts().now(isNew);
        const auto now = std::chrono::steady_clock::now();
        if (isNew) heard = now;
        if ((wait == nullptr || wait->goOnWaiting()) && (!mayHang || now - heard < limit)) continue;
        return !helper.leave();
    }
    return true;
}

// Returns what the question returns, asked on a helper; nothing if that was given up.
template <class Answer>
std::optional<Answer> askHelper(bool mayHang, milliseconds limit, WaitCallback* wait,
                                std::function<Answer(Whereabouts&)> question) {
    const auto answer = std::make_shared<std::optional<Answer>>();
    const auto work = [answer, question = std::move(question)](Whereabouts& whereabouts) {
        answer->emplace(question(whereabouts));
    };
    const auto helper = Helper::start(work, mayHang);
    if (helper == nullptr || !ends(*helper, mayHang, limit, wait)) return std::nullopt;
    helper->rethrow();
    return std::move(*answer);
}

DiskPart partOf(const std::string& folder, const struct statfs& facts) {
    const auto kind = static_cast<std::uint64_t>(facts.f_type) & 0xffffffffU;
    if (kind == OVERLAYFS_SUPER_MAGIC) return DiskPart::kLayers;
    struct stat root {};
    const bool isSubvolume =
        kind == BTRFS_SUPER_MAGIC && ::stat(folder.c_str(), &root) == 0 && root.st_ino == kSubvolumeInode;
    return isSubvolume ? DiskPart::kSubvolume : DiskPart::kPlain;
}

Result<UsedSpace> usedAt(const std::string& folder) {
    struct statfs facts {};
    int result = 0;
    do {
        result = ::statfs(folder.c_str(), &facts);
    } while (result != 0 && errno == EINTR);
    if (result != 0) return systemError(errno, folder);
    const auto block = static_cast<std::uint64_t>(facts.f_frsize != 0 ? facts.f_frsize : facts.f_bsize);
    return UsedSpace{(facts.f_blocks - facts.f_bfree) * block,
                     (facts.f_bfree - std::min(facts.f_bfree, facts.f_bavail)) * block, partOf(folder, facts),
                     facts.f_bavail * block, facts.f_blocks * block};
}

// Returns the mount that the open folder lies on.
const Mount* mountOfFolder(const std::vector<Mount>& mounts, const Descriptor& folder) {
    struct statx facts;
    if (::statx(folder.number(), "", AT_EMPTY_PATH, STATX_MNT_ID, &facts) != 0 ||
        (facts.stx_mask & STATX_MNT_ID) == 0)
        return nullptr;
    const auto found = std::find_if(mounts.begin(), mounts.end(),
                                    [&](const Mount& mount) { return mount.id == facts.stx_mnt_id; });
    return found == mounts.end() ? nullptr : &*found;
}

// Subvolumes have device numbers of their own, but the table of mounts tells those of one file system alike.
void findHeld(const OpenFiles& openFiles, const std::vector<Mount>& mounts, const Mount& mount,
              const Descriptor& folder, SpaceFacts& facts) {
    struct stat root;
    if (::fstat(folder.number(), &root) != 0) return;
    const auto isHere = [&](const HeldFile& file) {
        return file.id.device == root.st_dev ||
               std::any_of(mounts.begin(), mounts.end(), [&](const Mount& each) {
                   return each.id == file.mount && each.device == mount.device;
               });
    };
    OpenFilesAnswer answer =
        openFiles.list([&](const HeldFile& file) { return file.isDeleted() && isHere(file); });
    std::map<std::pair<std::uint64_t, std::uint64_t>, bool> seen;
    bool allKnown = answer.sawAll;
    for (HeldFile& file : answer.files) {
        // Who else holds the file does not change what it takes.
        if (!seen.emplace(std::pair(file.id.device, file.id.inode), true).second) continue;
        allKnown = allKnown && file.bytes.has_value();
        facts.held.push_back(std::move(file));
    }
    if (!allKnown) facts.heldUnknown = answer.sawAll ? Unknown::kNotTold : Unknown::kNeedsRoot;
}

SpaceFacts factsOf(const std::string& path, const OpenFiles& openFiles, Whereabouts& whereabouts) {
    SpaceFacts facts;
    facts.keptUnknown = facts.hiddenUnknown = facts.heldUnknown = Unknown::kNotTold;
    const Descriptor folder = openAt(AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen()) return facts;
    const std::vector<Mount> mounts = readMountTable();
    const Mount* mount = mountOfFolder(mounts, folder);
    const Result<UsedSpace> used = usedAt(path);
    if (mount == nullptr || !used) return facts;
    facts.kind = mount->kind;
    const KeptSpace kept = keptSpace(folder, mount->kind, used->used, whereabouts);
    facts.kept = kept.bytes;
    facts.keptUnknown = kept.unknown;
    facts.keepsTinyFiles = mount->kind == "btrfs";
    facts.hiddenUnknown = facts.heldUnknown = Unknown::kNo;
    findHidden(mounts, *mount, folder, whereabouts, facts);
    whereabouts.at([&] { return path; });
    findHeld(openFiles, mounts, *mount, folder, facts);
    return facts;
}

}  // namespace

Result<UsedSpace> LinuxDiskSpace::used(const std::string& folder, WaitCallback* wait) {
    if (!canHang(folder)) return usedAt(folder);
    auto answer =
        askHelper<Result<UsedSpace>>(true, limit_, wait, [folder](Whereabouts&) { return usedAt(folder); });
    return answer ? std::move(*answer) : Result<UsedSpace>(systemError(ETIMEDOUT, folder));
}

std::optional<SpaceFacts> LinuxDiskSpace::facts(const std::string& folder, WaitCallback* wait) {
    return askHelper<SpaceFacts>(canHang(folder), limit_, wait,
                                 [folder, openFiles = openFiles_](Whereabouts& whereabouts) {
                                     return factsOf(folder, *openFiles, whereabouts);
                                 });
}

}  // namespace hl
