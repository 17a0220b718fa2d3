#include "mainwindow/panes.h"

#include "mainwindow/bars.h"
#include "scan/records.h"
#include "support/test_texts.h"

namespace hl::test {
namespace {

using enum Command;
constexpr Command kPanels[] = {kShowReport,    kShowDrives, kShowFiles,      kShowTop,    kShowHardlinks,
                               kShowJunctions, kShowFind,   kShowStatistics, kShowChanges};
using Checked = std::set<Command>;

// The form around the panes, and a window that lays them out whenever they change.
struct Panel : testing::Test, protected PaneHost {
    Panel() {
        initAllBars(bars, {texts.texts, options, texts.diagnostics});
        for (std::size_t i = 0; i < kBarCount; ++i)
            barHeights[static_cast<BarId>(i)] = 20 + static_cast<int>(i);
        panes = std::make_unique<Panes>(
            PaneParts{bars.all(), tvwPL, options, state, kPosixPaths, status, *this, texts.diagnostics});
        for (cSplitter* one : panes->all()) one->changed = [this] { layOut(); };
    }
    ~Panel() override { EXPECT_TRUE(texts.sink.shown.empty()) << texts.sink.shown.front(); }

    void show(int width, int height) {
        form = {0, 0, width, height};
        layOut();
    }
    /// Hidden panes have no rectangle.
    void layOut() {
        if (form.width == 0) return;
        rects.clear();
        place({PaneRef::Kind::kSplitter, 0}, form);
    }
    void place(PaneRef pane, Rect rect) {
        if (pane.kind != PaneRef::Kind::kSplitter) {
            rects[{pane.kind, pane.number}] = rect;
            return;
        }
        cSplitter& one = panes->splitter(static_cast<SplitterId>(pane.number));
        const bool beside = one.orientation() == Orientation::kSideBySide;
        one.setTotal(beside ? rect.width : rect.height);
        const auto part = [&](const cSplitter::Span& span) {
            return beside ? Rect{rect.left + span.start, rect.top, span.size, rect.height}
                          : Rect{rect.left, rect.top + span.start, rect.width, span.size};
        };
        const cSplitter::Layout layout = one.layout();
        if (layout.first.visible) place(one.Control1(), part(layout.first));
        if (layout.second.visible) place(one.Control2(), part(layout.second));
    }

    Rect of(PaneRef::Kind kind, int number) const {
        const auto found = rects.find({kind, number});
        return found == rects.end() ? Rect{} : found->second;
    }
    Rect of(GridId grid) const { return of(PaneRef::Kind::kGrid, static_cast<int>(grid)); }
    Rect of(BarId one) const { return of(PaneRef::Kind::kBar, static_cast<int>(one)); }
    bool previewShows() const { return of(PaneRef::Kind::kPreview, 0).width > 0; }

    CommandBar& bar(BarId id) { return bars.of(id); }
    cSplitter& splitter(SplitterId id) { return panes->splitter(id); }
    void check(const Checked& on) {
        for (const Command panel : kPanels) bars.cbrMain.setChecked(idOf(panel), on.contains(panel));
    }
    Checked checked() const {
        Checked on;
        for (const Command panel : kPanels)
            if (bars.cbrMain.isChecked(idOf(panel))) on.insert(panel);
        return on;
    }
    void change(const Checked& on) {
        check(on);
        asked.clear();
        panes->Change_Info_Visibility();
    }
    std::ptrdiff_t times(const std::string& what) const { return std::ranges::count(asked, what); }

    // PaneHost
    int barHeight(BarId id) override {
        if (inBarHeight) inBarHeight(id);
        return barHeights[id];
    }
    int gridWidth(GridId grid) override { return of(grid).width; }
    int formWidth() override { return form.width; }
    void refresh(GridId grid) override { note("refresh", grid); }
    void listAppears(GridId list) override { note("appears", list); }
    void fitColumns(GridId list) override { note("fit", list); }
    void SetFileIcons(GridId list) override { note("icons", list); }
    void ShowFileStat(GridId list) override { note("stat", list); }
    void List_Files_ScanFolder(const std::string& folder) override { asked.push_back(folder); }
    void Drives_ResizeTableHeight() override { splitter(SplitterId::kInfo).setPosition(130); }
    void Drives_Resize_Columns(bool) override { asked.push_back("drive columns"); }
    void Preview_Reset_View() override { asked.push_back("preview reset"); }
    void Preview_ShowFile() override { asked.push_back("preview"); }
    void statusChanged() override {}
    void note(const char* what, GridId grid) {
        asked.push_back(what + std::to_string(static_cast<int>(grid)));
    }

    TestTexts texts;
    Bars bars;
    std::map<BarId, int> barHeights;
    std::function<void(BarId)> inBarHeight;
    Grid tvwPL{kFolderCells};
    Options options;
    ScanState state;
    StatusPanels status;
    std::vector<std::string> asked;
    Rect form;
    std::map<std::pair<PaneRef::Kind, int>, Rect> rects;
    std::unique_ptr<Panes> panes;
};

TEST_F(Panel, ClickKeepsTheLastOneAndOneListAtMost) {
    const std::tuple<Checked, Command, Checked> cases[] = {
        {{kShowReport}, kShowReport, {kShowReport}},
        {{kShowReport, kShowFiles}, kShowFiles, {kShowReport}},
        {{kShowReport, kShowFiles}, kShowReport, {kShowFiles}},
        {{kShowFiles}, kShowJunctions, {kShowJunctions}},
        {{kShowTop}, kShowFind, {kShowFind}},
        {{kShowJunctions}, kShowStatistics, {kShowStatistics}},
        {{kShowStatistics}, kShowChanges, {kShowChanges}},
        {{kShowDrives, kShowReport, kShowHardlinks}, kShowTop, {kShowDrives, kShowReport, kShowTop}},
        {{kShowFiles, kShowTop, kShowJunctions}, kShowHardlinks, {kShowHardlinks}},
        {{kShowDrives, kShowReport, kShowFiles}, kShowDrives, {kShowReport, kShowFiles}},
        {{kShowReport, kShowFiles, kShowTop}, kShowTop, {kShowReport, kShowFiles}},
        {{kShowReport, kShowFiles}, kLargeIcons, {kShowReport, kShowFiles}},  // No entry of a panel.
    };
    show(800, 500);
    for (const auto& [before, click, after] : cases) {
        change(before);
        panes->PanelToggle(click);
        EXPECT_EQ(checked(), after) << idOf(click);
        const bool listFlipped = click > kShowReport && after != before;  // Lists have the highest numbers.
        EXPECT_EQ(times("preview"), listFlipped ? 1 : 0) << idOf(click);
    }
}

TEST_F(Panel, SetShowsWhatIsCheckedAndTheOptionsSayIt) {
    constexpr GridId kGrids[] = {GridId::kReport, GridId::kDrives,     GridId::kFiles,
                                 GridId::kTop,    GridId::kHardlinks,  GridId::kJunctions,
                                 GridId::kFind,   GridId::kStatistics, GridId::kChanges};
    using Shown = std::set<GridId>;
    const std::pair<Checked, Shown> cases[] = {
        {{kShowReport, kShowDrives, kShowFiles}, {GridId::kReport, GridId::kDrives, GridId::kFiles}},
        {{kShowReport}, {GridId::kReport}},
        {{kShowReport, kShowJunctions}, {GridId::kReport, GridId::kJunctions}},
        {{kShowReport, kShowStatistics}, {GridId::kReport, GridId::kStatistics}},
        {{kShowReport, kShowChanges}, {GridId::kReport, GridId::kChanges}},
        {{kShowDrives}, {GridId::kDrives}},
        {{kShowReport, kShowFind}, {GridId::kReport, GridId::kFind}},
        {{kShowHardlinks}, {GridId::kHardlinks}},
        {{kShowDrives, kShowTop, kShowHardlinks, kShowJunctions}, {GridId::kDrives, GridId::kTop}},
        {{}, {GridId::kReport}}};
    show(800, 500);
    for (const auto& [on, expected] : cases) {
        change(on);
        Shown shown;
        for (const GridId grid : kGrids)
            if (of(grid).height > 0) shown.insert(grid);
        EXPECT_EQ(shown, expected);
        const Options& o = options;
        const Flag told[] = {1,
                             o.DiskinfoVisible,
                             o.FilelistVisible,
                             o.ToplistVisible,
                             o.HardlinksVisible,
                             o.JunctionsVisible,
                             o.FindVisible,
                             o.StatisticsVisible,
                             o.ChangesVisible};
        for (std::size_t i = 1; i < std::size(kGrids); ++i)
            EXPECT_EQ(told[i], shown.contains(kGrids[i])) << i;
        asked.clear();
        panes->Form_Resize();
        EXPECT_TRUE(asked.empty()) << "no long operation runs";
        state.ScanActive = true;
        panes->Form_Resize();
        state.ScanActive = false;
        shown.insert(GridId::kReport);
        EXPECT_EQ(asked.size(), shown.size()) << "what shows is painted, and the report";
    }
}

TEST_F(Panel, ListFollowsTheEntriesOfItsOwnBar) {
    show(800, 500);
    for (const Command command :
         {kFilesPreview, kFilesSplit, kHardlinksIdColumn + 8, kHardlinksIdColumn + 9})  // Both have these.
        bar(barOf(command)).setChecked(idOf(command), true);
    const cSplitter& both = splitter(SplitterId::kFilesAndPreview);
    change({kShowFiles});
    EXPECT_TRUE(previewShows());
    EXPECT_EQ(both.orientation(), Orientation::kSideBySide);
    EXPECT_EQ(times("stat2") * times("refresh2") * times("fit2"), 1);
    EXPECT_GE(times("icons2"), 1);
    change({kShowHardlinks});
    EXPECT_FALSE(previewShows());
    EXPECT_EQ(both.orientation(), Orientation::kStacked);
    change({kShowJunctions});
    EXPECT_FALSE(previewShows());
}

TEST_F(Panel, OfFilesReadsTheFolderOfTheFirstSelectedRowOnceOnly) {
    show(800, 500);
    const Row root = tvwPL.addRow(kNoRow, "/srv"), folder = tvwPL.addRow(root, "a");
    const Row files = tvwPL.addRow(folder, "[Files]"), last = tvwPL.addRow(root, "b");
    for (const Row row : {root, folder, last}) tvwPL.setNumber(row, kIsFolder, 1);
    change({kShowReport, kShowFiles});
    EXPECT_EQ(times("/srv/"), 0) << "nothing is selected";
    for (const Row row : {last, files}) tvwPL.setSelected(row, true);
    change({kShowReport, kShowTop});
    EXPECT_EQ(times("/srv/a/"), 0) << "another list shows";
    change({kShowReport, kShowFiles});
    EXPECT_EQ(times("/srv/a/"), 1);
    state.fileList.folder = "/srv/a/";
    change({kShowReport, kShowFiles});
    EXPECT_EQ(times("/srv/a/"), 0);
}

TEST_F(Panel, BarThatResizesWhileItIsMeasuredIsMeasuredOnce) {
    show(800, 500);
    int measured = 0;
    inBarHeight = [&](BarId id) {
        ++measured;
        panes->cbrResize(id);
    };
    panes->cbrResize(BarId::kReport);
    panes->cbrResize(BarId::kReport);
    EXPECT_EQ(measured, 2);
}

TEST_F(Panel, TooNarrowClipsItsBar) {
    show(800, 500);
    change({kShowReport, kShowFiles});
    const std::tuple<int, bool, bool> cases[] = {{133, true, false}, {134, false, false}, {567, false, true}};
    for (const auto& [report, clipsReport, clipsFiles] : cases) {
        splitter(SplitterId::kMain).setPosition(report);
        EXPECT_EQ(bar(BarId::kReport).clips(), clipsReport) << report;
        EXPECT_EQ(bar(BarId::kFiles).clips(), clipsFiles) << report;
        EXPECT_EQ(status.firstWidth, report);
    }
}

TEST_F(Panel, TooLowClipsTheBarOfItsListAndWrapsItWhereThereIsRoomAgain) {
    barHeights[BarId::kTop] = 120;
    change({kShowReport, kShowTop});
    for (const auto& [height, clips] : {std::pair{500, false}, {200, true}, {190, true}, {230, false}}) {
        show(800, height);
        EXPECT_EQ(bar(BarId::kTop).clips(), clips) << height;
    }
    show(800, 200);
    barHeights[BarId::kTop] = 40;
    panes->measureListBars();
    EXPECT_FALSE(bar(BarId::kTop).clips()) << "with smaller icons";
}

TEST_F(Panel, BesideTheReportStaysInSightInANarrowWindow) {
    show(800, 500);
    splitter(SplitterId::kMain).setPosition(600);
    change({kShowReport, kShowDrives});
    show(480, 500);
    EXPECT_EQ(of(GridId::kDrives).width, 100);
    EXPECT_EQ(of(GridId::kDrives).left + of(GridId::kDrives).width, 480);
    EXPECT_TRUE(bar(BarId::kDrives).clips());
}

TEST_F(Panel, OfListAndPreviewStaysInSightInALowWindow) {
    show(800, 600);
    change({kShowReport, kShowDrives, kShowFiles});
    splitter(SplitterId::kInfo).setPosition(500);
    show(800, 330);
    EXPECT_EQ(splitter(SplitterId::kFiles).total(), 96);
    bar(BarId::kFiles).setChecked(idOf(kFilesPreview), true);
    panes->followPreviewEntries(GridId::kFiles);
    cSplitter& preview = splitter(SplitterId::kFilesAndPreview);
    show(800, 900);
    preview.setPosition(preview.total() - 50);
    show(800, 700);
    EXPECT_EQ(preview.Position(), preview.total() - preview.SplitterSize() - 24);
}

TEST_F(Panel, StartsWhereItWasLeft) {
    options.ToplistVisible = options.JunctionsVisible = 1;
    panes->ShowFirstList();
    panes->placeSplitters(245);
    panes->hideByOptions();
    show(800, 500);
    EXPECT_EQ(of(GridId::kReport).width, 245);
    EXPECT_EQ(of(GridId::kDrives).height, 0);
    EXPECT_EQ(of(GridId::kTop).height, 500 - barHeights[BarId::kTop] - 1);
    EXPECT_EQ(splitter(SplitterId::kFilesAndPreview).Position(), 500 / 2 - 11);
}

}  // namespace
}  // namespace hl::test
