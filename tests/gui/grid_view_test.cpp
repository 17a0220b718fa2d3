// Tests what a view of a grid costs, what it shows of the changes of the grid, and what keys and the mouse do
// in it.

#include "gui/grid_view_fixture.h"
#include "platform/qt/grid/grid_colors.h"

namespace hl {
namespace {

TEST_F(GridViewTest, PaintingAsksForTheTextsOfRowsOnScreenAlone) {
    showRoots(50000);
    view->scrollIntoView(grid.rowAt(30000));
    asked.clear();
    view->grab();
    EXPECT_LE(asked.size(), 300U / 15);
    EXPECT_TRUE(asked.contains(grid.rowAt(30000)));
}

TEST_F(GridViewTest, ManyChangesCostOneListOfRowsWithRedrawOnAndOff) {
    show();
    for (const bool redraw : {true, false}) {
        const std::size_t before = view->rows().changes();
        grid.setRedraw(redraw);
        addRoots(10000);
        for (int i = 0; i < 50; ++i) grid.setCurrentRow(grid.firstRoot());
        grid.setRedraw(true);
        QTest::qWait(0);
        EXPECT_EQ(view->rows().changes(), before + 1);
    }
}

TEST_F(GridViewTest, AChangeCostsThePaintingOfItsRowAndTheListingOfItsBranch) {
    showTree();
    addRoots(500);
    const Row branch = row("b"), last = row("r499");
    for (int i = 0; i < 100; ++i) grid.addRow(branch, "child");
    settle();
    for (const Row changed : {row("ab"), last}) {
        asked.clear();
        grid.setNumber(changed, 0, 7);
        settle();
        EXPECT_EQ(asked, changed == last ? std::set<Row>() : std::set{changed});
    }
    const std::size_t before = view->rows().rebuilds();
    grid.setExpanded(branch, true);
    view->sync();
    EXPECT_EQ(view->rows().count(), 505U + 101U);
    grid.removeRow(grid.firstChild(branch));
    grid.removeRow(row("a"));
    grid.addRow(kNoRow, "new");
    EXPECT_EQ(shown().substr(0, 8), "b child ");
    EXPECT_EQ(view->rows().rebuilds(), before);
}

/// Changes a small tree again and again without any order.
struct Changer {
    Grid& grid;
    std::mt19937 random{7};

    std::size_t below(std::size_t limit) { return random() % limit; }
    Row any() { return grid.rowCount() == 0 ? kNoRow : grid.rowAt(below(grid.rowCount())); }
    void change() {
        const Row row = any();
        const std::size_t what = below(row == kNoRow ? 2 : 12);
        if (what < 4 && grid.rowCount() < 60) {
            grid.addRow(below(5) == 0 ? kNoRow : row, "n" + std::to_string(below(1000)));
        } else if (row == kNoRow || what < 6) {
            if (row != kNoRow) grid.removeRow(row);
        } else if (what < 9) {
            grid.setExpanded(row, !grid.expanded(row));
        } else if (what == 9) {
            grid.setText(row, "t" + std::to_string(below(1000)));
        } else if (what == 10) {
            grid.setBackColor(row, 0xFFCC00);
        } else {
            grid.setRowNote(row, "note" + std::to_string(below(9)));
        }
    }
};

TEST_F(GridViewTest, AfterAnyChangesTheScreenShowsWhatAFreshViewPaints) {
    showTree();
    Changer changer{grid};
    VisibleRows fresh(grid);
    std::size_t updates = 0;
    for (int step = 0; step < 200 && !HasFailure(); ++step) {
        const std::size_t before = view->rows().rebuilds();
        grid.setRedraw(changer.below(3) == 0);
        for (std::size_t i = changer.below(8); i > 0; --i) changer.change();
        grid.setRedraw(true);
        if (changer.below(2) == 0) changer.change();
        if (changer.below(9) == 0) grid.sortLevels(2);
        settle();
        fresh.rebuild();
        ASSERT_EQ(view->rows().count(), fresh.count()) << step;
        for (std::size_t i = 0; i < fresh.count(); ++i) ASSERT_EQ(view->rows().at(i), fresh.at(i)) << step;
        EXPECT_EQ(view->model()->rowCount(), view->verticalHeader()->count());
        const QImage there = view->screen()->grabWindow(view->winId()).toImage();
        ASSERT_EQ(there, view->grab().toImage().convertToFormat(there.format())) << step;
        updates += view->rows().rebuilds() == before ? 1 : 0;
    }
    EXPECT_GT(updates, 100U);
}

TEST_F(GridViewTest, AColumnIsMeasuredByABoundedSampleAndByTheRootRows) {
    addRoots(20);
    const Row root = grid.rowAt(0);
    for (int i = 0; i < 50000; ++i) grid.addRow(root, "child");
    grid.setExpanded(root, true);
    grid.setText(grid.rowAt(grid.rowCount() - 1), std::string(80, 'W'));
    show();
    view->resize(4000, 300);
    for (const bool redraw : {true, false}) {
        questions = 0;
        grid.setRedraw(redraw);
        view->autosizeColumn(0, 96);
        grid.setRedraw(true);
        EXPECT_LT(questions, 1000U);
        EXPECT_GT(grid.columns()[0].width, 80 * view->fontMetrics().horizontalAdvance('W'));
    }
}

TEST_F(GridViewTest, TheTopRowStaysOnTopWhateverIsAddedAboveItButAtTheVeryTopTheFirstIsShown) {
    showRoots(500);
    const Row top = grid.rowAt(200);
    grid.setTopRow(top);
    QTest::qWait(0);
    EXPECT_EQ(view->rowAt({50, 2}), top);
    const Row parent = grid.rowAt(10);
    for (int i = 0; i < 50; ++i) grid.addRow(parent, "new");
    grid.setExpanded(parent, true);
    grid.removeRow(grid.rowAt(0));
    EXPECT_EQ(view->rowAt({50, 2}), top);
    grid.removeRow(top);
    EXPECT_EQ(told.name(view->rowAt({50, 2})), "r201");
    view->verticalScrollBar()->setValue(0);
    grid.levelSort(0) = {.key = "", .numbers = false, .descending = true};
    grid.sortLevels(0);
    EXPECT_EQ(told.name(view->rowAt({50, 2})), "r99");
}

TEST_F(GridViewTest, WhatTheUserScrollsToIsTheGridsTopRowAlsoBetweenTwoChanges) {
    showRoots(500);
    view->verticalScrollBar()->setValue(100);
    EXPECT_EQ(told.name(grid.topRow()), "r100");
    grid.addRow(kNoRow, "late");
    view->verticalScrollBar()->setValue(120);
    QTest::qWait(0);
    EXPECT_EQ(told.name(grid.topRow()), "r120");
}

TEST_F(GridViewTest, ANewCurrentRowComesIntoSightAndAnUnchangedOneDoesNotScroll) {
    showRoots(500);
    grid.setCurrentRow(grid.rowAt(300));
    QTest::qWait(0);
    EXPECT_TRUE(view->viewport()->rect().contains(at("r300")));
    grid.setTopRow(grid.rowAt(0));
    QTest::qWait(0);
    grid.setSelected(grid.rowAt(7), true);
    QTest::qWait(0);
    EXPECT_EQ(told.name(view->rowAt({50, 2})), "r0");
}

TEST_F(GridViewTest, ScrollingToAHiddenRowUnfoldsWhatHidesIt) {
    showTree();
    view->scrollIntoView(row("aaa"));
    EXPECT_EQ(shown(), "a aa aaa ab b c ");
}

TEST_F(GridViewTest, ARepaintWhileRedrawIsOffShowsNoRowThatIsGone) {
    showRoots(300);
    grid.setTopRow(grid.rowAt(100));
    view->grab();
    grid.setRedraw(false);
    grid.clear();
    grid.addRow(kNoRow, "left");
    asked.clear();
    view->grab();
    EXPECT_EQ(asked, std::set<Row>{grid.firstRoot()});
    EXPECT_EQ(view->rowAt({50, 2}), kNoRow);
    grid.setRedraw(true);
    EXPECT_EQ(told.name(view->rowAt({50, 2})), "left");
    EXPECT_EQ(takeLog(), LogLines{});
}

TEST_F(GridViewTest, AnErrorInAPaintIsToldAndTheViewGoesOn) {
    showTree();
    broken = true;
    view->grab();
    EXPECT_EQ(takeLog().at(0), "fault GridView::paintEvent");
    broken = false;
    asked.clear();
    view->grab();
    EXPECT_EQ(asked.size(), 5U);
    EXPECT_EQ(takeLog(), LogLines{});
}

TEST_F(GridViewTest, ATitleClickNamesTheGridsColumnAlsoBehindAHiddenOne) {
    showTree();
    grid.changeColumn(1).visible = false;
    QTest::qWait(0);
    EXPECT_TRUE(view->isColumnHidden(1));
    auto* titles = view->horizontalHeader()->viewport();
    const QPoint onFiles(view->horizontalHeader()->sectionViewportPosition(2) + 20, 5);
    QTest::mouseClick(titles, Qt::LeftButton, {}, onFiles);
    EXPECT_EQ(takeLog(), LogLines{"title 2"});
    // A quick second click reverses the order like any other.
    doubleClick(titles, onFiles);
    EXPECT_EQ(takeLog(), (LogLines{"title 2", "title 2"}));
}

TEST_F(GridViewTest, ADragOfABorderIsToldOnceBeforeTheClickThatEndsIt) {
    showTree();
    const int before = view->columnWidth(0);
    dragBorder(*view, border(0), {5, 12, 30});
    EXPECT_EQ(takeLog(), (LogLines{"sizing", "title 0"}));
    EXPECT_EQ(grid.columns()[0].width, before + 30);
    QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {}, border(0));
    EXPECT_EQ(takeLog(), LogLines{});
}

TEST_F(GridViewTest, ADoubleClickOnABorderFitsTheColumnAndBesideTheTitlesDoesNothing) {
    showTree();
    view->autosizeColumn(0, 96);
    const double fitting = grid.columns()[0].width;
    grid.changeColumn(0).width = 333;
    QTest::qWait(0);
    EXPECT_EQ(view->columnWidth(0), 333);
    doubleClick(view->horizontalHeader()->viewport(), border(0));
    EXPECT_EQ(grid.columns()[0].width, fitting);
    doubleClick(view->horizontalHeader()->viewport(), {view->horizontalHeader()->length() + 20, 5});
    EXPECT_EQ(takeLog(), LogLines{});
}

TEST(GridColors, TextCanBeReadOnEveryShadeInALightAndADarkPalette) {
    for (const auto& [base, text] : {std::pair{QColor(Qt::white), QColor(Qt::black)},
                                     {QColor(0x1e, 0x1e, 0x1e), QColor(0xdd, 0xdd, 0xdd)}}) {
        QPalette palette;
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, text);
        for (std::uint32_t grey = 0; grey < 256; ++grey) {
            const QColor ground = rowBackground(grey * 0x010101, palette);
            EXPECT_GE(contrast(ground, text), 4.5) << grey;
            EXPECT_GE(contrast(ground, dimmedOn(ground, text)), 4.5) << grey << ", for a note";
        }
        // The first levels differ from one another, and from the background without a shade.
        EXPECT_NE(rowBackground(0xF9F9F9, palette), base);
        EXPECT_NE(rowBackground(0xF9F9F9, palette), rowBackground(0xF3F3F3, palette));
        for (const QColor bar : {QColor(0, 0, 255), QColor(91, 150, 60), QColor(Qt::yellow)})
            EXPECT_GE(contrast(readableTint(bar, base, text, 110), text), 4.5);
    }
    EXPECT_EQ(readableOn(QColor(Qt::yellow), QColor(Qt::white)), QColor(Qt::black));
}

TEST_F(GridViewTest, ClicksPickAsEveryListDoes) {
    showRoots(9);
    const auto control = Qt::ControlModifier, shift = Qt::ShiftModifier;
    using Step = std::tuple<const char*, Qt::KeyboardModifiers, Qt::MouseButton, const char*, const char*>;
    // The steps follow one another.
    for (const auto& [on, keys, button, now, log] :
         {Step{"r2", {}, Qt::LeftButton, "r2 @r2", "up r2 1"},
          Step{"r5", shift, Qt::LeftButton, "r2 r3 r4 r5 @r5", "up r5 1s"},
          Step{"r1", shift, Qt::LeftButton, "r1 r2 @r1", "up r1 1s"},
          Step{"r7", control, Qt::LeftButton, "r1 r2 r7 @r7", "up r7 1s"},
          Step{"r1", control, Qt::LeftButton, "r2 r7 @r1", "up r1 1s"},
          Step{"r3", control | shift, Qt::LeftButton, "r1 r2 r3 r7 @r3", "up r3 1s"},
          Step{"r7", {}, Qt::RightButton, "r1 r2 r3 r7 @r3", "up r7 2"},
          Step{"none", control, Qt::LeftButton, "r1 r2 r3 r7 @r3", "up - 1s"},
          Step{"r8", {}, Qt::RightButton, "r8 @r8", "up r8 2"},
          Step{"r0", {}, Qt::MiddleButton, "r0 @r0", "up r0 4"},
          Step{"none", {}, Qt::LeftButton, "@r0", "up - 1"}}) {
        click(on, keys, button);
        EXPECT_EQ(picked(), now) << on;
        EXPECT_EQ(takeLog(), LogLines{log});
    }
}

TEST_F(GridViewTest, ADragPicksTheRowsItPassesAndEndsAtTheLastOne) {
    showRoots(40);
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, at("r2"));
    QTest::mouseMove(view->viewport(), at("r4"));
    EXPECT_EQ(picked(), "r2 r3 r4 @r4");
    QTest::mouseMove(view->viewport(), {150, -20});
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, {150, -20});
    EXPECT_EQ(picked(), "r0 r1 r2 @r0");
    EXPECT_EQ(takeLog(), LogLines{"up r0 1"});
}

TEST_F(GridViewTest, KeysMoveAndPick) {
    showRoots(100, false);
    const auto control = Qt::ControlModifier, shift = Qt::ShiftModifier;
    using Step = std::tuple<int, Qt::KeyboardModifiers, const char*>;
    for (const auto& [code, keys, expected] :
         {Step{Qt::Key_Down, {}, "r0 @r0"}, Step{Qt::Key_Down, {}, "r1 @r1"},
          Step{Qt::Key_Down, shift, "r1 r2 @r2"}, Step{Qt::Key_Up, shift, "r1 @r1"},
          Step{Qt::Key_Up, shift, "r0 r1 @r0"}, Step{Qt::Key_Up, {}, "r0 @r0"},
          Step{Qt::Key_Up, {}, "r0 @r0"}, Step{Qt::Key_Down, control, "r0 @r1"},
          Step{Qt::Key_Down, control, "r0 @r2"}, Step{Qt::Key_Space, control, "r0 r2 @r2"},
          Step{Qt::Key_Space, {}, "r2 @r2"}, Step{Qt::Key_End, {}, "r99 @r99"},
          Step{Qt::Key_Down, {}, "r99 @r99"}, Step{Qt::Key_Home, {}, "r0 @r0"}}) {
        key(code, keys);
        EXPECT_EQ(picked(), expected) << code;
    }
    key(Qt::Key_PageDown);
    EXPECT_TRUE(view->viewport()->rect().contains(at(told.name(grid.currentRow()))));
    EXPECT_GT(grid.indexOf(grid.currentRow()), 3U);
    key(Qt::Key_PageUp);
    EXPECT_EQ(picked(), "r0 @r0");
    key(Qt::Key_A, control);
    EXPECT_EQ(grid.selectedCount(), 100U);
}

TEST_F(GridViewTest, TheLogicHearsOfTheReleaseOfKeysThatMoveOrAskOncePerPress) {
    showRoots(3);
    for (const int code : {Qt::Key_Up, Qt::Key_Down, Qt::Key_F2, Qt::Key_Delete, Qt::Key_Home, Qt::Key_X})
        key(code);
    EXPECT_EQ(takeLog(), (LogLines{"key 38", "key 40", "key 113", "delete", "key 40"}));
    // While a key is held down, the toolkit sends false releases. The other release belongs to a press that
    // went elsewhere.
    QTest::keyPress(view.get(), Qt::Key_Down);
    QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Down, {}, {}, true);
    QApplication::sendEvent(view.get(), &repeated);
    EXPECT_EQ(takeLog(), LogLines{});
    QTest::keyRelease(view.get(), Qt::Key_Down);
    QTest::keyRelease(view.get(), Qt::Key_Up);
    EXPECT_EQ(takeLog(), LogLines{"key 40"});
}

TEST_F(GridViewTest, TheMenuKeyAndShiftF10AreARightClickOnTheCurrentRow) {
    showRoots(3);
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {5, 5}, {5, 5});
    QApplication::sendEvent(view->viewport(), &menu);
    EXPECT_EQ(takeLog(), LogLines{});
    grid.setCurrentRow(grid.rowAt(1));
    QApplication::sendEvent(view->viewport(), &menu);
    EXPECT_EQ(takeLog(), LogLines{"up r1 2"});
    EXPECT_EQ(picked(), "r1 @r1");
    QTest::keyClick(view.get(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(takeLog(), LogLines{"up r1 2"});
}

TEST_F(GridViewTest, TypedTextFindsTheNextRowThatBeginsWithIt) {
    for (const char* text : {"Alpha", "beta", "Bravo", "b c", "Ärmel"}) grid.addRow(kNoRow, text);
    show();
    using Case = std::tuple<const char*, const char*, const char*>;
    for (const auto& [from, typed, found] :
         {Case{"Alpha", "b", "beta"}, Case{"Alpha", "br", "Bravo"}, Case{"beta", "b", "Bravo"},
          Case{"Alpha", "bb", "Bravo"}, Case{"b c", "a", "Alpha"}, Case{"Alpha", "b c", "b c"},
          Case{"Alpha", "x", "Alpha"}, Case{"Bravo", "BE", "beta"}}) {
        view->clearFocus();  // This ends a search.
        view->setFocus();
        grid.setCurrentRow(row(from));
        QTest::keyClicks(view.get(), typed);
        EXPECT_EQ(told.name(grid.currentRow()), found) << from << typed;
    }
}

TEST_F(GridViewTest, TreeKeysFoldAndMove) {
    showTree();
    using Step = std::tuple<int, const char*, const char*, LogLines>;
    grid.setCurrentRow(row("a"));
    for (const auto& [code, now, rows, log] :
         {Step{Qt::Key_Right, "aa @aa", "a aa ab b c ", {"key 40"}},
          Step{Qt::Key_Right, "aa @aa", "a aa aaa ab b c ", {"fold aa"}},
          Step{Qt::Key_Right, "aaa @aaa", "a aa aaa ab b c ", {"key 40"}},
          Step{Qt::Key_Right, "aaa @aaa", "a aa aaa ab b c ", {}},
          Step{Qt::Key_Left, "aa @aa", "a aa aaa ab b c ", {"key 40"}},
          Step{Qt::Key_Left, "aa @aa", "a aa ab b c ", {"fold aa"}},
          Step{Qt::Key_Plus, "aa @aa", "a aa aaa ab b c ", {"fold aa"}},
          Step{Qt::Key_Plus, "aa @aa", "a aa aaa ab b c ", {}},
          Step{Qt::Key_Left, "aa @aa", "a aa ab b c ", {"fold aa"}},
          Step{Qt::Key_Left, "a @a", "a aa ab b c ", {"key 40"}},
          Step{Qt::Key_Minus, "a @a", "a b c ", {"fold a"}},
          Step{Qt::Key_Asterisk, "a @a", "a aa aaa ab b c ", {"fold a"}}}) {
        key(code);
        EXPECT_EQ(picked(), now);
        EXPECT_EQ(shown(), rows);
        EXPECT_EQ(takeLog(), log);
    }
}

TEST_F(GridViewTest, TheBranchMarkFoldsAndADoubleClickElsewhereIsLeftToTheLogic) {
    showTree();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, branchOf("aa"));
    EXPECT_EQ(shown(), "a aa aaa ab b c ");
    doubleClick(view->viewport(), branchOf("b"));
    EXPECT_EQ(takeLog(), (LogLines{"fold aa", "fold b", "fold b"}));
    EXPECT_EQ(picked(), "@-");
    // A row without children has no such sign.
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, branchOf("c"));
    EXPECT_EQ(picked(), "c @c");
    doubleClick(view->viewport(), at("b"));
    doubleClick(view->viewport(), at("none"));
    EXPECT_EQ(takeLog(), (LogLines{"up c 1", "up b 1", "double", "up - 1", "up - 1"}));
    EXPECT_EQ(shown(), "a aa aaa ab b c ");
}

TEST_F(GridViewTest, InputDoesNothingWhileTheGridIsLocked) {
    showTree();
    for (const bool redraw : {true, false}) {
        grid.setEnabled(!redraw);
        grid.setRedraw(redraw);
        click("b");
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, branchOf("a"));
        doubleClick(view->viewport(), at("b"));
        for (const int code : {Qt::Key_Down, Qt::Key_Asterisk, Qt::Key_F2, Qt::Key_B}) key(code);
        QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 5});
        EXPECT_EQ(picked(), "@-");
        EXPECT_EQ(takeLog(), LogLines{});
        grid.setRedraw(true);
        EXPECT_EQ(shown(), "a aa ab b c ");
    }
}

}  // namespace
}  // namespace hl
