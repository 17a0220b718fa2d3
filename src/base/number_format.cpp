#include "base/number_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/locale_name.h"

namespace hl {

namespace {

struct NumberLocale {
    std::string_view name;
    std::string_view thousands;
    std::string_view decimal;
};

constexpr std::string_view kNoBreakSpace = "\u00A0";
constexpr std::string_view kApostrophe = "\u2019";

// A country that differs from its language must come before the language.
constexpr NumberLocale kNumberLocales[] = {
    {"de_CH", kApostrophe, "."},
    {"de_LI", kApostrophe, "."},
    {"de", ".", ","},
    {"it_CH", kApostrophe, "."},
    {"it", ".", ","},
    {"nl", ".", ","},
    {"ru", kNoBreakSpace, ","},
    {"sv", kNoBreakSpace, ","},
};

// Returns the shortest decimal text that reads back as `value`, without an exponent. REQUIRES: value is
// finite.
std::string plainDecimal(double value) {
    std::array<char, 512> text;  // The longest text, that of a number near 10^-308, has some 340 characters.
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return std::string(text.data(), result.ptr);
}

void increment(std::string& digits) {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    digits.insert(0, 1, '1');
}

// Returns the digits without the point: "12.345" with two decimals becomes "1235".
std::string roundedDigits(std::string_view plain, std::size_t decimals) {
    const std::size_t point = std::min(plain.find('.'), plain.size());
    const std::string_view fraction = plain.substr(std::min(point + 1, plain.size()));
    std::string digits(plain.substr(0, point));
    digits += fraction.substr(0, decimals);
    digits.append(decimals - std::min(decimals, fraction.size()), '0');
    if (fraction.size() > decimals && fraction[decimals] >= '5') increment(digits);
    return digits;
}

void appendGrouped(std::string& out, std::string_view digits, std::string_view separator) {
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) out += separator;
        out += digits[i];
    }
}

// Writes a number; `digits` is the number without its decimal point. Zero has no sign, even if a negative
// number was rounded to it.
std::string written(bool negative, std::string digits, Picture picture, const NumberFormat& format) {
    const auto decimals = static_cast<std::size_t>(picture.decimals);
    if (digits.size() <= decimals) digits.insert(0, decimals + 1 - digits.size(), '0');
    const bool zero = digits.find_first_not_of('0') == std::string::npos;
    std::string out(negative && !zero ? "-" : "");
    const std::string_view whole = std::string_view(digits).substr(0, digits.size() - decimals);
    appendGrouped(out, whole, picture.grouped ? format.thousands : std::string_view());
    if (decimals > 0) out += format.decimal + digits.substr(whole.size());
    return out;
}

}  // namespace

NumberFormat numberFormatOf(std::string_view locale) {
    for (const NumberLocale& row : kNumberLocales) {
        if (belongsTo(locale, row.name)) return {std::string(row.thousands), std::string(row.decimal)};
    }
    return {};
}

// Rounds the decimal text that people know the number by: 1.005 becomes 1.01, though its binary form lies a
// little below. Infinity and NaN give an empty text.
std::string formatNumber(double value, Picture picture, const NumberFormat& format) {
    if (!std::isfinite(value)) return {};
    const std::string plain = plainDecimal(std::abs(value));
    return written(value < 0, roundedDigits(plain, static_cast<std::size_t>(picture.decimals)), picture,
                   format);
}

std::string formatCount(std::uint64_t count, const NumberFormat& format) {
    return written(false, std::to_string(count), {}, format);
}

std::string formatQuotient(SizeValue value, std::int64_t divisor, Picture picture,
                           const NumberFormat& format) {
    static_assert(SizeValue::kMaxBytes < INT64_MAX / 100, "hundredths of the largest size need 64 bits");
    const std::int64_t scaled = std::abs(value.bytes()) * (picture.decimals == 2 ? 100 : 1);
    const std::int64_t rest = scaled % divisor;
    const std::int64_t quotient = scaled / divisor + (rest >= divisor - rest ? 1 : 0);
    return written(value.bytes() < 0, std::to_string(quotient), picture, format);
}

// Whether a value lies halfway is decided after the multiplication by 100: 12.345, whose binary form lies a
// little above, counts as halfway and becomes 12.34.
double roundToHundredths(double value) {
    return std::nearbyint(value * 100) / 100;
}

}  // namespace hl
