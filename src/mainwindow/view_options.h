// Which fields of the options belong to which view.
#pragma once

#include "app/options.h"
#include "platform/window.h"

namespace hl {

GridFont fontOf(const Options& options, GridId grid);
void setFontOf(Options& options, GridId grid, const GridFont& font);

/// The grid that a bar stands above. REQUIRES: not kMain.
GridId gridOf(BarId bar);
/// The bar above a grid.
BarId barOf(GridId grid);

}  // namespace hl
