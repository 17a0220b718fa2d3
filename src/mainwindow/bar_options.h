// Carries options to the bars, when these are built, and back, when the program ends. The table of commands
// tells which entry keeps which option. For the thread of the logic only.
#pragma once

#include "app/options.h"
#include "mainwindow/bars.h"
#include "platform/command_bar.h"

namespace hl {

/// Checks the entries of one bar and fills its boxes by the options. Any number but 0
/// means on, but "Dezimal" needs a 1. For a number outside 0 to 3 none of the four size modes is checked.
void optionsToBar(const Options& options, CommandBar& bar);

/// Reads all bars back; must be called before OptionenSpeichernMain. Options that no entry keeps (size modes,
/// fonts, dates) do not change. REQUIRES: the bars were built.
void barsToOptions(const Bars& bars, Options& options);

/// These set the size of all bars' icons by "Symbolgröße", and the text below icons by "Symboltext". To be
/// called when that entry was switched, and once when the bars are built.
void Change_ToolbarIconSize(Bars& bars, Diagnostics& diagnostics);
void Change_Toolbar_IconText(Bars& bars, Diagnostics& diagnostics);

}  // namespace hl
