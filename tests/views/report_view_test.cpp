// Tests views/report_view.h without a window.
#include "views/report_view.h"

#include "app/command.h"

#include "support/fake_window.h"
#include "support/scan_fixture.h"
#include "views/report_columns.h"

namespace hl::test {
namespace {

struct ReportTest : ScanFixture, ReportHost {
    FakeWindow window;
    CommandBar bar{BarId::kReport, "cbrReport"};
    bool columnDragGuard = false;
    ReportView view{scan, options, bar, window, *this, columnDragGuard};
    std::vector<std::string> asked;

    ReportTest() {
        window.onRename = [this](Row row) { asked.push_back("rename " + std::to_string(row)); };
        bar.add({.id = idOf(Command::kReportSearchText), .kind = EntryKind::kEdit});
        Init_Tree(report, options, texts);
        disk.sources = {folder("/s", {file("f", 1), folder("b", {file("x", 40), folder("c", {file("y", 8)})}),
                                      folder("e", {file("z", 16)}), folder("Ce")})};
        readSources({"/s"});
        host.calls.clear();
        for (std::size_t i = 0; i < report.rowCount(); ++i) report.setExpanded(report.rowAt(i), false);
        report.selectNone();
    }
    void setReportWidth(int pixels) override { asked.push_back("width " + std::to_string(pixels)); }
    void setFirstPanel(const std::string& text) override { asked.push_back(text); }
    void selectDriveOf(Row row) override { asked.push_back("drive of " + std::string(report.text(row))); }
    void showFilesOf(const std::string& folder) override { asked.push_back("files of " + folder); }
    void refreshPreview() override { asked.emplace_back("preview"); }
    void Preview_Reset_View() override { asked.emplace_back("no preview"); }
    void deleteFolders(bool forGood) override { asked.emplace_back(forGood ? "delete" : "recycle"); }
    void openRowsMenu(Point) override { asked.emplace_back("rows menu"); }
    void openColumnsMenu(GridId, Point) override { asked.emplace_back("columns menu"); }
    void copyPaths(const std::vector<std::string>& copied) override {
        for (const std::string& path : copied) asked.push_back("copy " + path);
    }
    void nameEdited(GridId, Row, const std::string& name) override { asked.push_back("name " + name); }
    void Report_ShellContextMenu(Row, const std::string& path, Point) override {
        asked.push_back("menu " + path);
    }

    Lines expandedNames() const {
        Lines names;
        for (std::size_t i = 0; i < report.rowCount(); ++i)
            if (report.expanded(report.rowAt(i))) names.emplace_back(report.text(report.rowAt(i)));
        return names;
    }
    void click(std::string_view name, MouseButton button = MouseButton::kLeft, bool shift = false) {
        view.MouseUp(name.empty() ? kNoRow : rowOf(name), button, shift, {});
    }
};

TEST_F(ReportTest, TurnsTheOrderAroundWithEachTitleClickWhateverTheColumn) {
    const Lines largestFirst = textsOf(report);
    ASSERT_EQ(largestFirst[1], "b");
    view.GridColumnTitleClick(kReportSize);
    EXPECT_EQ(textsOf(report)[1], "Ce");
    view.GridColumnTitleClick(kReportRowName);
    EXPECT_EQ(textsOf(report)[1], "e") << "a click on another column is the same toggle";
    view.GridColumnTitleClick(kReportRowName);
    EXPECT_EQ(textsOf(report)[1], "b");
    EXPECT_EQ(report.currentRow(), report.rowAt(0));
    EXPECT_EQ(selectedIn(report), Lines{"/s"});
    view.columnSizing();
    view.GridColumnTitleClick(kReportSize);
    EXPECT_EQ(textsOf(report)[1], "b") << "the end of a column's drag is no title click";
}

TEST_F(ReportTest, UnfoldsToALevelAndFoldsWhatLiesDeeper) {
    view.Report_ExpandAllFolders(true);
    EXPECT_EQ(expandedNames().size(), report.rowCount());
    view.Report_ExpandFolderLevels(0);
    EXPECT_EQ(expandedNames(), Lines{"/s"});
    view.Report_ExpandAllFolders(false);
    EXPECT_EQ(expandedNames(), Lines{});
    report.setCurrentRow(rowOf("b"));
    view.Report_ExpandSubFolders(true);
    EXPECT_EQ(expandedNames(), (Lines{"b", "Dateien", "c"}));
    EXPECT_FALSE(state.ScanActive);
    // Stop must end it.
    for (int i = 0; i < 5000; ++i) report.addRow(rowOf("e"), "more");
    pump.input = true;
    pump.onPump = [this] { state.CancelState = kCancelStop; };
    view.Report_ExpandAllFolders(true);
    EXPECT_LT(expandedNames().size(), 2000U);
    EXPECT_EQ(state.CancelState, kCancelNone);
}

TEST_F(ReportTest, SearchesBehindTheCurrentRowAndFromTheTopAgain) {
    bar.setText(idOf(Command::kReportSearchText), "c");
    report.setCurrentRow(rowOf("b"));
    Lines found;
    for (int i = 0; i < 3; ++i) {
        view.Report_StartSearch();
        found.emplace_back(report.text(report.currentRow()));
    }
    EXPECT_EQ(found, (Lines{"c", "Ce", "c"})) << "without regard to case";
    EXPECT_TRUE(report.expanded(rowOf("b"))) << "a hit is in view";
}

TEST_F(ReportTest, ShowsTheFilesOfTheFolderThatIsClicked) {
    report.setSelected(rowOf("e"), true);
    click("e");
    EXPECT_EQ(asked, (Lines{"drive of e", "files of /s/e/", "/s/e/", "preview"}));
    EXPECT_EQ(window.calls.back(), "focus");
}

TEST_F(ReportTest, KeepsASelectionOfSeveralForTheMenuOfTheRightButton) {
    for (const char* name : {"b", "e"}) report.setSelected(rowOf(name), true);
    click("e", MouseButton::kRight);
    const std::string sum = "2 Zeilen ausgewählt: 64 Bytes (98 % von '/s'), 3 Datei(en), 1 Ordner";
    EXPECT_EQ(asked, (Lines{sum, "rows menu"}));
    EXPECT_EQ(selectedIn(report), (Lines{"b", "e"}));
    click("Ce", MouseButton::kRight);
    EXPECT_EQ(selectedIn(report), Lines{"Ce"}) << "a row outside of it takes its place";
    EXPECT_EQ(asked.back(), "menu /s/Ce/");
    click("", MouseButton::kLeft, true);
    EXPECT_EQ(selectedIn(report), Lines{"Ce"});
    click("");
    EXPECT_EQ(selectedIn(report), Lines{});
}

TEST_F(ReportTest, IgnoresTheUserDuringAScanAndInAnEmptyReport) {
    const auto tryAll = [this] {
        host.calls.clear();
        asked.clear();
        click("b");
        view.GridColumnTitleClick(kReportSize);
        view.DblClick();
        view.KeyUp(kKeyDown);
        return host.calls.empty() && asked.empty();
    };
    report.setSelected(rowOf("b"), true);
    state.ScanActive = true;
    EXPECT_TRUE(tryAll());
    state.ScanActive = false;
    view.removeAll();
    EXPECT_EQ(report.rowCount() + state.DeepestLevel, 0U);
    EXPECT_TRUE(tryAll() && report.levelSort(0).descending);
}

TEST(PathHistory, IsBoundedAndForgetsWhatFollowedANewPath) {
    PathHistory history;
    const auto there = [](const std::string&) { return true; };
    for (std::size_t i = 0; i < PathHistory::kMost + 20; ++i) history.visited(std::to_string(i));
    std::string oldest, next;
    while (!(next = history.step(-1, there)).empty()) oldest = next;
    EXPECT_EQ(oldest, "20");
    history.visited("new");
    EXPECT_EQ(history.step(1, there), "");
    EXPECT_EQ(history.step(-1, there), "20");
}

}  // namespace
}  // namespace hl::test
