#include "mainwindow/run_progress.h"

#include "support/test_texts.h"

namespace hl::test {
namespace {

struct RunProgressTest : testing::Test {
    TestTexts english{"en_US.UTF-8"};
    NumberFormat numbers;
    RunProgress progress;

    std::string running(std::uint64_t tick) const { return progress.running(tick, english.texts, numbers); }
    std::string ended(std::uint64_t tick, bool stopped) const {
        return progress.ended(tick, stopped, english.texts, numbers);
    }
};

TEST_F(RunProgressTest, CountsAllSourcesOfTheRunAndItsSeconds) {
    progress.begin(1000);
    progress.beginSource(1000);
    progress.found({412330, 5, 3.0 * (1 << 30)}, 6000);
    EXPECT_EQ(running(7999), "412,330 files, 3.00 GB, 6 s");
    progress.endSource({412331, 5, 3.0 * (1 << 30)});
    progress.beginSource(8000);
    progress.found({9, 1, 0}, 8100);
    EXPECT_EQ(running(8100), "412,340 files, 3.00 GB, 7 s");
    progress.endSource({10, 1, 0});
    EXPECT_EQ(ended(9260, false), "OK. 412,341 files in 8.3 s");
    EXPECT_EQ(ended(9260, true), "Stopped. 412,341 files in 8.3 s");
    progress.begin(20000);
    EXPECT_EQ(ended(20040, false), "OK. 0 files in 0.0 s") << "another run begins anew";
}

TEST_F(RunProgressTest, APartOfADriveNeverFallsAndIsNeverTheWhole) {
    const std::tuple<std::uint64_t, std::uint64_t, std::vector<std::pair<ScanCounts, int>>> cases[] = {
        {1000, 500, {{{100, 99, 0}, 19}, {{99, 99, 0}, 19}, {{600, 500, 0}, 99}, {{1000, 1000, 0}, 99}}},
        {0, 500, {{{1, 1, 250}, 50}, {{9, 9, 900}, 99}}},
    };
    for (const auto& [entries, bytes, steps] : cases) {
        progress.begin(0);
        progress.beginSource(0);
        EXPECT_EQ(progress.percent(), std::nullopt);
        progress.expect(entries, bytes);
        for (const auto& [counts, percent] : steps) {
            progress.found(counts, 100);
            EXPECT_EQ(progress.percent(), percent);
        }
    }
    progress.beginSource(200);
    EXPECT_EQ(progress.percent(), std::nullopt) << "the next source is no drive";
}

TEST_F(RunProgressTest, TheTimeLeftIsToldWhenTwoEstimatesAgree) {
    progress.begin(0);
    progress.beginSource(0);
    progress.expect(1000, 0);
    progress.found({100, 0, 0}, 4000);  // 36 s would be left.
    EXPECT_EQ(progress.secondsLeft(4000), std::nullopt) << "too early";
    progress.found({200, 0, 0}, 5000);  // 20 s.
    progress.found({300, 0, 0}, 5900);
    EXPECT_EQ(progress.secondsLeft(5900), std::nullopt) << "there is no other estimate yet";
    progress.found({400, 0, 0}, 6000);  // 9 s.
    EXPECT_EQ(progress.secondsLeft(6000), std::nullopt) << "they differ by more than a third";
    progress.found({450, 0, 0}, 7000);  // 8.6 s.
    EXPECT_EQ(progress.secondsLeft(7000), 9U);
    EXPECT_EQ(progress.secondsLeft(9000), 7U) << "it runs on between two estimates";
    EXPECT_EQ(running(7000), "450 files, 0 Bytes, 7 s, 45 %, about 9 s left");
}

}  // namespace
}  // namespace hl::test
