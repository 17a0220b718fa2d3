#include "base/date_format.h"

#include "support/environment.h"

namespace hl::test {
namespace {

using Pairs = std::vector<std::pair<const char*, const char*>>;

constexpr LocalTime kEvening = {2009, 3, 7, 21, 4, 5};

TEST(FormatDate, KnowsTheLettersOfAPictureAndCopiesTheRest) {
    const Pairs cases = {{"d.M.yy h:n:s ", "7.3.09 21:4:5 "},
                         {"DD.mm.YYYY HH:NN:SS", "07.03.2009 21:04:05"},
                         {"\u00A0ddd MMM y yyy yyyyy", "\u00A0ddd MMM y yyy yyyyy"},
                         {"M/d/yyyy h:nn:ss AM/PM", "3/7/2009 9:04:05 PM"},
                         {"am/pm hh A/P", "pm 09 A/P"}};
    for (const auto& [picture, text] : cases) EXPECT_EQ(formatDate(kEvening, picture), text) << picture;
}

TEST(FormatDate, CountsTheHoursOfAHalfDayFromTwelve) {
    const std::pair<int, const char*> cases[] = {{0, "12 AM"}, {11, "11 AM"}, {12, "12 PM"}, {13, "1 PM"}};
    for (const auto& [hour, text] : cases) EXPECT_EQ(formatDate({2000, 1, 1, hour, 0, 0}, "h AM/PM"), text);
}

TEST(DateFormatOf, GivesGeneralDateOfTheShippedLanguages) {
    const Pairs cases = {{"", "3/7/2009 9:04:05 PM"},      {"C.UTF-8", "3/7/2009 9:04:05 PM"},
                         {"fr_FR", "3/7/2009 9:04:05 PM"}, {"en_GB", "07/03/2009 21:04:05"},
                         {"de_CH", "07.03.2009 21:04:05"}, {"it_IT@x", "07/03/2009 21:04:05"},
                         {"it_CH", "07.03.2009 21:04:05"}, {"nl_NL", "07-03-2009 21:04:05"},
                         {"ru_RU", "07.03.2009 21:04:05"}, {"sv_SE", "2009-03-07 21:04:05"},
                         {"sv_FI", "07.03.2009 21.04.05"}};
    for (const auto& [locale, text] : cases)
        EXPECT_EQ(formatDate(kEvening, dateFormatOf(locale).general()), text) << locale;
}

std::string text(auto moment) {
    return formatDate(localTime(moment), "yyyy-MM-dd hh:nn:ss");
}

TEST(LocalTimes, FollowTheTimeZoneFarFromTheEpochAndDropTheFractionTowardsThePast) {
    const Environment zone({{"TZ", "CET-1CEST,M3.5.0,M10.5.0/3"}});
    EXPECT_EQ(text(std::int64_t{1'700'000'000}), "2023-11-14 23:13:20");
    EXPECT_EQ(text(std::int64_t{1'690'000'000}), "2023-07-22 06:26:40");
    EXPECT_EQ(text(std::int64_t{-11'644'473'600}), "1601-01-01 01:00:00");
    EXPECT_EQ(text(std::int64_t{4'294'967'296}), "2106-02-07 07:28:16");
    const std::chrono::system_clock::time_point epoch;
    EXPECT_EQ(text(epoch + std::chrono::milliseconds(1999)), "1970-01-01 01:00:01");
    EXPECT_EQ(text(epoch - std::chrono::milliseconds(1)), "1970-01-01 00:59:59");
}

TEST(LocalTimes, SurviveADamagedTimeStamp) {
    for (const std::int64_t bad : {INT64_MAX, INT64_MIN}) EXPECT_EQ(text(bad), "1970-01-01 00:00:00");
}

}  // namespace
}  // namespace hl::test
