// The one table of commands. A row tells where a command is shown, what it is called, which option it keeps
// and which routine carries it out. Bars, menus, keys and the saving of options are made from it. For the
// thread of the logic only.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "app/command.h"
#include "app/language.h"
#include "app/options.h"
#include "base/row_text.h"
#include "platform/icons.h"

namespace hl {

struct MainForm;

/// A type of its own, so that it cannot be mistaken for another flag.
enum class Group : bool { kGoesOn, kBegins };

/// The option that an entry keeps: the entry is checked if the option is on, and is saved as the option at
/// the end.
struct KeptOption {
    enum class Use : std::uint8_t {
        kNone,
        kToggles,    ///< A click switches the option, and then the routine is called.
        kByRoutine,  ///< A click only calls the routine, which may refuse.
        kDecimals,   ///< Like kToggles, but only a 1 means on.
        kChooses,    ///< A click sets the option to the row's `value`; nothing is saved from the entry.
    };
    Use use = Use::kNone;
    OptionFlag field = {};
};

/// What a command works on: without it, its entry is disabled.
enum class Needs : std::uint8_t {
    kNothing,
    kRows,       ///< Rows in the grid of its bar.
    kSelection,  ///< Selected rows in the grid of its bar.
    kOnDisk,     ///< A current row of the report whose source was not opened from a file.
};

/// How soon an entry goes behind the button at the end of its bar where there is little room.
enum Rank : std::uint8_t { kStaysLongest, kUsualRank, kGoesEarly, kGoesFirst };

// The fields are in the order in which a row of the table is read.
struct CommandRow {  // NOLINT(clang-analyzer-optin.performance.Padding)
    Command command;
    EntryKind kind;
    RowText caption = {};
    RowText tooltip = {};  ///< If it is empty, the caption is shown.
    int icon = -1;         ///< -1 means none.
    Group group = Group::kGoesOn;
    /// "F1" to "F12", or a character that is pressed with Ctrl ("B") or with Ctrl and Shift ("Shift+B");
    /// empty for none.
    std::string_view key = {};
    void (*run)(MainForm& form, const CommandRow& row) = nullptr;
    KeptOption kept = {};
    Command parent = Command::kNone;  ///< The entry or popup that contains it.
    int value = 0;                    ///< Its meaning depends on the routine; it also replaces "%1" in the
                                      ///< caption.
    int width = 0;                    ///< See BarEntry.
    Needs needs = Needs::kNothing;
    Rank rank = kUsualRank;
};

struct BarRow {
    const char* name;     ///< In the window and in the file of toolbars.
    const char* builder;  ///< The name in error reports of the routine that builds it.
    std::span<const CommandRow> commands;
};

/// Returns the rows of all bars, in the order of BarId.
std::span<const BarRow, kBarCount> barRows();
/// Returns all rows of a bar, in the order of its entries.
std::span<const CommandRow> commandsOf(BarId bar);
/// Returns the rows of the menu of languages, which are part of no bar's table. The texts of `languages` must
/// outlive them.
std::vector<CommandRow> languageCommands(const std::vector<Language>& languages);
/// Tells whether the command shows and hides a column.
bool switchesColumn(const CommandRow& row);
/// Returns null for a command that is in no bar's table.
const CommandRow* commandRow(Command command);

}  // namespace hl
