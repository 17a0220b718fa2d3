// Which fields of the options belong to which view.
#pragma once

#include <string>

#include "app/options.h"
#include "platform/window.h"

namespace hl {

/// Size mode and decimals of the view of a bar. REQUIRES: the bar has them (not kMain, not kJunctions).
std::uint8_t& sizeModeOf(Options& options, BarId bar);
Flag& decimalsOf(Options& options, BarId bar);

/// The font of a grid.
std::string& fontNameOf(Options& options, GridId grid);
float& fontSizeOf(Options& options, GridId grid);

/// The grid that a bar stands above. REQUIRES: not kMain.
GridId gridOf(BarId bar);
/// The bar above a grid.
BarId barOf(GridId grid);

}  // namespace hl
