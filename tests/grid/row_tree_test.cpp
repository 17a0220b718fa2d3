#include "grid/row_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace hl {
namespace {

std::vector<Row> fromTheTop(const RowTree& tree) {
    std::vector<Row> rows;
    for (std::size_t i = 0; tree.rowAt(i) != kNoRow; ++i) rows.push_back(tree.rowAt(i));
    return rows;
}

struct SmallTree : testing::Test {
    RowTree tree;
    Row a = tree.add(kNoRow), b = tree.add(kNoRow);
    Row a1 = tree.add(a), a2 = tree.add(a), a11 = tree.add(a1);
};
using RowTreeTest = SmallTree;

TEST_F(RowTreeTest, RemovesARowWithAllBelowChildrenFirst) {
    std::vector<Row> removed;
    tree.remove(a, removed);
    ASSERT_EQ(removed.size(), 4U);
    const auto place = [&](Row row) { return std::find(removed.begin(), removed.end(), row); };
    EXPECT_LT(place(a11), place(a1));
    EXPECT_EQ(removed.back(), a);
    EXPECT_EQ(fromTheTop(tree), std::vector{b});
}

TEST_F(RowTreeTest, UsesTheNumbersOfRemovedRowsAgainBeforeNewOnes) {
    std::vector<Row> removed;
    tree.remove(a1, removed);
    tree.remove(b, removed);
    const Row limit = tree.limit();
    for (int i = 0; i < 3; ++i) {
        const Row row = tree.add(a2);
        EXPECT_LT(row, limit);
        EXPECT_EQ(tree.firstChild(row), kNoRow);
    }
    EXPECT_EQ(tree.add(a2), limit);
}

TEST_F(RowTreeTest, IsEmptyAndUsableAfterClear) {
    tree.clear();
    EXPECT_EQ(tree.count(), 0U);
    EXPECT_EQ(tree.limit(), 0U);
    EXPECT_EQ(tree.rowAt(0), kNoRow);
    EXPECT_EQ(tree.add(kNoRow), 0U);
    EXPECT_EQ(tree.indexOf(0), 0U);
}

TEST(RowTree, HoldsAChainOf100000Levels) {
    constexpr std::uint32_t kDepth = 100'000;
    RowTree tree;
    Row row = kNoRow;
    for (std::uint32_t i = 0; i < kDepth; ++i) row = tree.add(row);
    EXPECT_EQ(tree.level(row), kDepth - 1);
    EXPECT_EQ(tree.indexOf(row), kDepth - 1);
    EXPECT_EQ(tree.following(row), kNoRow);
    std::vector<Row> removed;
    tree.remove(tree.firstChild(kNoRow), removed);
    EXPECT_EQ(removed.size(), kDepth);
    EXPECT_EQ(removed.front(), row);
}

/// The same in the plainest way: each parent's list of children.
struct Model {
    std::vector<Row> roots;
    std::vector<std::vector<Row>> children;
    std::vector<Row> parents;

    std::vector<Row>& below(Row parent) { return parent == kNoRow ? roots : children[parent]; }
    void list(Row parent, std::vector<Row>& out) {
        for (const Row row : below(parent)) {
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
        const auto pick = [&] {
            const std::size_t i = random() % (alive.size() + 1);
            return i == alive.size() ? kNoRow : alive[i];
        };
        const auto what = random() % 10;
        const Row row = pick();
        if (what < 7) {
            const Row made = tree.add(row);
            model.children.resize(std::max<std::size_t>(model.children.size(), made + 1));
            model.parents.resize(model.children.size());
            model.children[made].clear();
            model.parents[made] = row;
            model.below(row).push_back(made);
        } else if (what == 7 && row != kNoRow) {
            std::vector<Row> removed, expected;
            tree.remove(row, removed);
            expected.push_back(row);
            model.list(row, expected);
            std::erase(model.below(model.parents[row]), row);
            std::sort(removed.begin(), removed.end());
            std::sort(expected.begin(), expected.end());
            ASSERT_EQ(removed, expected);
        } else {
            std::shuffle(model.below(row).begin(), model.below(row).end(), random);
            tree.reorder(row, model.below(row));
        }
        alive.clear();
        model.list(kNoRow, alive);
        ASSERT_EQ(fromTheTop(tree), alive) << "step " << step;
        ASSERT_EQ(tree.count(), alive.size());
        for (std::size_t i = 0; i < alive.size(); ++i) {
            const Row at = alive[i], parent = model.parents[at], next = tree.nextSibling(at);
            ASSERT_EQ(tree.indexOf(at), i);
            ASSERT_EQ(tree.parent(at), parent);
            ASSERT_EQ(tree.level(at), parent == kNoRow ? 0 : tree.level(parent) + 1);
            ASSERT_EQ(next == kNoRow ? tree.lastChild(parent) : tree.previousSibling(next), at);
        }
    }
}

}  // namespace
}  // namespace hl
