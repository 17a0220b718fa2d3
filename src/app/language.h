// The languages of the interface: German, which the code holds, and those that have a library of texts. For
// the thread of the logic.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace hl {

inline constexpr int kGerman = 7;  ///< The language of the texts in the code; it needs no library.
inline constexpr int kEnglish = 9;

inline constexpr std::size_t kLargestTextFile = 16 << 20;  ///< In bytes; a larger library is ignored.

struct Language {
    int id = 0;               ///< The number that settings files use.
    std::string code;         ///< The language's code in locales and in the library.
    std::string library;      ///< The name of the file with its texts; empty for German.
    int fallback = kEnglish;  ///< The id of the language that is used if the library cannot be loaded.
    int nameId = 0;           ///< The text with its name; 0 if its name is not translated.
    std::string name;         ///< Its name in German, or in itself.
};

/// Returns all languages in the order of the menu: first the six that come with the program, whether their
/// libraries are there or not, then every other one whose library lies in one of the folders, by the names of
/// the files. Such a library begins with a section "[Language]" that gives "Lang", "code" and "name".
std::vector<Language> findLanguages(Files& files, const std::vector<std::string>& folders);

/// Returns the language with this id, or English for any other number.
const Language& languageOf(const std::vector<Language>& all, int id);

/// Returns the id of the language that the user's system speaks, by a locale such as "de_DE.UTF-8", or that
/// of English if the program does not speak it.
int systemLanguageId(const std::vector<Language>& all, std::string_view locale);

/// Returns the locale of messages: the first of LC_ALL, LC_MESSAGES and LANG that is not empty. `environment`
/// returns the value of a variable.
std::string messageLocale(const std::function<std::string(const std::string&)>& environment);

}  // namespace hl
