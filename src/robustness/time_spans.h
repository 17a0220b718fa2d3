// Spans of time as text: a clock, with the days in front of it from one day on.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace hl {

/// The words of a span; %1 and %2 stand for numbers.
struct SpanWords {
    std::string_view oneDay = "1 Tag";
    std::string_view days = "%1 Tage";
    std::string_view years = "%1 Jahr(e) %2 Tag(e)";  ///< Years of 365 days, and the days that remain.
};

/// "0:02:05", "1 Tag 0:00:00", "2 Jahr(e) 3 Tag(e) 4:05:06": the whole seconds between two moments. A span
/// that would be negative, since the clock was put back, reads as none.
std::string GetDateFromDiff(std::chrono::system_clock::time_point start,
                            std::chrono::system_clock::time_point end, const SpanWords& words = {});

/// The same for the seconds that the system is up, in English.
std::string GetSystemUpTime(std::uint64_t seconds);

}  // namespace hl
