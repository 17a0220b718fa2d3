#include "grid/grid.h"

#include "grid/no_redraw.h"

namespace hl {
namespace {

constexpr CellSpec kSpecs[] = {
    {"size", CellType::kSize}, {"name", CellType::kText}, {"same", CellType::kFlag}};
enum : CellId { kSizeCell, kNameCell };
using RowTexts = std::vector<std::string>;

struct GridTest : testing::Test {
    Grid grid{kSpecs};

    Row add(Row parent, std::string_view text, double size = 0, std::string_view name = {}) {
        const Row row = grid.addRow(parent, text);
        grid.setNumber(row, kSizeCell, size);
        grid.setCellText(row, kNameCell, name);
        return row;
    }
    RowTexts texts() const {
        RowTexts all;
        for (std::size_t i = 0; i < grid.rowCount(); ++i) all.emplace_back(grid.text(grid.rowAt(i)));
        return all;
    }
};

TEST_F(GridTest, SortsByAnyCellInBothDirectionsAndEqualKeysByTheirTextsUnlessTheyKeepTheirOrder) {
    const std::tuple<const char*, double, const char*> rows[] = {
        {"b1", 20, "Zoe"}, {"C", 100, "adam"}, {"a", 9, ""}, {"B2", 20, "ADAM"}, {"b0", 20, "Bea"}};
    for (const auto& [text, size, name] : rows) add(kNoRow, text, size, name);
    using Case = std::pair<LevelSort, RowTexts>;
    // Each case starts from the order that the one before has left.
    for (const auto& [sort, expected] : {Case{{"size", true, true, true}, {"C", "b1", "B2", "b0", "a"}},
                                         Case{{"size", true, true}, {"C", "B2", "b0", "b1", "a"}},
                                         Case{{"size", true, false}, {"a", "B2", "b0", "b1", "C"}},
                                         Case{{"name", false, false}, {"a", "B2", "C", "b0", "b1"}},
                                         Case{{"name", false, true}, {"b1", "b0", "B2", "C", "a"}},
                                         Case{{"", false, false}, {"a", "b0", "b1", "B2", "C"}},
                                         Case{{"same", true, true}, {"B2", "C", "a", "b0", "b1"}},
                                         Case{{"", false, true}, {"C", "B2", "b1", "b0", "a"}}}) {
        grid.levelSort(0) = sort;
        grid.sortLevels(0);
        EXPECT_EQ(texts(), expected) << sort.key << sort.descending;
    }
}

TEST_F(GridTest, SortsManyNumbersAsFewAndEqualFoldersByTheirTextsWithOtherRowsBehind) {
    std::mt19937 random(3);
    constexpr CellSpec kReal[] = {{"real", CellType::kReal}, {"IsFolder", CellType::kFlag}};
    Grid many(kReal);
    std::vector<std::pair<double, Row>> expected;
    constexpr double kKinds[] = {0.0, -0.0, 1e-300, -1e300, 0.01, 1, 4096, 9e18};
    for (int i = 0; i < 20'000; ++i) {
        const double any = static_cast<double>(random() % 5000) - 2500;
        const double value = i % 3 == 0 ? kKinds[random() % std::size(kKinds)] : any;
        expected.emplace_back(value, many.addRow(kNoRow, std::to_string(random() % 9)));
        many.setNumber(expected.back().second, 0, value);
        many.setNumber(expected.back().second, 1, i % 2);
    }
    for (const bool descending : {true, false, true}) {
        many.levelSort(0) = {"real", true, descending};
        many.sortLevels(0);
        std::stable_sort(expected.begin(), expected.end(), [&](const auto& a, const auto& b) {
            if (a.first != b.first) return (a.first < b.first) != descending;
            const auto tie = [&](Row row) { return std::pair(-many.number(row, 1), many.text(row)); };
            return tie(a.second) < tie(b.second);
        });
        for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(many.rowAt(i), expected[i].second) << i;
    }
}

TEST_F(GridTest, SortsEachLevelByItsOwnSettingAndNoRowAwayFromItsParent) {
    const Row a = add(kNoRow, "a", 1), b = add(kNoRow, "b", 2);
    for (const Row parent : {a, b})
        for (const char* name : {"x", "z", "y"}) add(add(parent, name, 5), "deep", 3);
    add(grid.firstChild(a), "deeper", 4);
    grid.levelSort(0) = grid.levelSort(2) = {"size", true, true};
    grid.levelSort(1) = {"", false, true};
    int levels = 0;
    grid.sortLevels(1, [&] { ++levels; });
    EXPECT_EQ(levels, 2);
    EXPECT_EQ(texts(), (RowTexts{"b", "z", "deep", "y", "deep", "x", "deep",  //
                                 "a", "z", "deep", "y", "deep", "x", "deep", "deeper"}));
    grid.sortLevels(9);  // No row is that deep.
    EXPECT_EQ(texts().back(), "deep");
}

TEST_F(GridTest, FindsTheFirstTextInARangeOfIndexesWithoutRegardToCase) {
    const Row a = add(kNoRow, "Alpha");
    const Row b = add(a, "\u00DCber alphaville");
    add(kNoRow, "beta");
    const std::tuple<const char*, std::size_t, std::size_t, Row> cases[] = {
        {"ALPHA", 0, 2, a},      {"alpha", 1, 1, b}, {"alpha", 2, 2, kNoRow},
        {"\u00FCBER", 0, 99, b}, {"", 1, 2, b},      {"a", 3, 9, kNoRow}};
    for (const auto& [part, from, to, expected] : cases)
        EXPECT_EQ(grid.find(part, from, to), expected) << part << from;
}

TEST_F(GridTest, GivesARowThatUsesANumberAgainNothingOfTheOldOne) {
    const auto factsOf = [&](Row row) {
        return std::string(grid.rowNote(row)) + "," + std::to_string(grid.picture(row)) + "," +
               std::to_string(grid.barPicture(row)) + "," + (grid.backColor(row) ? "black" : "") + "," +
               std::to_string(grid.number(row, kSizeCell)) + "," +
               std::string(grid.cellText(row, kNameCell)) + (grid.expanded(row) ? ",expanded" : "") +
               (grid.selected(row) ? ",selected" : "");
    };
    const Row first = add(kNoRow, "first"), old = add(kNoRow, "old", 7, "name");
    grid.setRowNote(old, "note");
    grid.setPicture(old, 69);
    grid.setBarPicture(old, 0);
    grid.setBackColor(old, 0x000000);
    grid.setExpanded(old, true);
    grid.setSelected(old, true);
    grid.setCurrentRow(old);
    grid.setTopRow(old);
    EXPECT_EQ(factsOf(old), "note,69,0,black,7.000000,name,expanded,selected");
    grid.removeRow(old);
    EXPECT_TRUE(grid.currentRow() == kNoRow && grid.topRow() == kNoRow && grid.selectedCount() == 0);
    ASSERT_EQ(grid.addRow(first, "new"), old);
    EXPECT_EQ(factsOf(old), ",0,-1,,0.000000,");
}

TEST_F(GridTest, TellsSelectedRowsInTheOrderOfTheView) {
    const Row a = add(kNoRow, "a", 1), b = add(kNoRow, "b", 2), c = add(kNoRow, "c", 3);
    for (const Row row : {b, a, c, b}) grid.setSelected(row, true);
    grid.setSelected(c, false);
    EXPECT_EQ(grid.selectedRows(), (std::vector{a, b}));
    grid.levelSort(0).key = "size";
    grid.sortLevels(0);
    EXPECT_EQ(grid.selectedRows(), (std::vector{b, a}));
    grid.selectNone();
    EXPECT_EQ(grid.selectedCount(), 0U);
}

TEST_F(GridTest, KeepsAllTextsThroughThePackingOfWhatRemovedRowsLeave) {
    const auto textOf = [](std::size_t i) { return std::to_string(i) + std::string(1000, 't'); };
    std::vector<Row> rows;
    const TextRef shared = grid.keepText("shared");
    for (std::size_t i = 0; i < 2000; ++i) {
        rows.push_back(add(kNoRow, textOf(i), 0, "n" + std::to_string(i)));
        if (i % 50 == 0) grid.setRowNote(rows[i], "note" + std::to_string(i));
        if (i % 50 == 0) grid.addRow(rows[i], shared);
    }
    const std::size_t full = grid.textBytes();
    for (std::size_t i = 0; i < 2000; ++i)
        if (i % 50 != 0) grid.removeRow(rows[i]);
    EXPECT_LT(grid.textBytes(), full / 2);
    for (std::size_t i = 0; i < 2000; i += 50) {
        EXPECT_EQ(grid.text(rows[i]), textOf(i));
        EXPECT_EQ(grid.cellText(rows[i], kNameCell), "n" + std::to_string(i));
        EXPECT_EQ(grid.rowNote(rows[i]), "note" + std::to_string(i));
        EXPECT_EQ(grid.text(grid.firstChild(rows[i])), "shared");
    }
    while (grid.rowCount() > 0) grid.removeRow(grid.firstRoot());
    EXPECT_EQ(grid.textBytes(), 0U);
}

struct Recorder : GridObserver {
    std::vector<GridChange> changes;
    void gridChanged(const GridChange& change) override { changes.push_back(change); }
};

TEST_F(GridTest, NoticesGatherWhileAGuardHoldsThemBackAndComeInOneWithTheOutermost) {
    const Row first = add(kNoRow, "row"), second = add(kNoRow, "row");
    Recorder observer;
    grid.attach(&observer);
    {
        const NoRedraw outer(grid);
        {
            const NoRedraw inner(grid);
            for (const Row row : {second, first}) grid.setPicture(row, 1);
        }
        grid.setSelected(first, true);
        EXPECT_TRUE(observer.changes.empty());
    }
    grid.setRedraw(true);
    ASSERT_EQ(observer.changes.size(), 1U);
    EXPECT_EQ(observer.changes[0].cells.size(), 2U);
    EXPECT_TRUE(observer.changes[0].current);
    EXPECT_FALSE(observer.changes[0].structure || observer.changes[0].columns);
}

TEST_F(GridTest, NoticesTellOfEveryChangeOfWhatStandsWhere) {
    const Row row = add(kNoRow, "row");
    Recorder observer;
    grid.attach(&observer);
    for (const std::function<void()>& act : std::vector<std::function<void()>>{
             [&] { add(row, "child"); }, [&] { grid.removeChildren(row); }, [&] { grid.sortLevels(0); },
             [&] { grid.setExpanded(row, !grid.expanded(row)); }}) {
        observer.changes.clear();
        grid.setRedraw(false);
        act();
        grid.setRedraw(true);
        ASSERT_EQ(observer.changes.size(), 1U);
        EXPECT_TRUE(observer.changes[0].structure);
    }
}

TEST(RowSet, HoldsWhatWasAddedInRangesThatDoNotTouchUntilThereAreTooManyOfThem) {
    std::mt19937 random(3);
    for (int round = 0; round < 300; ++round) {
        RowSet set, other;
        std::set<Row> all;
        const Row limit = round % 2 == 0 ? 70 : 2000;
        for (int i = 0; i < 60; ++i) {
            const auto number = static_cast<Row>(random());
            const Row row = i % 9 == 0 ? kNoRow - number % 3 : number % limit;
            (i % 3 == 0 ? other : set).add(row);
            all.insert(row);
        }
        set.add(other);
        if (set.isAll()) continue;
        EXPECT_EQ(set.size(), all.size());
        for (const Row row : all) EXPECT_TRUE(set.contains(row));
        for (std::size_t i = 1; i < set.ranges().size(); ++i)
            EXPECT_GT(set.ranges()[i].first, std::size_t{set.ranges()[i - 1].last} + 1);
    }
    RowSet full;
    for (Row row = 0; row < 2 * RowSet::kMost; row += 2) full.add(row);
    EXPECT_FALSE(full.isAll() || full.contains(1));
    full.add(2 * RowSet::kMost);
    EXPECT_TRUE(full.isAll() && full.contains(1));
}

}  // namespace
}  // namespace hl
