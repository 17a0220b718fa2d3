// The text of an error, as rows, logs and messages show it.
#pragma once

#include <string>

#include "base/result.h"

namespace hl {

/// Returns "Permission denied", or with `withNumber` "#13 - Permission denied". Number 0 without a text gives
/// "#0 - No information available", any other number without one "Formatmessage Error 22" and the number in
/// parentheses.
std::string ApiErrorText(bool withNumber, const Error& error);

}  // namespace hl
