#include "views/path_history.h"

namespace hl {

void PathHistory::visited(const std::string& path) {
    if (!paths_.empty()) {
        if (paths_[present_] == path) return;
        paths_.resize(present_ + 1);
    }
    paths_.push_back(path);
    if (paths_.size() > kMost) paths_.erase(paths_.begin());
    present_ = paths_.size() - 1;
}

std::string PathHistory::step(int direction, const std::function<bool(const std::string&)>& there) {
    const auto last = static_cast<std::ptrdiff_t>(paths_.size()) - 1;
    for (auto at = static_cast<std::ptrdiff_t>(present_) + direction; at >= 0 && at <= last;
         at += direction) {
        const std::string& path = paths_[static_cast<std::size_t>(at)];
        if (!there(path)) continue;
        present_ = static_cast<std::size_t>(at);
        return path;
    }
    return {};
}

}  // namespace hl
