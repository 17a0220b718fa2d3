#include "platform/linux/file_operations.h"

#include <errno.h>
#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "platform/linux/beside.h"
#include "platform/linux/moving.h"
#include "platform/linux/opened_place.h"
#include "platform/linux/tree_removal.h"

namespace hl {

namespace {

constexpr int kLookFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

/// Whether `folder` is the folder `inside`, or one above it.
bool holds(DirectoryCalls& calls, const FolderId& folder, const std::string& inside) {
    Descriptor at = openAt(AT_FDCWD, inside, kLookFlags);
    FolderId id;
    FolderId before;
    while (at.isOpen() && calls.identity(at.number(), id) == 0) {
        if (id == folder) return true;
        if (id == before) return false;  // ".." of the root is the root.
        before = id;
        at = openAt(at.number(), "..", kLookFlags);
    }
    return false;
}

}  // namespace

LinuxFileOperations::LinuxFileOperations(DirectoryCalls& calls, Settings settings)
    : calls_(calls), settings_(std::move(settings)) {}

int LinuxFileOperations::removeFile(const FilePlace& place, OperationWatch& watch) {
    int error = 0;
    runBeside(
        [&](Whereabouts& whereabouts) {
            whereabouts.at([&] { return pathOf(place); });
            error = hl::removeFile(place);
        },
        watch);
    return error;
}

Removal LinuxFileOperations::removeTree(const FilePlace& place, OperationWatch& watch) {
    Removal removal;
    runBeside(
        [&](Whereabouts& whereabouts) {
            removal = TreeRemoval(calls_, whereabouts, settings_.budget).run(place);
        },
        watch);
    return removal;
}

RecycleError LinuxFileOperations::recycle(const FilePlace& place, OperationWatch& watch, std::string& now) {
    now.clear();
    RecycleError error = RecycleError::kUnknown;
    runBeside(
        [&](Whereabouts& whereabouts) {
            whereabouts.at([&] { return pathOf(place); });
            error = moveToTrash(place, settings_.trash, &now);
        },
        watch);
    return error;
}

int LinuxFileOperations::move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) {
    int error = 0;
    runBeside([&](Whereabouts& whereabouts) { error = moveEntry(from, to, whereabouts); }, watch);
    return error;
}

bool LinuxFileOperations::wouldReplace(const FilePlace& from, const FilePlace& to, OperationWatch& watch) {
    bool replaces = false;
    runBeside([&](Whereabouts&) { replaces = hl::wouldReplace(from, to); }, watch);
    return replaces;
}

Protection LinuxFileOperations::protectionOf(const FilePlace& place, OperationWatch& watch) {
    Protection protection = Protection::kNone;
    runBeside([&](Whereabouts&) { protection = lookAt(place); }, watch);
    return protection;
}

Protection LinuxFileOperations::lookAt(const FilePlace& place) const {
    const OpenedPlace at = openPlace(place);
    if (at.error == EBUSY) return Protection::kRoot;
    if (at.error != 0) return Protection::kNone;
    const Descriptor folder = openAt(at.folder.number(), at.name, kLookFlags | O_NOFOLLOW);
    FolderId id;
    if (!folder.isOpen() || calls_.identity(folder.number(), id) != 0) return Protection::kNone;
    if (holds(calls_, id, "/")) return Protection::kRoot;
    if (!settings_.home.empty() && holds(calls_, id, settings_.home)) return Protection::kHome;
    for (const std::string& own : settings_.programFolders)
        if (holds(calls_, id, own)) return Protection::kProgram;
    return Protection::kNone;
}

std::string homeFolder() {
    const char* home = ::getenv("HOME");
    if (home != nullptr && home[0] == '/') return home;
    const struct passwd* user = ::getpwuid(::geteuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

}  // namespace hl
