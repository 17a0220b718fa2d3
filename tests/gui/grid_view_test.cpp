// What a view of a grid costs, and what it shows of the grid's changes.
#include <QScrollBar>

#include "gui/grid_view_fixture.h"
#include "platform/qt/grid_colors.h"

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
        const std::size_t before = view->rows().rebuilds();
        grid.setRedraw(redraw);
        addRoots(10000);
        for (int i = 0; i < 50; ++i) grid.setCurrentRow(grid.firstRoot());
        grid.setRedraw(true);
        QTest::qWait(0);
        EXPECT_EQ(view->rows().rebuilds(), before + 1);
        grid.setPicture(grid.rowAt(5), 3);
        QTest::qWait(0);
        EXPECT_EQ(view->rows().rebuilds(), before + 1);
    }
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
    EXPECT_EQ(takeLog(), Log{});
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
    EXPECT_EQ(takeLog(), Log{});
}

TEST_F(GridViewTest, ATitleClickNamesTheGridsColumnAlsoBehindAHiddenOne) {
    showTree();
    grid.changeColumn(1).visible = false;
    QTest::qWait(0);
    EXPECT_TRUE(view->isColumnHidden(1));
    auto* titles = view->horizontalHeader()->viewport();
    const QPoint onFiles(view->horizontalHeader()->sectionViewportPosition(2) + 20, 5);
    QTest::mouseClick(titles, Qt::LeftButton, {}, onFiles);
    EXPECT_EQ(takeLog(), Log{"title 2"});
    // A quick second click turns the order around like any other.
    doubleClick(titles, onFiles);
    EXPECT_EQ(takeLog(), (Log{"title 2", "title 2"}));
}

TEST_F(GridViewTest, ADragOfABorderIsToldOnceBeforeTheClickThatEndsIt) {
    showTree();
    const int before = view->columnWidth(0);
    dragBorder(*view, border(0), {5, 12, 30});
    EXPECT_EQ(takeLog(), (Log{"sizing", "title 0"}));
    EXPECT_EQ(grid.columns()[0].width, before + 30);
    QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {}, border(0));
    EXPECT_EQ(takeLog(), Log{});
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
    EXPECT_EQ(takeLog(), Log{});
}

TEST(GridColors, TextCanBeReadOnEveryShadeInALightAndADarkPalette) {
    for (const auto& [base, text] : {std::pair{QColor(Qt::white), QColor(Qt::black)},
                                     {QColor(0x1e, 0x1e, 0x1e), QColor(0xdd, 0xdd, 0xdd)}}) {
        QPalette palette;
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, text);
        for (std::uint32_t grey = 0; grey < 256; ++grey)
            EXPECT_GE(contrast(rowBackground(grey * 0x010101, palette), text), 4.5) << grey;
        // The first levels differ from one another, and from no shade at all.
        EXPECT_NE(rowBackground(0xF9F9F9, palette), base);
        EXPECT_NE(rowBackground(0xF9F9F9, palette), rowBackground(0xF3F3F3, palette));
        for (const QColor bar : {QColor(0, 0, 255), QColor(91, 150, 60), QColor(Qt::yellow)})
            EXPECT_GE(contrast(readableTint(bar, base, text, 110), text), 4.5);
    }
    EXPECT_EQ(readableOn(QColor(Qt::yellow), QColor(Qt::white)), QColor(Qt::black));
}

}  // namespace
}  // namespace hl
