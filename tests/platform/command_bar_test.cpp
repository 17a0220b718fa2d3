#include "platform/command_bar.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

struct Watcher : BarObserver {
    void entryChanged(const CommandBar&, const BarEntry& entry) override { changed.push_back(entry.id); }
    void barChanged(const CommandBar&) override {}
    std::vector<int> changed;
};

// A label, a split button with a list of two, a button, and a popup of one.
TEST(CommandBarTest, TellsOfEachChangeOnceAndDisablingAllReachesListsButNoPopup) {
    CommandBar bar{BarId::kMain, "cbrMain"};
    bar.add({.id = 0, .kind = EntryKind::kLabel});
    bar.add({.id = 1, .kind = EntryKind::kSplitButton});
    for (const int id : {10, 11}) bar.add({.id = id}, 1);
    bar.add({.id = 2});
    bar.addPopup({.id = 100});
    bar.add({.id = 101}, 100);
    Watcher watcher;
    bar.attach(&watcher);
    bar.toggle(10);
    bar.setChecked(10, true);
    for (int i = 0; i < 2; ++i) bar.setText(2, "abc");
    bar.setEnabled(2, false);
    EXPECT_TRUE(bar.isChecked(10));
    EXPECT_EQ(watcher.changed, (std::vector<int>{10, 2, 2}));
    watcher.changed.clear();
    bar.setAllEnabled(false);
    for (const int id : {0, 1, 2, 10, 11, 101}) EXPECT_EQ(bar.find(id)->enabled, id == 101) << id;
    EXPECT_EQ(watcher.changed, (std::vector<int>{0, 1, 10, 11}));
}

}  // namespace
}  // namespace hl
