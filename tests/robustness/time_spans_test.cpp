#include "robustness/time_spans.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::system_clock;

constexpr std::int64_t kDay = 86400;

struct Case {
    std::int64_t seconds;
    const char* german;
    const char* english;
};

TEST(TimeSpans, ReadInDaysAndAClock) {
    const Case cases[] = {
        {0, "0:00:00", "0:00:00"},
        {59, "0:00:59", "0:00:59"},
        {3725, "1:02:05", "1:02:05"},
        {kDay - 1, "23:59:59", "23:59:59"},
        {kDay, "1 Tag 0:00:00", "1 day 0:00:00"},
        {2 * kDay - 1, "1 Tag 23:59:59", "1 day 23:59:59"},
        {2 * kDay, "2 Tage 0:00:00", "2 days 0:00:00"},
        {364 * kDay, "364 Tage 0:00:00", "364 days 0:00:00"},
        {365 * kDay, "1 Jahr(e) 0 Tag(e) 0:00:00", "1year(s) 0 day(s) 0:00:00"},
        {733 * kDay + 61, "2 Jahr(e) 3 Tag(e) 0:01:01", "2year(s) 3 day(s) 0:01:01"},
    };
    const auto start = system_clock::time_point(seconds(1'700'000'000));
    for (const Case& c : cases) {
        EXPECT_EQ(GetDateFromDiff(start, start + seconds(c.seconds)), c.german);
        EXPECT_EQ(GetSystemUpTime(static_cast<std::uint64_t>(c.seconds)), c.english);
    }
}

TEST(TimeSpans, CountWholeSecondsOfTheClock) {
    const auto start = system_clock::time_point(seconds(1'700'000'000));
    EXPECT_EQ(GetDateFromDiff(start + milliseconds(900), start + milliseconds(1100)), "0:00:01");
    EXPECT_EQ(GetDateFromDiff(start + milliseconds(100), start + milliseconds(900)), "0:00:00");
}

TEST(TimeSpans, AreNoneWhenTheClockWasPutBack) {
    const auto start = system_clock::time_point(seconds(1'700'000'000));
    EXPECT_EQ(GetDateFromDiff(start, start - seconds(5)), "0:00:00");
}

TEST(TimeSpans, UseTheWordsTheyAreGiven) {
    const SpanWords dutch{.oneDay = "1 dag", .days = "%1 dagen", .years = "%2 dag(en), %1 jaar"};
    const auto start = system_clock::time_point(seconds(0));
    EXPECT_EQ(GetDateFromDiff(start, start + seconds(kDay), dutch), "1 dag 0:00:00");
    EXPECT_EQ(GetDateFromDiff(start, start + seconds(366 * kDay), dutch), "1 dag(en), 1 jaar 0:00:00");
}

}  // namespace
}  // namespace hl
