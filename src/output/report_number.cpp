#include "output/report_number.h"

#include <charconv>
#include <cstdlib>

#include "base/size_value.h"
#include "base/text.h"

namespace hl {

ReportNumber::ReportNumber(std::int64_t divisor, Picture picture, const NumberFormat& format,
                           std::size_t width)
    : divisor_(divisor),
      scale_(picture.decimals == 2 ? 100 : 1),
      grouped_(picture.grouped),
      width_(width),
      format_(format),
      thousandsLength_(characterCount(format.thousands)),
      fractionLength_(picture.decimals == 2 ? characterCount(format.decimal) + 2 : 0) {}

std::int64_t ReportNumber::roundedQuotient(std::int64_t value) const {
    static_assert(SizeValue::kMaxBytes < INT64_MAX / 100, "hundredths of the largest size need 64 bits");
    const std::int64_t scaled = std::abs(value) * scale_;
    const std::int64_t rest = scaled % divisor_;
    return scaled / divisor_ + (rest >= divisor_ - rest ? 1 : 0);
}

void ReportNumber::append(std::string& out, std::int64_t value) const {
    if (divisor_ == 0) {
        out.append(width_, ' ');
        return;
    }
    const std::int64_t quotient = roundedQuotient(value);
    char whole[20];  // The largest number of 64 bits has 19 digits.
    const char* end = std::to_chars(whole, whole + sizeof whole, quotient / scale_).ptr;
    const std::string_view digits(whole, static_cast<std::size_t>(end - whole));

    const bool negative = value < 0 && quotient != 0;
    const std::size_t separators = grouped_ ? (digits.size() - 1) / 3 : 0;
    const std::size_t length = negative + digits.size() + separators * thousandsLength_ + fractionLength_;
    if (length < width_) out.append(width_ - length, ' ');
    if (negative) out += '-';
    std::size_t at = digits.size() - separators * 3;
    out.append(digits.data(), at);
    for (; at < digits.size(); at += 3) out.append(format_.thousands).append(digits.data() + at, 3);
    if (scale_ == 1) return;
    const std::int64_t hundredths = quotient % scale_;
    out.append(format_.decimal);
    out += static_cast<char>('0' + hundredths / 10);
    out += static_cast<char>('0' + hundredths % 10);
}

}  // namespace hl
