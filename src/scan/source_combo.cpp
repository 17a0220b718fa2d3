#include "scan/source_combo.h"

#include <utility>

#include "scan/records.h"

namespace hl {

void SourceCombo::select(std::size_t index) {
    selected_ = index;
    text = items_[index].text;
}

void SourceCombo::addOrSelect(std::string_view path, const PathRules& paths) {
    const std::string folder = AddTrailingSlash(path, paths);
    std::string key = identityKey(folder, paths);
    for (std::size_t i = 0; i < items_.size(); ++i)
        if (items_[i].key == key) return select(i);
    items_.push_back({std::move(key), folder, folder, kPictureSource, kPictureSourceSelected});
    select(items_.size() - 1);
}

}  // namespace hl
