// Forms as plain data: named controls that a routine of the form reads and writes, and a description by which
// a window shows them. The window writes into the controls what the user does and then calls what the control
// has for it; tests set them by hand. Thread of the logic only.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace hl {

struct OptionButton {
    std::string caption = {};
    bool selected = false;
    bool enabled = true;
};

struct CheckBox {
    std::string caption = {};
    bool checked = false;
    bool enabled = true;
};

struct TextBox {
    std::string text = {};
    bool enabled = true;
    bool readOnly = false;
    bool multiLine = false;
    int lines = 0;  ///< Height of one with several lines; 0 leaves it to the window.
};

struct ComboBox {
    std::vector<std::string> items;
    int index = -1;  ///< Of the item chosen; -1 for none.
    bool enabled = true;
};

struct CommandButton {
    std::string caption = {};  ///< An "&" stands in front of the letter that presses it with Alt.
    bool enabled = true;
};

/// For FormItem::keyPress of a number: digits and backspace.
inline char32_t digitKey(char32_t key) {
    constexpr char32_t kBackspace = 8;
    return (key >= U'0' && key <= U'9') || key == kBackspace ? key : 0;
}

/// One control in a form: which one, where it stands, and what is called after the user changed it. A label
/// is a text; one with `changed` is a link.
struct FormItem {
    using Control = std::variant<std::string*, OptionButton*, CheckBox*, TextBox*, ComboBox*, CommandButton*>;
    Control control;
    int row = 0;
    int column = 0;
    int columnSpan = 1;
    int group = 0;  ///< Option buttons of one group exclude each other.
    std::function<void()> changed = {};
    /// Of a text box: the character to take for one that is typed, 0 for none. Null takes all.
    std::function<char32_t(char32_t)> keyPress = {};
    std::string tooltip = {};
    /// What assistive tools call a control that has no caption of its own.
    std::string name = {};
    /// Called when the pointer or the keyboard's focus comes to the control; it may write into the others.
    std::function<void()> hovered = {};
};

/// A form as a window shows it, one column of rows; the buttons stand side by side below them. `loaded` turns
/// false when the form is done with, and the window then closes it. Closed by the window's frame or by Esc,
/// it calls `cancel`.
struct Form {
    std::string name;  ///< "frmSave"
    std::string caption;
    std::vector<FormItem> items;
    std::vector<FormItem> buttons;  ///< The first one is the default.
    std::function<void()> activated = {};
    std::function<void()> cancel = {};
    bool onTop = false;    ///< In front of all windows, also of those that are modal.
    bool warning = false;  ///< With an exclamation mark beside its first row.
    /// The window sets it while it shows the form; a routine of the form calls it, where it is set, after it
    /// has changed a control at a moment when no control called it.
    std::function<void()> redraw = {};
    const std::string* title = nullptr;  ///< A caption that changes while the form shows; null: it stays.
    bool* loaded = nullptr;
    bool* hourglass = nullptr;  ///< May be null.
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
