#include "app/ini_file.h"

namespace hl {
namespace {

using namespace std::string_view_literals;
using Pairs = std::vector<std::pair<std::string_view, std::string_view>>;

std::string found(std::string_view text, std::string_view section = "S", std::string_view key = "k") {
    return IniText(std::string(text)).find(section, key).value_or("(none)");
}

TEST(IniText, FindsWhatAHandWroteInAnyShape) {
    for (const char* text :
         {"[S]\r\nk=v\r\n", "[S]\nk=v", "  [ S ]  \n\t k \t = \t v \t\n", "\xEF\xBB\xBF[S]\nk=v",
          "[S] ; said behind it\nk=v", "[s]\nK=v", "[S]\nk=v\nk=second", "[S]\nk=\"v\""})
        EXPECT_EQ(found(text), "v") << text;
    for (const char* text : {"", "[S]\nk", "[S]\n;k=v", "k=v\n[S]\n", "[T]\nk=v", "[S]\n[S]\nk=v", "[S\nk=v"})
        EXPECT_EQ(found(text), "(none)") << text;
    const Pairs cases = {{"a;b=c", "a;b=c"}, {"", ""},       {"\"", "\""}, {"\"\"", ""},
                         {"\"v", "\"v"},     {"'v'", "'v'"}, {"$''", ""},  {"$'", "$'"}};
    for (const auto& [written, value] : cases) EXPECT_EQ(decodeIniValue(written), value) << written;
    EXPECT_EQ(decodeIniValue("$'a\\x00f\\xFF\\q\\x1\\x1g\\'"), "a\0f\xFF\\q\\x1\\x1g\\"sv);
    EXPECT_EQ(found("[MAßE]\nÄ=a=b", "maße", "ä"), "a=b");
}

TEST(IniText, ChangesOneLineAndKeepsTheRest) {
    IniText ini("; mine\n[A]\nold=1\n same = \"v\" \nodd\n\n[B]\nold=2");
    const char* const changes[][3] = {
        {"a", "OLD", "x"}, {"A", "same", "v"}, {"A", "new", "y"}, {"B", "new", "y"}, {"C", "key", "z"}};
    for (const auto& [section, key, value] : changes) EXPECT_TRUE(ini.set(section, key, value)) << key;
    EXPECT_EQ(
        ini.text(),
        "; mine\n[A]\nOLD=x\r\n same = \"v\" \nodd\nnew=y\r\n\n[B]\nold=2\r\nnew=y\r\n[C]\r\nkey=z\r\n");
}

TEST(IniText, RefusesWhatWouldNotBeFoundAgain) {
    IniText ini;
    for (const auto key : {""sv, " k"sv, "k "sv, "a\nb"sv, "a\rb"sv, "a\0b"sv, "a=b"sv, ";k"sv, "[k"sv})
        EXPECT_FALSE(ini.set("S", key, "v")) << key;
    for (const auto section : {""sv, " S"sv, "S\t"sv, "a\nb"sv, "a]b"sv})
        EXPECT_FALSE(ini.set(section, "k", "v")) << section;
    EXPECT_FALSE(ini.set("S", "k", std::string(kLongestIniValue + 1, 'v')));
    EXPECT_EQ(ini.text(), "");
}

TEST(IniText, RemovesEverySectionOfTheNameWhole) {
    IniText ini("[A]\n;c\na=1\n\n[b]\nb=1\n[C]\nc=1\n[B]\nb=2");
    ini.removeSection("B");
    EXPECT_EQ(ini.text(), "[A]\n;c\na=1\n\n[C]\nc=1\n");
}

TEST(IniText, WritesPlainValuesPlainAndOthersInOneLine) {
    const Pairs cases = {
        {"a\"ö", "a\"ö"},      {" a", "\" a\""},     {"a ", "\"a \""},           {"\"a\"", "\"\"a\"\""},
        {"$'a'", "\"$'a'\""},  {"a\nb", "$'a\\nb'"}, {"\r\\'", "$'\\r\\\\\\''"}, {"\t\x7F", "$'\\x09\\x7f'"},
        {"\xFFö", "$'\\xffö'"}};
    for (const auto& [value, written] : cases) EXPECT_EQ(encodeIniValue(value), written);
}

TEST(IniText, BringsAnyBytesBackOutOfAnyGarbage) {
    std::mt19937 random(7);
    const auto garbage = [&](std::size_t longest) {
        const std::string_view likely = "[]=;\"'$\\\r\n\t S kx\xC3\xA4\xEF\xBB\xBF";
        std::string text;
        for (auto length = random() % longest; length > 0; --length)
            text += random() % 4 == 0 ? static_cast<char>(random()) : likely[random() % likely.size()];
        return text;
    };
    for (int round = 0; round < 3000; ++round) {
        const std::string before = garbage(60), value = garbage(12);
        IniText ini(before);
        ASSERT_TRUE(ini.set("S", "k", value)) << before;
        ASSERT_EQ(IniText(ini.text()).find("S", "k"), value) << before;
        ini.removeSection("S");
        ASSERT_EQ(ini.find("S", "k"), std::nullopt) << before;
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
