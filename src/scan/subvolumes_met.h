// Remembers which subvolumes the reading of a source has met, and where. For the thread of the logic only.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "base/path.h"
#include "platform/subvolume.h"

namespace hl {

struct MetSubvolume {
    Subvolume is;
    std::string path;  ///< Of its root, without a separator at the end.
};

/// They are kept by their identity; of places with the same one, as followed links make them, the one that
/// was met first comes first.
class SubvolumesMet {
  public:
    void add(const Subvolume& subvolume, std::string path) {
        met_.emplace(subvolume.id, MetSubvolume{subvolume, std::move(path)});
    }
    /// Returns where it was met first; null if it was not met.
    const std::string* placeOf(const SubvolumeId& id) const {
        const auto first = met_.lower_bound(id);
        return first == met_.end() || first->first != id ? nullptr : &first->second.path;
    }
    /// Forgets those whose root is the folder or lies below it.
    void forget(std::string_view folder, const PathRules& paths) {
        std::erase_if(met_, [&](const auto& each) { return liesIn(each.second.path, folder, paths); });
    }
    /// A folder has another path now.
    void rename(std::string_view from, std::string_view to, const PathRules& paths) {
        for (auto& [id, each] : met_)
            if (liesIn(each.path, from, paths)) each.path.replace(0, from.size(), to);
    }
    const std::multimap<SubvolumeId, MetSubvolume>& all() const { return met_; }

  private:
    std::multimap<SubvolumeId, MetSubvolume> met_;
};

}  // namespace hl
