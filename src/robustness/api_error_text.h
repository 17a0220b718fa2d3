// Finds the text for an error code of the system, as rows, logs and messages show it.
#pragma once

#include <string>

#include "platform/system_facts.h"

namespace hl {

/// This code stands for the last error of this thread (errno).
inline constexpr int kLastError = -1;

/// Returns "Permission denied", or with `withNumber` "#13 - Permission denied". Code 0 always gives "#0 - No
/// information available". A code that the system does not know gives "Formatmessage Error", the error of
/// that question, and the code in parentheses.
std::string ApiErrorText(bool withNumber, int code, SystemFacts& facts);

}  // namespace hl
