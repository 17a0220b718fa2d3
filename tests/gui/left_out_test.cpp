// Tests how the window shows what rules leave out, reads it all the same, and keeps the rules.

#include "gui/files_fixture.h"

namespace hl::test {
namespace {

struct LeftOutTest : FilesTest {
    std::string note(const std::string& row) { return std::string(s().grid().rowNote(s().row(row))); }
    std::string title(BarId bar) {
        return s().form().parts().bars[static_cast<std::size_t>(bar)]->find(0)->caption;
    }
    /// Opens the options, types rules and presses OK; `then` is done in the dialog if that leaves it open.
    void typeRules(const QString& rules, const std::function<void(QDialog&)>& then = nullptr) {
        s().answers.add([=](QDialog& dialog) {
            auto* box = dialog.findChild<QPlainTextEdit*>();
            ASSERT_NE(box, nullptr);
            box->setPlainText(rules);
            pressIn(dialog, "OK");
            if (then) then(dialog);
        });
        s().click(Command::kOptions);
    }
};

TEST_F(LeftOutTest, AFolderKeepsAGreyRowThatNamesTheRuleAndIsReadAllTheSameIfTheUserWants) {
    options("AskBeforeDelete=1\r\nExclude0=# none\r\nExclude1=deep/\r\nExclude2=/b.*\r\n");
    folder("src/sub/deep/deep");
    start();
    const std::string text = "durch Regeln ausgelassen: 1 Ordner, 1 Dateien";
    EXPECT_TRUE(has(s().status(), text)) << s().status();
    s().click(Command::kReportUnfoldAll);
    EXPECT_EQ(s().grid().picture(s().row("deep")), kPictureLeftOut);
    EXPECT_EQ(note("deep"), "ausgelassen: deep/");
    EXPECT_EQ(s().numbers("src"), "800|3|3");
    EXPECT_TRUE(has(title(BarId::kTop), text)) << title(BarId::kTop);
    EXPECT_EQ(title(BarId::kHardlinks), "Hardlinks (" + text + ")");
    const GridView& top = session_->open(kTopList);
    EXPECT_EQ(top.grid().rowCount(), 3U);

    std::string question;
    s().clickRow("sub");
    answer("Abbrechen", &question);
    s().execute(Command::kDeleteFolders);
    EXPECT_TRUE(has(question, "was durch Regeln ausgelassen ist: 1 Ordner, 0 Dateien")) << question;

    // A file in it that goes changes no figure.
    fs::remove(at("src/sub/deep/e.txt"));
    file("src/sub/deep/f.txt", 50);
    s().clickRow("deep");
    s().execute(Command::kReportRescan);
    EXPECT_EQ(note("deep"), "ausgelassen: deep/") << "it is left out as by a fresh scan";
    expectReportOfAFreshScan();

    s().clickRow("deep");
    s().key(s().view(), Qt::Key_Return);
    EXPECT_EQ(note("deep"), "");
    EXPECT_EQ(s().numbers("src"), "850|4|4") << "with all that it holds";
    EXPECT_TRUE(has(s().status(), "0 Ordner, 1 Dateien")) << s().status();
    s().clickRow("sub");
    s().execute(Command::kReportRescan);
    EXPECT_EQ(s().numbers("src"), "850|4|4") << "it stays so";
    s().scan(at("src"));
    EXPECT_EQ(s().numbers(s().grid().currentRow()), "800|3|3") << "until the source is read anew";
}

TEST_F(LeftOutTest, ARowsMenuReadsItAllTheSame) {
    options("Exclude0=deep\r\n");
    startUnfolded();
    const auto menuOf = [&](const char* row, const char* entry) {
        const MenuAnswer menu(entry);
        rightClick(s().view(), s().row(row));
        return menu.entries();
    };
    EXPECT_EQ(std::ranges::count_if(menuOf("sub", "none"),
                                    [](const std::string& entry) { return has(entry, "Trotzdem"); }),
              0);
    menuOf("deep", "Trotzdem einlesen");
    EXPECT_EQ(s().numbers("deep"), "500|1|");
}

TEST_F(LeftOutTest, TheTitlesOfFoundFilesAndStatisticsSayWhatIsMissing) {
    options("Exclude0=deep\r\n");
    start();
    const auto title = [&](BarId bar) {
        return s().form().parts().bars[static_cast<std::size_t>(bar)]->find(0)->caption;
    };
    const std::string missing = "(durch Regeln ausgelassen: 1 Ordner, 0 Dateien)";
    s().click(Command::kShowFind);
    for (const char* filter : {"size>=0", "txt"}) {
        s().type(Command::kFindFilter, filter, Qt::Key_Return);
        EXPECT_TRUE(title(BarId::kFind).ends_with(missing)) << title(BarId::kFind);
    }
    s().click(Command::kShowStatistics);
    EXPECT_TRUE(title(BarId::kStatistics).ends_with(missing)) << title(BarId::kStatistics);
}

TEST_F(LeftOutTest, TheOptionsKeepRulesAndSayWhichCannotBeRead) {
    options("Exclude3=other\r\n");
    start();
    std::string problem;
    typeRules(QStringLiteral("*.txt\n!c.txt\n\na[b"), [&](QDialog& dialog) {
        for (const QLabel* label : dialog.findChildren<QLabel*>())
            if (label->text().contains(QStringLiteral("a[b"))) problem = label->text().toStdString();
        EXPECT_TRUE(dialog.isVisible());
        dialog.findChild<QPlainTextEdit*>()->setPlainText(QStringLiteral("*.txt\n!c.txt\n"));
        pressIn(dialog, "OK");
    });
    EXPECT_EQ(problem, "Die Regel a[b kann nicht gelesen werden: zu einem [ fehlt das ].");
    s().scan(at("src"));
    EXPECT_EQ(s().numbers(s().grid().currentRow()), "300|1|3");
    s().frame().close();
    const IniText saved(contentOf(home.path() + "/Harborlantern.ini"));
    EXPECT_EQ(saved.find("Optionen", "Exclude0"), "*.txt");
    EXPECT_EQ(saved.find("Optionen", "Exclude1"), "!c.txt");
    EXPECT_EQ(saved.find("Optionen", "Exclude3"), "");
}

}  // namespace
}  // namespace hl::test
