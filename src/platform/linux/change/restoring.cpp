#include "platform/linux/change/restoring.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/change/found_entry.h"
#include "platform/linux/change/opened_place.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

/// `files` is the open folder TRASH/files.
void removeInfo(const Descriptor& files, const std::string& name) {
    const Descriptor trash = openAt(files.number(), "..", O_PATH | O_DIRECTORY);
    if (!trash.isOpen()) return;
    const Descriptor info = openAt(trash.number(), "info", O_PATH | O_DIRECTORY | O_NOFOLLOW);
    if (info.isOpen()) unlinkat(info.number(), (name + std::string(kInfoEnding)).c_str(), 0);
}

}  // namespace

Result<> putBack(const Moved& what, const FilePlace& to, Whereabouts& whereabouts) {
    const Error movedOn{.kind = ErrorKind::kMovedOn};
    const OpenedPlace from = openPlace(what.now);
    FoundEntry entry;
    if (from.error != 0 || look(from.folder.number(), from.name, entry) != 0 || entry.id() != what.id)
        return movedOn;
    const OpenedPlace there = openPlace(to);
    if (there.error != 0) return systemError(there.error);
    whereabouts.at([&] { return pathOf(to); });
    if (whereabouts.isLeft()) return systemError(ETIMEDOUT);
    const int error = renameAnew(from.folder, from.name, there.folder, there.name);
    if (error != 0) return systemError(error);
    if (what.inTrash) removeInfo(from.folder, from.name);
    return {};
}

}  // namespace hl
