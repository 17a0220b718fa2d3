// Sources of the report that were opened from a file: nothing that the window does with them touches the
// disk, even if their paths are there.
#include <fstream>

#include "app/command_line.h"
#include "gui/files_fixture.h"
#include "scan/report_changes.h"
#include "scan/saved/open_scan.h"

namespace hl::test {
namespace {

struct OpenedScanTest : FilesTest {
    std::string scanFile() const { return home.path() + "/of src.hlscan"; }

    void save(const std::string& path) {
        s().answers.add([path](QDialog& dialog) { choosePath(dialog, path); });
        s().click(Command::kReportSaveScan);
    }
    void open(const std::string& path) {
        s().answers.add([path](QDialog& dialog) { choosePath(dialog, path); });
        s().click(Command::kReportOpenScan);
    }
    /// Reads src, saves that and opens it again: two sources of the same path.
    void startWithBoth() {
        start();
        save(scanFile());
        open(scanFile());
        s().click(Command::kReportUnfoldAll);
    }
    Row source(bool opened) {
        const Grid& report = s().grid();
        Row root = report.firstRoot();
        while (root != kNoRow && opened != isOpened(root)) root = report.nextSibling(root);
        return root;
    }
    bool isOpened(Row row) { return savedScanOf(s().form().form().scan, row) != nullptr; }
    /// The folder "sub" of the one or the other.
    Row sub(bool opened) { return rowOfFolder(s().grid(), source(opened), at("src/sub"), kPosixPaths); }
    void select(Row row) {
        ASSERT_NE(row, kNoRow);
        EXPECT_TRUE(s().form().form().report.view().goTo(row));
        Session::settle();
    }
    /// Returns what the rows of the one source show.
    Names shown(bool opened) {
        Names all;
        const Grid& report = s().grid();
        for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row))
            if (isOpened(row) == opened)
                all.push_back(Report_GetFullpathOfNode(report, row, false, kPosixPaths) +
                              cellsOf(report, row) + statisticsOf(s(), row));
        std::sort(all.begin(), all.end());
        return all;
    }
    Names disk() const {
        Names all;
        for (const auto& entry : fs::recursive_directory_iterator(tree.path())) all.push_back(entry.path());
        std::sort(all.begin(), all.end());
        return all;
    }
};

TEST_F(OpenedScanTest, ShowsWhatWasSavedAndWhereItComesFrom) {
    startWithBoth();
    EXPECT_EQ(shown(true), shown(false));
    EXPECT_EQ(s().grid().rowCount(), 2 * shown(true).size());
    EXPECT_EQ(s().grid().rowNote(source(false)), "");
    EXPECT_EQ(s().grid().rowNote(source(true)).substr(0, 33), "aus einem gespeicherten Scan vom ");
    EXPECT_EQ(s().grid().currentRow(), source(true));
    const std::string again = home.path() + "/again.hlscan";
    save(again);
    EXPECT_EQ(contentOf(again), contentOf(scanFile()));
}

TEST_F(OpenedScanTest, NothingOfItIsReadOrChangedOnTheDisk) {
    startWithBoth();
    const Names before = disk(), rows = shown(true);
    select(sub(false));
    EXPECT_GT(s().form().form().session.lvwFiles.rowCount(), 0U);
    select(sub(true));
    EXPECT_EQ(s().form().form().session.lvwFiles.rowCount(), 0U);
    for (const Command command :
         {Command::kDeleteFolders, Command::kRecycleFolders, Command::kReportRescan,
          commandOf(BarId::kReport, 510), commandOf(BarId::kReport, 540), commandOf(BarId::kMain, 540)}) {
        s().execute(command);
        EXPECT_EQ(s().grid().currentRow(), sub(true));
        EXPECT_EQ(disk(), before);
    }
    EXPECT_FALSE(s().enabled(Command::kReportRescan));
    // A list of its files would be one of what has their paths here.
    s().click(Command::kShowTop);
    s().click(Command::kShowFiles);
    EXPECT_EQ(s().form().form().session.lvwFiles.rowCount(), 0U);
    s().key(s().view(), Qt::Key_F2);
    EXPECT_EQ(s().view().viewport()->findChild<QLineEdit*>(), nullptr);
    s().click(Command::kShowFind);
    s().type(Command::kFindFilter, "size>0", Qt::Key_Return);
    EXPECT_EQ(s().form().form().session.lvwFind.rowCount(), 0U);
    EXPECT_EQ(disk(), before);
    EXPECT_EQ(shown(true), rows);
    select(sub(false));
    EXPECT_TRUE(s().enabled(Command::kReportRescan));
}

TEST_F(OpenedScanTest, StaysAsItIsWhenTheDiskChanges) {
    startWithBoth();
    const Names rows = shown(true);
    select(sub(false));
    s().execute(Command::kRecycleFolders);
    EXPECT_FALSE(there("src/sub"));
    EXPECT_EQ(sub(false), kNoRow);
    EXPECT_EQ(shown(true), rows);
    s().click(Command::kTakeBack);
    EXPECT_EQ(shown(false), rows);
    EXPECT_EQ(shown(true), rows);
    select(sub(false));
    rename(s().view(), QStringLiteral("renamed"));
    EXPECT_TRUE(there("src/renamed"));
    EXPECT_EQ(shown(true), rows);
    // A source below which everything goes is gone itself; the opened one of the same path is not.
    select(source(true));
    s().execute(Command::kReportRemove);
    EXPECT_EQ(shown(true), Names());
    EXPECT_NE(source(false), kNoRow);
}

TEST_F(OpenedScanTest, ItsChangesLeadToItsOwnRows) {
    start();
    save(scanFile());
    file("src/sub/d.txt", 450);
    s().click(Command::kReportRescan);
    const std::string later = home.path() + "/later.hlscan";
    save(later);
    open(later);
    s().answers.add([this](QDialog& dialog) { choosePath(dialog, scanFile()); });
    s().click(Command::kReportCompare);
    s().click(Command::kShowChanges);
    Grid& changes = s().form().form().session.lvwChanges;
    ASSERT_EQ(changes.rowCount(), 1U);
    changes.setSelected(changes.firstRoot(), true);
    changes.setCurrentRow(changes.firstRoot());
    s().form().form().lists.changes().MouseUp(changes.firstRoot(), MouseButton::kLeft, false, {});
    EXPECT_EQ(s().grid().currentRow(), sub(true));
}

TEST_F(OpenedScanTest, ListsOfOtherProgramsLeaveTheListsOfAScanAsTheyAre) {
    setSettings("[Optionen]\r\nCreateListTOP=1\r\n");
    start();
    const auto top = [&] { return s().form().form().session.lvwTOP.rowCount(); };
    const std::size_t files = top();
    const std::string listing = home.path() + "/listing.list";
    std::ofstream(listing, std::ios::binary)
        << "10 8 1700000000 0 d " << at("src") << '\0' << "70 8 1700000000 0 f " << at("src/a.txt") << '\0';
    open(listing);
    EXPECT_EQ(s().grid().number(source(true), kSize), 70);
    EXPECT_EQ(top(), files);
    select(source(false));
    s().click(Command::kReportUnfoldAll);
    // The disk that the listing tells of is not the one that the folder is on.
    select(sub(false));
    s().execute(Command::kRecycleFolders);
    EXPECT_FALSE(there("src/sub"));
}

TEST_F(OpenedScanTest, IsOpenedByALineAndRefusedWithAReason) {
    start();
    save(scanFile());
    std::ofstream(scanFile(), std::ios::binary | std::ios::app) << "x";
    std::string text;
    s().answers.add([this](QDialog& dialog) { choosePath(dialog, scanFile()); });
    answer("OK", &text);
    s().click(Command::kReportOpenScan);
    EXPECT_NE(text.find("of src.hlscan kann nicht"), std::string::npos) << text;
    EXPECT_EQ(source(true), kNoRow);
    const std::string path = home.path() + "/right.hlscan";
    select(source(false));
    save(path);
    const JoinedLine line = joinArguments({"--open", path}, "/", kPosixPaths, {});
    s().form().handOver(line.text);
    EXPECT_NE(source(true), kNoRow);
    s().form().form().sources.dropped({{"", path}});
    EXPECT_EQ(s().grid().firstRoot() == kNoRow ? 0 : std::ranges::count(shown(true), shown(true).front()), 2);
}

}  // namespace
}  // namespace hl::test
