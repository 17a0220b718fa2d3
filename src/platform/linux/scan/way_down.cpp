#include "platform/linux/scan/way_down.h"

#include <errno.h>

#include <algorithm>

namespace hl {

void WayDown::begin(DirectoryCalls& calls, std::string source, std::uint32_t levels) {
    while (source.size() > 1 && source.ends_with('/')) source.pop_back();
    std::vector<std::string> names;  // Those of all folders to learn but the highest, and of the source.
    for (; levels > 0 && source.size() > 1; --levels) {
        const std::size_t slash = source.rfind('/');
        names.push_back(source.substr(slash + 1));
        source.resize(std::max<std::size_t>(slash, 1));
    }
    int at = names.empty() ? -ENOENT : calls.openSource(source);
    while (at >= 0) {
        FolderId id;
        if (calls.identity(at, id) == 0) aboveSource_.push_back(id);
        names.pop_back();
        const int below = names.empty() ? -ENOENT : calls.openChild(at, names.back().c_str(), true, true);
        calls.close(at);
        at = below;
    }
}

bool WayDown::leadsBack(const Folder* folder) const {
    for (const Folder* above = folder->parent(); above != nullptr; above = above->parent())
        if (above->id() == folder->id()) return true;
    return std::find(aboveSource_.begin(), aboveSource_.end(), folder->id()) != aboveSource_.end();
}

}  // namespace hl
