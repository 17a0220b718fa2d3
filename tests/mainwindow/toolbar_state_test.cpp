#include "mainwindow/toolbar_state.h"

#include <gtest/gtest.h>

#include "app/command.h"
#include "base/text.h"
#include "mainwindow/bars.h"
#include "support/test_texts.h"
#include "support/whole_files.h"

namespace hl {
namespace {

class ToolbarStateTest : public testing::Test {
  protected:
    void build(Bars& built) { initAllBars(built, {texts.texts, options, texts.diagnostics}); }

    void save(Bars& from) {
        ToolbarStore store;
        for (CommandBar* bar : from.all()) ExchangeState(store, *bar);
        EXPECT_EQ(store.save(texts.files, path), 0);
    }

    // As at the start of the program.
    bool load(Bars& into) {
        build(into);
        ToolbarStore store;
        if (!store.load(texts.files, path)) return false;
        for (CommandBar* bar : into.all()) ExchangeState(store, *bar);
        return true;
    }

    static bool asBuilt(const Bars& bars) {
        for (const CommandBar* bar : bars.all())
            if (bar->place() != BarPlace{}) return false;
        return bars.cbrMain.find(idOf(Command::kInfo))->visible &&
               bars.cbrReport.find(idOf(Command::kReportUnfold1 + 2))->visible;
    }

    std::string arranged() {
        Bars bars;
        build(bars);
        bars.cbrMain.setPlace({BarEdge::kBottom, 3, true});
        bars.cbrDrives.setPlace({BarEdge::kTop, 1, false});
        bars.cbrMain.setVisible(idOf(Command::kInfo), false);
        bars.cbrReport.setVisible(idOf(Command::kReportUnfold1 + 2), false);
        bars.cbrMain.setVisible(idOf(Command::kDeleteFolders), false);
        save(bars);
        return test::contentOf(path);
    }

    void expectAsBuiltFrom(const std::string& content, const std::string& what) {
        test::writeFile(path, content);
        Bars bars;
        EXPECT_FALSE(load(bars)) << what;
        EXPECT_TRUE(asBuilt(bars)) << what;
    }

    test::TestTexts texts;
    Options options;
    std::string path = texts.dir.path() + "/Toolbar.dat";
};

TEST_F(ToolbarStateTest, PlacesAndHiddenEntriesSurviveARestart) {
    arranged();
    Bars bars;
    ASSERT_TRUE(load(bars));
    EXPECT_EQ(bars.cbrMain.place(), (BarPlace{BarEdge::kBottom, 3, true}));
    EXPECT_EQ(bars.cbrDrives.place(), (BarPlace{BarEdge::kTop, 1, false}));
    EXPECT_EQ(bars.cbrFiles.place(), BarPlace{});
    EXPECT_FALSE(bars.cbrMain.find(idOf(Command::kInfo))->visible);
    EXPECT_FALSE(bars.cbrReport.find(idOf(Command::kReportUnfold1 + 2))->visible) << "in a list";
    EXPECT_FALSE(bars.cbrMain.find(idOf(Command::kDeleteFolders))->visible) << "in a popup";
    EXPECT_TRUE(bars.cbrMain.find(idOf(Command::kRecycleFolders))->visible)
        << "the id of another bar's hidden entry";
}

TEST_F(ToolbarStateTest, WhatIsBuiltWinsOverWhatIsStored) {
    const std::string content = arranged();
    test::writeFile(path, replaceAll(content, "Hidden=17", "Hidden=4711 17"));  // 4711 was dropped since.
    Bars bars;
    ASSERT_TRUE(load(bars));
    EXPECT_FALSE(bars.cbrMain.find(idOf(Command::kInfo))->visible);
    EXPECT_EQ(bars.cbrMain.find(4711), nullptr);
}

TEST_F(ToolbarStateTest, AFileCutShortBrokenOrForeignChangesNothing) {
    const std::string whole = arranged();
    const std::size_t end = whole.find_last_not_of("\r\n");
    for (std::size_t length = 0; length <= end; ++length) {
        test::writeFile(path, whole.substr(0, length));
        ToolbarStore store;
        ASSERT_FALSE(store.load(texts.files, path)) << length;
    }
    const char* const faults[][2] = {{"Edge=bottom", "Edge=middle"},
                                     {"Order=3", "Order=-1"},
                                     {"Visible=0", ""},
                                     {"Hidden=17", "Hidden=99999999999"},
                                     {"[cbrJunctions]", "[cbrJunction]"},
                                     {"Toolbars=1", "Toolbars=2"}};
    for (const auto& [from, to] : faults) {
        ASSERT_NE(whole.find(from), std::string::npos) << from;
        expectAsBuiltFrom(replaceAll(whole, from, to), std::string(from) + " > " + to);
    }
    expectAsBuiltFrom(std::string("\xd0\xcf\x11\xe0\0\0\xff\xfe", 8), "binary");
    expectAsBuiltFrom(whole + std::string(100'000, '\n'), "far too long");
}

}  // namespace
}  // namespace hl
