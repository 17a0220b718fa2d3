#include "scan/walker.h"

#include "scan/list_handover.h"
#include "support/scan_fixture.h"

namespace hl::test {
namespace {

constexpr std::uint64_t kMostBytes = SizeValue::kMaxBytes;

struct Walk : ScanFixture {
    using Items = std::vector<Item>;

    /// Reads a source into a fresh report. Returns "size files/folders errors" and the rows below that of the
    /// source, whose cells the caller of the walk sets.
    Lines walkSource(Item source) {
        for (Grid* grid : {&report, &top, &hardlinks, &junctions}) grid->clear();
        state.links.seen.Clear();
        state.links.seen.CompareMode(0);
        state.CancelState = kCancelNone;
        state.links.needCount = options.AddHardlinksOnlyOnce == 1 || options.CreateListHardlink == 1;
        sink.log.clear();
        disk.sources = {std::move(source)};
        disk.blocks = disk.unread = 0;
        ScanTotals totals;
        Report_ScanFolders(scan, "/s/", report.addRow(kNoRow, "/s"), totals);
        EXPECT_TRUE(disk.unread == 0 || state.CancelState == kCancelStop);
        Lines lines = {std::to_string(totals.size.bytes()) + " " + std::to_string(totals.files) + "/" +
                       std::to_string(totals.folders) + " " + std::to_string(totals.errors)};
        for (std::size_t i = 1; i < report.rowCount(); ++i) lines.push_back(lineOf(report.rowAt(i)));
        return lines;
    }
    Lines walk(Items items) { return walkSource(folder("/s", std::move(items))); }

    /// Returns a line such as "  b 30 2/1 #26 [ ../x ]": the numbers, the picture if it is not the usual one,
    /// and the note if there is one.
    std::string lineOf(Row row) const {
        const int picture = report.picture(row);
        const std::string note(report.rowNote(row));
        const bool usual = picture == (report.number(row, kIsFolder) == 1 ? 23 : 51);
        return std::string(2 * report.level(row), ' ') + numbersOf(row) +
               (usual ? "" : " #" + std::to_string(picture)) + (note.empty() ? "" : " [" + note + "]");
    }
};

TEST_F(Walk, GivesEachFolderARowWithAllThatLiesBelowAndItsFilesOneIfAnotherIsBesideIt) {
    options.NoHardlinks = 1;
    EXPECT_EQ(walk({file("a", 1)}), Lines{"1 1/0 0"});
    EXPECT_EQ(walk({folder("b")}), (Lines{"0 0/1 0", "  b 0 0/0"}));
    EXPECT_EQ(walk({file("a", 0), folder("b")}), (Lines{"0 1/1 0", "  b 0 0/0", "  Dateien 0 1/0"}));
    EXPECT_EQ(walk({file("a", 1), linkTo("l", "/x")}), Lines{"1 1/0 0"}) << "the link is not shown";
    EXPECT_EQ(walk({file("a", 10), folder("b", {file("c", 5), folder("d"), file("e", 1)}),
                    folder("f", {file("g", 7)})}),
              (Lines{"23 4/3 0", "  b 6 2/1", "    d 0 0/0", "    Dateien 6 2/0", "  f 7 1/0",
                     "  Dateien 10 1/0"}));
    EXPECT_EQ(report.number(rowOf("Dateien"), kPercent), 100);
}

TEST_F(Walk, MakesRowsDownToTheWantedLevelAndDeeperOnesOnlyForWhatHasToBeTold) {
    const Items items = {folder("a", {folder("b", {folder("c"), file("f", 1)}), file("g", 2)}),
                         folder("d", {folder("e", {with(folder("shut"), &Item::error, 13), folder("h")}),
                                      folder("i", {file("j", 4)}), file("k", 8)})};
    RowFacts facts;
    state.SilentRun = true;
    state.deepestRows = 1;
    const Lines folded = {"15 4/8 1", "  a 3 2/2", "    Dateien 2 1/0", "  d 12 2/4", "    Dateien 8 1/0"};
    EXPECT_EQ(walk(items), folded);
    scan.facts = &facts;
    const Lines told = walk(items);
    ASSERT_EQ(told.size(), 7U);
    EXPECT_EQ(told[4], "    e 0 0/2");
    EXPECT_TRUE(told[5].starts_with("      shut 0 0/0 #")) << told[5];
    EXPECT_EQ(report.mark(rowOf("d")), 1U);
}

TEST_F(Walk, SpaceOnTheDiskCountsAsSizesDoAndTheNewestChangeIsTheLastBeforeTheScan) {
    const auto written = [](Item item, std::int64_t when, std::uint64_t blocks) {
        item.details = {.written = when, .blocks = blocks};
        return item;
    };
    state.NeedSpace = true;
    state.Started = 1000;
    for (const bool once : {false, true}) {
        options.AddHardlinksOnlyOnce = once ? 1 : 0;
        walk({written(file("a", 1, 7, 2), 100, 8),
              folder("b", {written(file("again", 1, 7, 2), 100, 8), written(file("during", 5, 8), 1001, 16),
                           folder("c", {written(file("sparse", 1 << 20, 9), 1000, 0)})})});
        Lines found;
        for (std::size_t i = 1; i < report.rowCount(); ++i) {
            const Row row = report.rowAt(i);
            found.push_back(std::string(report.text(row)) + " " +
                            SimpleValue(report.number(row, kDisk)).text() + " " +
                            SimpleValue(report.number(row, kNewest)).text());
        }
        EXPECT_EQ(found, once ? (Lines{"b 8192 1000", "c 0 1000", "Dateien 8192 100", "Dateien 4096 100"})
                              : (Lines{"b 12288 1000", "c 0 1000", "Dateien 12288 100", "Dateien 4096 100"}));
    }
    state.NeedSpace = false;
    walk({written(file("a", 1), 100, 8)});
    EXPECT_FALSE(disk.lastOptions.wantSpace) << "the disk is not asked for what nobody needs";
}

TEST_F(Walk, ReadsALongFolderBlockByBlockWithItsSubfoldersBetween) {
    Items items;
    for (int i = 0; i < 5; ++i) {
        items.push_back(file("a" + std::to_string(i), 1));
        items.push_back(folder("b" + std::to_string(i), {file("x", 10), file("y", 20), file("z", 30)}));
    }
    const Lines whole = walk(items);
    for (const std::size_t entries : {1U, 2U, 3U, 9U}) {
        for (Item& item : items) item.blockEntries = entries;
        EXPECT_EQ(walkSource(with(folder("/s", items), &Item::blockEntries, entries)), whole) << entries;
    }
}

TEST_F(Walk, TellsEachFolderThatItEntersOnceAndEachFirstLevelFolderWhenItIsDone) {
    walk({folder("b", {file("x", 1), folder("c")}), linkTo("l", "/x", {folder("y")}), folder("d")});
    EXPECT_EQ(host.folders, (Lines{"/s/", "/s/b/", "/s/b/c/", "/s/d/"}));
    EXPECT_EQ(host.calls, (Lines{"first level", "first level", "first level"}));
}

TEST_F(Walk, DarkensEachLevelByOneStepDownToTheLastGreyAndKeepsTheDeepestLevel) {
    options.FolderColorFade = 1;
    Item chain = folder("d");
    for (int i = 1; i < 45; ++i) chain = folder("d", {chain});
    walk({chain});
    for (const auto& [level, color] :
         {std::pair(1U, 0xF9F9F9U), {2, 0xF3F3F3}, {42, 0x030303}, {43, 0x030303}})
        EXPECT_EQ(report.backColor(report.rowAt(level)), color) << level;
    EXPECT_EQ(report.backColor(report.rowAt(0)), std::nullopt);
    walk({folder("b", {file("x", 1), folder("c")})});
    for (const Row row : {rowOf("c"), rowOf("Dateien")}) EXPECT_EQ(report.backColor(row), 0xF3F3F3U);
    EXPECT_EQ(state.DeepestLevel, 45U) << "it is never lowered";
}

TEST_F(Walk, TreatsLinksAndMountsByTheTwoOptions) {
    const Items items = {linkTo("l", "../x", {file("f", 5)}), linkTo("u", ""),
                         mountOf("m", "/dev/sdb1", {file("g", 7)}), folder("b")};
    const Lines shown = {"0 0/4 0", "  l 0 0/0 #26 [ ../x ]", "  u 0 0/0 #26 [  ]",
                         "  m 0 0/0 #62 [ /dev/sdb1 ]", "  b 0 0/0"};
    const Lines followed = {"12 2/4 0", "  l 5 1/0 #26 [ ../x ]", "  u 0 0/0 #26 [  ]",
                            "  m 7 1/0 #62 [ /dev/sdb1 ]", "  b 0 0/0"};
    const Lines hidden = {"0 0/1 0", "  b 0 0/0"};
    for (const Flag list : {Flag{0}, Flag{1}}) {
        for (const Flag hide : {Flag{0}, Flag{1}}) {
            for (const Flag follow : {Flag{0}, Flag{1}}) {
                options.NoHardlinks = hide;
                options.ScanHardlinks = follow;
                options.CreateListJunction = list;
                EXPECT_EQ(walk(items), follow == 1 ? followed : hide == 1 ? hidden : shown);
                EXPECT_EQ(textsOf(junctions), list == 1 ? (Lines{"/s/l", "/s/u", "/s/m"}) : Lines());
            }
        }
    }
}

TEST_F(Walk, GivesTheJunctionListTheTagThatWasReadLastBelowAFollowedFolder) {
    options.ScanHardlinks = options.CreateListJunction = 1;
    const Item link = linkTo("l", "/x");
    const std::pair<Item, double> cases[] = {{link, 1},  // Its "." and ".." were read.
                                             {linkTo("l", "/x", {file("g", 1), linkToFile("f")}), 0},
                                             {with(link, &Item::error, 13), 0}};  // Nothing was read.
    for (const auto& [item, type] : cases) {
        walk({item});
        const Row row = junctions.firstRoot();
        EXPECT_EQ(junctions.number(row, kJunctionType), type);
        EXPECT_EQ(junctions.cellText(row, kJunctionTarget), item.target);
        EXPECT_EQ(junctions.picture(row), type == 0 ? 26 : 62);
    }
}

TEST_F(Walk, CountsTheSizeOfAFileWithSeveralNamesOnceIfAskedToAndAsksForNothingInVain) {
    const Items items = {folder("b", {file("one", 100, 7, 2), folder("x")}),
                         folder("c", {file("two", 100, 7, 2)}), file("alone", 1, 7, 1)};
    EXPECT_EQ(walk(items)[0], "201 3/3 0");
    EXPECT_FALSE(disk.lastOptions.wantLinks);
    options.CreateListHardlink = 1;
    EXPECT_EQ(walk(items)[0], "201 3/3 0");
    EXPECT_TRUE(disk.lastOptions.wantLinks && disk.lastOptions.wantFileNames && disk.lastOptions.wantTimes);
    options.AddHardlinksOnlyOnce = 1;
    state.SilentRun = true;
    EXPECT_EQ(walk(items), (Lines{"101 3/3 0", "  b 100 1/1", "    x 0 0/0", "    Dateien 100 1/0",
                                  "  c 0 1/0", "  Dateien 1 1/0"}));
    EXPECT_FALSE(disk.lastOptions.wantFileNames || disk.lastOptions.wantTimes);
    Items onTwoDisks = items;
    onTwoDisks.push_back(file("other", 100, 7, 2));
    onTwoDisks.back().facts.device = 1;
    EXPECT_EQ(walk(onTwoDisks)[0], "201 4/3 0") << "another disk has a file of that number";
}

TEST_F(Walk, ShowsLogsAndCountsAFolderThatCannotBeReadOrWhoseFactsCouldNotBeLearned) {
    EXPECT_EQ(walk({file("a", 1), with(folder("b", {file("x", 9)}), &Item::error, 13), folder("d")}),
              (Lines{"1 1/2 1", "  b 0 0/0 #69 [#13 - Permission denied]", "  d 0 0/0", "  Dateien 1 1/0"}));
    EXPECT_EQ(protocol(), Lines{"ERROR: #13 - Permission denied (/s/b/)"});
    EXPECT_EQ(host.calls.front(), "not read /s/b/: #13 - Permission denied");
    EXPECT_EQ(walkSource(with(folder("/s"), &Item::error, 13)), Lines{"0 0/0 1"});
    EXPECT_EQ(report.rowNote(report.firstRoot()), "#13 - Permission denied");
    Item b =
        with(folder("b", {file("x", 0), file("y", 4), folder("c"), file("z", 2)}), &Item::entryError, 13);
    b.blockEntries = 2;
    EXPECT_EQ(walk({b}), (Lines{"6 3/2 1", "  b 6 3/1 #69 [#13 - Permission denied]", "    c 0 0/0",
                                "    Dateien 6 3/0"}));
    EXPECT_EQ(protocol().size(), 3U) << "one error, however many blocks";
}

TEST_F(Walk, KeepsWhatItHasOfAFolderWhoseListingBreaksOff) {
    const Lines lines = walk({with(folder("b", {file("x", 4), folder("c")}), &Item::endError, 13)});
    EXPECT_EQ(lines, (Lines{"4 1/2 0", "  b 4 1/1", "    c 0 0/0", "    Dateien 4 1/0"}));
    EXPECT_EQ(protocol(), Lines());
    EXPECT_EQ(logLines("debug.log"), Lines{"Report_ScanFolders\\next, #13 - Permission denied, /s/b/"});
    EXPECT_EQ(host.calls.front(), "not read /s/b/: #13 - Permission denied");
}

TEST_F(Walk, KeepsPartialSumsAndMakesNoFilesRowWhereStopCutsAFolderShort) {
    const Items items = {file("a", 1), folder("b", {file("c", 2), folder("d", {file("e", 4)}), file("f", 8)}),
                         folder("g", {file("h", 16)}), file("i", 32)};
    const Items withoutLast(items.begin(), items.end() - 1);
    const Lines whole = {"15 4/3 0", "  b 14 3/1", "    d 4 1/0", "    Dateien 10 2/0", "  g 0 0/0"};
    Lines wholeAndFiles = whole;
    wholeAndFiles.emplace_back("  Dateien 1 1/0");
    // Each case has the number of the block during which Stop is pressed.
    const std::tuple<Items, int, Lines> cases[] = {
        {items, 1, {"0 0/0 0"}},
        {items, 2, {"1 1/1 0", "  b 0 0/0"}},
        {items, 3, {"3 2/2 0", "  b 2 1/1", "    d 0 0/0"}},
        {items, 4, whole},
        {withoutLast, 4, wholeAndFiles}};  // The last entry was cut short, but not the folder itself.
    for (const auto& [source, block, expected] : cases) {
        disk.at = {{block, [&] { state.CancelState = kCancelStop; }}};
        EXPECT_EQ(walk(source), expected) << block;
    }
    disk.at = {{2, [&] { state.CancelState = kCancelEscape; }}};
    EXPECT_EQ(walk(items)[0], "63 6/3 0") << "Escape stops no scan";
}

TEST_F(Walk, CanBeStoppedWithinTheFilesOfALongFolderAndWhileTheReaderWaits) {
    pump.input = true;
    pump.onPump = [&] { state.CancelState = kCancelStop; };
    const int bytes = std::stoi(walk(Items(1000, file("f", 1)))[0]);
    EXPECT_TRUE(bytes > 0 && bytes < 300) << bytes;
    pump.input = false;
    const Items items = {file("a", 1), folder("b", {file("c", 2)}), file("d", 4)};
    const std::tuple<int, int, Lines> cases[] = {
        {1, kCancelStop, {"0 0/0 0"}},
        {2, kCancelStop, {"1 1/0 0"}},
        {2, kCancelEscape, {"7 3/1 0", "  b 2 1/0", "  Dateien 5 2/0"}}};
    for (const auto& [waitsAt, pressed, expected] : cases) {
        disk.waitsAt = waitsAt;
        pump.onPump = [&, pressed = pressed] { state.CancelState = pressed; };
        EXPECT_EQ(walk(items), expected);
    }
}

TEST_F(Walk, SaysOnceForAFolderThatItWaitsLongAndOnceWhichDiskDoesNotAnswer) {
    pump.tickStep = 1000;
    disk.waitsAt = 2;
    for (const Flag follow : {Flag{0}, Flag{1}}) {
        options.ScanHardlinks = follow;
        for (const int waits : {2, 20}) {
            host.calls.clear();
            disk.waits = waits;
            disk.silentMounts = {systemError(ETIMEDOUT, "/mnt")};
            walk({folder("b", {file("c", 2)}), folder("d")});
            Lines calls = {"silent /mnt antwortet nicht. Verknüpfungen dorthin gelten als Dateien."};
            if (follow == 1) calls.insert(calls.begin(), "not read /mnt: #110 - Connection timed out");
            if (waits == 20) calls.push_back("silent Warten auf /s/b/ ...");
            std::erase(host.calls, "first level");
            EXPECT_EQ(host.calls, calls);
        }
    }
}

TEST_F(Walk, EndsAFolderWhoseSumOverflowsAndGoesOnAboveIt) {
    const Item b =
        folder("b", {folder("early", {file("e", 2)}), file("x", 1), file("y", kMostBytes), file("z", 5),
                     folder("c", {file("v", 3), folder("deep")}), linkTo("l", "/x"), mountOf("m", "dev")});
    EXPECT_EQ(walk({b, folder("g", {file("h", 16)}), file("i", 32)}),
              (Lines{"51 5/3 0", "  b 3 3/1", "    early 2 1/0", "  g 16 1/0", "  Dateien 32 1/0"}));
    ASSERT_EQ(sink.log.size(), 1U);
    EXPECT_TRUE(has(sink.log[0].text, "Overflow"));
}

TEST_F(Walk, RaisesAFaultOfTheReaderInTheFolderThatItHappenedIn) {
    // Each case has the folder that fails, and the number of the block.
    const std::tuple<const char*, std::size_t, Lines> cases[] = {
        {"/s", 1, {"0 0/0 0"}},
        {"/s", 2, {"7 2/2 0", "  b 6 1/1", "    c 6 1/0"}},
        {"/s/b/c", 1, {"9 2/3 0", "  b 0 0/1", "    c 0 0/0", "  d 8 1/0", "  Dateien 1 1/0"}}};
    for (const auto& [path, block, expected] : cases) {
        Item source = folder(
            "/s", {file("a", 1), folder("b", {folder("c", {file("x", 6)})}), folder("d", {file("y", 8)})});
        source.blockEntries = 2;
        disk.sources = {source};
        disk.find(path)->failingBlock = block;
        EXPECT_EQ(walkSource(disk.sources[0]), expected) << path << block;
        EXPECT_EQ(sink.log.size(), 1U);
    }
}

TEST_F(Walk, LetsMessagesRunOnceAnIntervalAndWheneverInputWaits) {
    const std::tuple<std::uint64_t, bool, int, int> cases[] = {
        {1, false, 0, 0}, {50, false, 4, 5}, {2000, false, 100, 1000}, {0, true, 100, 1000}};
    for (const auto& [tickStep, input, least, most] : cases) {
        pump = {};
        pump.tick = state.pump.lastTick = 1'000'000;
        pump.tickStep = tickStep;
        pump.input = input;
        walkSource(with(folder("/s", Items(10'000, file("f", 1))), &Item::blockEntries, 10'000));
        EXPECT_TRUE(pump.pumps >= least && pump.pumps <= most) << tickStep << ": " << pump.pumps;
        EXPECT_LT(pump.looks, 1000) << "the clock is not looked at for each file";
    }
}

struct Handover : ScanFixture {
    Handover() { options.CreateListTOP = 1; }

    void read(std::vector<Item> items) {
        disk.sources = {folder("/s", std::move(items))};
        QuelleEinlesen(scan, "/s/", 8, kNoRow);
    }
};

TEST_F(Handover, KeepsTheLargestFilesAndOfEqualOnesThoseFoundFirstWhichGoByTheirNames) {
    std::mt19937 random(3);
    for (const std::int32_t wanted : {1, 5, 100, INT32_MAX}) {
        for (const std::uint32_t sizes : {3U, 40U, 100'000U}) {
            std::vector<Item> found;
            for (int i = 0; i < 1500; ++i) found.push_back(file(std::to_string(i), 1 + random() % sizes));
            options.TOPmaxcount = wanted;
            read(found);
            std::stable_sort(found.begin(), found.end(),
                             [](const Item& a, const Item& b) { return a.facts.size > b.facts.size; });
            found.resize(std::min<std::size_t>(found.size(), static_cast<std::size_t>(wanted)));
            std::sort(found.begin(), found.end(), [](const Item& a, const Item& b) {
                return std::pair(b.facts.size, a.name) < std::pair(a.facts.size, b.name);
            });
            Lines expected;
            for (const Item& item : found) expected.push_back(item.name);
            EXPECT_EQ(textsOf(top), expected) << wanted << " of " << sizes;
        }
    }
    EXPECT_EQ(sink.log.size(), 0U);
}

TEST_F(Handover, CutsByTheOrderThatTheListIsSortedInAndTurnsEmptyFilesAwayFromAFullOne) {
    options.TOPmaxcount = 2;
    top.levelSort(0) = {"", false, false};
    read({file("c", 9), file("a", 1), file("0", 0), file("b", 2)});
    EXPECT_EQ(textsOf(top), (Lines{"a", "b"}));
}

TEST_F(Handover, FillsAllCellsOfAFileAlikeInBothLists) {
    options.CreateListHardlink = 1;
    Item item = file("x.Tar.gz", 2048, 0x2'80000001, 3);
    item.facts.attributes = kAttributeHidden | kAttributeReadOnly;
    item.details = {1000, 2000, 3000, 3};
    host.type = "Archive";
    read({file("first", 1), item});
    for (const Grid* list : {&top, &hardlinks}) {
        const Row row = list->firstRoot();
        std::string cells(list->text(row));
        for (const CellId cell : {kFilePath, kFileType, kFileExt, kFileAttr, kFileId})
            cells += ", " + std::string(list->cellText(row, cell));
        for (const CellId cell :
             {kFileSize, kFileDisk, kFileDate, kFileDateCreated, kFileDateAccessed, kFileLinks})
            cells += ", " + SimpleValue(list->number(row, cell)).text();
        EXPECT_EQ(cells, list == &top
                             ? "x.Tar.gz, /s/, Archive, GZ, HR, , 2048, 1536, 1000, 2000, 3000, 0"
                             : "x.Tar.gz, /s/, Archive, GZ, HR, -2147483647-2, 2048, 1536, 1000, 2000, "
                               "3000, 3");
    }
}

TEST_F(Handover, ListsEveryNameOfAFileAlsoOneWhoseSizeDoesNotCount) {
    options.CreateListHardlink = options.AddHardlinksOnlyOnce = 1;
    read({file("alone", 9, 1, 1), file("one", 5, 2, 3),
          folder("b", {file("two", 5, 2, 3), file("large", 7, 3, 2)})});
    EXPECT_EQ(textsOf(hardlinks), (Lines{"large", "one", "two"}));
    EXPECT_EQ(textsOf(top), (Lines{"alone", "large", "one", "two"}));
    EXPECT_EQ(hardlinks.cellText(hardlinks.rowAt(2), kFilePath), "/s/b/");
    EXPECT_EQ(report.number(report.firstRoot(), kSize), 21);
}

TEST_F(Handover, FillsOnlyTheListsThatAreAskedForAndNoneInASilentRun) {
    for (unsigned mask = 0; mask < 16; ++mask) {
        options.CreateListTOP = mask & 1;
        options.CreateListHardlink = mask >> 1 & 1;
        options.CreateListJunction = mask >> 2 & 1;
        state.SilentRun = (mask & 8) != 0;
        read({file("f", 5, 2, 2), linkTo("l", "/x"), mountOf("m", "dev")});
        const unsigned lists = state.SilentRun ? 0 : mask;
        EXPECT_EQ(top.rowCount(), lists & 1) << mask;
        EXPECT_EQ(hardlinks.rowCount(), lists >> 1 & 1) << mask;
        EXPECT_EQ(junctions.rowCount(), (lists >> 2 & 1) * 2) << mask;
    }
}

}  // namespace
}  // namespace hl::test
