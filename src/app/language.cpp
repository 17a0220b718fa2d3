#include "app/language.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace hl {

namespace {

constexpr std::array<Language, 6> kLanguages = {{
    {kGerman, "de", "", kGerman},
    {kEnglish, "en", "eng.dll", kGerman},
    {16, "it", "ita.dll", kEnglish},
    {19, "nl", "dut.dll", kEnglish},
    {25, "ru", "rus.dll", kEnglish},
    {29, "sv", "swe.dll", kEnglish},
}};

template <class Is>
const Language& languageWhere(Is is) {
    const auto found = std::ranges::find_if(kLanguages, is);
    return found == kLanguages.end() ? kLanguages[1] : *found;
}

}  // namespace

const Language& languageOf(int id) {
    return languageWhere([id](const Language& language) { return language.id == id; });
}

int systemLanguageId(std::string_view locale) {
    const std::string code = lowerCase(locale.substr(0, locale.find_first_of("_.@-")));
    return languageWhere([&](const Language& language) { return language.code == code; }).id;
}

std::string messageLocale(const std::function<std::string(const std::string&)>& environment) {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (std::string value = environment(variable); !value.empty()) return value;
    }
    return {};
}

}  // namespace hl
