// Sizes as the status bar shows them. For the thread of the logic.
#pragma once

#include <string>

#include "base/number_format.h"
#include "base/size_value.h"

namespace hl {

/// Formats a size with its unit, and with two decimals unless in bytes; "< 0.01 MB" if it is too small for
/// them. A mode without a unit shows bytes.
std::string shownSize(int mode, SizeValue value, const NumberFormat& format);

/// Puts the sign of a difference in front of the text of its amount. "< 0.01", of which only the direction is
/// known, becomes "< +0.01" or "> -0.01".
std::string withSign(bool above, const std::string& amount);

}  // namespace hl
