// Tests the window at work: scans, the report, panels. Trees are read from the disk.

#include "gui/window_fixture.h"
#include "scan/records.h"

namespace hl::test {
namespace {

struct MainWindowTest : WindowTest {
    /// Starts the window, reads src, and shows only the report.
    void startWithReport() {
        s.start();
        s.click(Command::kReportFullView);
        s.scan(at("src"));
    }
    Session s{home.path()};
};

TEST_F(MainWindowTest, FoldersOfTheFirstLevelAppearWhileTheScanRuns) {
    folders(20);
    std::size_t shown = 0;
    s.fileSystem.beforeBlock = [&](int block) {
        if (block != 12 && block != 15) return;  // Columns are not fitted in between, which would paint, too.
        s.painted.clear();
        EXPECT_TRUE(QTest::qWaitFor([&] { return s.painted.size() == s.grid().rowCount(); }));
        shown = s.painted.size();
        EXPECT_TRUE(s.enabled(Command::kStop));
        for (const Command entry : {Command::kStart, Command::kReportRescan, Command::kDrivesRefresh})
            EXPECT_FALSE(s.enabled(entry)) << entry;
        EXPECT_EQ(s.status().substr(0, at("src").size()), at("src"));
        EXPECT_TRUE(has(s.secondPanel(), " Dateien, "));
    };
    startWithReport();
    EXPECT_EQ(shown, 14U);
    EXPECT_TRUE(!s.enabled(Command::kStop) && s.enabled(Command::kStart));
    EXPECT_TRUE(s.status().starts_with("OK. 20 Dateien in ")) << s.status();
}

TEST_F(MainWindowTest, StopInTheMiddleKeepsWhatWasRead) {
    folders(20);
    s.fileSystem.beforeBlock = [&](int block) {
        if (block == 12) s.click(Command::kStop);
    };
    startWithReport();
    int read = 0;
    for (int i = 0; i < 20; ++i) {
        const Row row = s.row("f" + std::to_string(i));
        read += row != kNoRow && s.numbers(row) == "10|1|" ? 1 : 0;
    }
    EXPECT_TRUE(read >= 10 && read < 20) << read;
    EXPECT_EQ(s.grid().number(s.row("src"), kFiles), read);
    EXPECT_TRUE(s.status().starts_with("Abgebrochen. " + std::to_string(read) + " Dateien in "))
        << s.status();
}

TEST_F(MainWindowTest, ClosingDuringARunOnlyCancelsItAndTheNextCloseGoesThrough) {
    folders(20);
    s.fileSystem.beforeBlock = [&](int block) { EXPECT_FALSE(block == 3 && s.frame().close()); };
    startWithReport();
    EXPECT_LT(s.grid().number(s.row("src"), kFiles), 20);
    EXPECT_TRUE(s.enabled(Command::kStart) && s.frame().close() && s.frame().unloaded());
}

TEST_F(MainWindowTest, AReportIsUnfoldedAndSortedByEveryTitleClickThatEndsNoDrag) {
    smallTree();
    file("src/b/largest", 5000);
    startWithReport();
    s.click(Command::kReportUnfoldAll);
    EXPECT_EQ(s.rows(), "src b a aa Dateien Dateien");
    s.click(Command::kReportUnfold1);
    s.clickRow("a");
    const QPoint border = s.title(s.view(), 0) + QPoint((s.view().columnWidth(0) - 1) / 2, 0);
    const std::pair<std::function<void()>, const char*> steps[] = {
        {[&] { s.clickTitle(1); }, "src Dateien a b"},
        {[&] { s.clickTitle(0); }, "src Dateien b a"},
        {[&] { dragBorder(s.view(), border, {30}); }, "src Dateien b a"},
        {[&] { s.clickTitle(0); }, "src a b Dateien"}};
    for (const auto& [act, rows] : steps) {
        act();
        EXPECT_EQ(s.rows(), rows);
    }
    const Row root = s.grid().firstRoot();
    EXPECT_TRUE(s.grid().currentRow() == root && s.grid().selectedRows() == std::vector{root});
    s.click(Command::kReportBytes + 1);
    EXPECT_EQ(s.numbers("src").substr(0, 5), "5,33|");
    s.click(Command::kReportRemoveAll);
    s.clickTitle(1);
    EXPECT_FALSE(s.view().grid().levelSort(0).descending) << "an empty report keeps its order";
}

TEST_F(MainWindowTest, ASearchGoesOnBehindTheCurrentRowAndFromTheTopAgainAndUnfoldsWhatHidesAHit) {
    for (const char* path : {"src/a/needle 1", "src/b", "src/c/needle 2", "src/d"}) folder(path);
    startWithReport();
    s.clickRow("src");
    s.type(Command::kReportSearchText, "NEEDLE", Qt::Key_Return);
    EXPECT_EQ(s.grid().text(s.grid().currentRow()), "needle 1");
    for (const auto& [from, hit] :
         {std::pair("needle 1", "needle 2"), {"needle 2", "needle 1"}, {"d", "needle 1"}}) {
        s.clickRow(from);
        s.click(Command::kReportSearch);
        EXPECT_EQ(s.grid().text(s.grid().currentRow()), hit) << from;
    }
    EXPECT_EQ(s.rows(), "src a needle 1 b c needle 2 d");
}

TEST_F(MainWindowTest, WhatAFoldHidesIsNoLongerSelectedAndTheWindowTellsOfTheFolder) {
    smallTree();
    s.start();
    s.scan(at("src"));
    const auto branch = [this](const char* name) {
        const std::size_t index = s.view().rows().find(s.row(name)).value();
        QTest::mouseClick(s.view().viewport(), Qt::LeftButton, {}, branchAt(s.view(), index));
    };
    const auto key = [this](Qt::Key code, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(&s.view(), code, keys);
    };
    const std::tuple<std::function<void()>, const char*, const char*> folds[] = {
        {[&] { branch("a"); }, "a", "y"},
        {[&] { key(Qt::Key_Up, Qt::ControlModifier), key(Qt::Key_Minus); }, "a", "y"},
        {[&] { s.click(Command::kReportFoldAll); }, "", "w"},
        {[&] { s.click(Command::kReportUnfold1); }, "a", "y"},
    };
    const Grid& files = s.window().grid(GridId::kFiles).grid();
    for (const auto& [fold, folder, file] : folds) {
        s.click(Command::kReportUnfoldAll);
        s.clickRow("aa");
        ASSERT_EQ(files.text(files.firstRoot()), "x");
        fold();
        Session::settle();
        const Row now = folder[0] == '\0' ? s.grid().firstRoot() : s.row(folder);
        EXPECT_TRUE(s.grid().selectedRows() == std::vector{now} && s.grid().currentRow() == now);
        EXPECT_EQ(s.status(), at("src/") + folder + (folder[0] == '\0' ? "" : "/"));
        EXPECT_EQ(std::string(files.text(files.firstRoot())), file);
    }
}

TEST_F(MainWindowTest, ThePaneOfTheReportIsAsWideAsItsColumnsAndTheBarThatShows) {
    smallTree();
    s.start();
    s.scan(at("src"));
    for (const int rows : {6, 200}) {
        folders(rows == 200 ? 100 : 0);
        s.clickRow("src");
        s.key(s.view(), Qt::Key_F5);
        s.click(Command::kReportUnfoldAll);
        s.click(Command::kReportFit);
        ASSERT_EQ(s.view().verticalScrollBar()->isVisible(), rows == 200);
        const double names = s.widths()[0];
        for (int i = 0; i < 3; ++i) {
            s.click(Command::kReportFilesColumn);
            EXPECT_EQ(s.view().viewport()->width(), s.view().horizontalHeader()->length()) << rows << i;
            EXPECT_EQ(s.widths()[0], names) << "the names do not give way to a column";
            s.click(Command::kReportFit);
        }
    }
}

TEST_F(MainWindowTest, APaneThatASmallWindowSqueezedGetsItsWidthBack) {
    smallTree();
    s.start();
    s.scan(at("src"));
    const QSize size = s.frame().size();
    const int width = s.view().width();
    for (const int narrow : {600, 300, 150}) {
        s.frame().resize(narrow, size.height());
        Session::settle();
        EXPECT_LT(s.view().width(), width);
    }
    s.frame().resize(size);
    Session::settle();
    EXPECT_EQ(s.view().width(), width);
}

TEST_F(MainWindowTest, AChosenFontIsBoldAndItalicInTheNextSessionToo) {
    // The dialog offers the machine's fonts; not every machine has one that is both.
    QFont font;
    for (const char* style : {"Bold", "Bold Oblique", "Bold Italic"})
        for (const QString& family : QFontDatabase::families())
            if (QFontDatabase::styles(family).contains(QLatin1String(style)))
                font = QFontDatabase::font(family, QLatin1String(style), 9);
    ASSERT_TRUE(font.bold()) << "no bold font is installed";
    s.start();
    s.answers.add([&](QDialog& dialog) {
        auto& fonts = dynamic_cast<QFontDialog&>(dialog);
        fonts.setCurrentFont(font);
        fonts.accept();
    });
    s.click(Command::kReportFont);
    EXPECT_TRUE(s.view().font().bold() && s.view().font().italic() == font.italic());
    s.click(Command::kLargerFont);  // It chooses a larger one.
    s.frame().close();
    Session next(home.path());
    next.start();
    EXPECT_TRUE(next.view().font().bold() && next.view().font().italic() == font.italic());
    EXPECT_FALSE(next.window().grid(GridId::kFiles).font().bold());
}

TEST_F(MainWindowTest, WithNoProgramForTheLogTheWindowAsksForOne) {
    s.desktop.result = OpenResult::kNoProgram;
    s.desktop.programs = {{"editor.desktop", "Editor"}};
    writeFile(home.path() + "/Harborlantern.log", "line");
    s.start();
    QString asked;
    s.answers.add([&](QDialog& dialog) { asked = dialog.objectName(), dialog.reject(); });
    s.click(Command::kLog);
    EXPECT_EQ(asked, QStringLiteral("frmOpenWith"));
}

TEST_F(MainWindowTest, ARescanLeavesTheColumnsFitted) {
    const std::string name =
        "src/a/a folder that has such a long name that no other is as wide, a path neither";
    folder(name);
    makeFile(at(name + "/x"), 12'345'678'901);
    startWithReport();
    s.click(Command::kReportUnfoldAll);
    s.expectFitted();
    s.clickRow("a");
    s.key(s.view(), Qt::Key_F5);
    s.expectFitted();
}

TEST_F(MainWindowTest, ARescanOfALinkToAFolderAboveFindsThatItIsOneAgain) {
    setSettings("[Optionen]\r\nScanHardlinks=1\r\n");
    smallTree();
    fs::create_directory_symlink("..", at("src/a/up"));
    startWithReport();
    s.click(Command::kReportUnfoldAll);
    const auto look = [&] {
        return s.rows() + "|" + s.numbers("src") + "|" + std::string(s.grid().rowNote(s.row("up"))) + "|" +
               std::to_string(s.grid().picture(s.row("up")));
    };
    const std::string scanned = look();
    EXPECT_TRUE(has(scanned, "#40 - "));
    s.clickRow("up");
    s.key(s.view(), Qt::Key_F5);
    EXPECT_EQ(look(), scanned);
}

// The whole file system is one drive; the reading is stopped as soon as the desktop was told.
TEST_F(MainWindowTest, TheDesktopIsToldHowMuchOfADriveIsReadAndThenThatNothingIs) {
    s.start();
    s.fileSystem.beforeBlock = [&](int block) {
        QTest::qWait(20);
        s.form().takeDriveAnswers();
        if (block > 100 || !s.desktop.progress.empty()) s.execute(Command::kStop);
    };
    s.scan("/");
    ASSERT_EQ(s.desktop.progress.size(), 2U);
    EXPECT_LE(s.desktop.progress[0].value_or(100), 99);
    EXPECT_FALSE(s.desktop.progress[1]);
}

}  // namespace
}  // namespace hl::test
