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

struct TextInCode {
    int id;
    std::string text;
};

// What stands between double quotes in front of `code`, adjacent literals joined; `code` is left behind them.
std::string takeLiterals(std::string_view& code) {
    const auto skipBlanks = [&] {
        code.remove_prefix(std::min(code.find_first_not_of(" \r\n\t"), code.size()));
    };
    std::string text;
    for (skipBlanks(); code.starts_with('"'); skipBlanks()) {
        code.remove_prefix(1);
        while (!code.empty() && code[0] != '"') {
            if (code[0] == '\\' && code.size() > 1) code.remove_prefix(1);
            text += code[0];
            code.remove_prefix(1);
        }
        code.remove_prefix(std::min<std::size_t>(1, code.size()));
    }
    return text;
}

// Calls such as TL(3612, "Speichern").
std::vector<TextInCode> textsIn(const std::string& code) {
    static const std::regex call(R"(\bTL\(\s*(\d+)\s*,)");
    std::vector<TextInCode> found;
    for (std::sregex_iterator match(code.begin(), code.end(), call), end; match != end; ++match) {
        std::string_view rest(code);
        rest.remove_prefix(static_cast<std::size_t>(match->position() + match->length()));
        found.push_back({std::stoi((*match)[1]), takeLiterals(rest)});
    }
    return found;
}

std::vector<TextInCode> allTextsInCode() {
    std::vector<TextInCode> all;
    for (const auto& file : fs::recursive_directory_iterator(HARBORLANTERN_SOURCE_DIR "/src")) {
        const std::string extension = file.path().extension().string();
        if (extension != ".cpp" && extension != ".h") continue;
        for (TextInCode& text : textsIn(test::contentOf(file.path().string())))
            all.push_back(std::move(text));
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
    for (const TextInCode& text : texts) {
        EXPECT_EQ(german.text(text.id), text.text) << text.id;
        EXPECT_NE(english.text(text.id), "") << text.id << ": " << text.text;
    }
}

TEST_F(DeliveredLibrary, KeepsEveryPlaceholder) {
    for (const auto& [id, text] : german.texts())
        EXPECT_EQ(placeholders(std::string(english.text(id))), placeholders(text)) << id;
}

TEST_F(DeliveredLibrary, HasBothLanguagesOfEachText) {
    EXPECT_FALSE(german.empty());
    EXPECT_EQ(german.texts().size(), english.texts().size());
    for (const auto& [id, text] : english.texts()) EXPECT_NE(german.text(id), "") << id << ": " << text;
}

TEST_F(DeliveredLibrary, NamesEachTextOnce) {
    const std::regex heading(R"((^|\n)\[\d+\])");
    const auto headings = std::distance(std::sregex_iterator(content.begin(), content.end(), heading), {});
    EXPECT_EQ(static_cast<std::size_t>(headings), english.texts().size());
}

TEST(TextsInCode, AreFoundHoweverTheyAreWritten) {
    const auto found = textsIn(R"code(
        a = TL(1, "one"); b = texts.TL(  2 ,
            "two \"and\" "
            "three\\", {x});
        notTL(3, "no"); TL(id, "no");)code");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].id, 1);
    EXPECT_EQ(found[0].text, "one");
    EXPECT_EQ(found[1].id, 2);
    EXPECT_EQ(found[1].text, "two \"and\" three\\");
}

}  // namespace
}  // namespace hl
