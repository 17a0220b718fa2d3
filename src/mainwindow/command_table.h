// The one table of commands: a row says where a command stands, what it is called, which option it keeps and
// which routine does it. Bars, menus, keys and the saving of options are made from it. Thread of the logic
// only.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "app/command.h"
#include "app/options.h"
#include "platform/icons.h"

namespace hl {

class WindowCommands;

/// A text that is looked up when the bar is built.
struct RowText {
    int id = 0;
    std::string_view german = {};
};

/// A member of its own kind, so that it cannot be mistaken for another flag.
enum class Group : bool { kGoesOn, kBegins };

/// The option that an entry keeps: checked where the option is on, and on where it is checked when the
/// program ends.
struct KeptOption {
    enum class Use : std::uint8_t {
        kNone,
        kToggles,    ///< A click turns the option over, then the routine is called.
        kByRoutine,  ///< A click leaves it to the routine, which may refuse.
        kDecimals,   ///< As kToggles, and on with a 1 alone.
        kChooses,    ///< A click gives it the row's `value`; nothing is saved from the entry.
    };
    Use use = Use::kNone;
    Flag& (*field)(Options&) = nullptr;
};

// In the order in which a row of the table is read.
struct CommandRow {  // NOLINT(clang-analyzer-optin.performance.Padding)
    Command command;
    EntryKind kind;
    RowText caption = {};
    RowText tooltip = {};  ///< Where it is empty, the caption serves.
    int icon = -1;         ///< -1: none.
    Group group = Group::kGoesOn;
    /// "F1" to "F12", or a character that goes with Ctrl; empty for none.
    std::string_view key = {};
    void (WindowCommands::*run)(const CommandRow& row) = nullptr;
    KeptOption kept = {};
    Command parent = Command::kNone;  ///< The entry or popup that it lies below.
    int value = 0;                    ///< What the routine makes of it; also "%1" of the caption.
    int width = 0;                    ///< See BarEntry.
};

/// All of a bar, in the order of its entries.
std::span<const CommandRow> commandsOf(BarId bar);
/// Null for a command that there is not.
const CommandRow* commandRow(Command command);

}  // namespace hl
