#include "mainwindow/error_form.h"

#include "mainwindow/options_form.h"
#include "support/test_scan.h"

namespace hl::test {
namespace {

/// Records what it is asked. With `broken` it fails at everything but messages.
struct FakeDesk : ErrorDesk {
    bool broken = false;
    std::vector<std::string> asked;
    std::function<void(Form&)> user;
    void copyText(const std::string& text) override { add("copy " + text); }
    void leaveText(const std::string& text) override { add("leave " + text); }
    void openUrl(const std::string& url) override { add(url); }
    void inform(MessageKind, const std::string& title, const std::string& text) override {
        asked.push_back(title + "|" + text);
    }
    void print(const PrintJob& job) override { add("print " + job.title + "|" + job.text); }
    void showForm(Form& form) override { user(form); }

  private:
    void add(const std::string& what) {
        if (broken) throw std::runtime_error("no clipboard");
        asked.push_back(what);
    }
};

struct ErrorFormTest : testing::Test {
    TestTexts texts;
    FakeDesk desk;
    int ended = 0;
    ErrorFormServices services{texts.texts,      texts.files,        desk,
                               kPosixPaths,      texts.dir.path(),   "1.2",
                               "bugs@mail.test", [this] { ++ended; }};
    ErrorForm frmFehler{services, "the\r\nreport"};
};

TEST_F(ErrorFormTest, GoingOnAndQuittingCopyTheReportFirstAlsoWhereThatFails) {
    for (const bool broken : {false, true}) {
        for (const bool quits : {false, true}) {
            ErrorForm form(services, "text");
            desk.broken = broken;
            desk.asked.clear();
            ended = 0;
            quits ? form.cmdBeenden_Click() : form.cmdWeiter_Click();
            EXPECT_EQ(desk.asked, broken ? std::vector<std::string>()
                                         : std::vector<std::string>{quits ? "leave text" : "copy text"});
            EXPECT_EQ(ended, quits ? 1 : 0);
            EXPECT_FALSE(form.loaded);
        }
    }
}

TEST_F(ErrorFormTest, EachSaveMakesAFileOfItsOwnAndSaysWhich) {
    writeFile(texts.dir.path() + "/ERR0002.txt", "older");
    for (const char* name : {"/ERR0001.txt", "/ERR0003.txt"}) {
        frmFehler.cmdSpeichern_Click();
        EXPECT_EQ(desk.asked.back(), "|" + texts.dir.path() + name);
        EXPECT_EQ(contentOf(texts.dir.path() + name), "the\r\nreport\r\n");
    }
    EXPECT_EQ(contentOf(texts.dir.path() + "/ERR0002.txt"), "older");
    services.dataFolder = "/proc/no/folder";
    ErrorForm homeless(services, "text");
    homeless.cmdSpeichern_Click();
    EXPECT_TRUE(
        desk.asked.back().starts_with("|Der Fehlerreport wurde nicht gespeichert: /proc/no/folder/ERR"));
    EXPECT_TRUE(frmFehler.loaded && homeless.loaded);
}

TEST_F(ErrorFormTest, AMailCarriesTheHintAndTheClipboardTheReportAndAPrintToo) {
    frmFehler.cmdEmail_Click();
    ASSERT_EQ(desk.asked.size(), 3U);
    EXPECT_EQ(desk.asked[0], "copy the\r\nreport");
    EXPECT_TRUE(desk.asked[1].starts_with(
        "mailto:bugs@mail.test?subject=Bugreport_Harborlantern_1.2&body=%2A%2A%2A%20Bitte"));
    EXPECT_TRUE(desk.asked[2].starts_with("WICHTIGER HINWEIS|Bitte die"));
    frmFehler.cmdDrucken_Click();
    EXPECT_EQ(desk.asked.back(), "print Error Report|the\r\nreport");
    desk.broken = true;
    frmFehler.cmdDrucken_Click();
    frmFehler.cmdEmail_Click();
    EXPECT_EQ(desk.asked.size(), 5U) << "the hint is shown in any case";
    EXPECT_TRUE(frmFehler.loaded);
}

TEST_F(ErrorFormTest, OffersAMailOnlyWhereThereIsAnAddress) {
    EXPECT_TRUE(has(frmFehler.lblEinleitung, "'bugs@mail.test'"));
    EXPECT_EQ(frmFehler.form().buttons.size(), 5U);
    services.mail = "";
    ErrorForm mute(services, "text");
    EXPECT_FALSE(has(mute.lblEinleitung, "mail"));
    const Form form = mute.form();
    ASSERT_EQ(form.buttons.size(), 4U);
    for (const FormItem& item : form.buttons)
        EXPECT_NE(std::get<CommandButton*>(item.control), &mute.cmdEmail);
}

TEST_F(ErrorFormTest, AReportThatComesWhileOneIsShownTakesItsPlace) {
    ErrorReports reports(services);
    int shown = 0, redrawn = 0;
    desk.user = [&](Form& form) {
        ++shown;
        form.redraw = [&] { ++redrawn; };
        if (shown == 1) reports.show("second");
        form.buttons.front().changed();
    };
    reports.show("first");
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(redrawn, 1);
    EXPECT_EQ(desk.asked, std::vector<std::string>{"copy second"});
    reports.show("third");
    EXPECT_EQ(shown, 2) << "the next one has a form of its own again";
}

struct FakeVerb : FolderVerb {
    Result<> result;
    std::vector<std::string> calls;
    Result<> offer(const FolderOffer& offer) override {
        calls.push_back(offer.executable);
        return result;
    }
    Result<> withdraw() override {
        calls.push_back("withdrawn");
        return result;
    }
};

struct Options_Form : testing::Test, protected TestScan {
    FakeVerb verb;

    std::string ini() const { return contentOf(dir.path() + "/Harborlantern.ini"); }
};

TEST_F(Options_Form, OpensWithTheFileAndRepairsTheOffer) {
    OptionsForm fresh(services, verb, "/opt/lantern");
    EXPECT_TRUE(!fresh.chkKontextmenu.checked && fresh.chkInstanz.checked);
    EXPECT_EQ(fresh.txtDateFormat.text, "dd/MM/yyyy hh:nn:ss");
    writeFile(dir.path() + "/Harborlantern.ini", "[Optionen]\nKontextmenu=1\nInstanz=0\nDateFormat=yyyy\n");
    OptionsForm form(services, verb, "/opt/lantern");
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
        OptionsForm frmOptionen(services, verb, "/opt/lantern");
        Form form = frmOptionen.form();
        if (activated) form.activated();
        frmOptionen.chkKontextmenu.checked = true;
        frmOptionen.txtDateFormat.text = "yyyy";
        frmOptionen.txtKeepScans.text = "700";
        if (changed) form.items.front().changed();
        form.buttons[ok ? 0 : 1].changed();
        EXPECT_FALSE(frmOptionen.loaded);
        EXPECT_EQ(ini().find("Kontextmenu=1") != std::string::npos, saves);
        EXPECT_EQ(verb.calls.back(), saves ? "/opt/lantern" : "withdrawn");
    }
    EXPECT_TRUE(has(ini(), "DateFormat=yyyy"));
    EXPECT_TRUE(has(ini(), "KeepScans=255"));
}

TEST_F(Options_Form, AnOfferThatFailsIsTheDebugLogsMatterAlone) {
    verb.result = Error{13, "Permission denied", "/home/ada/entry"};
    OptionsForm form(services, verb, "/opt/lantern");
    const std::string debug = contentOf(dir.path() + "/debug.log");
    EXPECT_TRUE(has(debug, "#13 - Permission denied"));
    EXPECT_TRUE(has(debug, "/home/ada/entry"));
    EXPECT_TRUE(sink.shown.empty());
}

}  // namespace
}  // namespace hl::test
