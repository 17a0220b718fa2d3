#include "scan/driver.h"

#include "scan/file_system_calls.h"
#include "scan/list_handover.h"
#include "scan/rollup.h"
#include "support/scan_fixture.h"

namespace hl::test {
namespace {

struct Driver : ScanFixture {
    Driver() {
        disk.sources = {folder("/a", {file("x", 1), folder("b", {file("y", 2)})}),
                        folder("/m", {folder("n", {file("z", 4)}), file("w", 8)}),
                        folder("/q", {file("v", 16)})};
    }
    Lines roots() const {
        Lines lines = rows();
        std::erase_if(lines, [](const std::string& line) { return line.starts_with(' '); });
        return lines;
    }
    std::size_t callsOf(const std::string& call) const {
        return static_cast<std::size_t>(std::count(host.calls.begin(), host.calls.end(), call));
    }
};

TEST_F(Driver, ReadsTheQueueInItsOrderAsOneRunAndPassesOverWhatDoesNotExist) {
    disk.at = {{1, [&] { state.SourceQueue.push_back("/a/"); }}};  // This happens during the run.
    disk.lookErrors["/silent"] = EACCES;
    readSources({"/q/", "/missing/", "/silent/", "/m"});
    EXPECT_EQ(disk.reads, (Lines{"/q/", "/m/", "/a/"}));
    EXPECT_EQ(roots(), (Lines{"/q 16 1/0", "/m 12 2/1", "/a 3 2/1"})) << "sorted at the end";
    EXPECT_TRUE(state.SourceQueue.empty());
    EXPECT_EQ(report.selectedRows(), std::vector<Row>{rowOf("/a")}) << "the row read last";
    EXPECT_EQ(callsOf("+lock") + callsOf("+unlock") + callsOf("ended"), 3U);
    EXPECT_EQ(callsOf("+missing /missing/") + callsOf("+missing /silent/#13 - Permission denied"), 2U);
    for (const std::string& line : protocol()) EXPECT_FALSE(has(line, "missing"));
    readSources({"/q"});
    EXPECT_EQ(roots().size(), 4U) << "a source that is read again gets a second row";
    EXPECT_EQ(combo.items().size(), 3U);
}

TEST_F(Driver, KeepsWhatWasReadWhenTheSecondOfThreeSourcesIsStopped) {
    options.CreateListTOP = 1;
    disk.at = {{4, [&] { state.CancelState = kCancelStop; }}};  // This happens while /m/n is read.
    readSources({"/a/", "/m/", "/q/"});
    EXPECT_EQ(roots(), (Lines{"/a 3 2/1", "/m 0 0/1"}));
    EXPECT_EQ(textsOf(top), Lines());
    EXPECT_EQ(protocol().back(), "Der Vorgang wurde vom Anwender abgebrochen!");
    EXPECT_EQ(host.calls.back(), "stopped");
    EXPECT_TRUE(state.SourceQueue.empty() && state.CancelState == kCancelNone && !state.ScanActive);
}

TEST_F(Driver, LocksTheWindowWhileItReadsAndShowsNeitherListsNorFilesOfASilentRun) {
    pump.onPump = [&] { EXPECT_TRUE(state.ScanActive); };
    readSources({"/a/"});
    EXPECT_EQ((Lines{host.calls[0], host.calls[1]}), (Lines{"busy", "+lock"}));
    EXPECT_EQ(callsOf("+folder '/a/'") + callsOf("+lists") + callsOf("+unlock"), 3U);
    EXPECT_EQ(pump.pumps, 1);
    state.SilentRun = true;
    host.calls.clear();
    readSources({"/a/"});
    EXPECT_EQ(callsOf("+folder '/a/'") + callsOf("+lists"), 0U);
    EXPECT_EQ(roots(), (Lines{"/a 3 2/1", "/a 3 2/1"}));
}

TEST_F(Driver, LeavesTheWindowFreeAfterAFaultThatNoInnerTrapCatches) {
    pump.onPump = [] { throw std::runtime_error("no"); };
    readSources({"/a/"});
    EXPECT_EQ(host.calls, (Lines{"busy", "+lock", "+unlock", "broken off", "not busy"}));
    EXPECT_FALSE(state.ScanActive);
}

TEST_F(Driver, LogsTheFiguresOfEachSource) {
    numbers = {".", ","};
    disk.sources = {folder("/a", {file("x", 1234567), with(folder("b"), &Item::error, 13)}),
                    folder("/q\n", {file("v", 16)})};
    readSources({"/a/", "/q\n/"});
    const std::string line(40, '-');
    EXPECT_EQ(protocol(), (Lines{line, "Einlesen: /a/", "ERROR: #13 - Permission denied (/a/b/)",
                                 "Zugriffsfehler: 1", "Ordneranzahl: 1", "Dateianzahl: 1",
                                 "Dateigröße: 1,18 MB (1.234.567 Bytes)", line, "Einlesen: /q␊/",
                                 "Ordneranzahl: 0", "Dateianzahl: 1", "Dateigröße: 16 Bytes (16 Bytes)"}));
}

TEST_F(Driver, MakesTheRowOfASourceOfItsPathLessTheSeparator) {
    options.FolderShowPercentBar = 1;
    const std::tuple<PathRules, const char*, const char*, const char*, const char*> cases[] = {
        {kPosixPaths, "/", "/", "/", "/b/"},
        {kPosixPaths, "/s", "/s", "/s/", "/s/b/"},
        {kDrivePaths, "C:\\", "C:", "\\\\?\\C:\\", "C:\\b\\"}};
    for (const auto& [rules, source, row, read, inner] : cases) {
        paths = rules;
        disk.separator = paths.separator;
        disk.sources = {folder(row, {folder("b", {file("x", 2)}), file("y", 1)})};
        report.clear();
        readSources({source});
        const Row root = report.firstRoot();
        EXPECT_EQ((Lines{numbersOf(root), disk.reads.back(), host.folders.back()}),
                  (Lines{std::string(row) + " 3 2/1", read, inner}));
        EXPECT_TRUE(report.expanded(root) && report.currentRow() == root);
        EXPECT_TRUE(report.number(root, kIsFolder) == 1 && report.number(root, kPercent) == 100);
        EXPECT_EQ(report.barPicture(root), 100);
        EXPECT_EQ(report.number(rowOf("b"), kPercent), 66.67);
    }
}

TEST_F(Driver, StartsEachSourceWithEmptyListsAndNoFileSeen) {
    options.CreateListTOP = options.CreateListHardlink = options.CreateListJunction =
        options.AddHardlinksOnlyOnce = 1;
    const std::vector<Item> items = {file("one", 5, 7, 2), file("two", 5, 7, 2), linkTo("l", "/x"),
                                     linkTo("m", "/x")};
    disk.sources = {folder("/a", items), folder("/q", items)};
    readSources({"/a/", "/q/"});
    EXPECT_EQ(roots(), (Lines{"/a 5 2/2", "/q 5 2/2"})) << "a file counts once in each";
    EXPECT_EQ(top.rowCount() + hardlinks.rowCount(), 4U);
    EXPECT_EQ(textsOf(junctions), (Lines{"/q/l", "/q/m"}));
    EXPECT_EQ(topTitle(scan), "2 größten Dateien von '/q/'");
    EXPECT_TRUE(state.top.count == 2 && state.links.seen.Count() == 0);
}

TEST_F(Driver, KnowsASourceAgainByThePlatformsCaseRule) {
    const std::tuple<PathRules, std::vector<const char*>, Lines> cases[] = {
        {kPosixPaths, {"/A", "/a/", "/A/", " /a", "/A"}, {"/A/", "/a/", " /a/"}},
        {kDrivePaths, {"C:\\Ab", "D:", "c:\\aB\\", " C:\\AB "}, {"C:\\Ab\\", "D:\\"}}};
    for (const auto& [rules, sources, expected] : cases) {
        paths = rules;
        combo = {};
        for (const char* source : sources) AddNewSearchPath(scan, source);
        Lines shown;
        for (const SourceItem& item : combo.items()) shown.push_back(item.text);
        EXPECT_EQ(shown, expected);
        EXPECT_EQ(combo.selected(), &combo.items().front());
        EXPECT_EQ((Lines{combo.text, combo.items().front().tag}), Lines(2, expected.front()));
    }
}

TEST_F(Driver, StartsWithWhatTheComboShowsAndWithNothingIfItIsEmpty) {
    state.CancelState = kCancelStop;
    state.SourceQueue = {"/m/"};
    StartSearchViaToolbar(scan);
    EXPECT_EQ(host.calls, Lines());
    EXPECT_TRUE(state.SourceQueue.empty() && state.CancelState == kCancelNone);

    combo.text = "/a";  // The user typed it.
    StartSearchViaToolbar(scan);
    AddNewSearchPath(scan, "/q/");
    combo.select(0);
    StartSearchViaToolbar(scan);
    EXPECT_EQ(disk.reads, (Lines{"/a/", "/a/"}));
}

TEST_F(Driver, AnswersForPathsThatExistAndOthers) {
    disk.sources = {folder("/a", {file("one", 1, 7, 1), file("two", 1, 0x1'00000008, 2), linkTo("l", "/x")})};
    for (const char* path : {"/a", "/a/", "/a/one"}) EXPECT_TRUE(xExistFolder_W(scan, path)) << path;
    for (const char* path : {"", "/b", "/a/b/"}) EXPECT_FALSE(xExistFolder_W(scan, path)) << path;
    std::string id, error;
    EXPECT_EQ(xGetHardlinkCount(scan, "/a/two", &id, error), 2);
    EXPECT_EQ(id, "8-1");
    EXPECT_EQ(xGetJunctionPath(scan, "/a/l", error), "/x");
    EXPECT_EQ(error, "");
    EXPECT_EQ(xGetHardlinkCount(scan, "/b", &id, error), 0);
    EXPECT_TRUE(has(error, "Die Datei '/b' konnte nicht geöffnet werden."));
    EXPECT_EQ(xGetJunctionPath(scan, "/a/one", error), "");
}

struct Rollup : ScanFixture {
    Row add(Row parent, std::string_view text, double size = 0) {
        const Row row = report.addRow(parent, text);
        report.setNumber(row, kSize, size);
        return row;
    }
};

TEST_F(Rollup, GivesEachChildItsShareOfTheParentRoundedToEvenAndTheBarOfItsWholePart) {
    using Values = std::vector<double>;
    using Case = std::tuple<double, Values, Values, Values>;
    for (const auto& [whole, parts, shares, filled] :
         {Case{3, {1, 2}, {33.33, 66.67}, {33, 66}}, Case{0, {0, 7}, {0, 0}, {0, 0}},
          Case{800, {1, 3, 796}, {0.12, 0.38, 99.5}, {0, 0, 99}},
          Case{1e5, {0, 99'990, 99'999, 1e5}, {0, 99.99, 100, 100}, {0, 99, 100, 100}}}) {
        for (const Flag bars : {Flag{0}, Flag{1}}) {
            options.FolderShowPercentBar = bars;
            const Row parent = add(kNoRow, "p", whole);
            for (const double part : parts) add(add(parent, "c", part), "grandchild", part);
            Report_ChangePercentValue(scan, parent);
            Values percents, pictures;
            for (Row row = report.firstChild(parent); row != kNoRow; row = report.nextSibling(row)) {
                percents.push_back(report.number(row, kPercent));
                pictures.push_back(report.barPicture(row));
                EXPECT_EQ(report.number(report.firstChild(row), kPercent), 0) << "only direct children";
            }
            EXPECT_EQ(percents, shares);
            EXPECT_EQ(pictures, bars == 1 ? filled : Values(filled.size(), -1));
        }
    }
}

TEST_F(Rollup, SortsAllLevelsAndLetsWaitingInputIn) {
    add(add(kNoRow, "a", 1), "deep"), add(kNoRow, "b", 2);
    state.DeepestLevel = 1;
    pump.input = true;
    Report_Sort(scan);
    EXPECT_EQ(textsOf(report), (Lines{"b", "a", "deep"}));
    EXPECT_GE(pump.pumps, 2);
}

TEST_F(Rollup, RemovesTheWholeSourceOfTheCurrentRow) {
    options.CreateListTOP = 1;
    disk.sources = {folder("/s", {folder("b", {folder("c")}), file("f", 5)}),
                    folder("/t", {folder("d"), file("g", 6)})};
    readSources({"/s/", "/t/"});
    host.calls.clear();
    report.setCurrentRow(rowOf("c"));
    state.fileList.folder = "/s/b/";
    for (int i = 0; i < 2; ++i) Report_RemoveFolders(scan);  // The second time no row is current.
    EXPECT_EQ(rows(), (Lines{"/t 6 1/1", "  Dateien 6 1/0", "  d 0 0/0"}));
    EXPECT_EQ(host.calls, Lines(1, "selection gone"));
    EXPECT_EQ(state.fileList.folder, "/s/b/") << "another folder than the source itself";
    EXPECT_EQ(textsOf(top), Lines{"g"}) << "the lists keep what they hold";
    report.setCurrentRow(rowOf("/t"));
    state.fileList.folder = "/t/";
    Report_RemoveFolders(scan);
    EXPECT_EQ(report.rowCount() + state.DeepestLevel + sink.log.size(), 0U);
    EXPECT_TRUE(state.fileList.folder.empty() && report.enabled());
}

}  // namespace
}  // namespace hl::test
