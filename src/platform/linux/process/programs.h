// Other programs and modules: starting the one, loading the other.
#pragma once

#include <string>
#include <vector>

#include "platform/window_module.h"

namespace hl {

/// Starts a program of its own, with this process's environment; nobody waits for it. System error code, 0
/// for success.
int startProgram(const std::string& executable, const std::vector<std::string>& arguments);

/// The function of the module with the window; null if the file is missing, is no such module, or a library
/// that it needs is not there, and `reason` says which.
WindowModuleFunction loadWindowModule(const std::string& path, std::string& reason);

}  // namespace hl
