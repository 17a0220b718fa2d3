#include "scan/source_combo.h"

#include <algorithm>
#include <utility>

#include "scan/records.h"

namespace hl {

void SourceCombo::select(std::size_t index) {
    selected_ = index;
    text = items_[index].text;
}

const SourceItem* SourceCombo::find(std::string_view key) const {
    const auto found =
        std::find_if(items_.begin(), items_.end(), [&](const SourceItem& item) { return item.key == key; });
    return found == items_.end() ? nullptr : &*found;
}

bool SourceCombo::remove(std::size_t index) {
    if (index >= items_.size() || items_[index].image != kPictureSource) return false;
    const bool shows = selected_ ? *selected_ == index : text == items_[index].text;
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    if (selected_ && *selected_ > index) --*selected_;
    if (!shows) return true;
    selectNone();
    text.clear();
    if (!items_.empty()) select(std::min(index, items_.size() - 1));
    return true;
}

void SourceCombo::addOrSelect(std::string_view path, const PathRules& paths) {
    const std::string folder = AddTrailingSlash(path, paths);
    std::string key = identityKey(folder, paths);
    for (std::size_t i = 0; i < items_.size(); ++i)
        if (items_[i].key == key) return select(i);
    items_.push_back({std::move(key), folder, folder, kPictureSource});
    select(items_.size() - 1);
}

}  // namespace hl
