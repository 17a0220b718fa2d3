// Measures the map in a window. The function prints lines of a name and a number.
#pragma once

#include <string>

#include "mainwindow/window_form.h"

namespace hl::bench {

/// Measures the milliseconds of the map of a tree at 1600x900 and 3840x2160: to lay it out, to choose its
/// colours and to paint them, and all of these; the number of tiles; and, in the pane at 1600x900, until it
/// is painted after another row was selected and after a file went.
void map(WindowForm& form, const std::string& tree);

}  // namespace hl::bench
