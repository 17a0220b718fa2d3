// What keys and the mouse do in a grid, and what the logic hears of it.
#include <QContextMenuEvent>

#include "gui/grid_view_fixture.h"

namespace hl {
namespace {

TEST_F(GridViewTest, ClicksPickAsEveryListDoes) {
    showRoots(9);
    const auto control = Qt::ControlModifier, shift = Qt::ShiftModifier;
    using Step = std::tuple<const char*, Qt::KeyboardModifiers, Qt::MouseButton, const char*, const char*>;
    // One after the other.
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
        EXPECT_EQ(takeLog(), Log{log});
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
    EXPECT_EQ(takeLog(), Log{"up r0 1"});
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
    EXPECT_EQ(takeLog(), (Log{"key 38", "key 40", "key 113", "key 46", "key 40"}));
    // Held down: the toolkit sends releases that are none. And a release whose press went elsewhere.
    QTest::keyPress(view.get(), Qt::Key_Down);
    QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Down, {}, {}, true);
    QApplication::sendEvent(view.get(), &repeated);
    EXPECT_EQ(takeLog(), Log{});
    QTest::keyRelease(view.get(), Qt::Key_Down);
    QTest::keyRelease(view.get(), Qt::Key_Up);
    EXPECT_EQ(takeLog(), Log{"key 40"});
}

TEST_F(GridViewTest, TheMenuKeyAndShiftF10AreARightClickOnTheCurrentRow) {
    showRoots(3);
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {5, 5}, {5, 5});
    QApplication::sendEvent(view->viewport(), &menu);
    EXPECT_EQ(takeLog(), Log{});
    grid.setCurrentRow(grid.rowAt(1));
    QApplication::sendEvent(view->viewport(), &menu);
    EXPECT_EQ(takeLog(), Log{"up r1 2"});
    EXPECT_EQ(picked(), "r1 @r1");
    QTest::keyClick(view.get(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(takeLog(), Log{"up r1 2"});
}

TEST_F(GridViewTest, TypedTextFindsTheNextRowThatBeginsWithIt) {
    for (const char* text : {"Alpha", "beta", "Bravo", "b c", "Ärmel"}) grid.addRow(kNoRow, text);
    show();
    using Case = std::tuple<const char*, const char*, const char*>;
    for (const auto& [from, typed, found] :
         {Case{"Alpha", "b", "beta"}, Case{"Alpha", "br", "Bravo"}, Case{"beta", "b", "Bravo"},
          Case{"Alpha", "bb", "Bravo"}, Case{"b c", "a", "Alpha"}, Case{"Alpha", "b c", "b c"},
          Case{"Alpha", "x", "Alpha"}, Case{"Bravo", "BE", "beta"}}) {
        view->clearFocus();  // Ends a search.
        view->setFocus();
        grid.setCurrentRow(row(from));
        QTest::keyClicks(view.get(), typed);
        EXPECT_EQ(told.name(grid.currentRow()), found) << from << typed;
    }
}

TEST_F(GridViewTest, TreeKeysFoldAndMove) {
    showTree();
    using Step = std::tuple<int, const char*, const char*, Log>;
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
    EXPECT_EQ(takeLog(), (Log{"fold aa", "fold b", "fold b"}));
    EXPECT_EQ(picked(), "@-");
    // A row without children has none.
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, branchOf("c"));
    EXPECT_EQ(picked(), "c @c");
    doubleClick(view->viewport(), at("b"));
    doubleClick(view->viewport(), at("none"));
    EXPECT_EQ(takeLog(), (Log{"up c 1", "up b 1", "double", "up - 1", "up - 1"}));
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
        EXPECT_EQ(takeLog(), Log{});
        grid.setRedraw(true);
        EXPECT_EQ(shown(), "a aa ab b c ");
    }
}

}  // namespace
}  // namespace hl
