// Which fields of the options belong to which view.
#pragma once

#include <string>

#include "app/options.h"
#include "platform/window.h"

namespace hl {

/// The font of a grid.
std::string& fontNameOf(Options& options, GridId grid);
float& fontSizeOf(Options& options, GridId grid);

/// The grid that a bar stands above. REQUIRES: not kMain.
GridId gridOf(BarId bar);
/// The bar above a grid.
BarId barOf(GridId grid);

}  // namespace hl
