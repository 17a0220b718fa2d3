#include "platform/linux/scan/link_look.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <climits>
#include <memory>
#include <utility>

#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/helper.h"

namespace hl {

namespace {

constexpr std::chrono::milliseconds kLookStep{50};

bool isFolder(DirectoryCalls& calls, int folder, const std::string& name) {
    struct statx facts;
    return calls.look(folder, name.c_str(), true, STATX_TYPE, facts) == 0 && S_ISDIR(facts.stx_mode);
}

}  // namespace

LinkLook::LinkLook(std::shared_ptr<DirectoryCalls> calls, const std::vector<Mount>& mounts,
                   std::chrono::milliseconds limit)
    : calls_(std::move(calls)), mounts_(mounts), names_(namesOfWhatCanHang(mounts)), limit_(limit) {}

// A folder that can hang is read by a helper, which may also ask on the same mount.
bool LinkLook::leadsToFolder(Place& place, const char* name, const GoOn& goOn) {
    if (!someCanHang()) return isFolder(*calls_, place.folder, name);
    if (!place.linksLeave) {
        const int here = calls_->leadsToFolderHere(place.folder, name);
        if (here >= 0) return here == 1;
        place.linksLeave = true;
    }
    std::array<char, PATH_MAX> text;
    const long got = calls_->readLink(place.folder, name, text.data(), text.size());
    if (got <= 0) return false;
    const std::string target(text.data(), static_cast<std::size_t>(got));
    if (!place.known) learn(place);
    if (place.path.empty()) return false;  // It is so deep that the system does not tell where it leads.
    const Mount* mount = mountOfTarget(place, target);
    if (mount == nullptr) {
        struct statx facts;
        if (calls_->look(place.folder, target.c_str(), false, STATX_TYPE, facts) < 0) return false;
        if (!S_ISLNK(facts.stx_mode)) return S_ISDIR(facts.stx_mode);
        mount = mountThatCanHang(mounts_, place.path + "/" + name);
    }
    if (mount == nullptr || mount == place.mount) return isFolder(*calls_, place.folder, name);
    return !isSilent(*mount) && askBeside(place.folder, name, *mount, goOn);
}

void LinkLook::learn(Place& place) {
    place.known = true;
    place.path = calls_->pathOf(place.folder);
    place.mount = mountThatCanHang(mounts_, place.path, false);
}

// Returns the mount that can hang on the way to the target, which may itself be a link. Most targets are in a
// few folders that are known by then, and have not the name of such a mount.
const Mount* LinkLook::mountOfTarget(const Place& place, const std::string& target) {
    const std::size_t slash = target.rfind('/');
    const std::string last = target.substr(slash + 1);
    const bool isPlain = !last.empty() && last != "." && last != ".." && !isNameOfMount(last);
    const bool isHere = slash == std::string::npos;
    if (isPlain && isHere) return place.mount;
    const std::string path = target.starts_with('/') ? target : place.path + "/" + target;
    const std::string folder = path.substr(0, path.size() - last.size());
    {
        const std::lock_guard lock(mutex_);
        if (isPlain && harmless_.contains(folder)) return nullptr;
    }
    if (const Mount* mount = mountThatCanHang(mounts_, folder)) return mount;
    {
        const std::lock_guard lock(mutex_);
        harmless_.insert(folder);
    }
    return mountThatCanHang(mounts_, path, false);
}

bool LinkLook::isSilent(const Mount& mount) {
    const std::lock_guard lock(mutex_);
    return silent_.contains(mount.mountPoint);
}

bool LinkLook::askBeside(int folder, const char* name, const Mount& mount, const GoOn& goOn) {
    const auto found = std::make_shared<bool>(false);
    const auto place = std::make_shared<Descriptor>(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
    const auto question = [calls = calls_, place, text = std::string(name), found](Whereabouts&) {
        *found = isFolder(*calls, place->number(), text);
        place->close();
    };
    if (const auto helper = Helper::start(question, true)) {
        const auto end = std::chrono::steady_clock::now() + limit_;
        do {
            if (helper->endsWithin(std::min(kLookStep, limit_))) return *found;
            if (!goOn()) return false;
        } while (std::chrono::steady_clock::now() < end);
    }
    const std::lock_guard lock(mutex_);
    if (silent_.insert(mount.mountPoint).second) untold_.push_back(mount.mountPoint);
    return false;
}

std::vector<std::string> LinkLook::takeSilent() {
    const std::lock_guard lock(mutex_);
    return std::exchange(untold_, {});
}

}  // namespace hl
