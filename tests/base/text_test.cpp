#include "base/text.h"

namespace hl {
namespace {

using Pairs = std::vector<std::pair<std::string_view, std::string_view>>;

TEST(Trim, TakesOffOnlyItsOwnBlanks) {
    const Pairs blanks = {{"   ", ""}, {" a b ", "a b"}, {"\ta\t", "\ta\t"}, {"\u00A0", "\u00A0"}};
    for (const auto& [from, to] : blanks) EXPECT_EQ(trimBlanks(from), to) << from;
    const Pairs white = {{" \t\r\n", ""}, {"\r\n a\tb \t", "a\tb"}, {"\va", "\va"}};
    for (const auto& [from, to] : white) EXPECT_EQ(trimWhite(from), to) << from;
}

TEST(Case, FoldsTheLettersOfTheLanguagesWeMeet) {
    const Pairs cases = {{"AZ @[`{ÀÖØÞŸĀŽŁŃŐȘȚƠƯẠỸƏ", "az @[`{àöøþÿāžłńőșțơưạỹə"},
                         {"ΑΣΩΪΆΈΉΊΌΎΏАЯЁЎЏѢҐӀӁӘ", "ασωϊάέήίόύώаяёўџѣґӏӂә"},
                         {"×÷İĸŉ漢字😀1_-.A\xFF\xC3Z\x80", "×÷İĸŉ漢字😀1_-.a\xFF\xC3z\x80"}};
    for (const auto& [upper, lower] : cases) {
        EXPECT_EQ(lowerCase(upper), lower);
        EXPECT_EQ(upperCase(lower), upper);
        EXPECT_EQ(compareFolded(upper, lower), 0) << lower;
    }
    EXPECT_EQ(lowerCase("ẞ"), "ß");
    for (const std::string_view text : {"ß", "ı", "ς"}) EXPECT_EQ(upperCase(text), text);
}

TEST(Utf8, AndCaseAreTheSameAfterAWayThereAndBackForEveryCharacter) {
    for (char32_t c = 0; c < 0x110000; ++c) {
        if (c == 0xD800) c = 0xE000;
        std::string text;
        appendUtf8(text, c);
        ASSERT_EQ(firstCodePoint(text + "x").value, c);
        ASSERT_EQ(firstCodePoint(text + "x").length, text.size());
        const std::string lower = lowerCase(text);
        ASSERT_EQ(lowerCase(lower), lower) << std::hex << static_cast<unsigned>(c);
        ASSERT_EQ(lowerCase(upperCase(text)), lower) << std::hex << static_cast<unsigned>(c);
    }
}

TEST(CompareFolded, OrdersAsTheFoldedTextsDoAndTakesNoStrayByteForACharacter) {
    // Each text sorts before all that follow it.
    const std::string_view order[] = {"",  "A", "a ",     "aa", "AB",   "b",    "ba",   "É",    "ž",
                                      "Α", "Я", "\u4E00", "😀",  "\x80", "\xC9", "\xE9", "\xFF", "\xFF\x61"};
    for (std::size_t i = 0; i < std::size(order); ++i)
        for (std::size_t j = 0; j < std::size(order); ++j)
            EXPECT_EQ(compareFolded(order[i], order[j]), i < j ? -1 : i > j ? 1 : 0) << order[i] << order[j];
}

TEST(CompareFolded, AgreesWithTheKeysOfTexts) {
    std::mt19937 random(5);
    const std::string_view parts[] = {"a", "A",    "b",    "z",    "É",    "é", "Я",
                                      "K", "\x80", "\xFF", "\x7f", "0123", "😀"};
    std::vector<std::string> texts = {"", std::string(1, '\0'), std::string("a\0b", 3)};
    for (int i = 0; i < 300; ++i) {
        std::string text(random() % 16, 'x');
        for (auto count = random() % 5; count > 0; --count) text += parts[random() % std::size(parts)];
        texts.push_back(text);
    }
    int decided = 0;
    for (const std::string& a : texts)
        for (const std::string& b : texts) {
            if (foldedKey(a) == foldedKey(b)) continue;
            ++decided;
            ASSERT_EQ(foldedKey(a) < foldedKey(b), compareFolded(a, b) < 0) << a << " " << b;
        }
    EXPECT_GT(decided, 80'000);  // There are 92,000 pairs.
}

TEST(FoldedPart, IsFoundWithoutRegardToCase) {
    EXPECT_TRUE(FoldedPart("GRÖ").isIn("Größe") && FoldedPart("").isIn(""));
    EXPECT_FALSE(FoldedPart("abcd").isIn("abc"));
}

TEST(ParseInteger, TakesAWholeNumberAndNothingElse) {
    const std::pair<std::string_view, std::int64_t> good[] = {
        {"007", 7}, {" 42 ", 42}, {"+5", 5}, {"-9223372036854775808", INT64_MIN}};
    for (const auto& [text, value] : good) EXPECT_EQ(parseInteger(text), value) << text;
    for (const char* text :
         {"", " ", "-", "+-5", "- 5", "1 2", "5a", "0x10", "1.0", "\t5", "9223372036854775808"})
        EXPECT_EQ(parseInteger(text), std::nullopt) << text;
}

TEST(ParseNumber, TakesADecimalFractionAndNothingElse) {
    const std::pair<std::string_view, double> good[] = {
        {"0", 0}, {" -2.25 ", -2.25}, {"+3", 3}, {"922337203685477", 922337203685477.0}};
    for (const auto& [text, value] : good) EXPECT_EQ(parseNumber(text), value) << text;
    for (const char* text :
         {"", "-", ".", "+-1", "1,5", "1e3", "1.2.3", "inf", "-inf", "nan", "0x1p3", "1 2", "1.5a"})
        EXPECT_EQ(parseNumber(text), std::nullopt) << text;
    EXPECT_EQ(parseNumber(std::string(400, '9')), std::nullopt);
}

TEST(ReplaceAll, ReplacesFromLeftToRightAndDoesNotSearchItsOwnText) {
    EXPECT_EQ(replaceAll("aaa", "a", "aa"), "aaaaaa");
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
}

TEST(Utf8, ReplacesTheBeginningOfACharacterAsOneAndAnyOtherByteThatIsNoTextByItself) {
    // "~" stands for each U+FFFD.
    const Pairs broken = {
        {"\x80x\xC3x\xE2\x82x\xF0\x9F\x98", "~x~x~x~"},                       // stray or cut off
        {"\xC3(\xE2(\xA1\xE2\x82(\xC3\xC3\xA9", "~(~(~~(~\u00E9"},            // no continuation
        {"\xC1\xBFx\xE0\x9F\xBFx\xF0\x8F\xBF\xBF", "~~x~~~x~~~~"},            // overlong
        {"\xED\xA0\x80x\xED\xBF\xBF", "~~~x~~~"},                             // surrogates
        {"\xF4\x90\x80\x80x\xF8\x88\x80\x80\x80x\xFE\xFF", "~~~~x~~~~~x~~"},  // too large
    };
    for (const auto& [bytes, shown] : broken) {
        EXPECT_EQ(decodable(bytes), replaceAll(shown, "~", "\uFFFD"));
        EXPECT_EQ(visible(bytes), replaceAll(shown, "~", "\uFFFD"));
        EXPECT_EQ(characterCount(bytes), characterCount(shown));
    }
}

TEST(Utf8, CutsBetweenCharacters) {
    const std::pair<std::size_t, const char*> cases[] = {
        {0, ""}, {2, "a\u00E9"}, {3, "a\u00E9\xFF"}, {4, "a\u00E9\xFF😀"}, {9, "a\u00E9\xFF😀z"}};
    for (const auto& [count, text] : cases) EXPECT_EQ(firstCharacters("a\u00E9\xFF😀z", count), text);
}

TEST(Visible, ShowsStandInsForWhatATerminalWouldObey) {
    const Pairs cases = {
        {"plain \u00E9\u00A0漢 😀\u200D\u2010", "plain \u00E9\u00A0漢 😀\u200D\u2010"},
        {std::string_view("\0\x1B[2J\r\n\t\x1F\x7F", 10), "\u2400\u241B[2J\u240D\u240A\u2409\u241F\u2421"},
        {"\u0080\u009F\u202Egpj.exe\u200E\u061C\u2069", "\uFFFD\uFFFD\uFFFDgpj.exe\uFFFD\uFFFD\uFFFD"}};
    for (const auto& [bytes, shown] : cases) EXPECT_EQ(visible(bytes), shown);
    EXPECT_EQ(decodable("a\r\n\x1B\u202E\u00E9\u0085"), "a\r\n\x1B\u202E\u00E9\u0085");
}

}  // namespace
}  // namespace hl
