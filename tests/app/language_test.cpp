#include "app/language.h"

#include <gtest/gtest.h>

#include <map>

namespace hl {
namespace {

TEST(Language, FollowsTheLocaleOfTheSystem) {
    const struct {
        const char* locale;
        int id;
    } cases[] = {
        {"de_DE.UTF-8", 7}, {"de_AT@euro", 7}, {"de", 7},           {"DE_ch", 7},
        {"en_GB.UTF-8", 9}, {"it_IT", 16},     {"nl_BE.UTF-8", 19}, {"ru_RU.KOI8-R", 25},
        {"sv_SE", 29},      {"de-DE", 7},      {"fr_FR.UTF-8", 9},  {"el_GR", 9},
        {"C", 9},           {"C.UTF-8", 9},    {"POSIX", 9},        {"", 9},
        {"deutsch", 9},     {"_", 9},          {"\xFF", 9},
    };
    for (const auto& c : cases) EXPECT_EQ(systemLanguageId(c.locale), c.id) << c.locale;
}

TEST(Language, ReadsEveryOtherIdAsEnglish) {
    for (const int id : {7, 9, 16, 19, 25, 29}) EXPECT_EQ(languageOf(id).id, id);
    for (const int id : {0, 1, 8, 10, 30, -7, 1031}) EXPECT_EQ(languageOf(id).id, kEnglish);
}

TEST(Language, TakesTheFirstVariableThatIsNotEmpty) {
    std::map<std::string, std::string> environment = {{"LC_ALL", "a"}, {"LC_MESSAGES", "b"}, {"LANG", "c"}};
    const auto ask = [&](const std::string& name) { return environment[name]; };
    EXPECT_EQ(messageLocale(ask), "a");
    environment["LC_ALL"] = "";
    EXPECT_EQ(messageLocale(ask), "b");
    environment.erase("LC_MESSAGES");
    EXPECT_EQ(messageLocale(ask), "c");
    environment.clear();
    EXPECT_EQ(messageLocale(ask), "");
}

}  // namespace
}  // namespace hl
