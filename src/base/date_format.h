// Formats dates and times as text. All of them are in local time with a resolution of one second. The
// functions may be called from any thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace hl {

/// Calendar fields of a moment in local time.
struct LocalTime {
    int year = 1970, month = 1, day = 1, hour = 0, minute = 0, second = 0;
};

/// The short date and the long time of a locale, as pictures for formatDate.
struct DateFormat {
    std::string shortDate = "M/d/yyyy";
    std::string longTime = "h:nn:ss AM/PM";
    /// The named format "General Date" is the short date and the long time.
    std::string general() const { return shortDate + " " + longTime; }
};

/// Looks a locale up in a small table of the languages that the program ships. `locale` is the value of
/// LC_ALL, LC_TIME or LANG. Empty, "C", "POSIX" and languages that are not in the table read as American
/// English.
DateFormat dateFormatOf(std::string_view locale);

LocalTime localTime(std::chrono::system_clock::time_point moment);
LocalTime localTime(std::int64_t secondsSinceEpoch);
/// Returns the seconds from 1970 to now.
std::int64_t secondsNow();

/// Applies a picture such as "dd/MM/yyyy hh:nn:ss": d dd day, m M mm MM month, yy yyyy year, h hh hour, n nn
/// minute, s ss second, AM/PM (hours then count to 12). Letters are read without regard to case; all else is
/// copied.
std::string formatDate(const LocalTime& time, std::string_view picture);
/// Writes the text into `to` and returns its length; what does not fit is cut off. It takes no memory from
/// the heap, so that a signal handler can call it.
std::size_t formatDate(const LocalTime& time, std::string_view picture, std::span<char> to);

}  // namespace hl
