// Finds what the user is told when the trash fails.
#pragma once

#include <string>

namespace hl {

/// Returns the text of a code, which is English in every language, or "Unknown error.". `withNumber` appends
/// " - " and the code in decimals.
std::string xGetErrorTextFromSH(int code, bool withNumber);

}  // namespace hl
