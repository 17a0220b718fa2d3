#include "app/language.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

TEST(Language, FollowsTheLocaleOfTheSystemAndIsElseEnglish) {
    const std::pair<const char*, int> cases[] = {{"de_DE.UTF-8", 7},   {"de_AT@euro", 7}, {"de", 7},
                                                 {"DE_ch", 7},         {"it_IT", 16},     {"nl_BE.UTF-8", 19},
                                                 {"ru_RU.KOI8-R", 25}, {"sv_SE", 29},     {"de-DE", 7},
                                                 {"fr_FR.UTF-8", 9},   {"C.UTF-8", 9},    {"", 9},
                                                 {"deutsch", 9},       {"_", 9},          {"\xFF", 9}};
    for (const auto& [locale, id] : cases) EXPECT_EQ(systemLanguageId(locale), id) << locale;
}

TEST(Language, ReadsEveryOtherIdAsEnglish) {
    for (const int id : {7, 9, 16, 19, 25, 29}) EXPECT_EQ(languageOf(id).id, id);
    for (const int id : {0, 8, -7, 1031}) EXPECT_EQ(languageOf(id).id, kEnglish);
}

TEST(Language, TakesTheFirstVariableThatIsNotEmpty) {
    std::map<std::string, std::string> environment = {{"LC_ALL", "a"}, {"LC_MESSAGES", "b"}, {"LANG", "c"}};
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string value = environment[name];
        EXPECT_EQ(messageLocale([&](const std::string& asked) { return environment[asked]; }), value);
        environment[name] = "";
    }
}

}  // namespace
}  // namespace hl
