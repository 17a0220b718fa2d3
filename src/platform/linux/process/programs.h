// Starts other programs, and loads modules. For the thread of the logic.
#pragma once

#include <string>
#include <vector>

#include "platform/window_module.h"

namespace hl {

/// Starts another program with this process's environment; nobody waits for it. Returns a system error code,
/// 0 for success.
int startProgram(const std::string& executable, const std::vector<std::string>& arguments);

/// Returns the function of the module with the window; null if the file is missing, is no such module, or
/// needs a library that is missing. Then `reason` says which.
WindowModuleFunction loadWindowModule(const std::string& path, std::string& reason);

}  // namespace hl
