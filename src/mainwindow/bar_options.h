// Between the options and the bars: what the options say is checked when a bar is built, and what is checked
// when the program ends is what the options say. Thread of the logic only.
#pragma once

#include <cstdint>
#include <span>

#include "app/options.h"
#include "mainwindow/bars.h"
#include "platform/command_bar.h"
#include "views/top_view.h"

namespace hl {

/// An entry that is checked where its option is on.
struct CheckedOption {
    BarId bar;
    int id;
    Flag Options::*field;
};
/// All of them but those of sizes and of the lists' columns.
std::span<const CheckedOption> checkedOptions();

/// Checks the entries of one bar, and fills its boxes, by the options. Any number but 0 is on; "Dezimal"
/// wants a 1.
void optionsToBar(const Options& options, CommandBar& bar);

/// Reads all bars back, to be called before OptionenSpeichernMain. Options that no entry shows (size modes,
/// fonts, dates) stay as they are. REQUIRES: the bars were built.
void barsToOptions(const Bars& bars, Options& options);

/// The four buttons of the size modes, of which the one for `mode` gets checked (none for a mode outside 0 to
/// 3), and "Dezimal", which gets checked with 1 and stays as it is otherwise: off is the user's doing.
/// Nothing happens to the bar of the junctions, which has none.
void showSizeMode(CommandBar& bar, std::uint8_t mode, Flag decimals);

/// All bars take the size of their icons from "Symbolgröße", and text below icons from "Symboltext". To be
/// called when the entry was switched, and once when the bars are built.
void Change_ToolbarIconSize(Bars& bars, Diagnostics& diagnostics);
void Change_Toolbar_IconText(Bars& bars, Diagnostics& diagnostics);

}  // namespace hl
