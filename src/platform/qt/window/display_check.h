// Whether there is a screen to show a window on. To be asked before a QApplication is made, which would end
// the process otherwise.
#pragma once

#include <optional>
#include <string>

namespace hl {

/// The platform to name to Qt, empty where Qt finds it itself; nothing if there is no screen.
std::optional<std::string> displayPlatform();

}  // namespace hl
