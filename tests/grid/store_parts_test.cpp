#include "grid/cell_table.h"

#include "base/fault.h"
#include "grid/row_tree.h"
#include "grid/text_store.h"

namespace hl {
namespace {

constexpr CellSpec kPartSpecs[] = {{"flag", CellType::kFlag},       {"size", CellType::kSize},
                                   {"percent", CellType::kPercent}, {"count", CellType::kCount},
                                   {"date", CellType::kDate},       {"name", CellType::kText},
                                   {"second", CellType::kCount}};

struct CellTableTest : testing::Test {
    CellTable table{kPartSpecs};
    void SetUp() override { table.addRow(0); }
    double stored(std::string_view key, double value) {
        table.setNumber(0, table.find(key), value);
        return table.number(0, table.find(key));
    }
};

TEST_F(CellTableTest, KeepsEveryValueOfATypesRangeAndRaisesOverflowBeyond) {
    using Case = std::tuple<const char*, double, double, double, double>;
    for (const auto& [key, low, high, below, above] :
         {Case{"flag", 0, 255, -1, 256}, Case{"percent", 0, 655.35, -0.01, 655.36},
          Case{"count", -2147483648.0, 2147483647, -2147483649.0, 2147483648.0},
          Case{"size", -0x1p62, 0x1p62, -0x1p63, 0x1p63},
          Case{"date", -62135596800.0, 253402300799.0, -0x1p63, 0x1p63}}) {
        EXPECT_EQ(stored(key, low), low) << key;
        EXPECT_EQ(stored(key, high), high) << key;
        EXPECT_THROW(stored(key, below), Fault) << key;
        EXPECT_THROW(stored(key, above), Fault) << key;
        EXPECT_EQ(table.number(0, table.find(key)), high) << key;
    }
    for (const double percent : {0.29, 33.33}) EXPECT_EQ(stored("percent", percent), percent);
    EXPECT_THROW(stored("name", 1), Fault) << "texts and numbers are different types";
    EXPECT_THROW(table.setText(0, table.find("count"), 1), Fault);
    EXPECT_EQ(table.text(0, table.find("count")), 0U);
    for (const char* key : {"", "Size", "sizeT", "siz"}) EXPECT_EQ(table.find(key), kNoCell) << key;
}

TEST_F(CellTableTest, KeepsCellsAndRowsApartAndEmptiesARowThatIsUsedAgain) {
    for (Row row = 1; row < 2050; ++row) {
        table.addRow(row);
        table.setNumber(row, table.find("count"), row);
        table.setNumber(row, table.find("second"), 2.0 * row);
        table.setText(row, table.find("name"), row + 7);
    }
    for (const Row row : {1U, 1023U, 1024U, 2048U}) {
        EXPECT_EQ(table.number(row, table.find("count")), row);
        EXPECT_EQ(table.number(row, table.find("second")), 2.0 * row);
    }
    table.addRow(1024);
    for (CellId i = 0; i < table.count(); ++i) EXPECT_EQ(table.number(1024, i), 0) << i;
    EXPECT_EQ(table.text(1024, table.find("name")), 0U);
    EXPECT_EQ(table.number(1025, table.find("count")), 1025);
}

TEST(TextStore, GivesBackEveryTextOfWhateverLengthAndMovesNone) {
    TextStore store;
    const std::string_view first = store.get(store.add("first"));
    std::vector<std::string> texts;
    // The lengths lie around the steps at which the stored length or the block grows, and far beyond one.
    for (const std::size_t length :
         {0, 1, 127, 128, 16383, 16384, 65532, 65533, 65534, 65536, 200'000, 5, 65533, 1})
        texts.emplace_back(length, static_cast<char>('a' + texts.size()));
    texts.emplace_back("a\0b\xFF", 4);
    std::vector<TextRef> refs;
    for (const std::string& text : texts) refs.push_back(store.add(text));
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(store.get(refs[i]), texts[i]) << i;
    EXPECT_EQ(first, "first");
}

TEST(TextStore, StoresOnceWhatManyRowsHaveInCommon) {
    TextStore store;
    std::vector<TextRef> refs;
    for (int i = 0; i < 5000; ++i)
        refs.push_back(store.addShared("/a/folder/" + std::to_string(i / 100) + "/"));
    EXPECT_LT(store.bytesUsed(), 1200U);
    for (int i = 0; i < 5000; ++i)
        EXPECT_EQ(store.get(refs[static_cast<std::size_t>(i)]), "/a/folder/" + std::to_string(i / 100) + "/");
    for (int i = 0; i < 5000; ++i)
        EXPECT_EQ(store.get(store.addShared(std::to_string(i))), std::to_string(i));
    store.clear();
    EXPECT_EQ(store.get(store.addShared("/a/folder/1/")), "/a/folder/1/");
    EXPECT_EQ(store.addShared(""), 0U);
}

TEST(TextStore, RaisesOverflowForMoreThanItCanAddressAndStaysUsable) {
    TextStore store;
    const TextRef kept = store.add("kept");
    const std::string_view tooLong("x", std::size_t{5} << 30);  // It is refused before any byte of it is
                                                                // read.
    EXPECT_THROW(store.add(tooLong), Fault);
    EXPECT_EQ(store.get(kept), "kept");
    EXPECT_EQ(store.get(store.add("next")), "next");
}

std::vector<Row> fromTheTop(const RowTree& tree) {
    std::vector<Row> rows;
    for (std::size_t i = 0; tree.rowAt(i) != kNoRow; ++i) rows.push_back(tree.rowAt(i));
    return rows;
}

std::vector<Row> fromTheEnd(const RowTree& tree) {
    std::vector<Row> rows;
    for (Row row = tree.preceding(kNoRow); row != kNoRow; row = tree.preceding(row)) rows.push_back(row);
    return rows;
}

/// The hierarchy in its simplest form: each parent's list of children, where kNoRow's children are the roots.
struct Model {
    std::map<Row, std::vector<Row>> children;
    std::map<Row, Row> parents;

    void list(Row parent, std::vector<Row>& out) {
        for (const Row row : children[parent]) {
            out.push_back(row);
            list(row, out);
        }
    }
};

TEST(RowTree, AgreesWithAPlainModelAfterEveryOfManyChanges) {
    std::mt19937 random(7);
    RowTree tree;
    Model model;
    std::vector<Row> alive;
    for (int step = 0; step < 3000; ++step) {
        const std::size_t picked = random() % (alive.size() + 1);
        const Row row = picked == alive.size() ? kNoRow : alive[picked];
        const auto what = random() % 10;
        if (what < 7) {
            const Row made = tree.add(row);
            model.children[made].clear();
            model.parents[made] = row;
            model.children[row].push_back(made);
        } else if (what == 7 && row != kNoRow) {
            std::vector<Row> removed, expected = {row};
            tree.remove(row, removed);
            model.list(row, expected);
            std::erase(model.children[model.parents[row]], row);
            ASSERT_TRUE(
                std::is_permutation(removed.begin(), removed.end(), expected.begin(), expected.end()));
        } else {
            std::shuffle(model.children[row].begin(), model.children[row].end(), random);
            tree.reorder(row, model.children[row]);
        }
        alive.clear();
        model.list(kNoRow, alive);
        ASSERT_EQ(fromTheTop(tree), alive) << "step " << step;
        ASSERT_EQ(tree.count(), alive.size());
        const auto sorted = tree.sortedRoots();
        ASSERT_TRUE(sorted.empty() || std::ranges::equal(sorted, alive));
        ASSERT_EQ(fromTheEnd(tree), std::vector<Row>(alive.rbegin(), alive.rend()));
        for (std::size_t i = 0; i < alive.size(); ++i) {
            const Row at = alive[i], parent = model.parents[at], next = tree.nextSibling(at);
            ASSERT_EQ(tree.indexOf(at), i);
            ASSERT_EQ(tree.parent(at), parent);
            ASSERT_EQ(tree.level(at), parent == kNoRow ? 0 : tree.level(parent) + 1);
            ASSERT_TRUE(next != kNoRow || tree.lastChild(parent) == at);
        }
    }
}

}  // namespace
}  // namespace hl
