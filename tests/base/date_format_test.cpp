#include "base/date_format.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

namespace hl {
namespace {

constexpr LocalTime kEvening = {2009, 3, 7, 21, 4, 5};

// A time zone for one test.
class Zone {
  public:
    explicit Zone(const char* zone) {
        if (const char* old = getenv("TZ")) old_ = old;
        setenv("TZ", zone, 1);
        tzset();
    }
    ~Zone() {
        if (old_.empty()) {
            unsetenv("TZ");
        } else {
            setenv("TZ", old_.c_str(), 1);
        }
        tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;

  private:
    std::string old_;
};

std::string text(const LocalTime& time) {
    return formatDate(time, "yyyy-MM-dd hh:nn:ss");
}

TEST(FormatDate, KnowsTheLettersOfAPictureAndCopiesTheRest) {
    struct Case {
        const char* picture;
        const char* text;
    };
    const Case cases[] = {
        {"", ""},
        {"dd/MM/yyyy hh:nn:ss", "07/03/2009 21:04:05"},
        {"dd/MM/yyyy hh:nn:ss ", "07/03/2009 21:04:05 "},
        {"d.M.yy h:n:s", "7.3.09 21:4:5"},
        {"DD.mm.YYYY HH:NN:SS", "07.03.2009 21:04:05"},
        {"ddMMyyyy", "07032009"},
        {"ddd", "ddd"},
        {"MMM d", "MMM 7"},
        {"y yyy yyyyy", "y yyy yyyyy"},
        {"hh:mm", "21:03"},
        {"\u00A0dd\u00A0", "\u00A007\u00A0"},
        {"M/d/yyyy h:nn:ss AM/PM", "3/7/2009 9:04:05 PM"},
        {"h am/pm", "9 pm"},
        {"AM/PM hh", "PM 09"},
        {"A/P", "A/P"},
        {"AM/P", "A3/P"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(formatDate(kEvening, c.picture), c.text) << c.picture;
    }
}

TEST(FormatDate, CountsTheHoursOfAHalfDayFromTwelve) {
    const std::pair<int, const char*> cases[] = {{0, "12 AM"},  {1, "1 AM"},  {11, "11 AM"},
                                                 {12, "12 PM"}, {13, "1 PM"}, {23, "11 PM"}};
    for (const auto& [hour, expected] : cases) {
        EXPECT_EQ(formatDate({2000, 1, 1, hour, 0, 0}, "h AM/PM"), expected) << hour;
    }
}

TEST(DateFormatOf, GivesGeneralDateOfTheShippedLanguages) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "3/7/2009 9:04:05 PM"},
        {"C", "3/7/2009 9:04:05 PM"},
        {"POSIX", "3/7/2009 9:04:05 PM"},
        {"C.UTF-8", "3/7/2009 9:04:05 PM"},
        {"en_US.UTF-8", "3/7/2009 9:04:05 PM"},
        {"fr_FR.UTF-8", "3/7/2009 9:04:05 PM"},
        {"en_GB.UTF-8", "07/03/2009 21:04:05"},
        {"de_DE.UTF-8", "07.03.2009 21:04:05"},
        {"de_CH", "07.03.2009 21:04:05"},
        {"it_IT@euro", "07/03/2009 21:04:05"},
        {"it_CH", "07.03.2009 21:04:05"},
        {"nl_NL", "07-03-2009 21:04:05"},
        {"ru_RU.UTF-8", "07.03.2009 21:04:05"},
        {"sv_SE.UTF-8", "2009-03-07 21:04:05"},
        {"sv_FI.UTF-8", "07.03.2009 21.04.05"},
    };
    for (const auto& [locale, expected] : cases) {
        EXPECT_EQ(formatDate(kEvening, dateFormatOf(locale).general()), expected) << locale;
    }
}

TEST(LocalTime, FollowsTheTimeZoneAndItsSummerTime) {
    const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(text(localTime(std::int64_t{0})), "1970-01-01 01:00:00");
    EXPECT_EQ(text(localTime(std::int64_t{1'700'000'000})), "2023-11-14 23:13:20");
    EXPECT_EQ(text(localTime(std::int64_t{1'690'000'000})), "2023-07-22 06:26:40");
}

TEST(LocalTime, KnowsMomentsBeforeTheEpochAndFarFromIt) {
    const Zone zone("UTC0");
    EXPECT_EQ(text(localTime(std::int64_t{-1})), "1969-12-31 23:59:59");
    EXPECT_EQ(text(localTime(std::int64_t{-11'644'473'600})), "1601-01-01 00:00:00");
    EXPECT_EQ(text(localTime(std::int64_t{4'294'967'296})), "2106-02-07 06:28:16");
}

TEST(LocalTime, SurvivesADamagedTimeStamp) {
    EXPECT_EQ(text(localTime(INT64_MAX)), "1970-01-01 00:00:00");
    EXPECT_EQ(text(localTime(INT64_MIN)), "1970-01-01 00:00:00");
}

TEST(LocalTime, DropsTheFractionTowardsThePast) {
    const Zone zone("UTC0");
    using std::chrono::milliseconds;
    const std::chrono::system_clock::time_point epoch;
    EXPECT_EQ(text(localTime(epoch + milliseconds(1999))), "1970-01-01 00:00:01");
    EXPECT_EQ(text(localTime(epoch - milliseconds(1))), "1969-12-31 23:59:59");
}

}  // namespace
}  // namespace hl
