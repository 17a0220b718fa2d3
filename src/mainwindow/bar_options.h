// Between the options and the bars: what the options say is checked when a bar is built, and what is checked
// when the program ends is what the options say. Which entry keeps which option stands in the table of
// commands. Thread of the logic only.
#pragma once

#include "app/options.h"
#include "mainwindow/bars.h"
#include "platform/command_bar.h"

namespace hl {

/// Checks the entries of one bar, and fills its boxes, by the options, which stay as they are. Any number but
/// 0 is on; "Dezimal" wants a 1. Of the four size modes none is checked for a number outside 0 to 3.
void optionsToBar(Options& options, CommandBar& bar);

/// Reads all bars back, to be called before OptionenSpeichernMain. Options that no entry keeps (size modes,
/// fonts, dates) stay as they are. REQUIRES: the bars were built.
void barsToOptions(const Bars& bars, Options& options);

/// All bars take the size of their icons from "Symbolgröße", and text below icons from "Symboltext". To be
/// called when the entry was switched, and once when the bars are built.
void Change_ToolbarIconSize(Bars& bars, Diagnostics& diagnostics);
void Change_Toolbar_IconText(Bars& bars, Diagnostics& diagnostics);

}  // namespace hl
