#include "mainwindow/toolbar_state.h"

#include "app/command.h"
#include "app/settings_fixture.h"
#include "base/text.h"
#include "mainwindow/bars.h"
#include "mainwindow/window_geometry.h"
#include "support/test_texts.h"

namespace hl::test {
namespace {

struct ToolbarStateTest : testing::Test {
    void build(Bars& built) { initAllBars(built, {texts.texts, options, texts.diagnostics}); }

    void save(Bars& from) {
        ToolbarStore store;
        for (CommandBar* bar : from.all()) ExchangeState(store, *bar);
        EXPECT_TRUE(store.save(texts.files, path));
    }

    // Does what the start of the program does.
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
        return contentOf(path);
    }

    void expectAsBuiltFrom(const std::string& content, const std::string& what) {
        writeFile(path, content);
        Bars bars;
        EXPECT_FALSE(load(bars)) << what;
        EXPECT_TRUE(asBuilt(bars)) << what;
    }

    TestTexts texts;
    Options options;
    std::string path = texts.dir.path() + "/Toolbar.dat";
};

TEST_F(ToolbarStateTest, PlacesAndHiddenEntriesSurviveARestart) {
    // The entry 4711 no longer exists.
    writeFile(path, replaceAll(arranged(), "Hidden=17", "Hidden=4711 17"));
    Bars bars;
    ASSERT_TRUE(load(bars));
    EXPECT_EQ(bars.cbrMain.find(4711), nullptr);
    EXPECT_EQ(bars.cbrMain.place(), (BarPlace{BarEdge::kBottom, 3, true}));
    EXPECT_EQ(bars.cbrDrives.place(), (BarPlace{BarEdge::kTop, 1, false}));
    EXPECT_EQ(bars.cbrFiles.place(), BarPlace{});
    EXPECT_FALSE(bars.cbrMain.find(idOf(Command::kInfo))->visible);
    EXPECT_FALSE(bars.cbrReport.find(idOf(Command::kReportUnfold1 + 2))->visible) << "in a list";
    EXPECT_FALSE(bars.cbrMain.find(idOf(Command::kDeleteFolders))->visible) << "in a popup";
    EXPECT_TRUE(bars.cbrMain.find(idOf(Command::kRecycleFolders))->visible)
        << "the id of another bar's hidden entry";
}

TEST_F(ToolbarStateTest, AFileOfAnEarlierVersionKeepsTheStateOfTheBarsThatItKnows) {
    const std::string whole = arranged();
    const std::size_t from = whole.find("[cbrFind]"), to = whole.find("[Format]");
    ASSERT_LT(from, to);
    Bars now, then;
    writeFile(path, whole);
    ASSERT_TRUE(load(now));
    writeFile(path, whole.substr(0, from) + whole.substr(to));
    ASSERT_TRUE(load(then));
    EXPECT_EQ(then.cbrMain.place(), now.cbrMain.place());
    EXPECT_NE(then.cbrMain.place(), BarPlace());
}

TEST_F(ToolbarStateTest, AFileCutShortBrokenOrForeignChangesNothing) {
    const std::string whole = arranged();
    const std::size_t end = whole.find_last_not_of("\r\n");
    for (std::size_t length = 0; length <= end; ++length) {
        writeFile(path, whole.substr(0, length));
        ToolbarStore store;
        ASSERT_FALSE(store.load(texts.files, path)) << length;
    }
    const char* const faults[][2] = {
        {"Visible=0", ""},       {"Toolbars=1", "Toolbars=2"},   {"Hidden=17", "Hidden=99999999999"},
        {"Order=3", "Order=-1"}, {"Edge=bottom", "Edge=middle"}, {"[cbrJunctions]", "[cbrJunction]"}};
    for (const auto& [from, to] : faults) {
        ASSERT_TRUE(has(whole, from));
        expectAsBuiltFrom(replaceAll(whole, from, to), std::string(from) + " > " + to);
    }
    expectAsBuiltFrom(std::string("\xd0\xcf\x11\xe0\0\0\xff\xfe", 8), "binary");
    expectAsBuiltFrom(whole + std::string(100'000, '\n'), "far too long");
}

struct WindowGeometry : SettingsFixture {
    static constexpr Rect kScreen{0, 0, 1920, 1080};
    static std::string shown(const WindowPlace& place) {
        const Rect& rect = place.rect;
        std::string text;
        for (const int number : {rect.left, rect.top, rect.width, rect.height, place.splitter})
            text += std::to_string(number) + " ";
        return text;
    }
};

TEST_F(WindowGeometry, OpensWhereItFitsWhateverTheFileHolds) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "320 140 1280 800 245 "},
        {"Width=15000\nHeight=7500", "460 290 1000 500 245 "},
        {"Left=99999\nTop=450", "0 30 1280 800 245 "},
        {"Left=-15\nTop=16200", "0 0 1280 800 245 "},
        {"Left=28785\nTop=16185", "1919 1079 1280 800 245 "},
        {"Width=45000\nHeight=30000", "0 0 3000 2000 245 "},
        {"TVW=19201", "320 140 1280 800 146 "},
        {"TVW=-1", "320 140 1280 800 146 "},
        {"TVW=19200", "320 140 1280 800 1280 "},
        {"Left=x\nTop=\nWidth=0\nHeight=-15\nTVW=1e9", "320 140 1280 800 245 "},
        {"Left=99999999999\nWidth=99999999999", "320 140 1280 800 245 "}};
    for (const auto& [lines, place] : cases)
        EXPECT_EQ(shown(savedPlace(IniText(std::string("[Form]\n") + lines), kScreen)), place) << lines;
    EXPECT_EQ(shown(savedPlace(IniText(""), {0, 0, 800, 600})), "80 60 640 480 245 ");
    const Rect second{-1920, 40, 1920, 1040};
    EXPECT_EQ(shown(savedPlace(IniText("[Form]\nLeft=-1500\nTop=0"), second)), "-100 40 1280 800 245 ");
}

TEST_F(WindowGeometry, ComesBackAsItWasSaved) {
    for (const WindowState state : {WindowState::kNormal, WindowState::kMinimized, WindowState::kMaximized}) {
        FensterpositionSpeichern(store, state, {33, 44, 801, 603}, 207);
        EXPECT_EQ(shown(savedPlace(store.read(), kScreen)), "33 44 801 603 207 ");
        EXPECT_EQ(savedState(store.read()), state == WindowState::kMinimized ? WindowState::kNormal : state);
    }
    EXPECT_TRUE(has(contentOf(path), "Width=12015")) << "twips";
    EXPECT_EQ(savedState(IniText("[Form]\nWindowState=7")), WindowState::kNormal);
}

}  // namespace
}  // namespace hl::test
