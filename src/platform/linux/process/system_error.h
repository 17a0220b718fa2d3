// Makes the errors that the interfaces of platform/ tell of the numbers that the system gives (errno). From
// any thread.
#pragma once

#include <string>

#include "base/result.h"

namespace hl {

/// Returns the error for a number of the system other than 0. `name` is the thing that failed.
Error systemError(int number, std::string name = {});

/// Returns success for 0, else the error.
Result<> systemResult(int number, std::string name = {});

}  // namespace hl
