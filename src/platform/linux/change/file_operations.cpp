#include "platform/linux/change/file_operations.h"

#include <errno.h>
#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <utility>

#include "platform/linux/change/beside.h"
#include "platform/linux/change/found_entry.h"
#include "platform/linux/change/moving.h"
#include "platform/linux/change/opened_place.h"
#include "platform/linux/change/restoring.h"
#include "platform/linux/change/tree_removal.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

constexpr int kLookFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

/// Tells whether `folder` is the folder `inside`, or one above it.
bool holds(DirectoryCalls& calls, const FolderId& folder, const std::string& inside) {
    Descriptor at = openAt(AT_FDCWD, inside, kLookFlags);
    FolderId id;
    FolderId before;
    while (at.isOpen() && calls.identity(at.number(), id) == 0) {
        if (id == folder) return true;
        if (id == before) return false;  // ".." of the root is the root itself.
        before = id;
        at = openAt(at.number(), "..", kLookFlags);
    }
    return false;
}

/// Returns what is at the place; unknown if that cannot be told.
FolderId idOf(const FilePlace& place) {
    const OpenedPlace at = openPlace(place);
    FoundEntry entry;
    const bool found = at.error == 0 && look(at.folder.number(), at.name, entry) == 0;
    return found ? entry.id() : FolderId{};
}

/// Returns a path to the folder itself, even if its name is a link.
std::string inside(const std::string& folder) {
    return folder + "/.";
}

}  // namespace

LinuxFileOperations::LinuxFileOperations(std::shared_ptr<DirectoryCalls> calls, Settings settings,
                                         SilentDisks* disks)
    : tools_(std::make_shared<const Tools>(Tools{std::move(calls), std::move(settings)})), disks_(disks) {}

/// Returns what `work` returns, or `none` if one of the disks of `paths` does not answer. A link at the end
/// of a path is not followed.
template <class Answer>
Answer LinuxFileOperations::beside(const Places& paths, Answer none, OperationWatch& watch,
                                   std::function<Answer(Whereabouts&)> work) {
    std::vector<std::uint64_t> mayHang;
    for (const std::string& path : paths) {
        const std::uint64_t disk = disks_ != nullptr ? disks_->of(path, LastName::kItself) : 0;
        if (disk != 0 && disks_->isSilent(disk)) return none;
        if (disk != 0) mayHang.push_back(disk);
    }
    const auto answer = std::make_shared<std::optional<Answer>>();
    std::shared_ptr<Helper> left;
    const auto body = [answer, work = std::move(work)](Whereabouts& at) { answer->emplace(work(at)); };
    if (runBeside(body, watch, !mayHang.empty(), &left)) return **std::move(answer);
    for (const std::uint64_t disk : mayHang)
        if (left) disks_->leaveBehind(disk, left);
    return none;
}

Result<> LinuxFileOperations::removeFile(const FilePlace& place, OperationWatch& watch) {
    return beside<Result<>>({pathOf(place)}, systemError(ETIMEDOUT), watch,
                            [place](Whereabouts& whereabouts) {
                                whereabouts.at([&] { return pathOf(place); });
                                return systemResult(hl::removeFile(place, whereabouts));
                            });
}

Removal LinuxFileOperations::removeTree(const FilePlace& place, OperationWatch& watch) {
    Removal none{
        .failures = {{systemError(ETIMEDOUT, pathOf(place)), true}}, .failureCount = 1, .unknown = true};
    return beside<Removal>(
        {pathOf(place)}, std::move(none), watch, [place, tools = tools_](Whereabouts& whereabouts) {
            return TreeRemoval(*tools->calls, whereabouts, tools->settings.budget).run(place);
        });
}

Result<Moved> LinuxFileOperations::recycle(const FilePlace& place, OperationWatch& watch) {
    return beside<Result<Moved>>(
        {pathOf(place), inside(tools_->settings.trash.homeTrash)}, recycleError(RecycleError::kNoAnswer),
        watch, [place, tools = tools_](Whereabouts& whereabouts) -> Result<Moved> {
            whereabouts.at([&] { return pathOf(place); });
            Moved now;
            const RecycleError reason = moveToTrash(place, tools->settings.trash, &now, &whereabouts);
            if (reason != RecycleError::kNone) return recycleError(reason);
            return now;
        });
}

Result<> LinuxFileOperations::putBack(const Moved& what, const FilePlace& to, OperationWatch& watch) {
    return beside<Result<>>(
        {pathOf(what.now), pathOf(to)}, systemError(ETIMEDOUT), watch,
        [what, to](Whereabouts& whereabouts) { return hl::putBack(what, to, whereabouts); });
}

Result<Moved> LinuxFileOperations::move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) {
    return beside<Result<Moved>>({pathOf(from), pathOf(to)}, systemError(ETIMEDOUT), watch,
                                 [from, to](Whereabouts& whereabouts) -> Result<Moved> {
                                     const int error = moveEntry(from, to, whereabouts);
                                     if (error != 0) return systemError(error);
                                     return Moved{.now = to, .id = idOf(to)};
                                 });
}

Result<bool> LinuxFileOperations::wouldReplace(const FilePlace& from, const FilePlace& to,
                                               OperationWatch& watch) {
    return beside<Result<bool>>({pathOf(from), pathOf(to)}, systemError(ETIMEDOUT), watch,
                                [from, to](Whereabouts&) { return hl::wouldReplace(from, to); });
}

Protection LinuxFileOperations::protectionOf(const FilePlace& place, OperationWatch& watch) {
    std::vector<std::string> paths = {pathOf(place)};
    if (!tools_->settings.home.empty()) paths.push_back(inside(tools_->settings.home));
    for (const std::string& folder : tools_->settings.programFolders) paths.push_back(inside(folder));
    return beside<Protection>(paths, Protection::kNoAnswer, watch,
                              [place, tools = tools_](Whereabouts&) { return lookAt(*tools, place); });
}

Protection LinuxFileOperations::lookAt(const Tools& tools, const FilePlace& place) {
    const OpenedPlace at = openPlace(place);
    if (at.error == EBUSY) return Protection::kRoot;
    if (at.error == ESTALE) return Protection::kOtherFolder;
    if (at.error != 0) return Protection::kNone;
    const Descriptor folder = openAt(at.folder.number(), at.name, kLookFlags | O_NOFOLLOW);
    DirectoryCalls& calls = *tools.calls;
    FolderId id;
    if (!folder.isOpen() || calls.identity(folder.number(), id) != 0) return Protection::kNone;
    if (holds(calls, id, "/")) return Protection::kRoot;
    const Settings& settings = tools.settings;
    if (!settings.home.empty() && holds(calls, id, settings.home)) return Protection::kHome;
    for (const std::string& own : settings.programFolders)
        if (holds(calls, id, own)) return Protection::kProgram;
    return Protection::kNone;
}

std::string homeFolder() {
    const char* home = ::getenv("HOME");
    if (home != nullptr && home[0] == '/') return home;
    const struct passwd* user = ::getpwuid(::geteuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

}  // namespace hl
