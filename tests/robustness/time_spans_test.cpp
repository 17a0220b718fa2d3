#include "robustness/time_spans.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

using std::chrono::seconds;

constexpr std::int64_t kDay = 86400;
constexpr std::chrono::system_clock::time_point kStart(seconds(1'700'000'000));

TEST(TimeSpans, ReadInDaysAndAClock) {
    const std::tuple<std::int64_t, const char*, const char*> cases[] = {
        {kDay - 1, "23:59:59", "23:59:59"},
        {kDay, "1 Tag 0:00:00", "1 day 0:00:00"},
        {365 * kDay - 1, "364 Tage 23:59:59", "364 days 23:59:59"},
        {733 * kDay + 3725, "2 Jahr(e) 3 Tag(e) 1:02:05", "2year(s) 3 day(s) 1:02:05"}};
    for (const auto& [length, german, english] : cases) {
        EXPECT_EQ(GetDateFromDiff(kStart, kStart + seconds(length)), german);
        EXPECT_EQ(GetSystemUpTime(static_cast<std::uint64_t>(length)), english);
    }
    EXPECT_EQ(GetDateFromDiff(kStart, kStart - seconds(5)), "0:00:00") << "the clock was put back";
    const SpanWords dutch{.oneDay = "1 dag", .days = "%1 dagen", .years = "%2 dag(en), %1 jaar"};
    EXPECT_EQ(GetDateFromDiff(kStart, kStart + seconds(365 * kDay), dutch), "0 dag(en), 1 jaar 0:00:00");
}

}  // namespace
}  // namespace hl
