// The texts in the code and the language library that is delivered say the same.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "app/catalogue.h"
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

class DeliveredLibrary : public testing::Test {
  protected:
    std::string content = test::contentOf(HARBORLANTERN_SOURCE_DIR "/lang/eng.dll");
    Catalogue german{content, "de"};
    Catalogue english{content, "en"};
};

TEST_F(DeliveredLibrary, HoldsEveryTextInTheCodeAsItStandsThere) {
    const auto texts = allTextsInCode();
    EXPECT_GE(texts.size(), 15U) << "the search of the sources finds too little";
    for (const auto& [id, text] : texts) EXPECT_EQ(german.text(id), text) << id;
}

TEST_F(DeliveredLibrary, HasBothLanguagesOfEachTextWithTheSamePlaceholders) {
    EXPECT_EQ(german.texts().size(), english.texts().size());
    for (const auto& [id, text] : german.texts()) {
        EXPECT_NE(english.text(id), "") << id << ": " << text;
        EXPECT_EQ(placeholders(std::string(english.text(id))), placeholders(text)) << id;
    }
}

TEST_F(DeliveredLibrary, NamesEachTextOnce) {
    const std::regex heading(R"((^|\n)\[\d+\])");
    const auto headings = std::distance(std::sregex_iterator(content.begin(), content.end(), heading), {});
    EXPECT_EQ(static_cast<std::size_t>(headings), english.texts().size());
}

}  // namespace
}  // namespace hl
