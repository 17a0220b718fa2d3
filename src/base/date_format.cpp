#include "base/date_format.h"

#include <charconv>
#include <ctime>
#include <optional>

#include "base/locale_name.h"

namespace hl {

namespace {

struct DateLocale {
    std::string_view name;
    std::string_view shortDate;
    std::string_view longTime;
};

// A country that differs from its language must come before the language.
constexpr DateLocale kDateLocales[] = {
    {"de", "dd.MM.yyyy", "hh:nn:ss"},         {"en_AU", "dd/MM/yyyy", "hh:nn:ss"},
    {"en_CA", "yyyy-MM-dd", "h:nn:ss AM/PM"}, {"en_GB", "dd/MM/yyyy", "hh:nn:ss"},
    {"en_IE", "dd/MM/yyyy", "hh:nn:ss"},      {"en_NZ", "dd/MM/yyyy", "hh:nn:ss"},
    {"it_CH", "dd.MM.yyyy", "hh:nn:ss"},      {"it", "dd/MM/yyyy", "hh:nn:ss"},
    {"nl", "dd-MM-yyyy", "hh:nn:ss"},         {"ru", "dd.MM.yyyy", "hh:nn:ss"},
    {"sv_FI", "dd.MM.yyyy", "hh.nn.ss"},      {"sv", "yyyy-MM-dd", "hh:nn:ss"},
};

constexpr std::string_view kHalfOfDay = "AM/PM";

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool startsWithHalf(std::string_view picture) {
    if (picture.size() < kHalfOfDay.size()) return false;
    for (std::size_t i = 0; i < kHalfOfDay.size(); ++i) {
        if (lower(picture[i]) != lower(kHalfOfDay[i])) return false;
    }
    return true;
}

bool countsToTwelve(std::string_view picture) {
    for (; !picture.empty(); picture.remove_prefix(1)) {
        if (startsWithHalf(picture)) return true;
    }
    return false;
}

std::size_t runLength(std::string_view picture) {
    std::size_t length = 1;
    while (length < picture.size() && lower(picture[length]) == lower(picture[0])) ++length;
    return length;
}

int hourOf(const LocalTime& time, bool twelve) {
    if (!twelve) return time.hour;
    return time.hour % 12 == 0 ? 12 : time.hour % 12;
}

// Returns the number that `letter`, repeated `length` times, stands for, or nothing if there is no such
// field.
std::optional<int> fieldOf(const LocalTime& time, char letter, std::size_t length, bool twelve) {
    if (letter == 'y' && length == 4) return time.year;
    if (letter == 'y' && length == 2) return time.year % 100;
    if (length > 2) return std::nullopt;
    switch (letter) {
        case 'd':
            return time.day;
        case 'm':
            return time.month;
        case 'h':
            return hourOf(time, twelve);
        case 'n':
            return time.minute;
        case 's':
            return time.second;
        default:
            return std::nullopt;
    }
}

// Calls `append` with the parts of the text, one after another.
template <class Append>
void applyPicture(const LocalTime& time, std::string_view picture, Append append) {
    const bool twelve = countsToTwelve(picture);
    while (!picture.empty()) {
        std::size_t length = runLength(picture);
        if (startsWithHalf(picture)) {
            length = kHalfOfDay.size();
            append(picture.substr(time.hour < 12 ? 0 : 3, 2));
        } else if (const auto field = fieldOf(time, lower(picture[0]), length, twelve)) {
            char digits[16];
            const std::string_view number(digits, std::to_chars(digits, digits + sizeof digits, *field).ptr);
            if (number.size() < length) append(std::string_view("0000").substr(0, length - number.size()));
            append(number);
        } else {
            append(picture.substr(0, length));
        }
        picture.remove_prefix(length);
    }
}

}  // namespace

DateFormat dateFormatOf(std::string_view locale) {
    for (const DateLocale& row : kDateLocales) {
        if (belongsTo(locale, row.name)) return {std::string(row.shortDate), std::string(row.longTime)};
    }
    return {};
}

LocalTime localTime(std::chrono::system_clock::time_point moment) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
    return localTime(std::int64_t{seconds.time_since_epoch().count()});
}

std::int64_t secondsNow() {
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(since).count();
}

// A moment whose year does not fit an int (a damaged time stamp) reads as the default LocalTime.
LocalTime localTime(std::int64_t secondsSinceEpoch) {
    const auto seconds = static_cast<std::time_t>(secondsSinceEpoch);
    std::tm fields{};
    if (localtime_r(&seconds, &fields) == nullptr) return {};
    return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday,
            fields.tm_hour,        fields.tm_min,     fields.tm_sec};
}

std::string formatDate(const LocalTime& time, std::string_view picture) {
    std::string out;
    applyPicture(time, picture, [&out](std::string_view part) { out += part; });
    return out;
}

std::size_t formatDate(const LocalTime& time, std::string_view picture, std::span<char> to) {
    std::size_t length = 0;
    applyPicture(time, picture,
                 [&](std::string_view part) { length += part.copy(to.data() + length, to.size() - length); });
    return length;
}

}  // namespace hl
