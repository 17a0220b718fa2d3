// Formats numbers as the user's locale writes them. The functions keep nothing and may be called from any
// thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/size_value.h"

namespace hl {

/// The separators of a locale, as UTF-8.
struct NumberFormat {
    std::string thousands = ",";
    std::string decimal = ".";
};

/// Looks a locale up in a small table of the languages that the program ships. `locale` is the value of
/// LC_ALL, LC_NUMERIC or LANG ("de_DE.UTF-8"). Empty, "C", "POSIX" and languages that are not in the table
/// read as English.
NumberFormat numberFormatOf(std::string_view locale);

/// A picture of digits: "###,##0.00" is {.grouped = true, .decimals = 2}, "########0" is {.grouped = false}.
/// At least one digit stands in front of the decimal separator.
struct Picture {
    bool grouped = true;
    int decimals = 0;
};

/// Formats `value` by the picture; halves are rounded away from zero.
std::string formatNumber(double value, Picture picture, const NumberFormat& format);
/// Formats a number of things, with separators of thousands.
std::string formatCount(std::uint64_t count, const NumberFormat& format);
/// Formats `value` divided by `divisor`. The quotient is rounded exactly (no double is involved), halves away
/// from zero. REQUIRES: divisor > 0, picture.decimals is 0 or 2.
std::string formatQuotient(SizeValue value, std::int64_t divisor, Picture picture,
                           const NumberFormat& format);

/// Rounds `value` to two decimals, ties to even. Sizes in larger units and percents are rounded like this.
double roundToHundredths(double value);

}  // namespace hl
