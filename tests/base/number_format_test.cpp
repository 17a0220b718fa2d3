#include "base/number_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace hl {
namespace {

const NumberFormat kEnglish = {",", "."};
const NumberFormat kGerman = {".", ","};

TEST(NumberFormatOf, KnowsTheShippedLanguagesAndReadsAllElseAsEnglish) {
    struct Case {
        const char* locale;
        const char* thousands;
        const char* decimal;
    };
    const Case cases[] = {
        {"", ",", "."},
        {"C", ",", "."},
        {"C.UTF-8", ",", "."},
        {"POSIX", ",", "."},
        {"en_US.UTF-8", ",", "."},
        {"en_GB", ",", "."},
        {"fr_FR.UTF-8", ",", "."},
        {"de", ".", ","},
        {"de_DE", ".", ","},
        {"de_DE.UTF-8", ".", ","},
        {"de_AT@euro", ".", ","},
        {"de.UTF-8", ".", ","},
        {"de_CH.UTF-8", "\u2019", "."},
        {"it_IT", ".", ","},
        {"it_CH", "\u2019", "."},
        {"nl_BE.UTF-8", ".", ","},
        {"ru_RU.UTF-8", "\u00A0", ","},
        {"sv_SE", "\u00A0", ","},
        {"den", ",", "."},
        {"svx_SE", ",", "."},
    };
    for (const Case& c : cases) {
        const NumberFormat format = numberFormatOf(c.locale);
        EXPECT_EQ(format.thousands, c.thousands) << c.locale;
        EXPECT_EQ(format.decimal, c.decimal) << c.locale;
    }
}

TEST(FormatNumber, WritesByThePicture) {
    struct Case {
        double value;
        Picture picture;
        const char* text;
    };
    const Case cases[] = {
        {0, {true, 0}, "0"},
        {0, {true, 2}, "0.00"},
        {-0.0, {true, 2}, "0.00"},
        {0.5, {true, 2}, "0.50"},
        {7, {true, 0}, "7"},
        {999, {true, 0}, "999"},
        {1000, {true, 0}, "1,000"},
        {999999, {true, 0}, "999,999"},
        {1234567, {true, 0}, "1,234,567"},
        {1234567, {false, 0}, "1234567"},
        {1234567.891, {true, 2}, "1,234,567.89"},
        {1234567.891, {false, 2}, "1234567.89"},
        {-1234.5, {true, 1}, "-1,234.5"},
        {-100, {true, 0}, "-100"},
        {9007199254740991.0, {true, 0}, "9,007,199,254,740,991"},
        {922337203685477.0, {true, 2}, "922,337,203,685,477.00"},
        {1e-300, {true, 2}, "0.00"},
        {5e-324, {true, 0}, "0"},
        {1e21, {true, 0}, "1,000,000,000,000,000,000,000"},
    };
    for (const Case& c : cases) EXPECT_EQ(formatNumber(c.value, c.picture, kEnglish), c.text) << c.value;
}

TEST(FormatNumber, RoundsHalvesAwayFromZeroAsTheyReadInDecimal) {
    struct Case {
        double value;
        int decimals;
        const char* text;
    };
    const Case cases[] = {
        {0.5, 0, "1"},         {1.5, 0, "2"},        {2.5, 0, "3"},       {-2.5, 0, "-3"},
        {0.49, 0, "0"},        {0.125, 2, "0.13"},   {0.375, 2, "0.38"},  {1.005, 2, "1.01"},
        {2.675, 2, "2.68"},    {-1.005, 2, "-1.01"}, {1.0049, 2, "1.00"}, {-0.004, 2, "0.00"},
        {-0.4, 0, "0"},        {0.995, 2, "1.00"},   {9.995, 2, "10.00"}, {999.5, 0, "1,000"},
        {99.996, 2, "100.00"}, {0.05, 1, "0.1"},     {0.005, 2, "0.01"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(formatNumber(c.value, {true, c.decimals}, kEnglish), c.text) << c.value;
}

TEST(FormatNumber, UsesTheSeparatorsOfTheLocale) {
    EXPECT_EQ(formatNumber(1234567.5, {true, 2}, kGerman), "1.234.567,50");
    EXPECT_EQ(formatNumber(1234567.5, {true, 2}, numberFormatOf("sv_SE")), "1\u00A0234\u00A0567,50");
    EXPECT_EQ(formatNumber(1234567.5, {false, 2}, kGerman), "1234567,50");
}

TEST(FormatNumber, IsEmptyForWhatIsNoNumber) {
    EXPECT_EQ(formatNumber(std::nan(""), {true, 2}, kEnglish), "");
    EXPECT_EQ(formatNumber(std::numeric_limits<double>::infinity(), {true, 2}, kEnglish), "");
}

TEST(FormatQuotient, DividesExactlyAndRoundsHalvesAwayFromZero) {
    struct Case {
        std::uint64_t bytes;
        std::int64_t divisor;
        int decimals;
        const char* text;
    };
    constexpr std::int64_t kGigabyte = 1'073'741'824;
    const Case cases[] = {
        {0, 1, 0, "0"},
        {0, 1024, 2, "0.00"},
        {1, 1024, 2, "0.00"},
        {5, 1024, 2, "0.00"},
        {6, 1024, 2, "0.01"},
        {128, 1024, 2, "0.13"},  // 0.125, a half
        {384, 1024, 2, "0.38"},  // 0.375, a half
        {511, 1024, 0, "0"},
        {512, 1024, 0, "1"},
        {1536, 1024, 0, "2"},
        {2560, 1024, 0, "3"},
        {1023, 1024, 2, "1.00"},
        {1048576, 1024, 2, "1,024.00"},
        {922'337'203'685'477, 1, 2, "922,337,203,685,477.00"},
        {922'337'203'685'477, kGigabyte, 2, "858,993.46"},
        {922'337'203'685'477, INT64_MAX, 2, "0.00"},
        {922'337'203'685'477, 922'337'203'685'478, 2, "1.00"},
        {3, 7, 2, "0.43"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(formatQuotient(SizeValue::fromBytes(c.bytes), c.divisor, {true, c.decimals}, kEnglish),
                  c.text)
            << c.bytes << " / " << c.divisor;
    }
}

TEST(FormatQuotient, AgreesWithWholeNumberArithmeticAroundEveryHalf) {
    // A hundredth of a gigabyte is no whole number of bytes: the first value that rounds up is worked out
    // here.
    constexpr std::int64_t kGigabyte = 1'073'741'824;
    for (std::int64_t hundredths = 1; hundredths < 500; ++hundredths) {
        const std::int64_t first = ((2 * hundredths - 1) * kGigabyte + 199) / 200;
        const auto text = [](std::int64_t bytes) {
            return formatQuotient(SizeValue::fromBytes(static_cast<std::uint64_t>(bytes)), kGigabyte,
                                  {true, 2}, kEnglish);
        };
        EXPECT_EQ(text(first), formatNumber(static_cast<double>(hundredths) / 100, {true, 2}, kEnglish));
        EXPECT_EQ(text(first - 1),
                  formatNumber(static_cast<double>(hundredths - 1) / 100, {true, 2}, kEnglish));
    }
}

TEST(FormatQuotient, KeepsTheSignOfADifference) {
    const SizeValue small = SizeValue::fromBytes(1);
    const SizeValue big = SizeValue::fromBytes(1537);
    EXPECT_EQ(formatQuotient(small - big, 1024, {true, 2}, kEnglish), "-1.50");
    EXPECT_EQ(formatQuotient(small - SizeValue::fromBytes(2), 1024, {true, 2}, kEnglish), "0.00");
}

TEST(RoundToHundredths, RoundsTiesToEven) {
    struct Case {
        double value;
        double rounded;
    };
    const Case cases[] = {
        {0, 0},          {0.125, 0.12}, {0.375, 0.38}, {0.625, 0.62}, {0.875, 0.88}, {-0.125, -0.12},
        {-0.375, -0.38}, {1.004, 1},    {1.006, 1.01}, {2.5, 2.5},    {100, 100},    {12.345678, 12.35},
        {12.345, 12.34}, {0.015, 0.02}, {0.004, 0},    {1e15, 1e15},
    };
    for (const Case& c : cases) EXPECT_EQ(roundToHundredths(c.value), c.rounded) << c.value;
}

}  // namespace
}  // namespace hl
