#include "base/size_text.h"

#include <gtest/gtest.h>

#include "base/text.h"

namespace hl {
namespace {

const NumberFormat kEnglish = {",", "."};
const NumberFormat kSwedish = {"\u00A0", ","};
constexpr std::uint64_t kTerabyte = 1'099'511'627'776;

SizeValue bytes(std::uint64_t count) {
    return SizeValue::fromBytes(count);
}

TEST(Units, BelongToTheModesThatHaveOne) {
    struct Case {
        int mode;
        std::int64_t divisor;
        const char* unit;
    };
    const Case cases[] = {{0, 1, "Bytes"},      {1, 1024, "KB"},
                          {2, 1'048'576, "MB"}, {3, 1'073'741'824, "GB"},
                          {4, 0, ""},           {5, 1'099'511'627'776, "TB"},
                          {6, 0, ""},           {-1, 0, ""}};
    for (const Case& c : cases) {
        EXPECT_EQ(divisorOf(c.mode), c.divisor) << c.mode;
        EXPECT_EQ(unitOf(c.mode), c.unit) << c.mode;
    }
}

TEST(FormatSizeForMode, WritesEachModeInItsUnit) {
    struct Case {
        std::uint64_t size;
        const char* text;
        int mode;
        bool withUnit;
        bool shortBytes;
    };
    const Case cases[] = {
        {0, "0 Bytes", 0, true, false},
        {0, "0", 0, false, false},
        {1234567, "1,234,567 Bytes", 0, true, false},
        {1234567, "1,234,567 BS", 0, true, true},
        {1234567, "1,234,567", 0, false, true},
        {1536, "1.50 KB", 1, true, true},
        {1536, "1.50", 1, false, false},
        {1'048'576, "1.00 MB", 2, true, false},
        {5 * kTerabyte, "5,120.00 GB", 3, true, false},
        {5 * kTerabyte, "5.00 TB", 5, true, false},
        {5 * kTerabyte, "5.00", 5, false, false},
        {1536, "", 6, true, false},
        {1536, "", -1, true, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FormatSizeForMode(c.mode, bytes(c.size), c.withUnit, c.shortBytes, kEnglish), c.text)
            << c.mode << " " << c.size;
    }
}

struct Step {
    std::uint64_t size;
    const char* inDynamicMode;
    const char* automatic;
};

const Step kSteps[] = {
    {0, "0 Bytes", "0 Bytes"},
    {999, "999 Bytes", "999 Bytes"},
    {1024, "1,024 Bytes", "1,024 Bytes"},
    {1025, "1.00 KB", "1.00 KB"},
    {1'048'576, "1,024.00 KB", "1,024.00 KB"},
    {1'048'577, "1.00 MB", "1.00 MB"},
    {1'047'527'424, "999.00 MB", "999.00 MB"},
    {1'047'527'425, "0.98 GB", "0.98 GB"},
    {1'073'741'824, "1.00 GB", "1.00 GB"},
    {kTerabyte, "1,024.00 GB", "1,024.00 GB"},
    {kTerabyte + 1, "1,024.00 GB", "1.00 TB"},
    {3 * kTerabyte, "3,072.00 GB", "3.00 TB"},
};

TEST(FormatSizeForMode, ChoosesTheUnitInDynamicModeWithoutTerabytes) {
    for (const Step& step : kSteps) {
        EXPECT_EQ(FormatSizeForMode(kModeDynamic, bytes(step.size), true, false, kEnglish),
                  step.inDynamicMode);
    }
}

TEST(FormatSizeForMode, AlwaysAppendsTheUnitInDynamicMode) {
    EXPECT_EQ(FormatSizeForMode(kModeDynamic, bytes(1025), false, false, kEnglish), "1.00 KB");
    EXPECT_EQ(FormatSizeForMode(kModeDynamic, bytes(1024), false, true, kEnglish), "1,024 BS");
}

TEST(FormatSizeAuto, ChoosesTheUnitUpToTerabytes) {
    for (const Step& step : kSteps)
        EXPECT_EQ(FormatSizeAuto(bytes(step.size), true, kEnglish), step.automatic);
}

TEST(FormatSizeAuto, LeavesTheUnitOutWhenAsked) {
    EXPECT_EQ(FormatSizeAuto(bytes(1024), false, kEnglish), "1,024");
    EXPECT_EQ(FormatSizeAuto(bytes(1'047'527'425), false, kEnglish), "0.98");
}

TEST(FormatViewSize, PadsToTheWidthOfTheMode) {
    struct Case {
        int mode;
        const char* text;
    };
    const Case cases[] = {
        {0, "      5,242,880"},
        {1, "         5,120.00"},
        {2, "         5.00"},
        {3, "     0.00"},
        {4, ""},
        {5, ""},
        {-1, ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(formatViewSize(c.mode, bytes(5'242'880), false, true, false, kEnglish), c.text) << c.mode;
    }
}

TEST(FormatViewSize, AppendsBytesOnlyWhenBothFlagsAskForIt) {
    struct Case {
        int mode;
        bool withUnit;
        bool withBytesUnit;
        const char* text;
    };
    const Case cases[] = {
        {0, true, true, "2,048 Bytes"}, {0, true, false, "2,048"},   {0, false, true, "2,048"},
        {1, true, false, "2.00 KB"},    {1, true, true, "2.00 KB"},  {1, false, true, "2.00"},
        {2, true, false, "0.00 MB"},    {3, true, false, "0.00 GB"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(formatViewSize(c.mode, bytes(2048), c.withUnit, false, c.withBytesUnit, kEnglish), c.text);
    }
}

TEST(FormatViewSize, IsNeverCutAndCountsItsUnitIntoTheWidth) {
    EXPECT_EQ(formatViewSize(3, bytes(1'073'741'824), true, true, false, kEnglish), "  1.00 GB");
    EXPECT_EQ(formatViewSize(3, bytes(900'000'000'000'000), false, true, false, kEnglish), "838,190.32");
}

TEST(FileSizeWithSpacer, WritesEachModeWithOrWithoutDecimals) {
    struct Case {
        int mode;
        std::uint64_t size;
        std::size_t width;
        bool withUnit;
        int decimals;
        const char* text;
    };
    const Case cases[] = {
        {0, 1234567, 12, false, 1, "   1,234,567"},
        {0, 1234567, 0, true, 0, "1,234,567 Bytes"},
        {1, 1536, 8, false, 1, "    1.50"},
        {1, 1536, 8, false, 0, "       2"},
        {1, 1536, 8, false, 2, "       2"},
        {1, 1536, 8, false, -1, "       2"},
        {2, 1'048'576, 0, true, 1, "1.00 MB"},
        {3, 1'073'741'824, 0, true, 0, "1 GB"},
        {5, 3 * kTerabyte, 10, true, 1, "   3.00 TB"},
        {4, 1536, 3, true, 1, "   "},
        {7, 1536, 0, true, 1, ""},
        {0, 1234567, 4, false, 0, "1,234,567"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(xFormatFileSizeWithSpacer(c.mode, bytes(c.size), c.width, c.withUnit, c.decimals, kEnglish),
                  c.text)
            << c.mode << " " << c.size << " " << c.width;
    }
}

TEST(FileSizeWithSpacer, CountsCharactersAndNotBytes) {
    const std::string text = xFormatFileSizeWithSpacer(0, bytes(1234567), 12, false, 0, kSwedish);
    EXPECT_EQ(text, "   1\u00A0234\u00A0567");
    EXPECT_EQ(characterCount(text), 12U);
}

TEST(FileAttribute, WritesItsLettersInAFixedOrder) {
    struct Case {
        std::uint32_t bits;
        const char* letters;
    };
    const Case cases[] = {
        {0, ""},          {0x10, ""},   {0x20, "A"},   {0x4, "S"},
        {0x2, "H"},       {0x1, "R"},   {0x4000, "E"}, {0x400, "L"},
        {0x100, "T"},     {0x800, "C"}, {0x1000, "O"}, {0x2000, "I"},
        {0x200, "P"},     {0x80, ""},   {0x23, "AHR"}, {0x7FFFFFFF, "ASHRELTCOIP"},
        {0xFFFFFFFF, ""},
    };
    for (const Case& c : cases) EXPECT_EQ(xFormatFileAttribute(c.bits, false, "x"), c.letters) << c.bits;
}

TEST(FileAttribute, BracketsOnlyWhatHasALetter) {
    EXPECT_EQ(xFormatFileAttribute(0x23, true, " "), " <AHR>");
    EXPECT_EQ(xFormatFileAttribute(0x23, true, ""), "<AHR>");
    EXPECT_EQ(xFormatFileAttribute(0, true, " "), "");
    EXPECT_EQ(xFormatFileAttribute(0x10, true, " "), "");
    EXPECT_EQ(xFormatFileAttribute(0xFFFFFFFF, true, " "), "");
}

}  // namespace
}  // namespace hl
