// Tests views/list_view.h: what the four lists have in common, and where they differ.
#include "views/list_view.h"

#include "views/list_fixture.h"

namespace hl::test {
namespace {

struct Lists : ListFixture {};

TEST_F(Lists, PreviewAHitOfTheSearchWhereTheyHaveFilesOfOneFolder) {
    for (const List* list : all) {
        list->bar.setText(idOf(Command::kFilesSearchText), "A");
        select(list->grid, {1});
        list->view.StartSearch();
        EXPECT_EQ(list->grid.currentRow(), list->grid.rowAt(2));
        EXPECT_EQ(taken(), list == &filesList ? Lines{"preview"} : Lines());
    }
    hardlinks.setCellText(hardlinks.rowAt(0), kFilePath, "/x/a.txt/");
    cbrHardlinks.setText(idOf(Command::kHardlinksSearchText), "a.txt");
    select(hardlinks, {2});
    hardlinksView.StartSearch();
    EXPECT_EQ(hardlinks.currentRow(), hardlinks.rowAt(0)) << "a folder above the name comes first";
}

TEST_F(Lists, ShowSizesInTheUnitOfTheirCommandAndSumThemInTheStatus) {
    for (const List* list : {&filesList, &topList, &hardlinksList}) {
        select(list->grid, {0, 1});
        *list->mode = 1;
        *list->decimals = 1;
        list->view.Set_SizeFormat();
        const GridColumn& column = list->grid.columns()[list->sizeColumn];
        EXPECT_EQ(column.unit, kModeKilobytes);
        EXPECT_TRUE(has(column.mask, "0.00"));
        EXPECT_TRUE(has(status, " / 2 ausgewählte Datei(en) mit 6.00 KB"));
        list->view.GridColumnTitleClick(list->sizeColumn);
        EXPECT_EQ(list->grid.levelSort(0).key, "size") << "two sizes that show alike are sorted, too";
        EXPECT_TRUE(list->grid.topRow() == list->grid.rowAt(0) && list->grid.redraw());
        *list->mode = 0;
        list->view.Set_SizeFormat();
        EXPECT_TRUE(has(status, "mit 6,144 Bytes"));
    }
}

TEST_F(Lists, KeepASelectionForTheMenuAndDropItOutsideOfTheRows) {
    for (const List* list : all) {
        const auto withPreview = [&](const Lines& calls) { return list == &junctionsList ? Lines() : calls; };
        select(list->grid, {0, 1});
        list->view.MouseUp(list->grid.rowAt(1), MouseButton::kRight, false, {});
        EXPECT_EQ(selectedIn(list->grid).size(), 2U);
        EXPECT_EQ(taken(), list == &junctionsList ? Lines{"menu"} : (Lines{"preview", "menu"}));
        list->view.MouseUp(list->grid.rowAt(2), MouseButton::kRight, false, {});
        EXPECT_EQ(selectedIn(list->grid), Lines{std::string(list->grid.text(list->grid.rowAt(2)))});
        EXPECT_EQ(taken(), list == &junctionsList ? Lines{"menu"} : (Lines{"preview", "menu"}));
        list->view.MouseUp(list->grid.rowAt(2), MouseButton::kMiddle, false, {});
        EXPECT_EQ(taken(), withPreview({"preview!"}));
        list->view.MouseUp(kNoRow, MouseButton::kLeft, false, {});
        EXPECT_EQ(list->grid.selectedCount(), 0U);
        EXPECT_EQ(taken(), withPreview({"preview"}));
    }
}

TEST_F(Lists, AnswerKeysAndDoubleClicksWhereTheyHaveFiles) {
    const std::tuple<List&, Lines, Lines, Lines> cases[] = {
        {filesList, {"preview"}, {"rename"}, {"open /s/C.png"}},
        {topList, {"preview"}, {"rename"}, {"open /s/C/C.png"}},
        {hardlinksList, {}, {"rename"}, {"open /s/C/C.png"}},
        {junctionsList, {}, {}, {}}};
    for (const auto& [list, moved, renamed, opened] : cases) {
        select(list.grid, {1});
        for (const int key : {33, 34, 38, 40}) {
            list.view.KeyUp(key);
            EXPECT_EQ(taken(), moved) << key;
        }
        list.view.KeyUp(kKeyF2);
        EXPECT_EQ(taken(), renamed);
        select(list.grid, {1, 0});
        list.view.DblClick();
        EXPECT_EQ(taken(), opened) << "of two the current one";
        list.view.KeyUp(kKeyReturn);
        EXPECT_EQ(taken(), opened);
        list.view.KeyUp(kKeyF2);
        EXPECT_EQ(taken(), Lines()) << "one row has a name to edit, two have not";
    }
}

TEST_F(Lists, IgnoreTheUserWhileTheWindowIsLocked) {
    state.ScanActive = true;
    for (const List* list : all) {
        const Lines before = textsOf(list->grid);
        select(list->grid, {1});
        list->view.GridColumnTitleClick(0);
        list->view.MouseUp(kNoRow, MouseButton::kLeft, false, {});
        list->view.MouseUp(list->grid.rowAt(0), MouseButton::kRight, false, {});
        list->view.KeyUp(kKeyDown);
        list->view.DblClick();
        EXPECT_EQ(textsOf(list->grid), before);
        EXPECT_EQ(list->grid.selectedCount(), 1U);
        EXPECT_EQ(taken(), Lines());
    }
}

TEST_F(Lists, LoadNoIconsOfListsThatARunStillFills) {
    options.ShowIcons = options.ShowIconsTop = options.ShowIconsHardlinks = 1;
    state.ScanActive = true;
    for (const List* list : all) list->view.SetFileIcons(false);
    EXPECT_EQ(top.picture(top.rowAt(0)) + hardlinks.picture(hardlinks.rowAt(0)), 0);
    EXPECT_NE(lvwFiles.picture(lvwFiles.rowAt(0)), 0);
}

struct Files : ListFixture {
    Files() {
        lvwFiles.clear();
        state.currentFolder.clear();
        disk.sources = {folder("/s", {file("f", 1), folder("b"), file("g", 4000)}),
                        folder("/t", {file("x", 5)})};
    }
};

TEST_F(Files, EscapeEndsTheWaitForADiskThatDoesNotAnswer) {
    disk.waitsAt = 1;
    pump.onPump = [&] { state.CancelState = state.ScanActive ? kCancelEscape : kCancelNone; };
    filesView.List_Files_ScanFolder("/s/", true);
    EXPECT_EQ(disk.folders, Lines()) << "the reader was not asked again";
    EXPECT_FALSE(state.ScanActive);
}

TEST_F(Files, AFolderAskedForMeanwhileTakesThePlaceOfTheEarlierOne) {
    bool first = true;
    pump.onPump = [&] {
        if (std::exchange(first, false)) filesView.List_Files_ScanFolder("/t", true);
    };
    filesView.List_Files_ScanFolder("/s/", true);
    EXPECT_EQ(state.currentFolder, "/t/");
    EXPECT_EQ(textsOf(lvwFiles), Lines{"x"});
    EXPECT_EQ(status, "1 Datei(en) mit insgesamt 5 Bytes");
}

TEST_F(Lists, OpenTheMenuOfTheTargetsOnlyInTheirColumn) {
    select(junctions, {0, 1});
    for (const std::size_t column : {1U, 0U, 2U, 9U}) {
        window.columnUnderPointer = column;
        junctionsView.MouseUp(junctions.rowAt(0), MouseButton::kRight, false, {});
        EXPECT_EQ(junctionsView.menuPaths(),
                  column == 1 ? (Lines{"/to/s/b", "/to/s/C"}) : (Lines{"/s/b", "/s/C"}));
    }
}

}  // namespace
}  // namespace hl::test
