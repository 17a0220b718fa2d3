// Writes spans of time as a clock, with the days in front from one day on.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace hl {

/// The words of a span of time; %1 and %2 stand for numbers.
struct SpanWords {
    std::string_view oneDay = "1 Tag";
    std::string_view days = "%1 Tage";
    std::string_view years = "%1 Jahr(e) %2 Tag(e)";  ///< Years of 365 days, and the days that remain.
};

/// Writes the whole seconds between two moments as "0:02:05", "1 Tag 0:00:00" or "2 Jahr(e) 3 Tag(e)
/// 4:05:06". If the clock was put back and the span is negative, it counts as zero.
std::string GetDateFromDiff(std::chrono::system_clock::time_point start,
                            std::chrono::system_clock::time_point end, const SpanWords& words = {});

/// Writes the time that the system has been up, in English.
std::string GetSystemUpTime(std::uint64_t seconds);

}  // namespace hl
