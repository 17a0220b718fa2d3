#include "mainwindow/options_form.h"

#include <gtest/gtest.h>

#include "support/test_texts.h"
#include "support/whole_files.h"

namespace hl {
namespace {

struct FakeVerb : FolderVerb {
    FolderVerbFailure failure;
    std::vector<std::string> calls;
    FolderVerbFailure offer(const FolderOffer& offer) override {
        calls.push_back(offer.executable);
        return failure;
    }
    FolderVerbFailure withdraw() override {
        calls.push_back("withdrawn");
        return failure;
    }
};

class Options_Form : public testing::Test {
  protected:
    test::TestTexts texts;
    Log log{texts.files, texts.dir.path(), DateFormat()};
    FakeVerb verb;
    OptionsServices services{texts.store,       texts.texts, log,           texts.system,
                             texts.diagnostics, verb,        "/opt/lantern"};

    std::string ini() const { return test::contentOf(texts.dir.path() + "/Harborlantern.ini"); }
};

TEST_F(Options_Form, OpensWithTheFileAndRepairsTheOffer) {
    OptionsForm fresh(services);
    EXPECT_TRUE(!fresh.chkKontextmenu.checked && fresh.chkInstanz.checked);
    EXPECT_EQ(fresh.txtDateFormat.text, "dd/MM/yyyy hh:nn:ss");
    test::writeFile(texts.dir.path() + "/Harborlantern.ini",
                    "[Optionen]\nKontextmenu=1\nInstanz=0\nDateFormat=yyyy\n");
    OptionsForm form(services);
    EXPECT_TRUE(form.chkKontextmenu.checked && !form.chkInstanz.checked);
    EXPECT_EQ(form.txtDateFormat.text, "yyyy");
    EXPECT_EQ(verb.calls, (std::vector<std::string>{"withdrawn", "/opt/lantern"}));
}

TEST_F(Options_Form, SavesOnOkWhatTheUserChangedAndNothingElse) {
    const bool cases[][4] = {{true, false, true, false},
                             {false, true, true, false},
                             {true, true, false, false},
                             {true, true, true, true}};
    for (const auto& [activated, changed, ok, saves] : cases) {
        OptionsForm frmOptionen(services);
        Form form = frmOptionen.form();
        if (activated) form.activated();
        frmOptionen.chkKontextmenu.checked = true;
        frmOptionen.txtDateFormat.text = "yyyy";
        if (changed) form.items.front().changed();
        form.buttons[ok ? 0 : 1].changed();
        EXPECT_FALSE(frmOptionen.loaded);
        EXPECT_EQ(ini().find("Kontextmenu=1") != std::string::npos, saves);
        EXPECT_EQ(verb.calls.back(), saves ? "/opt/lantern" : "withdrawn");
    }
    EXPECT_NE(ini().find("DateFormat=yyyy"), std::string::npos);
}

TEST_F(Options_Form, AnOfferThatFailsIsTheDebugLogsMatterAlone) {
    verb.failure = {13, "/home/ada/entry"};
    OptionsForm form(services);
    const std::string debug = test::contentOf(texts.dir.path() + "/debug.log");
    EXPECT_NE(debug.find("#13 - Permission denied"), std::string::npos) << debug;
    EXPECT_NE(debug.find("/home/ada/entry"), std::string::npos) << debug;
    EXPECT_TRUE(texts.sink.shown.empty());
}

}  // namespace
}  // namespace hl
