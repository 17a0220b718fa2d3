#include "output/report_number.h"

#include <gtest/gtest.h>

#include <random>

#include "base/size_text.h"
#include "output/report_lines.h"

namespace hl {
namespace {

std::vector<std::int64_t> interestingValues() {
    std::vector<std::int64_t> values = {
        0, 1, 9, 10, 999, 1000, 1001, SizeValue::kMaxBytes, SizeValue::kMaxBytes - 1};
    for (const int mode : {1, 2, 3, 5}) {
        const std::int64_t unit = divisorOf(mode);
        for (const std::int64_t base : {unit / 200, unit / 2, unit, unit * 999, unit * 1000 - unit / 200})
            for (const std::int64_t around : {-1, 0, 1}) values.push_back(base + around);
    }
    std::mt19937_64 random(7);  // Of every size: a number of bits, then the number.
    for (int i = 0; i < 2000; ++i)
        values.push_back(static_cast<std::int64_t>(random() >> (15 + random() % 49)));
    return values;
}

std::string appended(const ReportNumber& number, std::int64_t value) {
    std::string out = "before";
    number.append(out, value);
    return out.substr(6);
}

TEST(ReportNumber, AreTheTextsOfTheSlowRoutinesForEveryModeAndLocale) {
    for (const char* locale : {"de_DE", "en_US", "ru_RU", "de_CH"}) {
        const NumberFormat format = numberFormatOf(locale);
        for (int mode = 0; mode <= 6; ++mode) {
            for (const int decimals : {0, 1}) {
                const Picture picture{.grouped = true, .decimals = decimals == 1 && mode != 0 ? 2 : 0};
                const ReportNumber number(divisorOf(mode), picture, format, 12);
                for (const std::int64_t value : interestingValues()) {
                    if (value > SizeValue::kMaxBytes) continue;
                    const SizeValue size = SizeValue::fromBytes(static_cast<std::uint64_t>(value));
                    ASSERT_EQ(appended(number, value),
                              xFormatFileSizeWithSpacer(mode, size, 12, false, decimals, format))
                        << locale << " mode " << mode << " decimals " << decimals << " value " << value;
                }
            }
        }
    }
}

TEST(ReportNumber, InCsvAreTheQuotientsWithNoSeparatorOfThousands) {
    const NumberFormat format = numberFormatOf("de_DE");
    for (const int mode : {0, 1, 2, 3, 5}) {
        for (const int decimals : {0, 1, 2}) {
            const ReportNumber number = savedSize(mode, decimals, format);
            const Picture picture{.grouped = false, .decimals = decimals == 1 && mode != 0 ? 2 : 0};
            for (const std::int64_t value : interestingValues()) {
                if (value > SizeValue::kMaxBytes) continue;
                const SizeValue size = SizeValue::fromBytes(static_cast<std::uint64_t>(value));
                ASSERT_EQ(appended(number, value), formatQuotient(size, divisorOf(mode), picture, format))
                    << "mode " << mode << " decimals " << decimals << " value " << value;
            }
        }
    }
    EXPECT_EQ(appended(savedSize(kModeDynamic, 1, format), 5), "");
}

TEST(ReportNumber, HasASignBelowZeroUnlessItIsRoundedToZero) {
    const NumberFormat format;
    const ReportNumber number(1024, {.grouped = true, .decimals = 2}, format, 8);
    EXPECT_EQ(appended(number, -1536), "   -1.50");
    EXPECT_EQ(appended(number, -1), "    0.00");
    EXPECT_EQ(appended(number, -1024LL * 1234567), "-1,234,567.00");
}

}  // namespace
}  // namespace hl
