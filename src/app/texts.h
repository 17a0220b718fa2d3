// Holds every text that the user sees. The code gives a number and the German default; a language library or
// the translator's file may hold another text for the number. For the thread of the logic.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/catalogue.h"
#include "app/language.h"
#include "app/settings.h"
#include "app/simple_value.h"
#include "base/collection.h"
#include "platform/files.h"
#include "robustness/debug.h"

namespace hl {

/// Where texts come from, and which language the user's system speaks.
struct TextSources {
    std::string settingsFolder;    ///< The translator's file and, as the first choice, libraries lie here.
    std::string executableFolder;  ///< Libraries are looked for here next.
    std::string commandLine;
    std::string messageLocale;  ///< See language.h.
};

/// Texts longer than 1,023 characters and captions longer than 255 are cut, whether they come from a library
/// or from the translator's file. Each file may have 16 MiB; a larger one is ignored.
class Texts {
  public:
    /// Texts are German until Init_Sprache is called. The objects passed by reference must outlive this one.
    Texts(Files& files, SettingsStore& settings, Diagnostics& diagnostics, TextSources sources)
        : files_(files), settings_(settings), diagnostics_(diagnostics), sources_(std::move(sources)) {}

    /// Chooses the language by the settings or else by the user's system, and loads its library. "-TLMODUS"
    /// anywhere in the command line loads the translator's file.
    void Init_Sprache(const std::string& helpFile, const std::string& translatorFile);
    /// Stores the chosen language for later starts. A setting that made no sense stays.
    void storeLanguage();
    /// Replaces the text table by the translator's file. A file that cannot be read changes nothing.
    void LoadTextFromFile(const std::string& path);

    /// Returns the text `id` in the user's language, or `defaultText` if there is none. "%!" becomes CR LF;
    /// "%1" to "%n" are replaced by the arguments one after the other, so that a "%2" in the first argument
    /// is replaced too.
    std::string TL(std::int32_t id, std::string_view defaultText,
                   std::initializer_list<SimpleValue> arguments = {}) const;
    /// Returns the caption `id` of a control. If it is empty, because there is none or the id is no number,
    /// the control keeps its own.
    std::string TranslateControlText(std::string_view id) const;

    int languageId() const { return language_; }
    /// All that the user can choose, in the order of the menu. Empty until Init_Sprache is called.
    const std::vector<Language>& languages() const { return languages_; }
    const std::string& helpFile() const { return helpFile_; }

  private:
    void chooseLanguage(const std::string& helpFile);
    bool loadLibrary(const Language& language);
    /// `limit` is the length of the longest text, in characters.
    std::string lookUp(std::int64_t id, std::size_t limit) const;

    Files& files_;
    SettingsStore& settings_;
    Diagnostics& diagnostics_;
    TextSources sources_;
    std::vector<Language> languages_;
    int language_ = kGerman;
    std::optional<std::string> stored_;  ///< What the settings say; nothing if it made no sense.
    bool translator_ = false;
    Catalogue library_;
    CStringCollection table_;  ///< The translator's texts, by the key "<id>T".
    std::string helpFile_;
};

}  // namespace hl
