#include "grid/mask.h"

#include <algorithm>
#include <cmath>

namespace hl {

namespace {

Picture numberPicture(std::string_view picture) {
    const std::size_t point = std::min(picture.find('.'), picture.size());
    const std::string_view fraction = picture.substr(point);
    const auto decimals =
        std::count_if(fraction.begin(), fraction.end(), [](char c) { return c == '0' || c == '#'; });
    return {.grouped = picture.substr(0, point).find(',') != std::string_view::npos,
            .decimals = static_cast<int>(decimals)};
}

}  // namespace

std::optional<Mask> parseMask(std::string_view text) {
    const std::size_t open = text.find('*');
    if (open == std::string_view::npos) return std::nullopt;
    const std::size_t close = text.find('*', open + 1);
    if (close == std::string_view::npos) return std::nullopt;

    const std::string_view picture = text.substr(open + 1, close - open - 1);
    const std::string_view rest = text.substr(close + 1);
    const std::string_view sections = rest.substr(std::min(rest.find(';'), rest.size()));
    const auto blanks = std::count(sections.begin(), sections.end(), ';');
    return Mask{.number = numberPicture(picture),
                .datePicture = std::string(picture),
                .suffix = std::string(rest.substr(0, rest.size() - sections.size())),
                .hidesNegative = blanks >= 1,
                .hidesZero = blanks >= 2};
}

std::string maskedNumber(const Mask& mask, double value, const NumberFormat& format) {
    const bool hidden =
        (mask.hidesNegative && value < 0) || (mask.hidesZero && value == 0) || !std::isfinite(value);
    return hidden ? std::string() : formatNumber(value, mask.number, format) + mask.suffix;
}

std::string maskedInteger(const Mask& mask, std::int64_t value, const NumberFormat& format) {
    return maskedNumber(mask, static_cast<double>(value), format);
}

std::string maskedDate(const Mask& mask, const LocalTime& time) {
    return formatDate(time, mask.datePicture) + mask.suffix;
}

}  // namespace hl
