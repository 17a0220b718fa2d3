// A source that is compared with an earlier scan of it, as the user sees it.
#include "gui/files_fixture.h"
#include "scan/on_disk.h"
#include "views/report_columns.h"

namespace hl::test {
namespace {

struct ComparisonTest : FilesTest {
    std::string scanFile() const { return home.path() + "/earlier.hlscan"; }
    MainForm& form() { return s().form().form(); }

    void save() {
        s().answers.add([this](QDialog& dialog) { choosePath(dialog, scanFile()); });
        s().click(Command::kReportSaveScan);
    }
    void compare() {
        s().answers.add([this](QDialog& dialog) { choosePath(dialog, scanFile()); });
        s().click(Command::kReportCompare);
    }
    /// Saves a scan of src, lets `change` work on the disk, reads src anew and compares.
    void startCompared(const std::function<void()>& change) {
        start();
        save();
        change();
        s().click(Command::kReportRescan);
        compare();
        s().click(Command::kReportUnfoldAll);
    }
    /// Returns "name before change" of each row below the source, in the order of names; gone ones have "!".
    Names changes() {
        Names all;
        const Grid& report = s().grid();
        for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row)) {
            const auto whole = [&](CellId cell) {
                return std::to_string(static_cast<std::int64_t>(report.number(row, cell)));
            };
            const std::string name = report.level(row) == 0 ? "" : std::string(report.text(row));
            all.push_back(name + (isGone(report, row) ? "! " : " ") + whole(kBefore) + " " + whole(kChange));
        }
        std::sort(all.begin(), all.end());
        return all;
    }
    bool showsColumns() {
        const auto& columns = s().grid().columns();
        EXPECT_EQ(columns[kReportBefore].visible, columns[kReportChange].visible);
        return columns[kReportChange].visible;
    }
    std::string title() {
        for (const BarEntry& entry : form().bars.cbrReport.entries())
            if (entry.id == idOf(Command::kReportTitle)) return entry.caption;
        return {};
    }
};

// src: a 100, b 200, c 300; sub: d 400; sub/deep: e 500; other.
TEST_F(ComparisonTest, RowsTellWhatGrewWhatIsNewAndWhatIsGone) {
    startCompared([&] {
        file("src/a.txt", 150);
        folder("src/other/new");  // Made first, or it might get the inode of the one that goes.
        file("src/other/new/x", 70);
        fs::remove_all(at("src/sub/deep"));
    });
    EXPECT_TRUE(showsColumns());
    EXPECT_EQ(title().substr(0, 32), "Ordner, verglichen mit dem Scan ");
    const Grid& list = form().session.lvwChanges;
    Names listed;
    for (Row row = list.firstRoot(); row != kNoRow; row = list.nextSibling(row))
        listed.push_back(std::string(list.text(row)) + " " + std::string(list.cellText(row, kChangeWord)));
    EXPECT_EQ(listed, (Names{"sub/deep weg", "other/new neu", at("src") + " gewachsen"}));
    EXPECT_EQ(changes(), (Names{" 1500 -380", "Dateien 600 50", "deep! 500 -500", "new 0 70", "other 0 70",
                                "sub 900 -500"}));
    // They count in no sum and are on no disk.
    EXPECT_EQ(s().numbers("src"), "1.120|5|3");
    s().clickRow("deep");
    for (const Command command :
         {Command::kDeleteFolders, Command::kRecycleFolders, Command::kReportRescan}) {
        s().execute(command);
        EXPECT_NE(s().row("deep"), kNoRow);
    }
    const Names compared = reportFacts(s());
    s().click(Command::kReportCompare);
    EXPECT_FALSE(showsColumns());
    EXPECT_EQ(list.rowCount(), 0U);
    EXPECT_EQ(title(), "Ordner");
    EXPECT_EQ(s().row("deep"), kNoRow);
    expectReportOfAFreshScan();
    EXPECT_NE(reportFacts(s()), compared);
}

TEST_F(ComparisonTest, StaysTrueAfterARescanADeleteARenameAndTakingBack) {
    startCompared([&] { file("src/sub/d.txt", 450); });
    const Names first = changes();
    EXPECT_EQ(first, (Names{" 1500 50", "Dateien 400 50", "Dateien 600 0", "deep 500 0", "other 0 0",
                            "sub 900 50"}));
    file("src/sub/deep/more", 30);
    s().clickRow("deep");
    s().click(Command::kReportRescan);
    EXPECT_EQ(changes(), (Names{" 1500 80", "Dateien 400 50", "Dateien 600 0", "deep 500 30", "other 0 0",
                                "sub 900 80"}));
    fs::remove(at("src/sub/deep/more"));
    s().clickRow("deep");
    s().click(Command::kReportRescan);
    s().execute(Command::kRecycleFolders);
    EXPECT_EQ(changes(),
              (Names{" 1500 -450", "Dateien 600 0", "deep! 500 -500", "other 0 0", "sub 900 -450"}));
    s().click(Command::kTakeBack);
    EXPECT_EQ(changes(), first);
    s().clickRow("deep");
    rename(s().view(), QStringLiteral("low"));
    // It is the same folder.
    EXPECT_EQ(changes(),
              (Names{" 1500 50", "Dateien 400 50", "Dateien 600 0", "low 500 0", "other 0 0", "sub 900 50"}));
    s().clickRow("src");
    s().execute(Command::kReportRemove);
    EXPECT_FALSE(form().comparison.isShown());
    EXPECT_FALSE(showsColumns());
}

TEST_F(ComparisonTest, GoneRowsAreInNoScanAndNoReportThatIsSaved) {
    startCompared([&] { fs::remove_all(at("src/sub")); });
    EXPECT_EQ(changes(), (Names{" 1500 -900", "Dateien 600 0", "other 0 0", "sub! 900 -900"}));
    const std::string path = home.path() + "/now.hlscan";
    s().answers.add([path](QDialog& dialog) { choosePath(dialog, path); });
    s().clickRow("src");
    s().click(Command::kReportSaveScan);
    const ScanReading reading = readScan(contentOf(path));
    ASSERT_EQ(reading.problem, ScanProblem::kNone);
    EXPECT_EQ(reading.file.count, 2U);
}

TEST_F(ComparisonTest, AnotherSourceOrOtherOptionsAreComparedOnlyAfterAQuestion) {
    folder("second");
    start();
    save();
    s().scan(at("second"));
    std::string text;
    s().answers.add([this](QDialog& dialog) { choosePath(dialog, scanFile()); });
    answer("Nein", &text);
    s().click(Command::kReportCompare);
    EXPECT_FALSE(form().comparison.isShown());
    EXPECT_NE(text.find("/second'"), std::string::npos) << text;
    s().answers.add([this](QDialog& dialog) { choosePath(dialog, scanFile()); });
    answer("Ja");
    s().click(Command::kReportCompare);
    EXPECT_TRUE(form().comparison.isShown());
    s().execute(Command::kReportRemoveAll);
    EXPECT_FALSE(form().comparison.isShown());
}

}  // namespace
}  // namespace hl::test
