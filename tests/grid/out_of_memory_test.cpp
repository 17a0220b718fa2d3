// Tests every operation with memory running out at each of its allocations in turn. The grid must stay
// consistent, and repeating the operation must succeed as if nothing had happened.

#include "grid/grid.h"

namespace {
thread_local long allocationsLeft = -1;  // For this thread; -1 means unlimited.
}

// All forms are replaced, because a sanitizer has its own of each. They are not inlined, or else the compiler
// would see malloc behind one form but not behind another.
[[gnu::noinline]] void* operator new(std::size_t bytes, const std::nothrow_t& /*nothrow*/) noexcept {
    if (allocationsLeft > 0) --allocationsLeft;
    return allocationsLeft == 0 ? nullptr : std::malloc(bytes);
}
[[gnu::noinline]] void* operator new(std::size_t bytes) {
    void* memory = operator new(bytes, std::nothrow);
    return memory != nullptr ? memory : throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new[](std::size_t bytes) {
    return operator new(bytes);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, std::size_t /*bytes*/) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory) noexcept {
    std::free(memory);
}

namespace hl {
namespace {

constexpr CellSpec kScarceSpecs[] = {{"size", CellType::kSize},
                                     {"percent", CellType::kPercent},
                                     {"flag", CellType::kFlag},
                                     {"name", CellType::kText}};
enum : CellId { kScarceSize, kPercentCell, kFlagCell, kScarceName };
constexpr Row kParent = 3, kOther = 9;

/// Fills one block of rows: the last ones are roots, the others are below the first ten.
void fill(Grid& grid) {
    for (Row i = 0; i < 256; ++i) {
        const Row row = grid.addRow(i < 10 || i > 100 ? kNoRow : i % 10,
                                    std::to_string(i * 37 % 256) + std::string(20, 't'));
        grid.setNumber(row, kScarceSize, i * 37 % 256);
        if (i % 8 == 0) grid.setCellText(row, kScarceName, "name" + std::to_string(i));
        if (i % 8 == 0) grid.setRowNote(row, "note");
        if (i % 8 == 3) grid.setSelected(row, true);
    }
    grid.setCurrentRow(kParent);
}

/// Returns everything that the grid tells of its rows, one per line, and checks that its links agree in both
/// directions.
std::string told(const Grid& grid) {
    std::string all;
    std::size_t selected = 0;
    std::vector<Row> rows;
    for (Row row = grid.firstRoot(); row != kNoRow; row = grid.tree().following(row)) {
        const Row parent = grid.parent(row);
        EXPECT_LT(row, grid.tree().limit());
        EXPECT_EQ(grid.level(row), parent == kNoRow ? 0 : grid.level(parent) + 1);
        all += std::to_string(parent) + ' ' + std::string(grid.text(row).substr(0, 5)) + ' ' +
               std::to_string(grid.text(row).size()) + ' ' + std::to_string(grid.number(row, kScarceSize)) +
               std::to_string(grid.number(row, kPercentCell) + grid.number(row, kFlagCell)) +
               std::string(grid.cellText(row, kScarceName)) + ' ' + std::string(grid.rowNote(row)) +
               std::to_string(grid.picture(row)) + ' ' + std::to_string(grid.barPicture(row)) +
               std::to_string(grid.backColor(row).value_or(1)) + (grid.expanded(row) ? 'e' : ' ') +
               (grid.selected(row) ? 's' : ' ') + (grid.currentRow() == row ? "c\n" : "\n");
        selected += grid.selected(row) ? 1 : 0;
        rows.push_back(row);
    }
    EXPECT_EQ(rows.size(), grid.rowCount());
    EXPECT_EQ(selected, grid.selectedCount());
    for (Row row = grid.tree().preceding(kNoRow); row != kNoRow; row = grid.tree().preceding(row)) {
        EXPECT_TRUE(!rows.empty() && rows.back() == row);
        if (!rows.empty()) rows.pop_back();
    }
    return all + std::to_string(grid.columns().size());
}

TEST(OutOfMemory, AnywhereLeavesTheGridWholeAndTheOperationCanBeDoneAgain) {
    const std::string longText(100'000, 'l');
    const std::pair<const char*, std::function<void(Grid&)>> operations[] = {
        {"a row of a new block", [&](Grid& grid) { grid.addRow(kParent, longText); }},
        {"its text", [&](Grid& grid) { grid.setText(kParent, longText); }},
        {"a note", [&](Grid& grid) { grid.setRowNote(kOther, "other"); }},
        {"a text that is shared", [&](Grid& grid) { grid.setCellText(kOther, kScarceName, longText); }},
        {"a bar", [](Grid& grid) { grid.setBarPicture(200, 5); }},
        {"a colour", [](Grid& grid) { grid.setBackColor(200, 0x123456); }},
        {"a selection", [](Grid& grid) { grid.setSelected(kOther, true); }},
        {"columns", [](Grid& grid) { grid.setColumns(std::vector<GridColumn>(3)); }},
        {"a removal", [](Grid& grid) { grid.removeRow(kParent); }},
        {"a removal of children", [](Grid& grid) { grid.removeChildren(kParent); }},
        {"a packing of texts",
         [&](Grid& grid) {
             for (int i = 0; i < 20; ++i) grid.setText(kParent, longText);
             grid.removeRow(kOther);
         }},
        {"the number of a removed row",
         [&](Grid& grid) {
             if (grid.rowCount() == 256) grid.removeRow(200);
             grid.addRow(kParent, longText);
         }},
        {"a sort by numbers",
         [](Grid& grid) {
             grid.levelSort(0) = grid.levelSort(1) = {"size", true, true};
             grid.sortLevels(2);
         }},
        {"a sort by texts",
         [](Grid& grid) {
             grid.levelSort(0) = grid.levelSort(1) = {"", false, false};
             grid.sortLevels(2);
         }},
        {"places",
         [](Grid& grid) {
             EXPECT_EQ(grid.indexOf(grid.rowAt(100)), 100U);
             EXPECT_EQ(grid.selectedRows().size(), 32U);
         }},
    };
    for (const auto& [what, operation] : operations) {
        Grid expected(kScarceSpecs);
        fill(expected);
        operation(expected);
        EXPECT_LT(expected.textBytes(), 5 * longText.size()) << "packed";
        long failed = 0;
        for (bool done = false; !done; ++failed) {
            Grid grid(kScarceSpecs);
            fill(grid);
            allocationsLeft = failed + 1;
            try {
                operation(grid);
                done = true;
            } catch (const std::bad_alloc&) {
            }
            allocationsLeft = -1;
            told(grid);
            if (!done) operation(grid);
            ASSERT_EQ(told(grid), told(expected)) << what << ", allocation " << failed;
        }
        EXPECT_GT(failed, 1) << what << " needs no memory";
    }
}

}  // namespace
}  // namespace hl
