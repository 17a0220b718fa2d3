// The main window with all its bars and panes, and a logic that records what it is told.
#pragma once

#include "gui/entry_name.h"
#include "gui/recording_events.h"
#include "mainwindow/bars.h"
#include "mainwindow/panes.h"
#include "platform/qt/window/main_window.h"
#include "scan/file_columns.h"
#include "scan/records.h"
#include "support/test_texts.h"
#include "views/changes_list.h"
#include "views/drive_list.h"
#include "views/statistics_list.h"

namespace hl::test {

/// Uses English, and shows the report, the drives and the file list; every entry that has a routine is
/// enabled.
struct WindowBars : testing::Test, private PaneHost {
    WindowBars() {
        initAllBars(bars, {texts.texts, options, texts.diagnostics});
        for (CommandBar* bar : bars.all()) bar->setAllEnabled(true);
        for (const Command panel : {Command::kShowReport, Command::kShowDrives, Command::kShowFiles})
            bars.cbrMain.setChecked(idOf(panel), true);
        panes = std::make_unique<Panes>(
            PaneParts{bars.all(), report, options, state, kPosixPaths, status, *this, texts.diagnostics});
        fillParts();
        window = std::make_unique<MainWindow>(parts, events);
        for (GridPane* pane : window->window().grids) pane->setEvents(&events);
        events.onBarResized = [this](BarId bar) { panes->cbrResize(bar); };
        panes->ShowFirstList();
        panes->Change_Info_Visibility();
        panes->placeSplitters(500);
    }
    ~WindowBars() override {
        window.reset();
        EXPECT_TRUE(texts.sink.shown.empty()) << texts.sink.shown.front();
    }

    void show(int width = 1200, int height = 800) {
        window->frame().resize(width, height);
        window->show();
        window->frame().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window->frame()));
        QApplication::processEvents();
    }

    TestTexts texts{"en_GB.UTF-8"};
    Options options;
    ScanState state;
    StatusPanels status;
    Bars bars;
    Grid report{kFolderCells}, drives{kDriveCells}, files{kFileCells}, top{kFileCells}, hardlinks{kFileCells},
        junctions{kJunctionCells}, hits{kFileCells}, statistics{kStatisticsCells}, changes{kChangeCells};
    std::unique_ptr<Panes> panes;
    WindowParts parts;
    RecordingEvents events;
    std::unique_ptr<MainWindow> window;

  private:
    void fillParts() {
        parts.grids = {&report, &drives, &files, &top, &hardlinks, &junctions, &hits, &statistics, &changes};
        parts.gridNames = {"tvwPL",        "lvwDiskinfo", "lvwFiles",      "lvwTOP",    "lvwHardlinks",
                           "lvwJunctions", "lvwFind",     "lvwStatistics", "lvwChanges"};
        parts.gridTitles = {"Folder list", "Drive list", "File list",  "Largest files", "Hard links",
                            "Junctions",   "Find",       "Statistics", "Changes"};
        for (Grid* grid : parts.grids)
            grid->setColumns(
                {{.title = "Name", .key = {}, .mask = {}}, {.title = "Note", .key = {}, .mask = {}}});
        parts.bars = bars.all();
        parts.barEvents = &events;
        parts.sourceEvents = &events;
        parts.splitters = panes->all();
        parts.cellText = [this](GridId id, std::size_t column, Row row) {
            const Grid& grid = *parts.grids[static_cast<std::size_t>(id)];
            return column == 0 ? std::string(grid.text(row)) : "note";
        };
        parts.more = "More commands";
        parts.clear = "Clear";
        parts.level = "Level";
        parts.map = "Map";
        parts.name = "Harborlantern";
        parts.dataFolder = HARBORLANTERN_SOURCE_DIR "/data";
    }

    int barHeight(BarId bar) override { return window->bar(bar).wrappedHeight(); }
    int gridWidth(GridId grid) override { return window->grid(grid).innerWidth(); }
    int formWidth() override { return window->clientArea().width; }
    void listAppears(GridId) override {}
    void fitColumns(GridId) override {}
    void refresh(GridId) override {}
    void SetFileIcons(GridId) override {}
    void ShowFileStat(GridId) override {}
    void List_Files_ScanFolder(const std::string&) override {}
    void Drives_ResizeTableHeight() override {}
    void Drives_Resize_Columns(bool) override {}
    void Preview_Reset_View() override {}
    void Preview_ShowFile() override {}
    void statusChanged() override {}
};

}  // namespace hl::test
