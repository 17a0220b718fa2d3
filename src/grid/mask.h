// The mask of a grid column says how the value of its cells is written.
//
// "*###,###,##0.00* KB;;;" is a picture between two asterisks, a suffix up to the first semicolon, and
// sections that are left blank: the first semicolon stands for negative values, the second for zero, the
// third for an empty cell. A value with a blank section shows nothing, not even the suffix. Without
// semicolons a zero is written as any other number. An empty cell shows nothing under any mask, so nobody
// asks for its text.
//
// In a picture of a number a comma asks for the locale's thousands separator, and the digits behind a point
// are the decimals; a picture of a date is one for formatDate ("*dd/MM/yyyy hh:nn:ss *;;;"). A mask is parsed
// once, when the column gets it, and may then be used from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/date_format.h"
#include "base/number_format.h"

namespace hl {

struct Mask {
    Picture number;           ///< The picture, read as that of a number.
    std::string datePicture;  ///< The picture as text, for dates.
    std::string suffix;
    bool hidesNegative = false;
    bool hidesZero = false;
};

/// Returns nothing for a text without two asterisks: the column then shows its cells as they are.
std::optional<Mask> parseMask(std::string_view text);

/// Formats a number; halves are rounded away from zero. A value that is not zero is not hidden as one: 0.004
/// shows as "0.00".
std::string maskedNumber(const Mask& mask, double value, const NumberFormat& format);
/// Formats a whole number; it is exact up to 2^53.
std::string maskedInteger(const Mask& mask, std::int64_t value, const NumberFormat& format);
std::string maskedDate(const Mask& mask, const LocalTime& time);

}  // namespace hl
