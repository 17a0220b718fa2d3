#include "robustness/time_spans.h"

#include <algorithm>

#include "base/text.h"

namespace hl {

namespace {

constexpr std::uint64_t kDay = 86'400;
constexpr std::uint64_t kDaysOfYear = 365;

std::string twoDigits(std::uint64_t value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
}

std::string clockText(std::uint64_t seconds) {
    return std::to_string(seconds / 3600) + ":" + twoDigits(seconds / 60 % 60) + ":" +
           twoDigits(seconds % 60);
}

std::string daysText(std::uint64_t days, const SpanWords& words) {
    if (days == 1) return std::string(words.oneDay);
    if (days < kDaysOfYear) return replaceAll(words.days, "%1", std::to_string(days));
    const std::string years = replaceAll(words.years, "%1", std::to_string(days / kDaysOfYear));
    return replaceAll(years, "%2", std::to_string(days % kDaysOfYear));
}

std::string spanText(std::uint64_t seconds, const SpanWords& words) {
    const std::string clock = clockText(seconds % kDay);
    return seconds < kDay ? clock : daysText(seconds / kDay, words) + " " + clock;
}

}  // namespace

std::string GetDateFromDiff(std::chrono::system_clock::time_point start,
                            std::chrono::system_clock::time_point end, const SpanWords& words) {
    const auto wholeSecond = [](auto moment) { return std::chrono::floor<std::chrono::seconds>(moment); };
    const auto seconds = (wholeSecond(end) - wholeSecond(start)).count();
    return spanText(static_cast<std::uint64_t>(std::max<decltype(seconds)>(seconds, 0)), words);
}

std::string GetSystemUpTime(std::uint64_t seconds) {
    // There is no blank in front of "year(s)"; the format has always been so.
    return spanText(seconds, {.oneDay = "1 day", .days = "%1 days", .years = "%1year(s) %2 day(s)"});
}

}  // namespace hl
