#include "app/texts.h"

#include <limits>

#include "app/setting_keys.h"
#include "app/translator_file.h"
#include "base/fault.h"
#include "base/path.h"
#include "base/text.h"
#include "robustness/trap.h"

namespace hl {

namespace {

constexpr std::size_t kLongestText = 1023;    // Characters.
constexpr std::size_t kLongestCaption = 255;  // Characters.
constexpr const char* kModule = "z_Translate";

std::string tableKey(std::int64_t id) {
    return std::to_string(id) + "T";
}

int languageNumber(const std::string& text) {
    const auto number = parseInteger(text);
    if (!number) {
        const std::string setting = std::string(kKeyLanguage.key) + "=" + visible(text);
        throw Fault(kFaultTypeMismatch, "Init_Sprache", "Type mismatch: " + setting);
    }
    if (*number < std::numeric_limits<std::int16_t>::min() ||
        *number > std::numeric_limits<std::int16_t>::max())
        raiseOverflow("Init_Sprache");
    return static_cast<int>(*number);
}

}  // namespace

void Texts::Init_Sprache(const std::string& helpFile, const std::string& translatorFile) {
    guarded(diagnostics_, {.module = kModule}, [&] {
        chooseLanguage(helpFile);
        if (sources_.commandLine.find("-TLMODUS") == std::string::npos) return;
        translator_ = true;
        LoadTextFromFile(sources_.settingsFolder + "/" + translatorFile);
    });
}

void Texts::chooseLanguage(const std::string& helpFile) {
    languages_ = findLanguages(files_, {sources_.settingsFolder, sources_.executableFolder});
    const std::string stored = settings_.GetSettings(kKeyLanguage.section, kKeyLanguage.key, "");
    const int wanted = languageNumber(stored.empty() ? std::to_string(kKeyLanguage.defaultValue) : stored);
    const Language& language =
        languageOf(languages_, wanted == 0 ? systemLanguageId(languages_, sources_.messageLocale) : wanted);
    language_ = language.id;
    if (language.id != kGerman) {
        if (loadLibrary(language)) {
            helpFile_ = sources_.settingsFolder + "/" + helpFile;
        } else {
            // For another language the fallback, English, is loaded only at the next start.
            language_ = language.fallback;
        }
    }
    stored_ = stored;
}

void Texts::storeLanguage() {
    if (stored_ && *stored_ != std::to_string(language_))
        settings_.StoreSettings(kKeyLanguage.section, kKeyLanguage.key, language_);
}

// A file without any text of the language does not count as its library.
bool Texts::loadLibrary(const Language& language) {
    for (const std::string* folder : {&sources_.settingsFolder, &sources_.executableFolder}) {
        const std::string path = *folder + "/" + language.library;
        const auto content = files_.readWhole(path, kLargestTextFile);
        if (!content) continue;
        library_ = Catalogue(*content, language.code);
        if (!library_.empty()) return true;
    }
    return false;
}

void Texts::LoadTextFromFile(const std::string& path) {
    guarded(diagnostics_, {.module = kModule}, [&] {
        const auto content = files_.readWhole(path, kLargestTextFile);
        if (!content) return;
        translator_ = true;
        table_.Clear();
        for (const TranslatorRecord& record : parseTranslatorFile(*content)) {
            const std::string key = tableKey(record.id);
            if (table_.Add(record.text, key) == 0) table_.ChangeValues(key, record.text, 0);
        }
    });
}

std::string Texts::lookUp(std::int64_t id, std::size_t limit) const {
    if (translator_) return std::string(firstCharacters(table_.Item(tableKey(id)), limit));
    if (id > Catalogue::kHighestId) return {};
    return std::string(firstCharacters(TrimAtNul(library_.text(static_cast<int>(id))), limit));
}

std::string Texts::TL(std::int32_t id, std::string_view defaultText,
                      std::initializer_list<SimpleValue> arguments) const {
    return guarded(diagnostics_, {.module = kModule}, [&] {
        std::string text;
        if ((translator_ || language_ != kGerman) && id > 0) text = lookUp(id, kLongestText);
        if (text.empty()) text = defaultText;
        text = replaceAll(text, "%!", "\r\n");
        int number = 0;
        for (const SimpleValue& argument : arguments)
            text = replaceAll(text, "%" + std::to_string(++number), argument.text());
        return text;
    });
}

std::string Texts::TranslateControlText(std::string_view id) const {
    const auto number = parseInteger(id);
    if (!number || *number <= 0 || (!translator_ && language_ == kGerman)) return {};
    return lookUp(*number, kLongestCaption);
}

}  // namespace hl
