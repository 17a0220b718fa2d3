// The list of known sources, as plain data. Thread of the logic only.
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
    std::string key;   ///< Identity: the path in the form by which paths compare, with a trailing separator.
    std::string text;  ///< As shown, with a trailing separator.
    std::string tag;   ///< The path that is read.
    int image = 0;
};

class SourceCombo {
  public:
    std::string text;  ///< What stands in the edit field.

    const std::vector<SourceItem>& items() const { return items_; }
    /// Null if no item is selected: the text was typed.
    const SourceItem* selected() const { return selected_ ? &items_[*selected_] : nullptr; }
    /// REQUIRES: index < items().size().
    void select(std::size_t index);
    void selectNone() { selected_.reset(); }
    /// Place of the selected item; nothing if the text was typed.
    std::optional<std::size_t> selectedIndex() const { return selected_; }
    void add(SourceItem item) { items_.push_back(std::move(item)); }
    /// The item of this identity; null if there is none.
    const SourceItem* find(std::string_view key) const;
    bool has(std::string_view key) const { return find(key) != nullptr; }
    /// Removes an item if it is a folder that the user added; drives stay. If it was the one in the edit
    /// field, the next item is selected then, or the new last one. Whether it was removed.
    bool remove(std::size_t index);

    /// Selects the item of this path, and adds it at the end if there is none.
    void addOrSelect(std::string_view path, const PathRules& paths);

  private:
    std::vector<SourceItem> items_;
    std::optional<std::size_t> selected_;
};

}  // namespace hl
