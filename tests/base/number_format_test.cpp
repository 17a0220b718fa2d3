#include "base/number_format.h"

namespace hl {
namespace {

const NumberFormat kEnglish = {",", "."};
constexpr std::int64_t kMost = SizeValue::kMaxBytes;

TEST(NumberFormatOf, KnowsTheShippedLanguagesAndReadsAllElseAsEnglish) {
    const std::pair<std::string, std::vector<const char*>> cases[] = {
        {",.", {"", "C.UTF-8", "en_GB", "fr_FR", "den", "svx_SE"}},
        {".,", {"de", "de_AT@euro", "it_IT", "nl_BE"}},
        {"\u2019.", {"de_CH.UTF-8", "it_CH"}},
        {"\u00A0,", {"ru_RU.UTF-8", "sv_SE"}}};
    for (const auto& [separators, locales] : cases)
        for (const std::string locale : locales)
            EXPECT_EQ(numberFormatOf(locale).thousands + numberFormatOf(locale).decimal, separators);
}

TEST(FormatNumber, WritesByThePictureAndTheLocale) {
    const std::tuple<double, Picture, const char*> cases[] = {
        {-0.0, {true, 2}, "0.00"},        {0.5, {true, 2}, "0.50"},         {999, {true, 0}, "999"},
        {1000, {true, 0}, "1,000"},       {1234567, {false, 0}, "1234567"}, {1234.567, {true, 2}, "1,234.57"},
        {-1234.5, {true, 1}, "-1,234.5"}, {-100, {true, 0}, "-100"},        {5e-324, {true, 0}, "0"},
        {std::nan(""), {true, 2}, ""},    {HUGE_VAL, {true, 2}, ""}};
    for (const auto& [value, picture, text] : cases)
        EXPECT_EQ(formatNumber(value, picture, kEnglish), text) << value;
    EXPECT_EQ(formatNumber(922337203685477.0, {true, 2}, kEnglish), "922,337,203,685,477.00");
    EXPECT_EQ(formatNumber(1234567.5, {true, 2}, numberFormatOf("sv_SE")), "1\u00A0234\u00A0567,50");
    EXPECT_EQ(formatNumber(1234567.5, {false, 2}, {".", ","}), "1234567,50");
}

TEST(FormatNumber, RoundsHalvesAwayFromZeroAsTheyReadInDecimal) {
    const std::tuple<double, int, const char*> cases[] = {
        {0.5, 0, "1"},       {2.5, 0, "3"},       {-2.5, 0, "-3"},     {0.49, 0, "0"},
        {0.125, 2, "0.13"},  {1.005, 2, "1.01"},  {2.675, 2, "2.68"},  {-1.005, 2, "-1.01"},
        {1.0049, 2, "1.00"}, {-0.004, 2, "0.00"}, {9.995, 2, "10.00"}, {999.5, 0, "1,000"},
        {0.05, 1, "0.1"},    {0.005, 2, "0.01"}};
    for (const auto& [value, decimals, text] : cases)
        EXPECT_EQ(formatNumber(value, {true, decimals}, kEnglish), text) << value;
}

TEST(FormatQuotient, DividesExactlyAndRoundsHalvesAwayFromZero) {
    const std::tuple<std::uint64_t, std::int64_t, int, const char*> cases[] = {
        {5, 1024, 2, "0.00"},          {6, 1024, 2, "0.01"},         {128, 1024, 2, "0.13"},
        {384, 1024, 2, "0.38"},        {511, 1024, 0, "0"},          {512, 1024, 0, "1"},
        {2560, 1024, 0, "3"},          {1023, 1024, 2, "1.00"},      {300, 700, 2, "0.43"},
        {kMost, INT64_MAX, 2, "0.00"}, {kMost, kMost + 1, 2, "1.00"}};
    for (const auto& [size, divisor, decimals, text] : cases)
        EXPECT_EQ(formatQuotient(SizeValue::fromBytes(size), divisor, {true, decimals}, kEnglish), text)
            << size;
    EXPECT_EQ(formatQuotient(SizeValue::fromBytes(kMost), 1, {true, 0}, kEnglish), "922,337,203,685,477");
    EXPECT_EQ(formatQuotient(SizeValue() - SizeValue::fromBytes(1536), 1024, {true, 2}, kEnglish), "-1.50");
    EXPECT_EQ(formatQuotient(SizeValue() - SizeValue::fromBytes(1), 1024, {true, 2}, kEnglish), "0.00");
}

}  // namespace
}  // namespace hl
