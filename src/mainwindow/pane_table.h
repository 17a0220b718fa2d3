// The one table of the panes that have a grid: what each is called, where its rows are, which command shows
// it and which options keep its font. For the thread of the logic only.
#pragma once

#include <span>

#include "app/command.h"
#include "app/options.h"
#include "base/row_text.h"
#include "platform/window.h"

namespace hl {

struct Session;

struct PaneRow {
    const char* name;  ///< Of the grid, for whoever looks for it in the window: "lvwFiles".
    RowText title;     ///< For assistive tools.
    Grid Session::*grid;
    Command shownBy;  ///< Switches the pane on and off.
    std::string Options::*fontName;
    float Options::*fontSize;
    std::string Options::*fontStyle;
};

/// Returns all rows, in the order of GridId.
std::span<const PaneRow, kGridCount> paneRows();

GridFont fontOf(const Options& options, GridId grid);
void setFontOf(Options& options, GridId grid, const GridFont& font);

}  // namespace hl
