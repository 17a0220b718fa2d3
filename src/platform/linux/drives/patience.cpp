#include "platform/linux/drives/patience.h"

#include <cerrno>

#include "base/scope_exit.h"

namespace hl {

namespace {
using std::chrono::milliseconds;
constexpr milliseconds kUnseen{100};  // Nobody notices a wait that short.
constexpr milliseconds kBetweenLooks{16};
static_assert(kNoAnswerError == ETIMEDOUT);
}  // namespace

bool LinuxPatience::run(const std::string& path, const std::function<void()>& work, LastName last) {
    const std::uint64_t disk = disks_.of(path, last);
    if (disk == 0) return work(), true;
    if (disks_.isSilent(disk)) return false;
    const auto helper = Helper::start([work](Whereabouts&) { work(); }, true);
    if (!helper) return false;
    if (endsInTime(*helper, path)) return helper->rethrow(), true;
    disks_.leaveBehind(disk, helper);
    return false;
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

PathFacts PatientFileSystem::look(std::string_view path) {
    const std::string at(path);
    return ask<PathFacts>(
        &patience_, at, {.error = ETIMEDOUT}, [disk = disk_, at] { return disk->look(at); },
        LastName::kItself);
}

std::string PatientFileSystem::target(std::string_view path, int& error) {
    using Target = std::pair<std::string, int>;
    const std::string at(path);
    auto found = ask<Target>(
        &patience_, at, Target("", ETIMEDOUT),
        [disk = disk_, at] {
            int code = 0;
            std::string text = disk->target(at, code);
            return Target(std::move(text), code);
        },
        LastName::kItself);
    error = found.second;
    return std::move(found.first);
}

}  // namespace hl
