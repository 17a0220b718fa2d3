// The window at work: scans, the report, panels. Trees are read from the disk.
#include <QFontDialog>
#include <algorithm>

#include "gui/window_fixture.h"
#include "scan/records.h"

namespace hl {
namespace {

using test::Session;
using test::WindowTest;

class MainWindowTest : public WindowTest {
  protected:
    /// The window with src read, the report alone in it.
    void startWithReport() {
        s.start();
        s.click("cbrReport.323");
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
        EXPECT_TRUE(s.enabled("cbrMain.3"));
        for (const char* entry : {"cbrMain.2", "cbrReport.4", "cbrDrives.200"})
            EXPECT_FALSE(s.enabled(entry)) << entry;
        EXPECT_EQ(s.status().substr(0, at("src").size()), at("src"));
    };
    startWithReport();
    EXPECT_EQ(shown, 14U);
    EXPECT_TRUE(!s.enabled("cbrMain.3") && s.enabled("cbrMain.2"));
}

TEST_F(MainWindowTest, StopInTheMiddleKeepsWhatWasRead) {
    folders(20);
    s.fileSystem.beforeBlock = [&](int block) {
        if (block == 12) s.click("cbrMain.3");
    };
    startWithReport();
    int read = 0;
    for (int i = 0; i < 20; ++i) {
        const Row row = s.row("f" + std::to_string(i));
        read += row != kNoRow && s.numbers(row) == "10|1|" ? 1 : 0;
    }
    EXPECT_TRUE(read >= 10 && read < 20) << read;
    EXPECT_EQ(s.grid().number(s.row("src"), kFiles), read);
}

TEST_F(MainWindowTest, ClosingDuringARunOnlyCancelsItAndTheNextCloseGoesThrough) {
    folders(20);
    s.fileSystem.beforeBlock = [&](int block) { EXPECT_FALSE(block == 3 && s.frame().close()); };
    startWithReport();
    EXPECT_LT(s.grid().number(s.row("src"), kFiles), 20);
    EXPECT_TRUE(s.enabled("cbrMain.2") && s.frame().close() && s.frame().unloaded());
}

TEST_F(MainWindowTest, AReportIsUnfoldedSortedAndSearched) {
    smallTree();
    startWithReport();
    s.click("cbrReport.25");
    EXPECT_EQ(s.rows(), "src a aa Dateien b Dateien");
    s.click("cbrReport.100");
    s.clickTitle(1);
    EXPECT_EQ(s.rows(), "src Dateien b a");
    s.type("cbrReport.29", "AA", Qt::Key_Return);
    EXPECT_EQ(s.rows(), "src Dateien b a Dateien aa");
    s.click("cbrReport.11");
    EXPECT_EQ(s.numbers("src").substr(0, 5), "0,45|");
}

TEST_F(MainWindowTest, ARescanFindsWhatHasGrown) {
    smallTree();
    startWithReport();
    EXPECT_EQ(s.numbers("src"), "457|4|3");
    folder("src/b/new");
    file("src/b/new/big", 1000);
    s.clickRow("b");
    s.key(s.view(), Qt::Key_F5);
    EXPECT_EQ(s.numbers("src") + " " + s.numbers("a") + " " + s.numbers("b"), "1.457|5|4 400|2|1 1.050|2|1");
    EXPECT_EQ(s.rows().substr(0, 5), "src b");
}

TEST_F(MainWindowTest, ARescanLeavesTheColumnsFitted) {
    const std::string name =
        "src/a/a folder that has such a long name that no other is as wide, a path neither";
    folder(name);
    test::makeFile(at(name + "/x"), 12'345'678'901);
    startWithReport();
    s.click("cbrReport.25");
    s.expectFitted();
    s.clickRow("a");
    s.key(s.view(), Qt::Key_F5);
    s.expectFitted();
}

TEST_F(MainWindowTest, ARescanOfALinkToAFolderAboveFindsThatItIsOneAgain) {
    setSettings("[Optionen]\r\nScanHardlinks=1\r\n");
    smallTree();
    std::filesystem::create_directory_symlink("..", at("src/a/up"));
    startWithReport();
    s.click("cbrReport.25");
    const auto look = [&] {
        return s.rows() + "|" + s.numbers("src") + "|" + std::string(s.grid().rowNote(s.row("up"))) + "|" +
               std::to_string(s.grid().picture(s.row("up")));
    };
    const std::string scanned = look();
    EXPECT_NE(scanned.find("#40 - "), std::string::npos) << scanned;
    s.clickRow("up");
    s.key(s.view(), Qt::Key_F5);
    EXPECT_EQ(look(), scanned);
}

}  // namespace
}  // namespace hl
