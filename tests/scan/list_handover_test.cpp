#include "scan/list_handover.h"

#include <algorithm>
#include <random>

#include "scan/walker.h"
#include "support/scan_fixture.h"

namespace hl {
namespace {

using test::file, test::folder, test::Item, test::linkTo, test::mountOf;

class Handover : public test::ScanFixture {
  protected:
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
    EXPECT_EQ(errors.log.size(), 0U);
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
    item.times = {1000, 2000, 3000};
    host.type = "Archive";
    read({file("first", 1), item});
    for (const Grid* list : {&top, &hardlinks}) {
        const Row row = list->firstRoot();
        std::string cells(list->text(row));
        for (const CellId cell : {kFilePath, kFileType, kFileExt, kFileAttr, kFileId})
            cells += ", " + std::string(list->cellText(row, cell));
        for (const CellId cell : {kFileSize, kFileDate, kFileDateCreated, kFileDateAccessed, kFileLinks})
            cells += ", " + SimpleValue(list->number(row, cell)).text();
        EXPECT_EQ(cells, list == &top ? "x.Tar.gz, /s/, Archive, GZ, HR, , 2048, 1000, 2000, 3000, 0"
                                      : "x.Tar.gz, /s/, Archive, GZ, HR, -2147483647-2, 2048, 1000, 2000, "
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
}  // namespace hl
