// Finds out whether there is a screen for a window. Must be called before a QApplication is made, which would
// end the process without a screen. For the thread of the window.
#pragma once

#include <optional>
#include <string>

namespace hl {

/// Returns the platform to name to Qt, empty if Qt finds it by itself; nothing if there is no screen.
std::optional<std::string> displayPlatform();

}  // namespace hl
