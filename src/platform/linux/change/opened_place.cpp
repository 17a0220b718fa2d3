#include "platform/linux/change/opened_place.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace hl {

namespace {

constexpr int kStepFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

std::string_view withoutEnd(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return path;
}

/// Opens `names` below `folder`, one after the other. Returns a system error code.
int stepDown(Descriptor& folder, std::string_view names, bool followLinks) {
    while (!names.empty()) {
        const std::size_t end = std::min(names.find('/'), names.size());
        const std::string name(names.substr(0, end));
        names.remove_prefix(std::min(end + 1, names.size()));
        if (name.empty()) continue;
        Descriptor next = openAt(folder.number(), name, kStepFlags | (followLinks ? 0 : O_NOFOLLOW));
        if (!next.isOpen()) return errno;
        folder = std::move(next);
    }
    return 0;
}

/// Tells whether `name` in the folder, or the folder itself for ".", is a folder but not the one that was
/// meant.
bool isAnother(const Descriptor& folder, const std::string& name, const FolderId& meant) {
    struct stat facts {};
    return meant.isKnown() && ::fstatat(folder.number(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(facts.st_mode) && FolderId{facts.st_dev, facts.st_ino} != meant;
}

}  // namespace

OpenedPlace openPlace(const FilePlace& place) {
    OpenedPlace opened;
    const std::string_view base = withoutEnd(place.base);
    const std::string_view below = withoutEnd(place.below);
    if (below.empty() && base == "/") return {Descriptor(), "", EBUSY};
    const std::string_view whole = below.empty() ? base : below;
    const std::size_t slash = whole.rfind('/');
    const std::string_view above = slash == std::string_view::npos ? "" : whole.substr(0, slash);
    opened.name = whole.substr(slash == std::string_view::npos ? 0 : slash + 1);
    if (opened.name.empty() || opened.name == "." || opened.name == "..") opened.error = EINVAL;
    opened.folder = openAt(AT_FDCWD, base.starts_with('/') ? "/" : ".", kStepFlags);
    if (!opened.folder.isOpen()) opened.error = errno;
    if (opened.error == 0) opened.error = stepDown(opened.folder, below.empty() ? above : base, true);
    if (opened.error != 0) return opened;
    const bool isBase = below.empty();
    if (isAnother(opened.folder, isBase ? opened.name : ".", place.id)) opened.error = ESTALE;
    if (opened.error == 0 && !isBase) opened.error = stepDown(opened.folder, above, place.followLinks);
    return opened;
}

std::string pathOf(const FilePlace& place) {
    if (place.below.empty()) return place.base;
    return place.base + (place.base.ends_with('/') ? "" : "/") + place.below;
}

}  // namespace hl
