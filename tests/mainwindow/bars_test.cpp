#include "mainwindow/bars.h"

#include "mainwindow/bar_options.h"
#include "mainwindow/command_table.h"
#include "platform/command_bar.h"
#include "scan/file_columns.h"
#include "support/test_texts.h"

namespace hl::test {
namespace {

struct BarsTest : testing::Test {
    BarsTest() { initAllBars(bars, {texts.texts, options, texts.diagnostics}); }

    /// Adds the entries to `all`, and those of their lists.
    static void add(const std::vector<BarEntry>& entries, std::vector<BarEntry>& all) {
        for (const BarEntry& entry : entries) {
            all.push_back(entry);
            add(entry.list, all);
        }
    }

    TestTexts texts{"en_GB.UTF-8"};
    Options options;
    Bars bars;
};

TEST_F(BarsTest, EveryEntryHasANameAndAnIdAndAcceleratorOfItsOwn) {
    std::set<std::pair<BarId, int>> ids;
    std::map<int, int> keys;
    for (const CommandBar* bar : bars.all()) {
        std::vector<BarEntry> all;
        add(bar->entries(), all);
        for (const BarEntry& popup : bar->popups())
            if (popup.id != idOf(Command::kColumnsMenu))
                add({popup}, all);  // It has entries of the bar again.
        for (const BarEntry& entry : all) {
            EXPECT_TRUE(ids.emplace(bar->id(), entry.id).second) << bar->name() << " " << entry.id;
            const bool popup =
                bar->id() == BarId::kMain && (entry.id == idOf(Command::kMenuOfSelectedFolders) ||
                                              entry.id == idOf(Command::kMenuOfStatus));
            EXPECT_EQ(entry.tooltip.empty(), popup) << bar->name() << " " << entry.id << ": its name";
            EXPECT_EQ((entry.caption + entry.tooltip).find('%'), std::string::npos) << entry.caption;
            // These mean the pane with the focus.
            const bool ofEachPane = entry.key == 'F' || entry.key == ('B' | kKeyWithShift);
            if (entry.key == 0 || (ofEachPane && bar->id() != BarId::kReport)) continue;
            EXPECT_EQ(++keys[entry.key], 1) << bar->name() << " " << entry.id;
        }
    }
    EXPECT_GE(keys.size(), 15U);
    // These keys edit text in the boxes of the bars. Ctrl+Z does both: in a box it is the box's.
    for (const char key : {'A', 'C', 'V', 'X', 'Y'}) EXPECT_FALSE(keys.contains(key)) << key;
}

TEST_F(BarsTest, AnEntryThatIsCheckedComesBackCheckedAndNoOther) {
    std::vector<Command> kept;
    for (const CommandBar* bar : bars.all())
        for (const CommandRow& row : commandsOf(bar->id()))
            if (row.kept.use != KeptOption::Use::kNone && row.kept.use != KeptOption::Use::kChooses)
                kept.push_back(row.command);
    const std::size_t lists = kFilesColumns.size() + kTopColumns.size() + kHardlinksColumns.size() - 3;
    EXPECT_GE(kept.size(), 32 + lists);
    const auto checkedIn = [&](const Bars& shown) {
        std::size_t count = 0;
        for (const Command one : kept) count += shown.of(barOf(one)).isChecked(idOf(one));
        return count;
    };
    for (const Command one : kept) bars.of(barOf(one)).setChecked(idOf(one), false);
    for (const Command one : kept) {
        bars.of(barOf(one)).setChecked(idOf(one), true);
        Options loaded;
        barsToOptions(bars, loaded);
        Bars next;
        initAllBars(next, {texts.texts, loaded, texts.diagnostics});
        EXPECT_TRUE(next.of(barOf(one)).isChecked(idOf(one))) << static_cast<int>(one);
        EXPECT_EQ(checkedIn(next), 1U) << static_cast<int>(one);
        bars.of(barOf(one)).setChecked(idOf(one), false);
    }
}

TEST_F(BarsTest, IconSizeAndTextGoToAllBarsAndBack) {
    for (const bool on : {true, false}) {
        bars.cbrMain.setChecked(idOf(Command::kLargeIcons), on);
        Change_ToolbarIconSize(bars, texts.diagnostics);
        bars.cbrMain.setChecked(idOf(Command::kIconText), !on);
        Change_Toolbar_IconText(bars, texts.diagnostics);
        for (const CommandBar* bar : bars.all()) {
            EXPECT_EQ(bar->largeIcons(), on) << bar->name();
            EXPECT_EQ(bar->textBelowIcons(), !on) << bar->name();
        }
    }
}

struct Watcher : BarObserver {
    void entryChanged(const CommandBar&, const BarEntry& entry) override { changed.push_back(entry.id); }
    void barChanged(const CommandBar&) override {}
    std::vector<int> changed;
};

// The bar has a label, a split button with a list of two, a button, and a popup with one entry.
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
}  // namespace hl::test
