#include "platform/linux/drives/patience.h"

#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>

#include "base/scope_exit.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {
using std::chrono::milliseconds;
constexpr milliseconds kUnseen{100};  // Nobody notices a wait that short.
constexpr milliseconds kBetweenLooks{16};
constexpr milliseconds kStill{3000};  // The window does not react that long, once for each disk.
}  // namespace

bool LinuxPatience::run(const std::string& path, const std::function<void()>& work, LastName last) {
    return runOn(disks_.of(path, last), work, [&](Helper& helper) { return endsInTime(helper, path); });
}

bool LinuxPatience::runStill(const std::string& path, const std::function<void()>& work) {
    return runOn(disks_.of(path), work,
                 [this](Helper& helper) { return helper.endsWithin(std::min(limit_, kStill)); });
}

bool LinuxPatience::runOn(std::uint64_t disk, const std::function<void()>& work,
                          const std::function<bool(Helper&)>& ends) {
    if (disk == 0) return work(), true;
    if (disks_.isSilent(disk)) return false;
    const auto helper = Helper::start([work](Whereabouts&) { work(); }, true);
    if (!helper) return false;
    if (ends(*helper)) return helper->rethrow(), true;
    disks_.leaveBehind(disk, helper);
    return false;
}

// The facts of the file system are the one question that no cache of the kernel answers.
std::string LinuxPatience::silentDisk() {
    for (const std::string& place : disks_.places()) {
        const auto question = [place] {
            struct statvfs space {};
            static_cast<void>(::statvfs(place.c_str(), &space));  // An error is an answer, too.
        };
        if (!run(place, question, LastName::kFollowed)) return place;
    }
    return {};
}

bool LinuxPatience::endsInTime(Helper& helper, const std::string& path) const {
    if (wait_ == nullptr) return helper.endsWithin(limit_);
    if (helper.endsWithin(kUnseen)) return true;
    const auto end = std::chrono::steady_clock::now() + limit_ - kUnseen;
    const ScopeExit over([this] { wait_->waitEnds(); });
    wait_->waitBegins(path);
    while (!helper.endsWithin(kBetweenLooks))
        if (!wait_->goesOnWaiting() || std::chrono::steady_clock::now() >= end) return false;
    return true;
}

Result<PathFacts> PatientFileSystem::look(std::string_view path) {
    const std::string at(path);
    return ask<Result<PathFacts>>(
        &patience_, at, systemError(ETIMEDOUT), [disk = disk_, at] { return disk->look(at); },
        LastName::kItself);
}

Result<std::string> PatientFileSystem::target(std::string_view path) {
    const std::string at(path);
    return ask<Result<std::string>>(
        &patience_, at, systemError(ETIMEDOUT), [disk = disk_, at] { return disk->target(at); },
        LastName::kItself);
}

}  // namespace hl
