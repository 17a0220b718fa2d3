// Forms as plain data: named controls, which a routine of the form reads and writes, and a description by
// which a window shows them. The window stores what the user does in the controls and then calls their
// callbacks; tests set them by hand. For the thread of the logic only.
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
    int lines = 0;  ///< The height of a box with several lines; 0 lets the window decide.
};

struct ComboBox {
    std::vector<std::string> items;
    int index = -1;  ///< The index of the selected item; -1 for none.
    bool enabled = true;
};

struct CommandButton {
    std::string caption = {};  ///< "&" stands before the letter that, with Alt, presses the button.
    bool enabled = true;
};

/// A table to read. The user goes through its lines, copies them, and activates one (Return, a double click):
/// then `activated` is set and the item's `changed` is called.
struct TableBox {
    struct Line {
        std::vector<std::string> cells = {};  ///< One for each title.
        std::string tooltip = {};
        bool strong = false;  ///< A sum.
        bool leads = false;   ///< To activate it leads somewhere; other lines cannot be activated.
    };
    std::vector<std::string> titles = {};  ///< The first column is a text, the others are figures.
    std::vector<Line> lines = {};
    bool enabled = true;
    int activated = -1;  ///< The index of the line that was activated.
    /// Assistive tools are told this once it is set: the figures are complete.
    std::string announcement = {};
};

/// A FormItem::keyPress for numbers: it lets digits and backspace through.
inline char32_t digitKey(char32_t key) {
    constexpr char32_t kBackspace = 8;
    return (key >= U'0' && key <= U'9') || key == kBackspace ? key : 0;
}

/// One control of a form: which one, where it is, and what is called after the user changed it. A label is a
/// text; one with `changed` is a link.
struct FormItem {
    using Control =
        std::variant<std::string*, OptionButton*, CheckBox*, TextBox*, ComboBox*, CommandButton*, TableBox*>;
    Control control;
    int row = 0;
    int column = 0;
    int columnSpan = 1;
    int group = 0;  ///< Option buttons of one group exclude each other.
    std::function<void()> changed = {};
    /// For a text box: returns the character to use for one that was typed, 0 for none. Null lets all
    /// through.
    std::function<char32_t(char32_t)> keyPress = {};
    std::string tooltip = {};
    /// The name for assistive tools, if the control has no caption of its own.
    std::string name = {};
    /// Is called when the pointer or the keyboard's focus enters the control; it may change the others.
    std::function<void()> hovered = {};
};

/// A form as a window shows it: one column of rows, with the buttons side by side below. When `loaded`
/// becomes false, the window closes the form. If the window's frame or Esc closes it, `cancel` is called.
struct Form {
    std::string name;  ///< "frmSave"
    std::string caption;
    std::vector<FormItem> items;
    std::vector<FormItem> buttons;  ///< The first one is the default.
    std::function<void()> activated = {};
    std::function<void()> cancel = {};
    bool onTop = false;    ///< Stays in front of all windows, even of modal ones.
    bool warning = false;  ///< Shows an exclamation mark beside its first row.
    /// The window sets it while it shows the form. A routine of the form that no control called must call it,
    /// if it is set, after it has changed a control.
    std::function<void()> redraw = {};
    /// Is called some twenty times a second while the form is shown, and returns whether it changed a
    /// control: for figures that grow meanwhile.
    std::function<bool()> polled = {};
    const std::string* title = nullptr;  ///< A caption that changes while the form is shown; null if it does
                                         ///< not.
    bool* loaded = nullptr;
    bool* hourglass = nullptr;  ///< May be null.
};

/// Returns the index of the selected button of a group; -1 for none.
inline int GetOptionButtonSelectedIndex(std::span<const OptionButton> group) {
    for (std::size_t i = 0; i < group.size(); ++i)
        if (group[i].selected) return static_cast<int>(i);
    return -1;
}

/// Selects one button of a group and deselects the others.
inline void selectOption(std::span<OptionButton> group, std::size_t index) {
    for (std::size_t i = 0; i < group.size(); ++i) group[i].selected = i == index;
}

}  // namespace hl
