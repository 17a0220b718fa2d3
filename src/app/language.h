// The languages of the interface, by the numbers under which settings files know them.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace hl {

inline constexpr int kGerman = 7;  ///< The language of the texts in the code; it needs no library.
inline constexpr int kEnglish = 9;

struct Language {
    int id;
    std::string_view code;     ///< In locales, and in the library.
    std::string_view library;  ///< File with its texts; empty for German.
    int fallback;              ///< What the id becomes where the library cannot be loaded.
};

/// The language with this id; English for every other number.
const Language& languageOf(int id);

/// The language that the user's system speaks, by a locale such as "de_DE.UTF-8". English where it is none of
/// ours.
int systemLanguageId(std::string_view locale);

/// The locale of messages: the first of LC_ALL, LC_MESSAGES and LANG that is not empty. `environment` answers
/// with the value of a variable.
std::string messageLocale(const std::function<std::string(const std::string&)>& environment);

}  // namespace hl
