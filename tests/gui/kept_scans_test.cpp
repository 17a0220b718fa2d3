// Scans that the window keeps by itself.
#include <sys/stat.h>

#include "gui/files_fixture.h"
#include "scan/saved/scan_reader.h"

namespace hl::test {
namespace {

struct KeptScansTest : FilesTest {
    std::string scans() const { return home.path() + "/scans"; }
    void startKeeping(int most) {
        setSettings("[Optionen]\r\nKeepScans=" + std::to_string(most) + "\r\n");
        start();
    }
    Names kept() const {
        Names names;
        if (!fs::exists(scans())) return names;
        for (const auto& entry : fs::directory_iterator(scans())) names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    unsigned modeOf(const std::string& path) const {
        struct stat facts {};
        must(::stat(path.c_str(), &facts));
        return facts.st_mode & 0777U;
    }
    /// Gives the one kept scan of today the name of one of this day.
    std::string moveToDay(const std::string& day) const {
        const std::string name = kept().back();
        const std::string moved = name.substr(0, 17) + day + ".hlscan";
        fs::rename(scans() + "/" + name, scans() + "/" + moved);
        return moved;
    }
};

TEST_F(KeptScansTest, AreNotThereUnlessTheyAreWanted) {
    start();
    EXPECT_FALSE(fs::exists(scans()));
}

TEST_F(KeptScansTest, OneADayIsKeptForTheUserAloneAndTheOldestGo) {
    startKeeping(1);
    ASSERT_EQ(kept().size(), 1U);
    EXPECT_EQ(modeOf(scans()), 0700U);
    EXPECT_EQ(modeOf(scans() + "/" + kept().front()), 0600U);
    EXPECT_EQ(readScan(contentOf(scans() + "/" + kept().front())).problem, ScanProblem::kNone);
    file("src/a.txt", 150);
    s().scan(at("src"));
    ASSERT_EQ(kept().size(), 1U);  // The second one of a day replaces the first.
    EXPECT_EQ(readScan(contentOf(scans() + "/" + kept().front())).file.scan->sums.bytes, 1550U);
    const std::string oldest = moveToDay("2020-01-01");
    s().scan(at("src"));
    const std::string older = moveToDay("2020-01-02");
    // What is no scan of this program stays, whatever its name is.
    const std::string foreign = oldest.substr(0, 17) + "2019-01-01.hlscan";
    std::ofstream(scans() + "/" + foreign) << "HLSCAN1\n{\"program\":\"Other\"}";
    s().scan(at("src"));
    Names expected = {foreign, older, kept().back()};
    EXPECT_EQ(kept(), expected);
    // A folder that is read again is no source.
    const Names before = kept();
    s().clickRow("sub");
    s().click(Command::kReportRescan);
    EXPECT_EQ(kept(), before);
    // The options ask before they delete them.
    for (const char* button : {"Abbrechen", "Löschen"}) {
        s().answers.add([](QDialog& options) {
            pressIn(options, "Aufgehobene Scans löschen");
            pressIn(options, "Abbrechen");
        });
        answer(button);
        s().click(Command::kOptions);
        EXPECT_EQ(kept(), *button == 'A' ? before : Names{foreign});
    }
}

TEST_F(KeptScansTest, ComparingTakesTheLastOneOfAnEarlierDay) {
    startKeeping(3);
    moveToDay("2020-01-01");
    s().execute(Command::kReportRemoveAll);
    file("src/sub/d.txt", 470);
    s().scan(at("src"));
    ASSERT_EQ(kept().size(), 2U);
    s().click(Command::kReportCompare);
    ASSERT_TRUE(s().form().form().comparison.isShown());
    EXPECT_EQ(s().grid().number(s().row("sub"), kChange), 70);
}

TEST_F(KeptScansTest, AStoppedOneIsNotKept) {
    setSettings("[Optionen]\r\nKeepScans=2\r\n");
    session_.emplace(home.path());
    s().start();
    s().fileSystem.beforeBlock = [&](int) { s().execute(Command::kStop); };
    s().scan(at("src"));
    EXPECT_EQ(kept(), Names());
}

}  // namespace
}  // namespace hl::test
