// Tests what a session reads from files at its start and leaves in them: reports, settings, Toolbar.dat.

#include "gui/window_fixture.h"

namespace hl::test {
namespace {

struct WindowFilesTest : WindowTest {
    std::string toolbars() const { return home.path() + "/Toolbar.dat"; }
    /// Goes on after the report of an error, which comes when the window is visible.
    static void goOn(Session& s) {
        s.answers.add([&s](QDialog& dialog) {
            EXPECT_TRUE(dialog.objectName() == QLatin1String("frmFehler") && s.frame().isVisible());
            pressIn(dialog, "Weiter");
        });
    }
    static QRect qRect(const Rect& rect) { return {rect.left, rect.top, rect.width, rect.height}; }
};

TEST_F(WindowFilesTest, AReportIsSavedInTheFormatThatIsChosen) {
    smallTree();
    Session s(home.path(), at("src"));
    s.clickRow("a");
    for (const auto& [format, scope, name] : {std::tuple(Qt::Key_C, "Alle Ordner", "r.csv"),
                                              std::tuple(Qt::Key_T, "Ausgewählter Ordner", "r.txt")}) {
        s.answers.add([&, format = format, scope = scope](QDialog& dialog) {
            EXPECT_EQ(dialog.objectName(), QStringLiteral("frmSave"));
            pressIn(dialog, scope);
            pressIn(dialog, "Alle Ordnerebenen");
            auto* combo = dialog.findChildren<QComboBox*>().first();
            combo->setFocus();
            QTest::keyClick(combo, format);
            pressIn(dialog, "OK");
        });
        s.answers.add([&, name = name](QDialog& dialog) { choosePath(dialog, at(name)); });
        QTest::keyClick(&s.view(), Qt::Key_S, Qt::ControlModifier);
        Session::settle();
    }
    const std::string csv = contentOf(at("r.csv")), src = "\r\n\"" + at("src");
    EXPECT_EQ(csv.find("\"Pfad\";\"Größe (Bytes)\";\"Dateien\";\"Ordner\"" + src + "\";\"457\";4;3"), 0U)
        << csv;
    for (const char* line : {"/a\";\"400\";2;1", "/a/aa\";\"300\";1;0", "/b\";\"50\";1;0"})
        EXPECT_TRUE(has(csv, src + line)) << line;
    EXPECT_EQ(contentOf(at("r.txt")),
              "Größe (Bytes)\tDateien\tOrdner\tPfad\r\n"
              "          400\t      2\t     1\ta\r\n"
              "          300\t      1\t     0\ta/aa\r\n"
              "          100\t      1\t     0\ta/[Dateien]\r\n");
}

TEST_F(WindowFilesTest, ARestartForAnotherLanguageKeepsSourcesBarsPanesAndPlace) {
    folder("src/a");
    folder("src2");
    QRect place;
    {
        Session s(home.path());
        s.start();
        s.scan(at("src"));
        s.scan(at("src2"));
        for (const Command entry : {Command::kReportFilesColumn, Command::kReportBytes + 1,
                                    Command::kShowDrives, Command::kShowHardlinks, Command::kIconText})
            s.click(entry);
        s.frame().setGeometry(30, 40, 700, 650);
        Session::settle();
        place = qRect(s.window().normalGeometry());
        s.click(Command::kLanguageGerman + 1);
        EXPECT_TRUE(s.form().restartPending() && s.frame().unloaded());
    }
    const std::string bars = contentOf(toolbars());
    EXPECT_TRUE(has(contentOf(ini()), "Lang=9"));
    Session s(home.path());
    s.start();
    const auto* combo = s.frame().findChild<QComboBox*>(QStringLiteral("cboOrdner"));
    EXPECT_GE(combo->findText(QString::fromStdString(at("src/"))), 0);
    EXPECT_EQ(combo->currentText().toStdString(), at("src2/"));
    EXPECT_EQ(s.panes(), "tvwPL lvwHardlinks");
    EXPECT_EQ(s.view().shownColumns(), (std::vector<std::size_t>{0, 1, 2, 4}));
    EXPECT_EQ(s.grid().columns()[1].title, "Size (KB)");
    EXPECT_TRUE(s.frame().findChild<QAbstractButton*>(entryName(Command::kIconText))->isChecked());
    EXPECT_EQ(qRect(s.window().normalGeometry()), place);
    s.frame().close();
    EXPECT_EQ(contentOf(toolbars()), bars);
}

TEST_F(WindowFilesTest, ALanguageIsInTheMenuAsSoonAsItsFileIsThere) {
    const Command polish = commandOf(BarId::kMain, 400);
    writeFile(home.path() + "/pol.dll",
              "[Language]\nLang=21\ncode=pl\nname=Polski\n[3515]\nde=Bytes\npl=Bajty\n");
    {
        Session s(home.path());
        s.start();
        EXPECT_EQ(s.form().parts().bars[0]->find(idOf(polish))->caption, "Polski");
        s.click(polish);
        EXPECT_TRUE(s.form().restartPending());
    }
    Session s(home.path());
    s.start();
    EXPECT_EQ(s.grid().columns()[1].title, "Größe (Bajty)");
    EXPECT_TRUE(s.form().parts().bars[0]->isChecked(idOf(polish)));
}

TEST_F(WindowFilesTest, AWindowThatWasLeftOffTheScreenComesBackOntoIt) {
    setSettings("Left=480000\r\nTop=480000\r\nWidth=225000\r\nHeight=135000\r\n");
    Session s(home.path());
    s.start();
    const QScreen& screen = *s.frame().screen();
    EXPECT_TRUE(screen.availableGeometry().contains(s.frame().geometry().topLeft()));
    EXPECT_LE(s.frame().width(), screen.availableVirtualSize().width());
}

TEST_F(WindowFilesTest, GarbageInItsFilesKeepsNoWindowFromOpening) {
    const std::string noise("\0\xFF[[[\n=\nForm]\r[Form\nWidth=\r\n", 28);
    writeFile(ini(), "[Allgemein]\r\nLang=7\r\n" + noise + "[Form]\nWidth=9e99\nTVW=nan\nWindowState=7\n");
    writeFile(toolbars(), noise);
    Session s(home.path());
    s.start();
    EXPECT_EQ(s.reports.size(), 0U);
    EXPECT_TRUE(s.frame().isVisible() && s.enabled(Command::kStart));
}

TEST_F(WindowFilesTest, ALanguageThatMakesNoSenseIsReportedThoughItIsReadBeforeThereIsAWindow) {
    writeFile(ini(), "[Allgemein]\r\nLang=abc\r\n");
    Session s(home.path());
    goOn(s);
    s.start();
    EXPECT_EQ(s.reports.size(), 1U);
    EXPECT_TRUE(s.enabled(Command::kStart));
}

TEST_F(WindowFilesTest, ASettingThatMakesNoSenseIsReportedAndCostsNoOther) {
    setSettings(
        "[Optionen]\r\nFileSizeFormat=many\r\nFontSize=14\r\nFontName=Foo\r\nToplistVisible=1\r\n"
        "ShowIcons=1\r\n6FileColumn=0\r\nColFileVisible=1\r\n");
    const auto option = [this](const char* key) {
        return IniText(contentOf(ini())).find("Optionen", key).value_or("none");
    };
    for (const bool larger : {false, true}) {
        Session s(home.path());
        goOn(s);
        s.start();
        EXPECT_EQ(s.reports.size(), 1U);
        EXPECT_TRUE(s.enabled(Command::kStart));
        const double shown = s.view().gridFont().points;
        EXPECT_GE(shown, 6);
        if (larger) s.click(Command::kLargerFont);
        EXPECT_EQ(s.view().gridFont().points, shown + (larger ? 1 : 0));
        s.frame().close();
        EXPECT_EQ(option("FileSizeFormat") + option("FontName") + option("ToplistVisible") +
                      option("ShowIcons") + option("6FileColumn") + option("ColFileVisible"),
                  "manyFoo1101");
        EXPECT_EQ(std::stod(option("FontSize")), larger ? shown + 1 : 14);
        EXPECT_EQ(option("FontNameDisk") + option("FilelistVisible"), "nonenone");
    }
}

TEST_F(WindowFilesTest, TheChoiceToCountSnapshotsIsKept) {
    for (const auto& [before, after] :
         {std::pair("", "1"), {"CountSnapshots=1", "0"}, {"CountSnapshots=x", "1"}}) {
        setSettings("[Optionen]\r\n" + std::string(before));
        Session s(home.path());
        s.start();
        s.answers.add([](QDialog& dialog) {
            test::pressIn(dialog, "Snapshots (btrfs) mitzählen, deren Ursprung in derselben Quelle liegt");
            test::pressIn(dialog, "OK");
        });
        s.click(Command::kOptions);
        EXPECT_EQ(std::to_string(s.form().form().session.options.CountSnapshots), after);
        s.frame().close();
        EXPECT_EQ(IniText(contentOf(ini())).find("Optionen", "CountSnapshots"), after) << before;
    }
}

TEST_F(WindowFilesTest, AnErrorBeforeTheSourcesAreLoadedCostsNoneOfThem) {
    setSettings("[Optionen]\r\nComboText=/usr\r\n[ComboOrdner]\r\n0O=/tmp\r\n1O=/usr\r\n");
    Session s(home.path());
    s.fileSystem.beforeLook = [] { throw Fault(kFaultInvalidCall, "", "no folders"); };
    goOn(s);
    s.start();
    s.frame().close();
    const IniText saved(contentOf(ini()));
    EXPECT_EQ(saved.find("Optionen", "ComboText"), "/usr");
    EXPECT_EQ(saved.find("ComboOrdner", "0O").value_or("") + saved.find("ComboOrdner", "1O").value_or(""),
              "/tmp/usr");
}

}  // namespace
}  // namespace hl::test
