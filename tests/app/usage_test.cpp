#include "app/usage.h"

#include "app/settings_fixture.h"
#include "base/text.h"

namespace hl {
namespace {

class Usage : public test::SettingsFixture {
  protected:
    Texts textsFor(const std::string& locale) {
        Texts texts{files, store, diagnostics, {dir.path(), HARBORLANTERN_SOURCE_DIR "/lang", "", locale}};
        texts.Init_Sprache("", "");
        return texts;
    }

    Texts english = textsFor("en_GB");
};

TEST_F(Usage, FitsATerminalInEachLanguage) {
    for (const char* locale : {"de_DE", "en_GB", "it_IT", "nl_NL"}) {
        const std::string usage = usageText(textsFor(locale));
        for (std::string_view text = usage; !text.empty(); text.remove_prefix(text.find('\n') + 1))
            EXPECT_LE(characterCount(text.substr(0, text.find('\n'))), 100U)
                << text.substr(0, text.find('\n'));
    }
}

TEST_F(Usage, SaysWhatIsWrongWithALine) {
    const auto problem = [&](const std::string& argument) {
        return problemText(english, joinArguments({argument}, "/", kPosixPaths));
    };
    EXPECT_EQ(problem("-\n\xFF"),
              "Unknown option -␊\uFFFD. For a file or folder of that name, use ./-␊\uFFFD");
    EXPECT_EQ(problem(""), "An argument is empty.");
}

}  // namespace
}  // namespace hl
