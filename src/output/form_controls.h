// Controls of a form as plain data: a window draws them and writes into them what the user does, a run with
// no window does without, and tests set them by hand.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace hl {

struct OptionButton {
    std::string caption;
    bool selected = false;
    bool enabled = true;
};

struct ComboBox {
    std::vector<std::string> items;
    int index = -1;  ///< Of the item chosen; -1 for none.
};

struct CommandButton {
    std::string caption;
    bool enabled = true;
};

/// Index of the selected button of a group; -1 for none.
inline int GetOptionButtonSelectedIndex(std::span<const OptionButton> group) {
    for (std::size_t i = 0; i < group.size(); ++i)
        if (group[i].selected) return static_cast<int>(i);
    return -1;
}

/// Selects one button of a group and no other.
inline void selectOption(std::span<OptionButton> group, std::size_t index) {
    for (std::size_t i = 0; i < group.size(); ++i) group[i].selected = i == index;
}

}  // namespace hl
