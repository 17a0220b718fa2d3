// Tests that the texts in the code and in the delivered language libraries agree.

#include "app/catalogue.h"
#include "app/language.h"
#include "base/text.h"
#include "platform/linux/change/files.h"

namespace hl::test {
namespace {

using Found = std::vector<std::pair<int, std::string>>;

// Adds the texts of calls such as TL(3612, "Speichern"); adjacent literals are joined.
void addTextsIn(const std::string& code, Found& found) {
    static const std::regex call(R"(\bTL\(\s*(\d+)\s*,\s*((?:"(?:[^"\\]|\\.)*"\s*)+))");
    static const std::regex literal(R"x("((?:[^"\\]|\\.)*)")x");
    static const std::regex escape(R"(\\(.))");
    const std::sregex_iterator end;
    for (std::sregex_iterator match(code.begin(), code.end(), call); match != end; ++match) {
        const std::string literals = (*match)[2];
        std::string text;
        for (std::sregex_iterator part(literals.begin(), literals.end(), literal); part != end; ++part)
            text += std::regex_replace((*part)[1].str(), escape, "$1");
        found.emplace_back(std::stoi((*match)[1]), text);
    }
}

Found allTextsInCode() {
    Found all;
    for (const auto& file : fs::recursive_directory_iterator(HARBORLANTERN_SOURCE_DIR "/src")) {
        const std::string extension = file.path().extension().string();
        if (extension == ".cpp" || extension == ".h") addTextsIn(contentOf(file.path().string()), all);
    }
    return all;
}

// Returns "%1", "%2" and "%!", each as often as the text has it.
std::multiset<std::string> placeholders(const std::string& text) {
    static const std::regex placeholder("%([0-9]+|!)");
    std::multiset<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), placeholder), end; match != end; ++match)
        found.insert(match->str());
    return found;
}

// Returns every language that has a library.
std::vector<Language> languagesWithLibrary() {
    LinuxFiles files;
    std::vector<Language> all = findLanguages(files, {HARBORLANTERN_SOURCE_DIR "/lang"});
    std::erase_if(all, [](const Language& one) { return one.library.empty(); });
    return all;
}

std::string libraryText(std::string_view library) {
    return contentOf(HARBORLANTERN_SOURCE_DIR "/lang/" + std::string(library));
}

// Returns the longest length of a translation: captions and messages have different limits, and the German
// text shows which one a text can be.
std::size_t longest(std::string_view german) {
    constexpr std::size_t kCaption = 255, kMessage = 1023;
    return characterCount(german) <= kCaption ? kCaption : kMessage;
}

struct DeliveredLibrary : testing::TestWithParam<Language> {
    std::string content = libraryText(GetParam().library);
    Catalogue german{content, "de"};
    Catalogue own{content, GetParam().code};

    std::string textOf(int id) const { return std::string(own.text(id)); }
};

TEST_P(DeliveredLibrary, HoldsEveryTextInTheCodeAsItStandsThere) {
    const auto texts = allTextsInCode();
    EXPECT_GE(texts.size(), 15U) << "the search of the sources finds too little";
    for (const auto& [id, text] : texts) EXPECT_EQ(german.text(id), text) << id;
}

TEST_P(DeliveredLibrary, HasTheSameGermanTextsAsTheEnglishOneAndATranslationOfEach) {
    EXPECT_EQ(german.texts(), Catalogue(libraryText("eng.dll"), "de").texts());
    for (const auto& [id, text] : german.texts())
        EXPECT_NE(trimWhite(own.text(id)), "") << id << ": " << text;
    for (const auto& [id, text] : own.texts()) EXPECT_NE(german.text(id), "") << id << ": " << text;
}

TEST_P(DeliveredLibrary, KeepsPlaceholdersOuterBlanksAndTheLengthThatIsRead) {
    for (const auto& [id, text] : german.texts()) {
        const std::string translated = textOf(id);
        EXPECT_EQ(placeholders(translated), placeholders(text)) << id;
        EXPECT_EQ(translated.starts_with(' '), text.starts_with(' ')) << id;
        EXPECT_EQ(translated.ends_with(' '), text.ends_with(' ')) << id;
        EXPECT_LE(characterCount(translated), longest(text)) << id;
        EXPECT_EQ(decodable(translated), translated) << id;
    }
}

// Returns the letter behind the "&" of a caption, in lower case.
std::string accelerator(std::string_view caption) {
    const std::string_view behind = caption.substr(std::min(caption.find('&'), caption.size() - 1) + 1);
    return lowerCase(firstCharacters(behind, 1));
}

TEST_P(DeliveredLibrary, MarksALetterWhereGermanDoesAndNoneTwiceInAForm) {
    constexpr int kFirstOfPrintPreview = 9591;  // Before it, only the error report has marks.
    std::set<std::pair<bool, std::string>> taken;
    for (const auto& [id, text] : german.texts()) {
        const std::string translated = textOf(id);
        EXPECT_EQ(std::ranges::count(translated, '&'), std::ranges::count(text, '&')) << id;
        if (text.find('&') == std::string::npos) continue;
        const std::string letter = accelerator(translated);
        EXPECT_TRUE(!letter.empty() && letter != " ") << id;
        EXPECT_TRUE(taken.insert({id >= kFirstOfPrintPreview, letter}).second)
            << id << " has the letter of another button";
    }
}

TEST_P(DeliveredLibrary, NamesTheArgumentsOfTheCommandLineAlikeAndEndsNoItemOfAListTooEarly) {
    for (const int id : {9113, 9114, 9115}) EXPECT_EQ(textOf(id).find(';'), std::string::npos) << id;
    const std::string example = "harborlantern -s " + textOf(9004) + " " + textOf(9002) + "...";
    for (const int id : {9023, 9024, 9025}) EXPECT_TRUE(has(textOf(id), example)) << id;
}

INSTANTIATE_TEST_SUITE_P(Languages, DeliveredLibrary, testing::ValuesIn(languagesWithLibrary()),
                         [](const auto& one) { return one.param.code; });

}  // namespace
}  // namespace hl::test
