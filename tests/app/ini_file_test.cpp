#include "app/ini_file.h"

#include <gtest/gtest.h>

#include <random>

namespace hl {
namespace {

std::string found(std::string_view text, std::string_view section, std::string_view key) {
    return IniText(std::string(text)).find(section, key).value_or("(none)");
}

TEST(IniText, FindsWhatAHandWroteInAnyShape) {
    const struct {
        std::string_view text, value;
    } cases[] = {
        {"[S]\r\nk=v\r\n", "v"},
        {"[S]\nk=v", "v"},
        {"  [ S ]  \n\t k \t = \t v \t\n", "v"},
        {"\xEF\xBB\xBF[S]\nk=v", "v"},
        {"[S] ; said behind it\nk=v", "v"},
        {"[s]\nK=v", "v"},
        {"[S]\nk=v;not a comment", "v;not a comment"},
        {"[S]\nk=a=b", "a=b"},
        {"[S]\nk=", ""},
        {"[S]\nk", "(none)"},
        {"[S]\n;k=v", "(none)"},
        {"k=v\n[S]\n", "(none)"},
        {"[T]\nk=v", "(none)"},
        {"[S]\nk=first\nk=second", "first"},
        {"[S]\n[S]\nk=v", "(none)"},
        {"[S\nk=v", "(none)"},
        {"[S]\nk=\"v\"", "v"},
        {"[S]\nk=\" v \"", " v "},
        {"[S]\nk=\"\"v\"\"", "\"v\""},
        {"[S]\nk=\"", "\""},
        {"[S]\nk=\"\"", ""},
        {"[S]\nk=\"v", "\"v"},
        {"[S]\nk='v'", "'v'"},
        {"[S]\nk=$'a\\nb\\rc\\\\d\\'e\\x00f\\xFF'", std::string_view("a\nb\rc\\d'e\0f\xFF", 12)},
        {"[S]\nk=$'\\q\\x1\\x1g\\'", "\\q\\x1\\x1g\\"},
        {"[S]\nk=$''", ""},
        {"[S]\nk=$'", "$'"},
        {"", "(none)"},
    };
    for (const auto& c : cases) EXPECT_EQ(found(c.text, "S", "k"), c.value) << c.text;
}

TEST(IniText, ComparesNamesWithoutCaseAlsoBeyondAscii) {
    EXPECT_EQ(found("[GRÖSSE]\nÄ=v", "größe", "ä"), "(none)") << "ß has no upper case";
    EXPECT_EQ(found("[MAßE]\nÄ=v", "maße", "ä"), "v");
    EXPECT_EQ(found("[Optionen]\nSymbolText=1", "optionen", "Symboltext"), "1");
}

TEST(IniText, ChangesOneLineAndKeepsTheRest) {
    IniText ini("; mine\n[A]\nold=1\nnonsense\n\n[B]\nold=2\n");
    EXPECT_TRUE(ini.set("a", "OLD", "x"));
    EXPECT_TRUE(ini.set("A", "new", "y"));
    EXPECT_TRUE(ini.set("C", "key", "z"));
    EXPECT_EQ(ini.text(), "; mine\n[A]\nOLD=x\r\nnonsense\nnew=y\r\n\n[B]\nold=2\n[C]\r\nkey=z\r\n");
}

TEST(IniText, LeavesALineThatSaysTheSameAlone) {
    const std::string text = "[A]\n key = \"v\" \n";
    IniText ini(text);
    EXPECT_TRUE(ini.set("A", "key", "v"));
    EXPECT_EQ(ini.text(), text);
}

TEST(IniText, EndsALastLineThatHasNoEnd) {
    IniText ini("[A]\nk=1");
    ini.set("A", "l", "2");
    EXPECT_EQ(ini.text(), "[A]\nk=1\r\nl=2\r\n");
    IniText bare("junk");
    bare.set("A", "k", "1");
    EXPECT_EQ(bare.text(), "junk\r\n[A]\r\nk=1\r\n");
}

TEST(IniText, RefusesNamesThatWouldNotBeFoundAgain) {
    using namespace std::string_view_literals;
    IniText ini;
    for (const std::string_view key :
         {""sv, " k"sv, "k "sv, "a\nb"sv, "a\rb"sv, "a\0b"sv, "a=b"sv, ";k"sv, "[k"sv})
        EXPECT_FALSE(ini.set("S", key, "v")) << key;
    for (const std::string_view section : {""sv, " S"sv, "S\t"sv, "a\nb"sv, "a]b"sv})
        EXPECT_FALSE(ini.set(section, "k", "v")) << section;
    EXPECT_EQ(ini.text(), "");
}

TEST(IniText, RemovesEverySectionOfTheNameWhole) {
    IniText ini("[A]\n;c\na=1\n\n[b]\nb=1\n[C]\nc=1\n[B]\nb=2");
    ini.removeSection("B");
    EXPECT_EQ(ini.text(), "[A]\n;c\na=1\n\n[C]\nc=1\n");
    ini.removeSection("missing");
    EXPECT_EQ(ini.text(), "[A]\n;c\na=1\n\n[C]\nc=1\n");
}

TEST(IniText, CutsAValueAt2047Characters) {
    const std::string longest(kLongestIniValue, 'x');
    EXPECT_EQ(found("[S]\nk=" + longest + "y", "S", "k"), longest);
    std::string umlauts;
    for (std::size_t i = 0; i < kLongestIniValue; ++i) umlauts += "ä";
    IniText ini;
    ini.set("S", "k", umlauts + "ö");
    EXPECT_EQ(ini.find("S", "k"), umlauts);
}

TEST(IniText, WritesPlainValuesPlainAndOthersInOneLine) {
    const struct {
        std::string_view value, written;
    } cases[] = {
        {"/home/ada", "/home/ada"},
        {"", ""},
        {"a \"b\" c", "a \"b\" c"},
        {" a", "\" a\""},
        {"a ", "\"a \""},
        {"\"a\"", "\"\"a\"\""},
        {"$'a'", "\"$'a'\""},
        {"Größe", "Größe"},
        {"a\nb", "$'a\\nb'"},
        {"\r\\'", "$'\\r\\\\\\''"},
        {"a\tb\x7F", "$'a\\x09b\\x7f'"},
        {"\xFFö", "$'\\xffö'"},
    };
    for (const auto& c : cases) EXPECT_EQ(encodeIniValue(c.value), c.written);
}

TEST(IniText, BringsAnyBytesBack) {
    std::mt19937 random(7);
    const std::string_view likely = " \"'$\\\r\n\t;=[]x\xC3\xA4\xFF";
    for (int round = 0; round < 3000; ++round) {
        std::string value;
        for (auto length = random() % 12; length > 0; --length)
            value += random() % 4 == 0 ? static_cast<char>(random()) : likely[random() % likely.size()];
        IniText ini("[S]\nother=1");
        ASSERT_TRUE(ini.set("S", "k", value));
        ASSERT_EQ(IniText(ini.text()).find("S", "k"), value);
        ASSERT_EQ(ini.find("S", "other"), "1");
    }
}

TEST(IniText, StandsGarbage) {
    std::mt19937 random(11);
    const std::string_view likely = "[]=;\"'$\\\r\n S k\xEF\xBB\xBF";
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (auto length = random() % 60; length > 0; --length)
            text += random() % 8 == 0 ? static_cast<char>(random()) : likely[random() % likely.size()];
        IniText ini(text);
        ASSERT_TRUE(ini.set("S", "k", "v")) << text;
        ASSERT_EQ(ini.find("S", "k"), "v") << text;
        ini.removeSection("S");
        ASSERT_EQ(ini.find("S", "k"), std::nullopt) << text;
    }
}

TEST(IniText, GivesAWholeSectionTheFirstOfEqualsCounting) {
    const IniText ini("[A]\nOne=1\none=2\n Two = \"2 \"\n[B]\nthree=3\n[A]\nfour=4");
    const std::map<std::string, std::string, std::less<>> expected = {{"one", "1"}, {"two", "2 "}};
    EXPECT_EQ(ini.section("a"), expected);
    EXPECT_TRUE(ini.section("none").empty());
}

}  // namespace
}  // namespace hl
