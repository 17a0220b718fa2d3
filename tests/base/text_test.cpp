#include "base/text.h"

#include <gtest/gtest.h>

#include <array>

namespace hl {
namespace {

struct Pair {
    std::string_view from;
    std::string_view to;
};

TEST(Trim, TakesOffOnlyItsOwnBlanks) {
    const Pair blanks[] = {{"", ""},           {"   ", ""}, {" a b ", "a b"},
                           {"\ta\t", "\ta\t"}, {"a", "a"},  {"\u00A0", "\u00A0"}};
    for (const auto& [from, to] : blanks) EXPECT_EQ(trimBlanks(from), to) << from;
    const Pair white[] = {{"", ""}, {" \t\r\n", ""}, {"\r\n a\tb \t", "a\tb"}, {"\va", "\va"}};
    for (const auto& [from, to] : white) EXPECT_EQ(trimWhite(from), to) << from;
}

TEST(Case, FoldsTheLettersOfTheLanguagesWeMeet) {
    const Pair cases[] = {
        {"", ""},
        {"AZ @[`{", "az @[`{"},
        {"ÀÖØÞ", "àöøþ"},
        {"ŸĀŽŁŃŐ", "ÿāžłńő"},
        {"ȘȚ", "șț"},
        {"ƠƯẠỸ", "ơưạỹ"},
        {"Ə", "ə"},
        {"ΑΣΩΪ", "ασωϊ"},
        {"ΆΈΉΊΌΎΏ", "άέήίόύώ"},
        {"АЯЁЎЏѢ", "аяёўџѣ"},
        {"ҐӀӁӘ", "ґӏӂә"},
    };
    for (const auto& [upper, lower] : cases) {
        EXPECT_EQ(lowerCase(upper), lower);
        EXPECT_EQ(upperCase(lower), upper);
        EXPECT_EQ(compareFolded(upper, lower), 0) << lower;
    }
    EXPECT_EQ(lowerCase("ẞ"), "ß");
}

TEST(Case, LeavesWhatHasNoOtherCase) {
    for (const std::string_view text : {"×÷", "ß", "ı", "İ", "ĸ", "ŉ", "ς", "漢字", "😀", "1_-."}) {
        EXPECT_EQ(lowerCase(text), text);
        EXPECT_EQ(upperCase(text), text);
    }
}

TEST(Case, KeepsBytesThatAreNoText) {
    EXPECT_EQ(lowerCase("A\xFF\xC3Z\x80"), "a\xFF\xC3z\x80");
    EXPECT_EQ(upperCase("a\xFF\xC3z\x80"), "A\xFF\xC3Z\x80");
    EXPECT_EQ(lowerCase(std::string_view("A\0B", 3)), std::string_view("a\0b", 3));
}

TEST(Case, IsTheSameAfterAWayThereAndBackForEveryCharacter) {
    for (char32_t c = 0; c < 0x110000; ++c) {
        if (c == 0xD800) c = 0xE000;
        std::string text;
        appendUtf8(text, c);
        const std::string lower = lowerCase(text);
        ASSERT_EQ(lowerCase(lower), lower) << std::hex << static_cast<unsigned>(c);
        ASSERT_EQ(lowerCase(upperCase(text)), lower) << std::hex << static_cast<unsigned>(c);
    }
}

TEST(CompareFolded, OrdersAsTheFoldedTextsDo) {
    // In order; each is below all behind it.
    const std::string_view order[] = {"",  "A", "a ", "aa",     "AB", "b",    "ba",   "É",
                                      "ž", "Α", "Я",  "\u4E00", "😀",  "\x80", "\xFF", "\xFF\x61"};
    for (std::size_t i = 0; i < std::size(order); ++i) {
        for (std::size_t j = 0; j < std::size(order); ++j) {
            const int expected = i < j ? -1 : i > j ? 1 : 0;
            EXPECT_EQ(compareFolded(order[i], order[j]), expected) << order[i] << " : " << order[j];
        }
    }
}

TEST(CompareFolded, NeverTakesAStrayByteForACharacter) {
    EXPECT_NE(compareFolded("\xE9", "\u00E9"), 0);
    EXPECT_NE(compareFolded("\xC9", "\xE9"), 0);
    EXPECT_NE(compareFolded("\xC3", "\u00C3"), 0);
    EXPECT_EQ(compareFolded("A\xE9", "a\xE9"), 0);
}

TEST(ContainsFolded, FindsAPartWithoutRegardToCase) {
    EXPECT_TRUE(containsFolded("Größe", "GRÖ"));
    EXPECT_TRUE(containsFolded("abc", ""));
    EXPECT_TRUE(containsFolded("", ""));
    EXPECT_FALSE(containsFolded("abc", "abcd"));
    EXPECT_FALSE(containsFolded("", "a"));
}

TEST(ParseInteger, TakesAWholeNumberAndNothingElse) {
    const std::pair<std::string_view, std::int64_t> good[] = {
        {"0", 0},
        {"007", 7},
        {" 42 ", 42},
        {"-5", -5},
        {"+5", 5},
        {"-0", 0},
        {"9223372036854775807", INT64_MAX},
        {"-9223372036854775808", INT64_MIN},
    };
    for (const auto& [text, value] : good) EXPECT_EQ(parseInteger(text), value) << text;
    for (const std::string_view text : {"", " ", "-", "+", "+-5", "--5", "++5", "- 5", "1 2", "5a", "0x10",
                                        "1.0", "1e3", "\t5", "9223372036854775808", "-9223372036854775809"}) {
        EXPECT_EQ(parseInteger(text), std::nullopt) << text;
    }
}

TEST(ParseNumber, TakesADecimalFractionAndNothingElse) {
    const std::pair<std::string_view, double> good[] = {
        {"0", 0},  {"1.5", 1.5}, {" -2.25 ", -2.25},
        {"+3", 3}, {"10", 10},   {"922337203685477", 922337203685477.0},
    };
    for (const auto& [text, value] : good) EXPECT_EQ(parseNumber(text), value) << text;
    for (const std::string_view text : {"", "-", "+", ".", "+-1", "--1", "1,5", "1e3", "1.2.3", "inf", "-inf",
                                        "nan", "infinity", "NAN(1)", "0x1p3", "1 2", "1.5a"}) {
        EXPECT_EQ(parseNumber(text), std::nullopt) << text;
    }
    EXPECT_EQ(parseNumber(std::string(400, '9')), std::nullopt);
}

TEST(ReplaceAll, ReplacesFromLeftToRightAndDoesNotSearchItsOwnText) {
    EXPECT_EQ(replaceAll("aaa", "a", "aa"), "aaaaaa");
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replaceAll("%1 and %1", "%1", "x"), "x and x");
    EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
    EXPECT_EQ(replaceAll("", "a", "x"), "");
    EXPECT_EQ(replaceAll("abc", "abc", ""), "");
}

TEST(Utf8, ReadsTheFirstAndLastCodePointOfEachLength) {
    const std::pair<std::string_view, char32_t> cases[] = {
        {std::string_view("\0", 1), 0},
        {"\x7F", 0x7F},
        {"\xC2\x80", 0x80},
        {"\xDF\xBF", 0x7FF},
        {"\xE0\xA0\x80", 0x800},
        {"\xED\x9F\xBF", 0xD7FF},
        {"\xEE\x80\x80", 0xE000},
        {"\xEF\xBF\xBF", 0xFFFF},
        {"\xF0\x90\x80\x80", 0x10000},
        {"\xF4\x8F\xBF\xBF", 0x10FFFF},
    };
    for (const auto& [bytes, value] : cases) {
        const CodePoint point = firstCodePoint(std::string(bytes) + "x");
        EXPECT_EQ(point.value, value);
        EXPECT_EQ(point.length, bytes.size());
        std::string written;
        appendUtf8(written, value);
        EXPECT_EQ(written, bytes);
    }
}

// Bytes that are no UTF-8: what `decodable` makes of them, "~" for each U+FFFD.
const Pair kBroken[] = {
    {"\x80", "~"},
    {"\xBF", "~"},
    {"a\xC3", "a~"},  // truncated
    {"\xE2\x82", "~~"},
    {"\xF0\x9F\x98", "~~~"},
    {"\xC3\x28", "~("},  // no continuation
    {"\xE2\x28\xA1", "~(~"},
    {"\xE2\x82(", "~~("},
    {"\xC0\x80", "~~"},  // overlong
    {"\xC1\xBF", "~~"},
    {"\xE0\x80\x80", "~~~"},
    {"\xE0\x9F\xBF", "~~~"},
    {"\xF0\x80\x80\x80", "~~~~"},
    {"\xF0\x8F\xBF\xBF", "~~~~"},
    {"\xED\xA0\x80", "~~~"},  // surrogates
    {"\xED\xBF\xBF", "~~~"},
    {"\xF4\x90\x80\x80", "~~~~"},  // above U+10FFFF
    {"\xF5\x80\x80\x80", "~~~~"},
    {"\xF8\x88\x80\x80\x80", "~~~~~"},
    {"\xFE\xFF", "~~"},
    {"\xC3\xC3\xA9", "~\u00E9"},  // a lead byte in front of a whole character
};

TEST(Utf8, CountsEachByteThatIsNoTextAsOneCharacterAndReplacesIt) {
    for (const auto& [bytes, shown] : kBroken) {
        EXPECT_EQ(decodable(bytes), replaceAll(shown, "~", "\uFFFD"));
        EXPECT_EQ(visible(bytes), replaceAll(shown, "~", "\uFFFD"));
        EXPECT_EQ(characterCount(bytes), characterCount(shown));
    }
}

TEST(Utf8, CutsBetweenCharacters) {
    const std::string_view text = "a\u00E9\xFF😀z";
    EXPECT_EQ(characterCount(text), 5U);
    EXPECT_EQ(firstCharacters(text, 0), "");
    EXPECT_EQ(firstCharacters(text, 2), "a\u00E9");
    EXPECT_EQ(firstCharacters(text, 3), "a\u00E9\xFF");
    EXPECT_EQ(firstCharacters(text, 4), "a\u00E9\xFF😀");
    EXPECT_EQ(firstCharacters(text, 9), text);
}

TEST(Decodable, KeepsControlCharactersAndValidText) {
    EXPECT_EQ(decodable("a\r\n\x1B\u202E\u00E9\u0085"), "a\r\n\x1B\u202E\u00E9\u0085");
}

TEST(Visible, ShowsStandInsForWhatATerminalWouldObey) {
    const Pair cases[] = {
        {"", ""},
        {"plain \u00E9 漢 😀", "plain \u00E9 漢 😀"},
        {std::string_view("\0", 1), "\u2400"},
        {"\x1B[2J", "\u241B[2J"},
        {"a\r\nb\t", "a\u240D\u240Ab\u2409"},
        {"\x1F\x7F", "\u241F\u2421"},
        {"\u0080\u0085\u009B\u009F", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\u00A0", "\u00A0"},
        {"\u202Egpj.exe", "\uFFFDgpj.exe"},
        {"\u200E\u200F\u061C\u202A\u2066\u2069", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\u200D\u2010", "\u200D\u2010"},
    };
    for (const auto& [bytes, shown] : cases) EXPECT_EQ(visible(bytes), shown);
}

}  // namespace
}  // namespace hl
