// The scan of a source saved from the window.
#include "gui/files_fixture.h"
#include "scan/saved/scan_reader.h"

namespace hl::test {
namespace {

struct SaveScanTest : FilesTest {
    /// Saves the scan and returns each folder as "name files bytes inode".
    Names saved() {
        const std::string path = home.path() + "/" + std::to_string(++files_) + ".hlscan";
        session_->answers.add([&](QDialog& dialog) { choosePath(dialog, path); });
        s().click(Command::kReportSaveScan);
        const ScanReading reading = readScan(contentOf(path));
        EXPECT_EQ(reading.problem, ScanProblem::kNone);
        if (reading.problem != ScanProblem::kNone) return {};
        struct stat facts {};
        must(::stat(path.c_str(), &facts));
        EXPECT_EQ(facts.st_mode & 0777U, 0600U);
        Names lines;
        ScanRecords records(reading.file);
        for (ScanRecord record; records.next(record);)
            lines.push_back(std::string(record.name) + " " + std::to_string(record.own.files) + " " +
                            std::to_string(record.own.bytes) + " " + std::to_string(record.inode));
        return lines;
    }
    int files_ = 0;  ///< A file that is there would be asked about.
    std::string inode(const std::string& folder) const {
        struct stat facts {};
        must(::stat(at(folder).c_str(), &facts));
        return " " + std::to_string(facts.st_ino);
    }
};

TEST_F(SaveScanTest, IsThatOfTheDiskAlsoAfterChanges) {
    start();
    EXPECT_EQ(saved(), (Names{" 3 600" + inode("src"), "sub 1 400" + inode("src/sub"),
                              "deep 1 500" + inode("src/sub/deep"), "other 0 0" + inode("src/other")}));
    s().click(Command::kReportUnfoldAll);
    s().clickRow("deep");
    s().execute(Command::kRecycleFolders);
    const Names without = {" 3 600" + inode("src"), "sub 1 400" + inode("src/sub"),
                           "other 0 0" + inode("src/other")};
    EXPECT_EQ(saved(), without);
    s().click(Command::kTakeBack);
    EXPECT_EQ(saved()[2], "deep 1 500" + inode("src/sub/deep"));
    folder("src/other/new");
    file("src/other/new/x", 70);
    s().clickRow("other");
    s().click(Command::kReportRescan);
    EXPECT_EQ(saved()[4], "new 1 70" + inode("src/other/new"));
}

TEST_F(SaveScanTest, NothingChangesTheReportWhileItIsSaved) {
    for (int i = 0; i < 3000; ++i) folder("src/many/" + std::to_string(i));
    start();
    PumpState& pump = s().form().form().session.state.pump;
    pump = {.interval = 0};
    int tried = 0;
    QTimer hasty;
    QObject::connect(&hasty, &QTimer::timeout, [&] {
        const bool isWriting = pump.lastTick != 0 && !std::filesystem::exists(home.path() + "/1.hlscan");
        if (!isWriting) return;
        ++tried;
        s().execute(Command::kReportRemoveAll);
    });
    hasty.start(0);
    EXPECT_EQ(saved().size(), 3005U);
    hasty.stop();
    EXPECT_GT(tried, 0);
    ASSERT_NE(s().row("many"), kNoRow);
    EXPECT_EQ(s().grid().number(s().row("many"), kFolders), 3000);
}

}  // namespace
}  // namespace hl::test
