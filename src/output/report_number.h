// Appends the numbers of one report column. The texts are those of base/size_text.h, without a string for
// each. For one thread.
#pragma once

#include <cstdint>
#include <string>

#include "base/number_format.h"

namespace hl {

/// A report of 150,000 rows has nearly half a million numbers. Appending one takes 23 ns; the padded text of
/// base/size_text.h took 105.
class ReportNumber {
  public:
    /// Values are divided by `divisor` and rounded exactly, halves away from zero; with a divisor of 0 every
    /// text is empty. Blanks in front fill a text up to `width` characters; it is never cut. `format` must
    /// outlive it. REQUIRES: divisor >= 0, picture.decimals is 0 or 2.
    ReportNumber(std::int64_t divisor, Picture picture, const NumberFormat& format, std::size_t width = 0);

    /// REQUIRES: the value is within the range of SizeValue.
    void append(std::string& out, std::int64_t value) const;

  private:
    std::int64_t roundedQuotient(std::int64_t value) const;

    std::int64_t divisor_;
    std::int64_t scale_;  ///< How many of the last digit make one: 1, or 100 for hundredths.
    bool grouped_;
    std::size_t width_;
    const NumberFormat& format_;
    std::size_t thousandsLength_;  ///< In characters.
    std::size_t fractionLength_;
};

}  // namespace hl
