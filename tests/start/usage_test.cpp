#include "start/usage.h"

#include "base/text.h"
#include "output/report_formats.h"
#include "support/test_texts.h"

namespace hl::test {
namespace {

std::string problem(const TestTexts& texts, const std::string& argument) {
    return problemText(texts.texts, joinArguments({"-s", argument}, "/", kPosixPaths, formatNames()));
}

TEST(Usage, FitsATerminalAndNamesEachFormatInEachLanguage) {
    for (const char* locale : {"de_DE", "en_GB", "it_IT", "nl_NL"}) {
        const TestTexts texts(locale);
        const std::string usage = usageText(texts.texts);
        for (const std::string_view format : formatNames()) {
            EXPECT_TRUE(has(formatHelp(texts.texts), format)) << locale;
            EXPECT_TRUE(has(problem(texts, "--format="), "--format=" + std::string(format)))
                << locale << format;
        }
        for (std::string_view text = usage; !text.empty(); text.remove_prefix(text.find('\n') + 1))
            EXPECT_LE(characterCount(text.substr(0, text.find('\n'))), 100U)
                << text.substr(0, text.find('\n'));
    }
}

TEST(Usage, SaysWhatIsWrongWithALine) {
    const TestTexts english("en_GB");
    EXPECT_EQ(problem(english, "-\n\xFF"),
              "Unknown option -␊\uFFFD. For a file or folder of that name, use ./-␊\uFFFD");
    EXPECT_EQ(problem(english, ""), "An argument is empty.");
}

}  // namespace
}  // namespace hl::test
