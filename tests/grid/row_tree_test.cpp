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

std::vector<Row> fromTheEnd(const RowTree& tree) {
    std::vector<Row> rows;
    for (Row row = tree.preceding(kNoRow); row != kNoRow; row = tree.preceding(row)) rows.push_back(row);
    return rows;
}

/// The same in the plainest way: each parent's list of children; kNoRow's are the roots.
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
