// Tests what the views of the report and of the lists do while something runs, without a window.
#include "views/views_fixture.h"

namespace hl::test {
namespace {

using Views = ViewsFixture;

TEST_F(Views, LoadNoIconsOfListsThatARunStillFills) {
    for (Grid* grid : {&lvwFiles, &top, &hardlinks}) grid->addRow(kNoRow, "a.txt");
    options.ShowIcons = options.ShowIconsTop = options.ShowIconsHardlinks = 1;
    state.ScanActive = true;
    for (ListView* view : std::initializer_list<ListView*>{&filesView, &topView, &hardlinksView})
        view->SetFileIcons(false);
    EXPECT_EQ(top.picture(top.rowAt(0)) + hardlinks.picture(hardlinks.rowAt(0)), 0);
    EXPECT_NE(lvwFiles.picture(lvwFiles.rowAt(0)), 0);
}

TEST_F(Views, IgnoreTheUserWhileTheWindowIsLocked) {
    const std::pair<GridEvents*, Grid*> views[] = {{&filesView, &lvwFiles},
                                                   {&topView, &top},
                                                   {&hardlinksView, &hardlinks},
                                                   {&junctionsView, &junctions},
                                                   {&reportView, &report}};
    state.ScanActive = true;
    for (const auto& [view, grid] : views) {
        for (const char* name : {"b", "c", "a"}) grid->addRow(kNoRow, name);
        grid->setSelected(grid->rowAt(0), true);
        view->GridColumnTitleClick(0);
        view->MouseUp(kNoRow, MouseButton::kLeft, false, {});
        view->MouseUp(grid->rowAt(1), MouseButton::kRight, false, {});
        for (const int key : {kKeyDown, kKeyReturn}) view->KeyUp(key);
        view->DblClick();
        EXPECT_EQ(textsOf(*grid), (Lines{"b", "c", "a"}));
        EXPECT_EQ(selectedIn(*grid), Lines{"b"});
        EXPECT_FALSE(grid->expanded(grid->rowAt(0)));
        EXPECT_EQ(status, "");
    }
}

TEST_F(Views, EndTheUnfoldingOfAllRowsAtStop) {
    const Row root = report.addRow(kNoRow, "/s");
    for (int i = 0; i < 5000; ++i) report.addRow(root, "more");
    pump.input = true;
    pump.onPump = [this] { state.CancelState = kCancelStop; };
    reportView.Report_ExpandAllFolders(true);
    std::size_t unfolded = 0;
    while (unfolded < report.rowCount() && report.expanded(report.rowAt(unfolded))) ++unfolded;
    EXPECT_TRUE(unfolded > 0 && unfolded < 2000) << unfolded;
    EXPECT_EQ(state.CancelState, kCancelNone);
}

TEST_F(Views, EscapeEndsTheWaitForADiskThatDoesNotAnswer) {
    disk.sources = {folder("/s", {file("f", 1)})};
    disk.waitsAt = 1;
    pump.onPump = [&] { state.CancelState = state.ScanActive ? kCancelEscape : kCancelNone; };
    filesView.List_Files_ScanFolder("/s/", true);
    EXPECT_EQ(disk.folders, Lines()) << "the reader was not asked again";
    EXPECT_FALSE(state.ScanActive);
}

TEST_F(Views, AFolderAskedForMeanwhileTakesThePlaceOfTheEarlierOne) {
    disk.sources = {folder("/s", {file("f", 1)}), folder("/t", {file("x", 5)})};
    bool first = true;
    pump.onPump = [&] {
        if (std::exchange(first, false)) filesView.List_Files_ScanFolder("/t", true);
    };
    filesView.List_Files_ScanFolder("/s/", true);
    EXPECT_EQ(state.fileList.folder, "/t/");
    EXPECT_EQ(textsOf(lvwFiles), Lines{"x"});
    EXPECT_EQ(status, "1 Datei(en) mit insgesamt 5 Bytes");
}

TEST_F(Views, OpenTheMenuOfTheTargetsOnlyInTheirColumn) {
    for (const char* name : {"/s/b", "/s/C"}) {
        const Row row = junctions.addRow(kNoRow, name);
        junctions.setCellText(row, kJunctionTarget, std::string("/to") + name);
        junctions.setSelected(row, true);
    }
    for (const std::size_t column : {1U, 0U, 2U, 9U}) {
        window.columnUnderPointer = column;
        junctionsView.MouseUp(junctions.rowAt(0), MouseButton::kRight, false, {});
        EXPECT_EQ(junctionsView.menuPaths(),
                  column == 1 ? (Lines{"/to/s/b", "/to/s/C"}) : (Lines{"/s/b", "/s/C"}));
    }
}

}  // namespace
}  // namespace hl::test
