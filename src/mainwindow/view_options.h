// Tells which fields of the options belong to which view. The functions are pure.
#pragma once

#include "app/options.h"
#include "platform/window.h"

namespace hl {

GridFont fontOf(const Options& options, GridId grid);
void setFontOf(Options& options, GridId grid, const GridFont& font);

/// Returns the grid below a bar. REQUIRES: `bar` is not kMain.
GridId gridOf(BarId bar);
/// Returns the bar above a grid.
BarId barOf(GridId grid);

}  // namespace hl
