#include "app/language.h"

#include <algorithm>
#include <limits>

#include "app/ini_file.h"
#include "base/row_text.h"
#include "base/text.h"

namespace hl {

namespace {

Language shipped(int id, std::string code, std::string library, const RowText& name,
                 int fallback = kEnglish) {
    return {id, std::move(code), std::move(library), fallback, name.id, std::string(name.german)};
}

// The first found counts: the settings' folder comes before the program's.
void addFrom(std::vector<Language>& all, Files& files, const std::string& folder,
             const std::string& library) {
    if (!library.ends_with(".dll")) return;
    if (std::ranges::find(all, library, &Language::library) != all.end()) return;
    const IniText text(files.readWhole(folder + "/" + library, kLargestTextFile).valueOr(""));
    const auto fact = [&](std::string_view key) { return text.find("Language", key).value_or(""); };
    const auto id = parseInteger(fact("Lang"));
    if (!id || *id <= 0 || *id > std::numeric_limits<std::int16_t>::max() || fact("code").empty()) return;
    if (std::ranges::find(all, static_cast<int>(*id), &Language::id) != all.end()) return;
    const std::string name = fact("name").empty() ? library : visible(fact("name"));
    all.push_back({.id = static_cast<int>(*id), .code = fact("code"), .library = library, .name = name});
}

template <class Is>
const Language& languageWhere(const std::vector<Language>& all, Is is) {
    const auto found = std::ranges::find_if(all, is);
    return found != all.end() ? *found : *std::ranges::find(all, kEnglish, &Language::id);
}

}  // namespace

std::vector<Language> findLanguages(Files& files, const std::vector<std::string>& folders) {
    std::vector<Language> all = {
        shipped(kGerman, "de", "", TL(3703, "Deutsch"), kGerman),
        shipped(kEnglish, "en", "eng.dll", TL(3704, "Englisch"), kGerman),
        shipped(19, "nl", "dut.dll", TL(3784, "Niederländisch")),
        shipped(16, "it", "ita.dll", TL(3785, "Italienisch")),
        shipped(29, "sv", "swe.dll", TL(3786, "Schwedisch")),
        shipped(25, "ru", "rus.dll", TL(3705, "Russisch")),
    };
    for (const std::string& folder : folders)
        for (const std::string& name : files.namesIn(folder)) addFrom(all, files, folder, name);
    return all;
}

const Language& languageOf(const std::vector<Language>& all, int id) {
    return languageWhere(all, [id](const Language& language) { return language.id == id; });
}

int systemLanguageId(const std::vector<Language>& all, std::string_view locale) {
    const std::string code = lowerCase(locale.substr(0, locale.find_first_of("_.@-")));
    return languageWhere(all, [&](const Language& language) { return language.code == code; }).id;
}

std::string messageLocale(const std::function<std::string(const std::string&)>& environment) {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (std::string value = environment(variable); !value.empty()) return value;
    }
    return {};
}

}  // namespace hl
