// Tests Report_Rescan of scan/driver.h.

#include "scan/list_handover.h"
#include "support/scan_fixture.h"

namespace hl::test {
namespace {

struct Rescan : ScanFixture {
    Rescan() {
        begin(folder("/s",
                     {file("a", 100), folder("b", {file("x", 40), folder("c", {file("y", 8)}), folder("d")}),
                      folder("e", {file("z", 16)})}));
    }
    void begin(Item source) {
        report.clear();
        const std::string path = source.name;
        disk.sources = {std::move(source)};
        readSources({path.c_str()});
        host.calls.clear();
        host.folders.clear();
        clearProtocol();
    }
    Item& at(std::string_view path) { return *disk.find(path); }
    void rescan(Row row) {
        report.setCurrentRow(row);
        Report_Rescan(scan);
    }
    void rescan(std::string_view row) { rescan(rowOf(row)); }

    /// Returns every row with its path and everything that a scan writes. They are sorted, since rows of
    /// equal size may be in any order.
    static Lines factsOf(const ScanBench& bench) {
        const Grid& report = bench.report;
        Lines lines;
        for (std::size_t i = 0; i < report.rowCount(); ++i) {
            const Row row = report.rowAt(i);
            lines.push_back(Report_GetFullpathOfNode(report, row, false, bench.paths) + ": " +
                            bench.numbersOf(row) + " " + SimpleValue(report.number(row, kPercent)).text() +
                            "% " + std::to_string(report.picture(row)) + std::string(report.rowNote(row)));
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }
    Lines factsOfFreshScan() const {
        ScanBench fresh;
        fresh.disk.sources = disk.sources;
        fresh.readSources({"/s/"});
        return factsOf(fresh);
    }
};

TEST_F(Rescan, ForgetsAnAccessErrorThatIsNoMore) {
    options.ScanHardlinks = 1;
    combo = {};
    combo.add({"/s/", "/s [a drive]", "/s/", 2});
    begin(folder("/s", {folder("b", {file("x", 40)}), linkTo("l", "../x", {file("y", 8)}),
                        mountOf("m", "/dev/sdb1", {file("z", 16)})}));
    const Lines scanned = factsOf(*this);
    for (const std::string path : {"/s", "/s/b", "/s/l", "/s/m"}) {
        const std::string row = path == "/s" ? path : path.substr(3);
        at(path).error = 13;
        rescan(row);
        EXPECT_EQ(report.picture(rowOf(row)), kPictureAccessError);
        at(path).error = 0;
        rescan(row);
        EXPECT_EQ(factsOf(*this), scanned) << path;
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
        ASSERT_EQ(factsOf(*this), factsOfFreshScan()) << step;
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
