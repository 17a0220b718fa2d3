// The languages of the interface, by the numbers that settings files use. The functions are pure.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace hl {

inline constexpr int kGerman = 7;  ///< The language of the texts in the code; it needs no library.
inline constexpr int kEnglish = 9;

struct Language {
    int id;
    std::string_view code;     ///< The language's code in locales and in the library.
    std::string_view library;  ///< The file with its texts; empty for German.
    int fallback;              ///< The id of the language that is used if the library cannot be loaded.
};

/// Returns the language with this id, or English for any other number.
const Language& languageOf(int id);

/// Returns the id of the language that the user's system speaks, by a locale such as "de_DE.UTF-8", or that
/// of English if the program does not speak it.
int systemLanguageId(std::string_view locale);

/// Returns the locale of messages: the first of LC_ALL, LC_MESSAGES and LANG that is not empty. `environment`
/// returns the value of a variable.
std::string messageLocale(const std::function<std::string(const std::string&)>& environment);

}  // namespace hl
