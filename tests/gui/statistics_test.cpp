// The list of statistics in the window.
#include "gui/files_fixture.h"

namespace hl::test {
namespace {

struct StatisticsListTest : FilesTest {
    StatisticsListTest() {
        file("src/sub/deep/f.iso", 7000);
        file("src/sub/deep/g", 30);
    }
    /// Shows the list beside the report.
    GridView& open() {
        start();
        s().click(Command::kShowStatistics);
        return s().window().grid(GridId::kStatistics);
    }
    /// Returns what shows, as "level text size".
    Names shown() {
        GridView& view = s().window().grid(GridId::kStatistics);
        view.sync();
        Names lines;
        for (std::size_t i = 0; i < view.rows().count(); ++i) {
            const Row row = view.rows().at(i);
            const Grid& grid = view.grid();
            if (grid.number(row, kStatisticsRow) == static_cast<int>(StatisticsRow::kOwner)) continue;
            lines.push_back(std::to_string(grid.level(row)) + " " + std::string(grid.text(row)) + " " +
                            std::to_string(static_cast<int>(grid.number(row, kStatisticsSize))));
        }
        return lines;
    }
    bool shows(std::string_view start) {
        return std::ranges::any_of(shown(), [&](const std::string& line) { return line.starts_with(start); });
    }
    std::string title() {
        return s().form().parts().bars[static_cast<std::size_t>(BarId::kStatistics)]->find(0)->caption;
    }
};

TEST_F(StatisticsListTest, FollowsTheSelectedRowAndWhatIsDeletedTakenBackAndRenamed) {
    open();
    const Names ofSource = {"0 Nach Art 8530",       "1 Laufwerksabbilder 7000", "1 Dokumente 1500",
                            "1 Andere 30",           "0 Nach Alter 8530",        "1 Unter 1 Tag 8530",
                            "0 Nach Eigentümer 8530"};
    EXPECT_EQ(shown(), ofSource);
    EXPECT_EQ(title(), "Statistik von '" + at("src") + "'");
    s().click(Command::kReportUnfoldAll);
    s().clickRow("deep");
    EXPECT_EQ(title(), "Statistik von '" + at("src/sub/deep") + "'");
    const Names ofDeep = {"0 Nach Art 7530",       "1 Laufwerksabbilder 7000", "1 Dokumente 500",
                          "1 Andere 30",           "0 Nach Alter 7530",        "1 Unter 1 Tag 7530",
                          "0 Nach Eigentümer 7530"};
    EXPECT_EQ(shown(), ofDeep);
    s().clickRow("Dateien");  // The files directly in src or in sub.
    EXPECT_TRUE(shows("1 Dokumente ")) << testing::PrintToString(shown());
    s().clickRow("deep");
    s().execute(Command::kRecycleFolders);
    EXPECT_EQ(shown().front(), "0 Nach Art 400");
    s().clickRow("src");
    EXPECT_EQ(shown().front(), "0 Nach Art 1000");
    s().click(Command::kTakeBack);
    s().clickRow("src");
    EXPECT_EQ(shown(), ofSource);
}

TEST_F(StatisticsListTest, UnfoldsKindsToEndingsWhichStayUnfoldedAndAreSaved) {
    GridView& view = open();
    ListSession::clickOn(view, 2);
    s().key(view, Qt::Key_Right);
    ASSERT_TRUE(shows("2 .txt 1500")) << testing::PrintToString(shown());
    s().click(Command::kReportUnfoldAll);
    s().clickRow("deep");
    EXPECT_TRUE(shows("2 .txt 500")) << testing::PrintToString(shown());
    const std::string saved = session_->saved(kStatisticsList, Qt::Key_C, home.path() + "/saved.csv");
    for (const char* line : {"\"Nach Art\"", "\"Laufwerksabbilder\"", "\".iso\"", "\"(ohne Endung)\""})
        EXPECT_NE(saved.find(line), std::string::npos) << line << saved;
}

TEST_F(StatisticsListTest, ADoubleClickFindsTheFilesOfTheRow) {
    GridView& view = open();
    s().clickRow("sub");
    doubleClick(view.viewport(), centerOf(view, view.rows().at(1)));
    Session::settle();
    EXPECT_TRUE(s().window().grid(GridId::kFind).isVisible());
    EXPECT_EQ(ListSession::names(s().window().grid(GridId::kFind)), Names{"f.iso"});
}

TEST_F(StatisticsListTest, AFileThatIsRenamedCountsForItsNewEnding) {
    GridView& files = startWithList();
    ListSession::clickOn(files, 0);
    rename(files, QStringLiteral("a.jpg"));
    s().click(Command::kShowStatistics);
    EXPECT_TRUE(shows("1 Bilder 100")) << testing::PrintToString(shown());
    expectReportOfAFreshScan();
    s().click(Command::kTakeBack);
}

TEST_F(StatisticsListTest, SaysThatNoneAreKeptIfTheyAreSwitchedOff) {
    options("CreateStatistics=0\r\nStatisticsVisible=1\r\nFilelistVisible=0\r\n");
    start();
    EXPECT_EQ(shown(), Names());
    GridView& view = s().window().grid(GridId::kStatistics);
    view.viewport()->repaint();
    EXPECT_NE(view.hint().text().indexOf(QStringLiteral("keine Statistik")), -1);
    s().form().form().session.options.CreateStatistics = 1;
    s().execute(Command::kReportRescan);
    EXPECT_EQ(shown().front(), "0 Nach Art 8530");
}

}  // namespace
}  // namespace hl::test
