// What the user is told of a failure of the trash.
#pragma once

#include <string>

namespace hl {

/// The text of a code, in English in every language; "Unknown error." for one that has none. `withNumber`:
/// " - " and the code in decimals behind it.
std::string xGetErrorTextFromSH(int code, bool withNumber);

}  // namespace hl
