#include "platform/command_bar.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

class Watcher : public BarObserver {
  public:
    void entryChanged(const CommandBar&, const BarEntry& entry) override { changed.push_back(entry.id); }
    void barChanged(const CommandBar&) override { ++rebuilt; }

    std::vector<int> changed;
    int rebuilt = 0;
};

// A label, a split button with a list of two, a button, and a popup of one.
class CommandBarTest : public testing::Test {
  protected:
    CommandBarTest() {
        bar.add({.id = 0, .kind = EntryKind::kLabel});
        bar.add({.id = 1, .kind = EntryKind::kSplitButton});
        bar.add({.id = 10}, 1);
        bar.add({.id = 11}, 1);
        bar.add({.id = 2});
        bar.addPopup({.id = 100});
        bar.add({.id = 101}, 100);
        bar.attach(&watcher);
    }

    bool enabled(int id) const { return bar.find(id)->enabled; }

    CommandBar bar{BarId::kMain, "cbrMain"};
    Watcher watcher;
};

TEST_F(CommandBarTest, TellsOfAChangeOnlyWhereThereIsOne) {
    bar.toggle(10);
    bar.setChecked(10, true);
    bar.setText(2, "abc");
    bar.setText(2, "abc");
    EXPECT_TRUE(bar.isChecked(10));
    EXPECT_EQ(watcher.changed, (std::vector<int>{10, 2}));
    EXPECT_EQ(watcher.rebuilt, 0);
}

TEST_F(CommandBarTest, DisablingAllReachesListsButNoPopupAndTellsOfEachOnce) {
    bar.setEnabled(2, false);
    watcher.changed.clear();
    bar.setAllEnabled(false);
    for (const int id : {0, 1, 2, 10, 11}) EXPECT_FALSE(enabled(id)) << id;
    EXPECT_TRUE(enabled(101));
    EXPECT_EQ(watcher.changed, (std::vector<int>{0, 1, 10, 11}));
}

}  // namespace
}  // namespace hl
