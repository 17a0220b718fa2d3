#include "app/usage.h"

#include <gtest/gtest.h>

#include "app/settings_fixture.h"
#include "base/text.h"

namespace hl {
namespace {

class Usage : public test::SettingsFixture {
  protected:
    Usage() { english.Init_Sprache("", "", false); }

    Texts german{files, store, diagnostics, {}};
    Texts english{files, store, diagnostics, {dir.path(), HARBORLANTERN_SOURCE_DIR "/lang", "", "en_GB"}};
};

TEST_F(Usage, FitsATerminalInBothLanguages) {
    for (const Texts* texts : {&german, &english}) {
        const std::string usage = usageText(*texts);
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
