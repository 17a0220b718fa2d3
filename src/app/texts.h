// Every text that the user sees: a number, and beside it in the code the German default. A language library
// or the translator's file may hold another one. For the thread of the logic.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "app/catalogue.h"
#include "app/language.h"
#include "app/settings.h"
#include "app/simple_value.h"
#include "platform/files.h"
#include "robustness/debug.h"
#include "scan/collection/collection.h"

namespace hl {

/// Where texts come from, and what the start of the program tells them.
struct TextSources {
    std::string settingsFolder;    ///< Libraries are looked for here first; the translator's file lies here.
    std::string executableFolder;  ///< Then here.
    std::string commandLine;
    std::string messageLocale;  ///< See language.h.
};

/// Texts longer than 1,023 characters and captions longer than 255 are cut, whether they come from a library
/// or from the translator's file. Either file may have 16 MiB; one that is larger is as if it were missing.
class Texts {
  public:
    /// German until Init_Sprache. What is passed by reference must outlive it.
    Texts(Files& files, SettingsStore& settings, Diagnostics& diagnostics, TextSources sources)
        : files_(files), settings_(settings), diagnostics_(diagnostics), sources_(std::move(sources)) {}

    /// Chooses the language, by the settings or else by the user's system, and loads its library. "-TLMODUS"
    /// anywhere in the command line loads the translator's file.
    void Init_Sprache(const std::string& helpFile, const std::string& translatorFile);
    /// Stores the language that was chosen, so that later starts speak it too. A setting that made no sense
    /// stays.
    void storeLanguage();
    /// Fills the text table from a translator's file, in place of what is in it. A file that cannot be read
    /// changes nothing.
    void LoadTextFromFile(const std::string& path);

    /// The text `id` in the user's language, or `defaultText` where it has none. "%!" becomes CR LF; "%1" to
    /// "%n" become the arguments, one after the other, so that a "%2" in the first argument is replaced too.
    std::string TL(std::int32_t id, std::string_view defaultText,
                   std::initializer_list<SimpleValue> arguments = {}) const;
    /// The caption `id` of a control, empty where there is none, and the control then keeps
    /// its own. An id that is no number has none.
    std::string TranslateControlText(std::string_view id) const;

    int languageId() const { return language_; }
    const std::string& helpFile() const { return helpFile_; }

  private:
    void chooseLanguage(const std::string& helpFile);
    bool loadLibrary(const Language& language);
    /// `limit`: longest text, in characters.
    std::string lookUp(std::int64_t id, std::size_t limit) const;

    Files& files_;
    SettingsStore& settings_;
    Diagnostics& diagnostics_;
    TextSources sources_;
    int language_ = kGerman;
    std::optional<std::string> stored_;  ///< What the settings said; nothing where that made no sense.
    bool translator_ = false;
    Catalogue library_;
    CStringCollection table_;  ///< The translator's texts, by "<id>T".
    std::string helpFile_;
};

}  // namespace hl
