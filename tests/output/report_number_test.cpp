#include "output/report_number.h"

#include <gtest/gtest.h>

#include <random>

#include "base/size_text.h"
#include "output/report_lines.h"

namespace hl {
namespace {

std::string appended(const ReportNumber& number, std::int64_t value) {
    std::string out = "before";
    number.append(out, value);
    return out.substr(6);
}

/// Compares with the slow routine at the values where a text changes, and at values of every size.
void expectSame(const ReportNumber& number, const std::function<std::string(SizeValue)>& slow) {
    std::vector<std::int64_t> values = {0, 9, 10, 999, 1000, SizeValue::kMaxBytes};
    for (const int mode : {1, 2, 3}) {
        const std::int64_t unit = divisorOf(mode);
        for (const std::int64_t base : {unit / 200, unit / 2, unit * 999, unit * 1000 - unit / 200})
            for (const std::int64_t around : {-1, 0, 1}) values.push_back(base + around);
    }
    std::mt19937_64 random(7);  // A number of bits, then the number.
    for (int i = 0; i < 2000; ++i)
        values.push_back(static_cast<std::int64_t>(random() >> (15 + random() % 49)));
    std::erase_if(values, [](std::int64_t value) { return value > SizeValue::kMaxBytes; });
    for (const std::int64_t value : values)
        ASSERT_EQ(appended(number, value), slow(SizeValue::fromBytes(static_cast<std::uint64_t>(value))));
}

TEST(ReportNumber, AreTheTextsOfTheSlowRoutinesForEveryModeAndLocale) {
    for (const char* locale : {"de_DE", "en_US", "ru_RU", "de_CH"}) {
        const NumberFormat format = numberFormatOf(locale);
        for (int mode = 0; mode <= 6; ++mode) {
            for (const int decimals : {0, 1}) {
                SCOPED_TRACE(locale + std::to_string(mode) + std::to_string(decimals));
                const int places = decimals == 1 && mode != 0 ? 2 : 0;
                expectSame(ReportNumber(divisorOf(mode), {.grouped = true, .decimals = places}, format, 12),
                           [&](SizeValue size) {
                               return xFormatFileSizeWithSpacer(mode, size, 12, false, decimals, format);
                           });
                if (divisorOf(mode) == 0) continue;
                // In CSV they are the quotients with no separator of thousands.
                expectSame(savedSize(mode, decimals, format), [&](SizeValue size) {
                    return formatQuotient(size, divisorOf(mode), {.grouped = false, .decimals = places},
                                          format);
                });
            }
        }
    }
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
