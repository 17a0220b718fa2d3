// Tests Report_Rescan of scan/driver.h.

#include "scan/list_handover.h"
#include "support/rescan_fixture.h"

namespace hl::test {
namespace {

struct Rescan : RescanFixture {
    Rescan() {
        begin(folder("/s",
                     {file("a", 100), folder("b", {file("x", 40), folder("c", {file("y", 8)}), folder("d")}),
                      folder("e", {file("z", 16)})}));
    }
    Item& at(std::string_view path) { return *disk.find(path); }
    using RescanFixture::rescan;
    void rescan(std::string_view row) { rescan(rowOf(row)); }
};

TEST_F(Rescan, ForgetsAnAccessErrorThatIsNoMore) {
    options.ScanHardlinks = 1;
    combo = {};
    combo.add({"/s/", "/s [a drive]", "/s/", 2});
    begin(folder("/s", {folder("b", {file("x", 40)}), linkTo("l", "../x", {file("y", 8)}),
                        mountOf("m", "/dev/sdb1", {file("z", 16)})}));
    const Lines scanned = figuresOf(*this);
    for (const std::string path : {"/s", "/s/b", "/s/l", "/s/m"}) {
        const std::string row = path == "/s" ? path : path.substr(3);
        at(path).error = 13;
        rescan(row);
        EXPECT_EQ(report.picture(rowOf(row)), kPictureAccessError);
        at(path).error = 0;
        rescan(row);
        EXPECT_EQ(figuresOf(*this), scanned) << path;
    }
}

TEST_F(Rescan, AgreesWithAFreshScanAfterManyRandomChanges) {
    std::mt19937 random(11);
    const std::function<void(Item&, int)> grow = [&](Item& into, int depth) {
        into.items.clear();
        for (unsigned i = random() % 4; i > 0; --i)
            into.items.push_back(file("f" + std::to_string(i), random() % 1000));
        for (unsigned i = depth > 0 ? random() % 4 : 0; i > 0; --i) {
            into.items.push_back(folder("d" + std::to_string(random() % 1'000'000)));
            grow(into.items.back(), depth - 1);
        }
    };
    for (int step = 0; step < 80; ++step) {
        Row row = report.rowAt(random() % report.rowCount());
        const Row folderRow = report.number(row, kIsFolder) == 0 ? report.parent(row) : row;
        const std::string path = Report_GetFullpathOfNode(report, folderRow, false, paths);
        grow(at(path), 3);
        rescan(row);
        ASSERT_EQ(figuresOf(*this), figuresOfAFreshScan()) << step;
        row = report.currentRow();
        ASSERT_EQ(Report_GetFullpathOfNode(report, row, false, paths), path) << step;
        ASSERT_TRUE(report.selected(row));
    }
}

TEST_F(Rescan, StaysAtTheFormerPlaceIfARowOfThatTextStandsThereNow) {
    begin(folder("/t", {folder("g", {folder("e", {file("x", 20)})}), folder("e", {file("y", 16)})}));
    at("/t/e").items[0].facts.size = 60;
    rescan(report.rowAt(3));
    EXPECT_EQ(rows(), (Lines{"/t 80 2/3", "  e 60 1/0", "  g 20 1/1", "    e 20 1/0"}));
    EXPECT_EQ(report.indexOf(report.currentRow()), 3U);
    EXPECT_EQ(host.calls.back(), "folder '/t/e/'");
}

TEST_F(Rescan, ShowsAFolderThatHasVanishedWithZerosAndTheError) {
    at("/s").items.erase(at("/s").items.begin() + 1);
    rescan("b");
    EXPECT_EQ(rows(), (Lines{"/s 116 2/2", "  Dateien 100 1/0", "  e 16 1/0", "  b 0 0/0"}));
    EXPECT_EQ(report.picture(rowOf("b")), 69);
    EXPECT_EQ(protocol()[2], "ERROR: #2 - No such file or directory (/s/b/)");
}

TEST_F(Rescan, CorrectsTheRowsAboveByThePartialDifferenceAfterStop) {
    disk.at = {{disk.blocks + 2, [&] { state.CancelState = kCancelStop; }}};
    rescan("b");
    EXPECT_EQ(rows(), (Lines{"/s 156 3/3", "  Dateien 100 1/0", "  b 40 1/1", "    c 0 0/0", "  e 16 1/0"}));
    EXPECT_EQ(state.CancelState, kCancelNone);
    EXPECT_EQ(report.number(rowOf("b"), kPercent), 25.64);
}

TEST_F(Rescan, LocksTheWindowFillsTheListsFromTheFolderAloneAndReadsWhatWasQueuedMeanwhile) {
    rescan(kNoRow);
    EXPECT_EQ(host.calls, Lines()) << "no row is current";
    options.CreateListTOP = 1;
    rescan("e");
    for (const char* call : {"+lock", "+lists", "+unlock", "not busy"})
        EXPECT_EQ(std::count(host.calls.begin(), host.calls.end(), call), 1) << call;
    EXPECT_EQ(textsOf(top), Lines{"z"});
    EXPECT_EQ(topTitle(scan), "1 größten Dateien von '/s/e'");
    disk.sources.push_back(folder("/t", {file("g", 1)}));
    disk.at = {{disk.blocks + 1, [&] { state.SourceQueue.push_back("/t"); }}};
    rescan("e");
    EXPECT_EQ(rows().back(), "/t 1 1/0");
    EXPECT_TRUE(state.SourceQueue.empty() && !state.ScanActive);
}

TEST_F(Rescan, LeavesTheWindowFreeAfterAFaultThatNoInnerTrapCatches) {
    pump.onPump = [] { throw std::runtime_error("no"); };
    rescan("e");
    EXPECT_EQ(host.calls, (Lines{"busy", "selection gone", "+lock", "+unlock", "broken off", "not busy"}));
    EXPECT_FALSE(state.ScanActive);
}

}  // namespace
}  // namespace hl::test
