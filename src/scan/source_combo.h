// The list of known sources, as plain data. For the thread of the logic only.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/path.h"

namespace hl {

struct SourceItem {
    std::string key;   ///< The path in the form by which paths are compared, with a trailing separator.
    std::string text;  ///< The text that is shown, with a trailing separator.
    std::string tag;   ///< The path that is read.
    int image = 0;
};

class SourceCombo {
  public:
    std::string text;  ///< The text in the edit field.

    const std::vector<SourceItem>& items() const { return items_; }
    /// Returns null if no item is selected, because the text was typed.
    const SourceItem* selected() const { return selected_ ? &items_[*selected_] : nullptr; }
    /// REQUIRES: index < items().size().
    void select(std::size_t index);
    void selectNone() { selected_.reset(); }
    /// Returns the index of the selected item; nothing if the text was typed.
    std::optional<std::size_t> selectedIndex() const { return selected_; }
    void add(SourceItem item) { items_.push_back(std::move(item)); }
    /// Returns the item of this path; null if there is none.
    const SourceItem* find(std::string_view key) const;
    bool has(std::string_view key) const { return find(key) != nullptr; }
    /// Removes an item if the user added it as a folder; drives stay. If it was the selected one, the next
    /// item is selected, or the new last one. Returns whether it was removed.
    bool remove(std::size_t index);

    /// Selects the item of this path; if there is none, it is added at the end.
    void addOrSelect(std::string_view path, const PathRules& paths);

  private:
    std::vector<SourceItem> items_;
    std::optional<std::size_t> selected_;
};

}  // namespace hl
