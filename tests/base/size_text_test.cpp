#include "base/size_text.h"

#include "base/size_value.h"

namespace hl {
namespace {

const NumberFormat kEnglishText = {",", "."};
constexpr std::uint64_t kMB = 1'048'576, kGB = 1'073'741'824, kTB = 1'099'511'627'776;

SizeValue bytes(std::uint64_t count) {
    return SizeValue::fromBytes(count);
}

TEST(FormatSizeForMode, WritesEachModeInItsUnit) {
    const std::tuple<std::uint64_t, int, bool, bool, const char*> cases[] = {
        {0, 0, true, false, "0 Bytes"},     {5120, 0, true, true, "5,120 BS"},
        {5120, 0, false, true, "5,120"},    {1536, 1, true, true, "1.50 KB"},
        {1536, 1, false, false, "1.50"},    {kMB, 2, true, false, "1.00 MB"},
        {kGB, 3, true, false, "1.00 GB"},   {5 * kTB, 5, true, false, "5.00 TB"},
        {1536, 6, true, false, "1.50 KB"},  {1536, 6, false, false, "1,536"},
        {1536, 7, true, false, ""},         {1536, -1, true, false, ""},
        {1025, 4, false, false, "1.00 KB"}, {1024, 4, false, true, "1,024 BS"}};
    for (const auto& [size, mode, withUnit, shortBytes, text] : cases)
        EXPECT_EQ(FormatSizeForMode(mode, bytes(size), withUnit, shortBytes, kEnglishText), text);
}

TEST(FormatSizeAuto, ChoosesTheUnitAsTheDynamicModeAndTerabytesToo) {
    const std::pair<std::uint64_t, const char*> cases[] = {
        {1024, "1,024 Bytes"},    {1025, "1.00 KB"},          {kMB, "1,024.00 KB"}, {kMB + 1, "1.00 MB"},
        {999 * kMB, "999.00 MB"}, {999 * kMB + 1, "0.98 GB"}, {kGB, "1.00 GB"},     {kTB, "1,024.00 GB"}};
    for (const auto& [size, text] : cases) {
        EXPECT_EQ(FormatSizeForMode(kModeDynamic, bytes(size), true, false, kEnglishText), text);
        EXPECT_EQ(FormatSizeAuto(bytes(size), true, kEnglishText), text);
    }
    EXPECT_EQ(FormatSizeForMode(kModeDynamic, bytes(kTB + 1), true, false, kEnglishText), "1,024.00 GB");
    EXPECT_EQ(FormatSizeAuto(bytes(kTB + 1), true, kEnglishText), "1.00 TB");
    EXPECT_EQ(FormatSizeAuto(bytes(1024), false, kEnglishText), "1,024");
    EXPECT_EQ(FormatSizeAuto(bytes(1536), true, kEnglishText, 0), "2 KB");
}

TEST(FileSizeWithSpacer, PadsToTheWidthAndNeverCuts) {
    const std::tuple<int, std::size_t, const char*> cases[] = {{-1, 0, ""},
                                                               {0, 15, "      5,242,880"},
                                                               {1, 17, "         5,120.00"},
                                                               {2, 13, "         5.00"},
                                                               {3, 9, "     0.00"},
                                                               {4, 0, ""},
                                                               {5, 9, "     0.00"}};
    for (const auto& [mode, width, text] : cases)
        EXPECT_EQ(xFormatFileSizeWithSpacer(mode, bytes(5'242'880), width, false, 1, kEnglishText), text);
    EXPECT_EQ(xFormatFileSizeWithSpacer(3, bytes(kGB), 9, true, 1, kEnglishText), "  1.00 GB");
    EXPECT_EQ(xFormatFileSizeWithSpacer(3, bytes(900'000'000'000'000), 9, false, 1, kEnglishText),
              "838,190.32");
}

TEST(FileSizeWithSpacer, PadsInCharactersEachModeWithOrWithoutDecimals) {
    const std::tuple<int, std::uint64_t, std::size_t, bool, int, const char*> cases[] = {
        {0, 12345, 8, false, 1, "  12,345"}, {0, 12, 0, true, 0, "12 Bytes"},
        {0, 12345, 4, false, 0, "12,345"},   {1, 1536, 8, false, 1, "    1.50"},
        {1, 1536, 8, false, 0, "       2"},  {1, 1536, 8, false, 2, "       2"},
        {3, kGB, 0, true, 0, "1 GB"},        {5, kTB, 9, true, 1, "  1.00 TB"},
        {4, 1536, 3, true, 1, "   "},        {7, 1536, 0, true, 1, ""}};
    for (const auto& [mode, size, width, withUnit, decimals, text] : cases)
        EXPECT_EQ(xFormatFileSizeWithSpacer(mode, bytes(size), width, withUnit, decimals, kEnglishText),
                  text);
    EXPECT_EQ(xFormatFileSizeWithSpacer(0, bytes(1234567), 12, false, 0, {"\u00A0", ","}),
              "   1\u00A0234\u00A0567");
}

TEST(FileAttribute, WritesItsLettersInAFixedOrderAndBracketsOnlyThem) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {0, ""},      {0x10, ""},   {0x20, "A"},   {0x4, "S"},
        {0x2, "H"},   {0x1, "R"},   {0x4000, "E"}, {0x400, "L"},
        {0x100, "T"}, {0x800, "C"}, {0x1000, "O"}, {0x2000, "I"},
        {0x200, "P"}, {0x80, ""},   {0x23, "AHR"}, {~0U >> 1, "ASHRELTCOIP"},
        {~0U, ""}};
    for (const auto& [bits, letters] : cases) EXPECT_EQ(xFormatFileAttribute(bits, false, "x"), letters);
    EXPECT_EQ(xFormatFileAttribute(0x23, true, "x"), "x<AHR>");
    EXPECT_EQ(xFormatFileAttribute(0x10, true, "x"), "");
}

constexpr std::uint64_t kLargest = 922'337'203'685'477;

TEST(SizeValue, RaisesAFaultWhereASumOrASizeLeavesTheRange) {
    const SizeValue largest = SizeValue::fromBytes(kLargest);
    const SizeValue one = SizeValue::fromBytes(1);
    EXPECT_THROW(SizeValue::fromBytes(kLargest + 1), Fault);
    EXPECT_THROW(SizeValue::fromBytes(UINT64_MAX), Fault);
    EXPECT_THROW(largest + one, Fault);
    EXPECT_THROW(SizeValue() - largest - one, Fault);
    EXPECT_EQ(largest - one + one, largest);
    EXPECT_LT(SizeValue() - one, SizeValue());
}

TEST(AddCount, RaisesAFaultBeyondThirtyTwoBits) {
    EXPECT_EQ(addCount(INT32_MAX - 1, 1), INT32_MAX);
    EXPECT_THROW(addCount(INT32_MAX, 1), Fault);
}

}  // namespace
}  // namespace hl
