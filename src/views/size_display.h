// Sizes as the status line of a list shows them. For the thread of the logic.
#pragma once

#include <string>

#include "app/options.h"
#include "base/number_format.h"
#include "base/size_value.h"

namespace hl {

/// Returns `text`, a size in a unit with two decimals, or "< 0.01 MB" if the size is too small for them.
std::string orBelowLastDigit(std::string text, int mode, SizeValue value, const NumberFormat& format);

/// Formats a size in the list's mode, with two decimals unless in bytes. The arguments are those of
/// formatViewSize (base/size_text.h).
std::string List_Files_FormatSize(const Options& options, SizeValue value, bool withUnit, bool pad,
                                  bool withBytesUnit, const NumberFormat& format);

}  // namespace hl
