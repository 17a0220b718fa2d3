#include "scan/walker.h"

#include "support/scan_fixture.h"

namespace hl {
namespace {

using test::file, test::folder, test::Item, test::linkTo, test::linkToFile, test::mountOf, test::with;

constexpr std::uint64_t kMostBytes = SizeValue::kMaxBytes;

class Walk : public test::ScanFixture {
  protected:
    using Items = std::vector<Item>;

    /// Reads a source "/s" with these entries into a fresh report; "size files/folders errors".
    std::string walk(Items items) { return walkSource(folder("/s", std::move(items))); }
    std::string walkSource(Item source) {
        for (Grid* grid : {&report, &top, &hardlinks, &junctions}) grid->clear();
        state.SeenLinkIds.Clear();
        state.CancelState = kCancelNone;
        state.NeedLinkCount = options.AddHardlinksOnlyOnce == 1 || options.CreateListHardlink == 1;
        const std::string path = AddTrailingSlash(source.name, paths);
        const Row root = report.addRow(kNoRow, source.name);
        disk.sources = {std::move(source)};
        disk.blocks = disk.unread = 0;
        ScanTotals totals;
        Report_ScanFolders(scan, path, root, totals);
        return std::to_string(totals.size.bytes()) + " " + std::to_string(totals.files) + "/" +
               std::to_string(totals.folders) + " " + std::to_string(totals.errors);
    }
    /// The rows below the source's own, whose cells the caller of the walk writes.
    Lines below() const {
        Lines lines = rows();
        lines.erase(lines.begin());
        return lines;
    }
    int pictureOf(std::string_view text) const { return report.picture(rowOf(text)); }
    std::string noteOf(std::string_view text) const { return std::string(report.rowNote(rowOf(text))); }
};

// --- rows and sums

TEST_F(Walk, GivesEachFolderARowWithAllThatLiesBelow) {
    EXPECT_EQ(walk({file("a", 10), folder("b", {file("c", 5), folder("d"), file("e", 1)}),
                    folder("f", {file("g", 7)})}),
              "23 4/3 0");
    EXPECT_EQ(below(),
              (Lines{"  b 6 2/1", "    d 0 0/0", "    Dateien 6 2/0", "  f 7 1/0", "  Dateien 10 1/0"}));
    EXPECT_EQ(pictureOf("b"), 23);
    EXPECT_EQ(pictureOf("Dateien"), 51);
    EXPECT_EQ(report.number(rowOf("b"), kIsFolder), 1);
    EXPECT_EQ(report.number(rowOf("Dateien"), kIsFolder), 0);
    EXPECT_EQ(report.number(rowOf("Dateien"), kPercent), 100);
    EXPECT_EQ(noteOf("b"), "");
}

TEST_F(Walk, AddsARowForTheFilesExactlyWhereThereAreFilesAndARowBesideThem) {
    struct Case {
        Items items;
        Lines expected;
    };
    options.NoHardlinks = 1;
    for (const Case& c : {Case{{}, {}}, Case{{file("a", 1)}, {}}, Case{{folder("b")}, {"  b 0 0/0"}},
                          Case{{file("a", 0), folder("b")}, {"  b 0 0/0", "  Dateien 0 1/0"}},
                          Case{{file("a", 1), linkTo("l", "/x")}, {}}}) {
        walk(c.items);
        EXPECT_EQ(below(), c.expected);
    }
    options.NoHardlinks = 0;
    walk({file("a", 1), linkTo("l", "/x")});
    EXPECT_EQ(below(), (Lines{"  l 0 0/0", "  Dateien 1 1/0"}));
}

TEST_F(Walk, ReadsALongFolderBlockByBlockWithItsSubfoldersBetween) {
    Items items;
    for (int i = 0; i < 5; ++i) {
        items.push_back(file("a" + std::to_string(i), 1));
        items.push_back(folder("b" + std::to_string(i), {file("x", 10), file("y", 20), file("z", 30)}));
    }
    const std::string whole = walk(items);
    const Lines expected = rows();
    for (const std::size_t entries : {1U, 2U, 3U, 9U}) {
        for (Item& item : items) item.blockEntries = entries;
        EXPECT_EQ(walkSource(with(folder("/s", items), &Item::blockEntries, entries)), whole);
        EXPECT_EQ(rows(), expected) << entries;
        EXPECT_EQ(disk.unread, 0);
    }
}

TEST_F(Walk, TellsEachFolderThatItEntersOnceAndEachFirstLevelFolderWhenItIsDone) {
    walk({folder("b", {file("x", 1), folder("c")}), linkTo("l", "/x", {folder("y")}), folder("d")});
    EXPECT_EQ(host.folders, (Lines{"/s/", "/s/b/", "/s/b/c/", "/s/d/"}));
    EXPECT_EQ(host.calls, (Lines{"first level", "first level", "first level"}));
}

TEST_F(Walk, ReadsAChainOf100000Folders) {
    host.keepFolders = false;
    EXPECT_EQ(walkSource(with(folder("/s", {file("f", 1)}), &Item::chain, 100'000)),
              "100001 100001/100000 0");
    EXPECT_EQ(report.rowCount(), 200'001U);
    EXPECT_EQ(state.DeepestLevel, 100'000U);
    walk({folder("b")});
    EXPECT_EQ(state.DeepestLevel, 100'000U) << "it is never lowered";
}

TEST_F(Walk, DarkensEachLevelByOneStepDownToTheLastGrey) {
    options.FolderColorFade = 1;
    walkSource(with(folder("/s"), &Item::chain, 45));
    EXPECT_EQ(report.backColor(report.rowAt(0)), std::nullopt);
    const std::map<std::size_t, std::uint32_t> colors = {{1, 0xF9F9F9},  {2, 0xF3F3F3},  {41, 0x090909},
                                                         {42, 0x030303}, {43, 0x030303}, {45, 0x030303}};
    for (const auto& [level, color] : colors)
        EXPECT_EQ(report.backColor(report.rowAt(level)), color) << level;
    options.FolderColorFade = 0;
    walk({folder("b")});
    EXPECT_EQ(report.backColor(rowOf("b")), std::nullopt);
}

// --- links and mounts

TEST_F(Walk, TreatsLinksAndMountsByTheTwoOptions) {
    struct Case {
        Flag noHardlinks, scanHardlinks;
        const char* totals;
        Lines expected;
    };
    const Items items = {linkTo("l", "/x", {file("f", 5)}), mountOf("m", "/dev/sdb1", {file("g", 7)}),
                         folder("b")};
    const Lines shown = {"  l 0 0/0", "  m 0 0/0", "  b 0 0/0"};
    const Lines followed = {"  l 5 1/0", "  m 7 1/0", "  b 0 0/0"};
    for (const Case& c : {Case{0, 0, "0 0/3 0", shown}, Case{0, 1, "12 2/3 0", followed},
                          Case{1, 0, "0 0/1 0", {"  b 0 0/0"}}, Case{1, 1, "12 2/3 0", followed}}) {
        for (const Flag list : {Flag{0}, Flag{1}}) {
            options.NoHardlinks = c.noHardlinks;
            options.ScanHardlinks = c.scanHardlinks;
            options.CreateListJunction = list;
            EXPECT_EQ(walk(items), c.totals);
            EXPECT_EQ(below(), c.expected);
            EXPECT_EQ(textsOf(junctions), list == 1 ? (Lines{"/s/l", "/s/m"}) : Lines());
            EXPECT_EQ(disk.unread, 0);
        }
    }
}

TEST_F(Walk, ShowsWhereALinkOrAMountLeads) {
    for (const Flag follow : {Flag{0}, Flag{1}}) {
        options.ScanHardlinks = follow;
        walk({linkTo("l", "../x"), linkTo("unknown", ""), mountOf("m", "/dev/sdb1")});
        EXPECT_EQ(noteOf("l"), " ../x ");
        EXPECT_EQ(noteOf("unknown"), "  ");
        EXPECT_EQ(noteOf("m"), " /dev/sdb1 ");
        EXPECT_EQ(pictureOf("l"), 26);
        EXPECT_EQ(pictureOf("m"), 62);
    }
}

TEST_F(Walk, GivesTheJunctionListTheTagThatWasReadLastBelowAFollowedFolder) {
    options.ScanHardlinks = options.CreateListJunction = 1;
    struct Case {
        Item item;
        double type;
    };
    const Item link = linkTo("l", "/x");
    for (const Case& c : {Case{link, 1},  // Its "." and ".." were read.
                          Case{linkTo("l", "/x", {linkToFile("f"), file("g", 1)}), 1},
                          Case{linkTo("l", "/x", {file("g", 1), linkToFile("f")}), 0},
                          Case{linkTo("l", "/x", {folder("b", {linkToFile("f")})}), 0},
                          Case{linkTo("l", "/x", {linkToFile("f"), folder("b")}), 1},
                          Case{with(link, &Item::error, 13), 0},  // Nothing was read.
                          Case{mountOf("l", "dev", {linkToFile("f")}), 0}, Case{mountOf("l", "dev"), 1}}) {
        walk({c.item});
        const Row row = junctions.firstRoot();
        EXPECT_EQ(junctions.number(row, kJunctionType), c.type);
        EXPECT_EQ(junctions.cellText(row, kJunctionTarget), c.item.target);
        EXPECT_EQ(junctions.picture(row), c.type == 0 ? 26 : 62);
    }
}

// --- files with several names

TEST_F(Walk, CountsTheSizeOfAFileWithSeveralNamesOnceIfAskedTo) {
    const Items items = {folder("b", {file("one", 100, 7, 2), folder("x")}),
                         folder("c", {file("two", 100, 7, 2), folder("y")}), file("alone", 1, 7, 1)};
    EXPECT_EQ(walk(items), "201 3/4 0");
    EXPECT_FALSE(disk.lastOptions.wantLinks) << "links cost time and are not asked for in vain";
    options.AddHardlinksOnlyOnce = 1;
    EXPECT_EQ(walk(items), "101 3/4 0");
    EXPECT_EQ(below(), (Lines{"  b 100 1/1", "    x 0 0/0", "    Dateien 100 1/0", "  c 0 1/1", "    y 0 0/0",
                              "    Dateien 0 1/0", "  Dateien 1 1/0"}));
    options.AddHardlinksOnlyOnce = 0;
    options.CreateListHardlink = 1;
    EXPECT_EQ(walk(items), "201 3/4 0");
    EXPECT_TRUE(disk.lastOptions.wantLinks);
}

TEST_F(Walk, AsksForNoNamesOfFilesAndNoTimesInASilentRun) {
    for (const bool silent : {false, true}) {
        state.SilentRun = silent;
        EXPECT_EQ(walk({file("a", 1), folder("b")}), "1 1/1 0");
        EXPECT_EQ(disk.lastOptions.wantFileNames, !silent);
        EXPECT_EQ(disk.lastOptions.wantTimes, !silent);
    }
}

// --- what cannot be read

TEST_F(Walk, ShowsLogsAndCountsAFolderThatCannotBeRead) {
    struct Case {
        int code;
        const char* text;
    };
    for (const Case& c : {Case{13, "#13 - Permission denied"}, Case{2, "#2 - Formatmessage Error 22 (2)"}}) {
        files.content.clear();
        host.calls.clear();
        EXPECT_EQ(walk({file("a", 1), with(folder("b", {file("x", 9)}), &Item::error, c.code), folder("d")}),
                  "1 1/2 1");
        EXPECT_EQ(below(), (Lines{"  b 0 0/0", "  d 0 0/0", "  Dateien 1 1/0"}));
        EXPECT_EQ(pictureOf("b"), 69);
        EXPECT_EQ(pictureOf("d"), 23);
        EXPECT_EQ(noteOf("b"), c.text);
        EXPECT_EQ(protocol(), Lines{std::string("ERROR: ") + c.text + " (/s/b/)"});
        EXPECT_EQ(host.calls.front(), std::string("not read /s/b/: ") + c.text);
    }
    EXPECT_EQ(walkSource(with(folder("/s"), &Item::error, 13)), "0 0/0 1");
    EXPECT_EQ(noteOf("/s"), "#13 - Permission denied");
}

TEST_F(Walk, CountsOneErrorForAFolderInWhichFactsCouldNotBeLearned) {
    Item b =
        with(folder("b", {file("x", 0), file("y", 4), folder("c"), file("z", 2)}), &Item::entryError, 13);
    b.blockEntries = 2;
    EXPECT_EQ(walk({b}), "6 3/2 1");
    EXPECT_EQ(below(), (Lines{"  b 6 3/1", "    c 0 0/0", "    Dateien 6 3/0"}));
    EXPECT_EQ(pictureOf("b"), 69);
    EXPECT_EQ(protocol().size(), 1U);
}

TEST_F(Walk, KeepsWhatItHasOfAFolderWhoseListingBreaksOff) {
    EXPECT_EQ(walk({with(folder("b", {file("x", 4), folder("c")}), &Item::endError, 13)}), "4 1/2 0");
    EXPECT_EQ(below(), (Lines{"  b 4 1/1", "    c 0 0/0", "    Dateien 4 1/0"}));
    EXPECT_EQ(pictureOf("b"), 23);
    EXPECT_EQ(protocol(), Lines());
    EXPECT_EQ(files.logLines("debug.log"), Lines{"Report_ScanFolders\\next, #13 - Permission denied, /s/b/"});
    EXPECT_EQ(host.calls.front(), "not read /s/b/: #13 - Permission denied");
}

// --- Stop

TEST_F(Walk, KeepsPartialSumsAndMakesNoFilesRowWhereStopCutsAFolderShort) {
    const Items items = {file("a", 1), folder("b", {file("c", 2), folder("d", {file("e", 4)}), file("f", 8)}),
                         folder("g", {file("h", 16)}), file("i", 32)};
    Items withoutLast = items;
    withoutLast.pop_back();
    struct Case {
        Items items;
        int block;  // Stop is pressed while this one is read.
        const char* totals;
        Lines expected;
    };
    const Lines whole = {"  b 14 3/1", "    d 4 1/0", "    Dateien 10 2/0", "  g 0 0/0"};
    Lines wholeAndFiles = whole;
    wholeAndFiles.emplace_back("  Dateien 1 1/0");
    for (const Case& c :
         {Case{items, 1, "0 0/0 0", {}}, Case{items, 2, "1 1/1 0", {"  b 0 0/0"}},
          Case{items, 3, "3 2/2 0", {"  b 2 1/1", "    d 0 0/0"}}, Case{items, 4, "15 4/3 0", whole},
          // The last entry of a folder was cut short, the folder itself was not.
          Case{withoutLast, 4, "15 4/3 0", wholeAndFiles}}) {
        disk.at = {{c.block, [&] { state.CancelState = kCancelStop; }}};
        EXPECT_EQ(walk(c.items), c.totals) << c.block;
        EXPECT_EQ(below(), c.expected) << c.block;
    }
    disk.at = {{2, [&] { state.CancelState = kCancelEscape; }}};
    EXPECT_EQ(walk(items), "63 6/3 0") << "Escape stops no scan";
}

TEST_F(Walk, CutsALongFolderShortBetweenItsBlocks) {
    disk.at = {{2, [&] { state.CancelState = kCancelStop; }}};
    Item source = folder("/s", {file("a", 1), folder("b"), file("c", 4)});
    source.blockEntries = 2;
    EXPECT_EQ(walkSource(source), "1 1/1 0");
    EXPECT_EQ(disk.blocks, 2);
    EXPECT_EQ(below(), Lines{"  b 0 0/0"});
}

TEST_F(Walk, StopsWithinTheFilesOfAFolder) {
    Item source = folder("/s", {folder("b")});
    for (int i = 0; i < 1000; ++i) source.items.push_back(file("f", 1));
    pump.input = true;
    pump.onPump = [&] { state.CancelState = kCancelStop; };
    const std::string totals = walkSource(source);
    EXPECT_LT(std::stoi(totals), 300);
    EXPECT_GT(std::stoi(totals), 0);
    EXPECT_EQ(below(), Lines{"  b 0 0/0"});
}

TEST_F(Walk, CanBeStoppedWhileTheReaderWaits) {
    const Items items = {file("a", 1), folder("b", {file("c", 2)}), file("d", 4)};
    struct Case {
        int waitsAt, pressed;
        const char* totals;
        Lines expected;
    };
    for (const Case& c : {Case{1, kCancelStop, "0 0/0 0", {}}, Case{2, kCancelStop, "1 1/0 0", {}},
                          Case{2, kCancelEscape, "7 3/1 0", {"  b 2 1/0", "  Dateien 5 2/0"}}}) {
        disk.waitsAt = c.waitsAt;
        pump.onPump = [&] { state.CancelState = c.pressed; };
        EXPECT_EQ(walk(items), c.totals);
        EXPECT_EQ(below(), c.expected);
    }
}

// --- faults

TEST_F(Walk, EndsAFolderWhoseSumOverflowsAndGoesOnAboveIt) {
    for (const Flag follow : {Flag{0}, Flag{1}}) {
        options.ScanHardlinks = follow;
        errors.log.clear();
        const Item b =
            folder("b", {folder("early", {file("e", 2)}), file("x", 1), file("y", kMostBytes), file("z", 5),
                         folder("c", {file("v", 3), folder("deep", {folder("deeper")})}), linkTo("l", "/x"),
                         mountOf("m", "dev"), file("w", 5)});
        EXPECT_EQ(walk({b, folder("g", {file("h", 16)}), file("i", 32)}), "51 5/3 0");
        EXPECT_EQ(below(), (Lines{"  b 3 3/1", "    early 2 1/0", "  g 16 1/0", "  Dateien 32 1/0"}));
        ASSERT_EQ(errors.log.size(), 1U);
        EXPECT_NE(errors.log[0].text.find("Report_ScanFolders"), std::string::npos);
        EXPECT_NE(errors.log[0].text.find("Overflow"), std::string::npos);
        EXPECT_EQ(disk.unread, 0);
    }
}

TEST_F(Walk, EndsAFolderThatCannotAddASubfoldersSizeAndKeepsThatOfTheSubfolder) {
    const std::string most = std::to_string(kMostBytes);
    EXPECT_EQ(walk({folder("p", {file("a", 1), folder("b", {file("x", kMostBytes)}),
                                 folder("c", {file("y", 1)}), file("z", 1)}),
                    folder("q", {file("w", 2)})}),
              "3 2/3 0");
    EXPECT_EQ(below(), (Lines{"  p 1 1/1", "    b " + most + " 1/0", "  q 2 1/0"}));
    EXPECT_EQ(disk.unread, 0);
}

TEST_F(Walk, RaisesAFaultOfTheReaderInTheFolderThatItHappenedIn) {
    struct Case {
        const char* name;  // Of the folder whose block fails.
        std::size_t block;
        const char* totals;
        Lines expected;
    };
    for (const Case& c :
         {Case{"/s", 1, "0 0/0 0", {}}, Case{"/s", 2, "7 2/2 0", {"  b 6 1/1", "    c 6 1/0"}},
          Case{"b", 1, "9 2/2 0", {"  b 0 0/0", "  d 8 1/0", "  Dateien 1 1/0"}},
          Case{"c", 1, "9 2/3 0", {"  b 0 0/1", "    c 0 0/0", "  d 8 1/0", "  Dateien 1 1/0"}}}) {
        Item source = folder(
            "/s", {file("a", 1), folder("b", {folder("c", {file("x", 6)})}), folder("d", {file("y", 8)})});
        source.blockEntries = 2;
        Item& b = source.items[1];
        Item& failing = c.name[0] == '/' ? source : c.name[0] == 'b' ? b : b.items[0];
        failing.failingBlock = c.block;
        errors.log.clear();
        EXPECT_EQ(walkSource(source), c.totals) << c.name << c.block;
        EXPECT_EQ(below(), c.expected) << c.name << c.block;
        EXPECT_EQ(errors.log.size(), 1U);
        EXPECT_EQ(disk.unread, 0);
    }
}

// --- the yield

TEST_F(Walk, LetsMessagesRunOnceAnIntervalAndWheneverInputWaits) {
    Item source = folder("/s", {});
    for (int i = 0; i < 10'000; ++i) source.items.push_back(file("f", 1));
    source.blockEntries = 10'000;
    struct Case {
        std::uint64_t tickStep;
        bool input;
        int least, most;
    };
    for (const Case& c : {Case{1, false, 0, 0}, Case{50, false, 4, 5}, Case{2000, false, 100, 1000},
                          Case{0, true, 100, 1000}}) {
        pump = {};
        pump.tick = state.LastPumpTick = 1'000'000;
        pump.tickStep = c.tickStep;
        pump.input = c.input;
        walkSource(source);
        EXPECT_GE(pump.pumps, c.least) << c.tickStep;
        EXPECT_LE(pump.pumps, c.most) << c.tickStep;
        EXPECT_LT(pump.looks, 1000) << "the clock is not looked at for each file";
    }
}

// --- Report_ScanFilesOnly

TEST_F(Walk, OfFilesAloneMakesOneRowIfTheyHaveAnyBytes) {
    options.AddHardlinksOnlyOnce = options.CreateListHardlink = options.CreateListTOP = 1;
    state.NeedLinkCount = true;
    const Items items = {file("a", 5, 7, 2), folder("b", {file("x", 9)}), file("c", 5, 7, 2)};
    const Item source = folder("/s", items);
    const auto readFiles = [&](const Item& from) {
        report.clear();
        disk.sources = {from};
        ScanTotals totals;
        Report_ScanFilesOnly(scan, "/s/", report.addRow(kNoRow, "/s"), totals);
        return below();
    };
    EXPECT_EQ(readFiles(source), Lines{"  Dateien 10 2/0"});
    EXPECT_EQ(readFiles(with(source, &Item::blockEntries, 1)), Lines{"  Dateien 10 2/0"});
    EXPECT_EQ(readFiles(folder("/s", {file("a", 0), folder("b", {file("x", 9)})})), Lines());
    EXPECT_EQ(readFiles(with(source, &Item::error, 13)), Lines());
    EXPECT_EQ(report.picture(report.firstRoot()), 0) << "an error is passed over in silence";
    EXPECT_EQ(errors.log.size(), 0U);
    EXPECT_EQ(readFiles(with(source, &Item::failingBlock, 1)), Lines());
    EXPECT_EQ(errors.log.size(), 1U);
    state.CancelState = kCancelStop;
    EXPECT_EQ(readFiles(source), Lines());
    EXPECT_EQ(top.rowCount() + hardlinks.rowCount() + protocol().size(), 0U);
}

}  // namespace
}  // namespace hl
