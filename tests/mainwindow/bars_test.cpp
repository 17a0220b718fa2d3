#include "mainwindow/bars.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "mainwindow/bar_options.h"
#include "support/test_texts.h"

namespace hl {
namespace {

class BarsTest : public testing::Test {
  protected:
    explicit BarsTest(const std::string& locale = "de_DE.UTF-8") : texts(locale) {}

    void build() { initAllBars(bars, {texts.texts, options, texts.diagnostics}); }

    // Every entry, those of lists and popups too.
    void forEach(const std::function<void(const CommandBar&, const BarEntry&)>& visit) const {
        for (const CommandBar* bar : bars.all()) {
            walk(*bar, bar->entries(), visit);
            walk(*bar, bar->popups(), visit);
        }
    }

    static void walk(const CommandBar& bar, const std::vector<BarEntry>& entries,
                     const std::function<void(const CommandBar&, const BarEntry&)>& visit) {
        for (const BarEntry& entry : entries) {
            visit(bar, entry);
            walk(bar, entry.list, visit);
        }
    }

    std::string saved(const std::string& key) {
        Options read;
        barsToOptions(bars, read);
        OptionenSpeichernMain(read, texts.store);
        return texts.store.GetSettings("Optionen", key);
    }

    // The option follows the entry, and checks it at the next start.
    void expectKept(BarId bar, const std::string& key, int id) {
        bars.of(bar).setChecked(id, true);
        EXPECT_EQ(saved(key), "1") << key;
        Options loaded;
        barsToOptions(bars, loaded);
        Bars next;
        initAllBars(next, {texts.texts, loaded, texts.diagnostics});
        EXPECT_TRUE(next.of(bar).isChecked(id)) << key;
        bars.of(bar).setChecked(id, false);
        EXPECT_EQ(saved(key), "0") << key;
    }

    test::TestTexts texts;
    Options options;
    Bars bars;
};

class EnglishBarsTest : public BarsTest {
  protected:
    EnglishBarsTest() : BarsTest("en_GB.UTF-8") {}
};

std::string idsOf(const std::vector<BarEntry>& entries) {
    std::string ids;
    for (const BarEntry& entry : entries) {
        ids += (entry.beginGroup ? "| " : "") + std::to_string(entry.id);
        if (!entry.list.empty()) ids += " (" + idsOf(entry.list) + ")";
        ids += " ";
    }
    if (!ids.empty()) ids.pop_back();
    return ids;
}

TEST_F(BarsTest, HaveTheirEntriesInOrderWithGroupsAndLists) {
    build();
    EXPECT_EQ(idsOf(bars.cbrMain.entries()),
              "50 1 2 (60 61 62 | 65 | 68 63 | 64 66) 3 | 33 21 | 306 307 308 309 | 14 | 27 34 | 32 31 328 "
              "| 28 (35 36 37 38 39 40) | 16 | 17 18 | 20");
    EXPECT_EQ(idsOf(bars.cbrMain.popups()), "100 (101 102)");
    EXPECT_EQ(idsOf(bars.cbrReport.entries()),
              "0 | 4 | 323 | 24 25 (100 101 102 103 104 105 106 107 108 109) | 7 9 | 5 | 6 | 35 22 23 26 328 "
              "| 10 11 12 13 33 | 29 30");
    EXPECT_EQ(idsOf(bars.cbrDrives.entries()), "0 | 200 | 206 207 | 208 | 328 | 201 202 203 204 205");
    EXPECT_EQ(idsOf(bars.cbrFiles.entries()),
              "0 | 300 | 320 321 | 305 | 323 318 319 | 317 328 | 324 | 325 | 301 302 303 304 309 "
              "| 310 311 312 313 314 315 316 | 307 308");
    EXPECT_EQ(idsOf(bars.cbrTOP.entries()),
              "0 | 322 | 320 321 | 305 | 323 318 319 | 324 328 | 325 | 326 | 301 302 303 304 309 "
              "| 310 311 312 313 314 315 316 317 | 307 308");
    EXPECT_EQ(idsOf(bars.cbrHardlinks.entries()),
              "0 | 300 | 320 321 | 305 | 327 322 323 | 326 328 | 324 | 325 | 301 302 303 304 309 "
              "| 310 311 312 313 314 315 316 317 318 319 | 307 308");
    EXPECT_EQ(idsOf(bars.cbrJunctions.entries()), "0 | 323 | 317 328 | 324 | 325 | 307 308");
    EXPECT_TRUE(texts.sink.shown.empty());
}

TEST_F(BarsTest, AnIdIsUniqueInItsBarAndAnAcceleratorInAll) {
    build();
    std::set<std::pair<BarId, int>> ids;
    std::map<int, int> keys;
    forEach([&](const CommandBar& bar, const BarEntry& entry) {
        EXPECT_TRUE(ids.emplace(bar.id(), entry.id).second) << bar.name() << " " << entry.id;
        if (entry.key == 0) return;
        EXPECT_EQ(++keys[entry.key], 1) << bar.name() << " " << entry.id;
    });
    EXPECT_GE(keys.size(), 15U);
    // Keys with which text is edited in the boxes of the bars.
    for (const char key : {'A', 'C', 'V', 'X', 'Y', 'Z'}) EXPECT_FALSE(keys.contains(key)) << key;
}

TEST_F(EnglishBarsTest, EverythingHasANameForThoseWhoCannotSeeIt) {
    build();
    forEach([](const CommandBar& bar, const BarEntry& entry) {
        const std::string where = bar.name() + " " + std::to_string(entry.id);
        const bool popup = bar.id() == BarId::kMain && entry.id == kPopupSelectedFolders;
        EXPECT_EQ(entry.tooltip.empty(), popup) << where;
        EXPECT_EQ((entry.caption + entry.tooltip).find('%'), std::string::npos) << where;
    });
    EXPECT_EQ(bars.cbrMain.find(1)->caption, "New");
    EXPECT_EQ(bars.cbrReport.find(103)->caption, "Expand 4 folder levels");
    EXPECT_TRUE(bars.cbrMain.isChecked(36)) << "the language in use";
    EXPECT_FALSE(bars.cbrMain.isChecked(35));
}

TEST_F(BarsTest, TheCaptionServesWhereThereIsNoTooltip) {
    build();
    EXPECT_EQ(bars.cbrMain.find(60)->tooltip, "Liste mit den größten Dateien erstellen (langsamer)");
    AddControl(bars.cbrMain, {.id = 900, .caption = "Kurz", .tooltipFromCaption = false});
    AddControl(bars.cbrMain, {.id = 901, .caption = "Kurz", .tooltip = "Lang"});
    EXPECT_EQ(bars.cbrMain.find(900)->tooltip, "");
    EXPECT_EQ(bars.cbrMain.find(901)->tooltip, "Lang");
}

TEST_F(BarsTest, AcceleratorsAreKeyCodes) {
    const struct {
        const char* key;
        int code;
    } cases[] = {{"", 0},    {"F1", 112},  {"F12", 123}, {"F", 'F'},
                 {"f", 'F'}, {"F13", 'F'}, {"1", '1'},   {"s", 'S'}};
    int id = 900;
    for (const auto& [key, code] : cases) {
        AddControl(bars.cbrMain, {.id = id, .key = key});
        EXPECT_EQ(bars.cbrMain.find(id++)->key, code) << key;
    }
}

TEST_F(BarsTest, WhatHasNoWorkStaysDisabledWhenARunEnds) {
    build();
    for (CommandBar* bar : bars.all()) bar->setAllEnabled(false);
    for (CommandBar* bar : bars.all()) bar->setAllEnabled(true);
    forEach([](const CommandBar& bar, const BarEntry& entry) {
        EXPECT_EQ(entry.enabled, hasWork(bar.id(), entry.id)) << bar.name() << " " << entry.id;
    });
    // The same numbers mean something else elsewhere.
    EXPECT_FALSE(bars.cbrFiles.find(325)->enabled) << "print";
    EXPECT_TRUE(bars.cbrMain.find(308)->enabled) << "panel";
    EXPECT_TRUE(bars.cbrMain.find(307)->enabled) << "panel";
    EXPECT_TRUE(bars.cbrJunctions.find(323)->enabled) << "full view";
}

TEST_F(BarsTest, BeginWithTheReportAndNothingToStop) {
    build();
    EXPECT_FALSE(bars.cbrMain.find(3)->enabled);
    EXPECT_TRUE(bars.cbrMain.isChecked(33));
}

// --- options

TEST_F(BarsTest, EachOptionIsSavedFromItsEntry) {
    const struct {
        BarId bar;
        const char* keysAndIds;
    } cases[] = {
        {BarId::kMain,
         "createlisttop 60 createlisthardlink 61 createlistjunction 62 addhardlinksonlyonce 65 nohardlinks "
         "63 scanhardlinks 68 foldercolorfade 64 foldershowpercentbar 66 diskinfovisible 21 filelistvisible "
         "306 toplistvisible 307 hardlinksvisible 308 junctionsvisible 309 bigicons 27 symboltext 34"},
        {BarId::kReport,
         "colfilevisible 22 colfoldervisible 23 colpercentvisible 35 sizeformatnachkommastellenfolders 33"},
        {BarId::kFiles,
         "showicons 305 sizeformatnachkommastellenfiles 309 filepreview 318 filelisttile 319 0filecolumn 310 "
         "6filecolumn 316"},
        {BarId::kTop,
         "showiconstop 305 sizeformatnachkommastellentop 309 filepreviewtop 318 filelisttiletop 319 "
         "0topcolumn 310 7topcolumn 317"},
        {BarId::kHardlinks,
         "showiconshardlinks 305 sizeformatnachkommastellenhardlinks 309 hardlinkpreview 322 hardlinkstile "
         "323 0hardlinkcolumn 310 7hardlinkcolumn 317"},
        {BarId::kDrives, "sizeformatnachkommastellendrive 205"},
    };
    build();
    for (const auto& [bar, keysAndIds] : cases) {
        std::istringstream words(keysAndIds);
        std::string key;
        for (int id = 0; words >> key >> id;) expectKept(bar, key, id);
    }
}

TEST_F(BarsTest, TheLengthOfTheListIsWhatStandsInItsBox) {
    options.TOPmaxcount = 42;
    build();
    EXPECT_EQ(bars.cbrTOP.textOf(kTopCountBox), "42");
    const struct {
        const char* text;
        int count;
    } cases[] = {
        {"7", 7}, {"0", 0}, {"-1", 100}, {"", 100}, {"abc", 100}, {"nan", 100}, {"99999999999", 2147483647}};
    for (const auto& [text, count] : cases) {
        bars.cbrTOP.setText(kTopCountBox, text);
        barsToOptions(bars, options);
        EXPECT_EQ(options.TOPmaxcount, count) << text;
    }
}

TEST_F(BarsTest, OneSizeModeIsCheckedAndDecimalsAreNeverSwitchedOff) {
    build();
    const auto state = [&] {
        std::string checked;
        for (const int id : {301, 302, 303, 304, 309}) checked += bars.cbrFiles.isChecked(id) ? '1' : '0';
        return checked;
    };
    EXPECT_EQ(state(), "10000");
    showSizeMode(bars.cbrFiles, 2, 1);
    EXPECT_EQ(state(), "00101");
    showSizeMode(bars.cbrFiles, 3, 0);
    EXPECT_EQ(state(), "00011");
    showSizeMode(bars.cbrFiles, 7, 0);
    EXPECT_EQ(state(), "00001");
    EXPECT_EQ(bars.cbrHardlinks.isChecked(309), false) << "a bar of its own";
}

TEST_F(BarsTest, IconSizeAndTextGoToAllBarsAndBackWithNothingElseChanged) {
    build();
    const std::string before = idsOf(bars.cbrMain.entries());
    for (const bool on : {true, false}) {
        bars.cbrMain.setChecked(27, on);
        Change_ToolbarIconSize(bars, texts.diagnostics);
        bars.cbrMain.setChecked(34, !on);
        Change_Toolbar_IconText(bars, texts.diagnostics);
        for (const CommandBar* bar : bars.all()) {
            EXPECT_EQ(bar->largeIcons(), on) << bar->name();
            EXPECT_EQ(bar->textBelowIcons(), !on) << bar->name();
        }
    }
    EXPECT_EQ(idsOf(bars.cbrMain.entries()), before);
}

}  // namespace
}  // namespace hl
