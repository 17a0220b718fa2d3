// The texts in the code and the language libraries that are delivered say the same.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "app/catalogue.h"
#include "app/language.h"
#include "base/text.h"
#include "support/whole_files.h"

namespace hl {
namespace {

namespace fs = std::filesystem;

using Found = std::vector<std::pair<int, std::string>>;

// Calls such as TL(3612, "Speichern"), adjacent literals joined.
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
        if (extension == ".cpp" || extension == ".h") addTextsIn(test::contentOf(file.path().string()), all);
    }
    return all;
}

// "%1", "%2", "%!", each as often as it stands there.
std::multiset<std::string> placeholders(const std::string& text) {
    static const std::regex placeholder("%([0-9]+|!)");
    std::multiset<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), placeholder), end; match != end; ++match)
        found.insert(match->str());
    return found;
}

constexpr int kItalian = 16;
constexpr int kDutch = 19;

class DeliveredLibrary : public testing::TestWithParam<int> {
  protected:
    const Language& language = languageOf(GetParam());
    std::string content = test::contentOf(HARBORLANTERN_SOURCE_DIR "/lang/" + std::string(language.library));
    Catalogue german{content, "de"};
    Catalogue texts{content, language.code};
};

TEST_P(DeliveredLibrary, HoldsEveryTextInTheCodeAsItStandsThere) {
    const auto inCode = allTextsInCode();
    EXPECT_GE(inCode.size(), 15U) << "the search of the sources finds too little";
    for (const auto& [id, text] : inCode) EXPECT_EQ(german.text(id), text) << id;
}

TEST_P(DeliveredLibrary, HasBothLanguagesOfEachTextWithTheSamePlaceholders) {
    EXPECT_EQ(german.texts().size(), texts.texts().size());
    for (const auto& [id, text] : german.texts()) {
        EXPECT_NE(texts.text(id), "") << id << ": " << text;
        EXPECT_EQ(placeholders(std::string(texts.text(id))), placeholders(text)) << id;
    }
}

TEST_P(DeliveredLibrary, NamesEachTextOnce) {
    const std::regex heading(R"((^|\n)\[\d+\])");
    const auto headings = std::distance(std::sregex_iterator(content.begin(), content.end(), heading), {});
    EXPECT_EQ(static_cast<std::size_t>(headings), texts.texts().size());
}

TEST_P(DeliveredLibrary, GivesEachButtonOfTheErrorReportItsOwnLetter) {
    std::set<char> letters;
    for (int id = 9454; id <= 9458; ++id) {
        const std::string caption = lowerCase(texts.text(id)) + "&";
        EXPECT_TRUE(letters.insert(caption[caption.find('&') + 1]).second) << caption;
    }
}

INSTANTIATE_TEST_SUITE_P(All, DeliveredLibrary, testing::Values(kEnglish, kItalian, kDutch),
                         [](const auto& test) { return std::string(languageOf(test.param).code); });

}  // namespace
}  // namespace hl
