// What mouse and keys do in the four lists.
#include <QDesktopServices>
#include <QHelpEvent>
#include <QTextBrowser>
#include <QToolTip>
#include <QWheelEvent>

#include "gui/lists_fixture.h"
#include "views/list_columns.h"

namespace hl {
namespace {

namespace fs = std::filesystem;
using namespace test;

TEST_F(ListsTest, EachTitleClickSortsByItsColumnAndTurnsTheOrderButOneThatEndsADragDoesNot) {
    someTree();
    ListSession s(home.path(), at("src"));
    for (const ListInfo& list : kAll) {
        GridView& view = s.open(list);
        const Grid& grid = view.grid();
        ASSERT_GT(grid.rowCount(), 2U);
        bool descending = true;
        for (const std::size_t column : view.shownColumns()) {
            s.clickTitleOf(view, static_cast<int>(column));
            descending = !descending;
            const CellId cell = grid.cell(grid.columns()[column].key);
            const auto compared = [&](Row a, Row b) -> double {
                if (cell == kNoCell) return compareFolded(grid.text(a), grid.text(b));
                if (!grid.cells().isText(cell)) return grid.number(a, cell) - grid.number(b, cell);
                return compareFolded(grid.cellText(a, cell), grid.cellText(b, cell));
            };
            for (std::size_t i = 1; i < grid.rowCount(); ++i) {
                const double order = compared(grid.rowAt(i - 1), grid.rowAt(i));
                EXPECT_TRUE(descending ? order >= 0 : order <= 0)
                    << list.bar << " column " << column << " row " << i;
            }
        }
        s.clickTitleOf(view, 0);
        const Names before = s.names(view);
        auto* titles = view.horizontalHeader()->viewport();
        const QPoint border = s.title(view, 0) + QPoint((view.columnWidth(0) - 1) / 2, 0),
                     end = border + QPoint(30, 0);
        QTest::mousePress(titles, Qt::LeftButton, {}, border);
        QMouseEvent move(QEvent::MouseMove, end, titles->mapToGlobal(end), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(titles, &move);
        QTest::mouseRelease(titles, Qt::LeftButton, {}, end);
        EXPECT_EQ(s.names(view), before) << list.bar;
        s.clickTitleOf(view, 0);
        EXPECT_EQ(s.names(view), Names(before.rbegin(), before.rend())) << list.bar;
    }
}

TEST_F(ListsTest, ASearchGoesOnBehindTheCurrentRowWrapsAroundAndKeepsTheFocusInItsBox) {
    someTree();
    ListSession s(home.path(), at("src"));
    const struct {
        const ListInfo& list;
        const char* part;
        std::vector<std::size_t> hits;  // One after another; the rows are sorted by name, upwards.
    } cases[] = {{kFileList, ".TXT", {2, 4, 0, 2}},
                 {kFileList, "D.dat", {3, 3}},
                 {kFileList, "nowhere", {0}},
                 {kTopList, ".TXT", {1, 3, 5, 8, 10, 0, 1}},
                 {kTopList, "src/sub", {0}},
                 {kHardlinkList, "src/SUB", {1, 2, 3, 4, 5, 6, 1}},
                 {kHardlinkList, "f.dat", {6, 11, 6}},
                 {kJunctionList, "to c", {2, 2}},
                 {kJunctionList, "/other", {1, 2, 0, 1}},
                 {kHardlinkList, "nowhere", {0}}};
    for (const auto& c : cases) {
        GridView& view = s.open(c.list);
        s.sortByName(view);
        s.clickOn(view, 0);
        s.typeIn(c.list, 307, c.part);
        for (const std::size_t hit : c.hits) {
            EXPECT_EQ(view.grid().indexOf(view.grid().currentRow()), hit) << c.list.bar << " " << c.part;
            EXPECT_EQ(view.grid().selectedRows(), std::vector{view.grid().currentRow()});
            EXPECT_TRUE(s.edit(c.list, 307).hasFocus());
            s.press(c.list, 308);
        }
    }
}

TEST_F(ListsTest, ColumnsGoAndComeBackAndSizesFollowTheirUnit) {
    someTree();
    file("src/large", 5 << 20);
    link("src/large", "src/sub/large");
    ListSession s(home.path(), at("src"));
    for (const ListInfo& list : kWithFiles) {
        GridView& view = s.open(list);
        const auto all = view.shownColumns();
        for (std::size_t column = 1; column < all.size(); ++column) {
            s.press(list, 309 + static_cast<int>(column));
            EXPECT_EQ(view.shownColumns().size(), all.size() - 1);
            EXPECT_TRUE(view.isColumnHidden(static_cast<int>(column))) << list.bar << column;
            s.press(list, 309 + static_cast<int>(column));
        }
        EXPECT_EQ(view.shownColumns(), all);
        const std::size_t size = list.id == GridId::kHardlinks ? std::size_t{kHardlinksSize} : kTopSize;
        const std::pair<int, const char*> units[] = {
            {302, "5.120,00"}, {303, "5,00"}, {309, "5"}, {301, "5.242.880"}};
        for (const auto& [entry, text] : units) {
            s.press(list, entry);
            EXPECT_EQ(view.cellText(size, view.grid().firstRoot()).toStdString(), text) << list.bar;
        }
    }
}

TEST_F(ListsTest, OnlyRowsThatShowGetTheirIcons) {
    options("ShowIcons=1\r\nShowIconsTop=1\r\nShowIconsHardlinks=1\r\nTOPmaxcount=400\r\n");
    folder("src/sub");
    for (int i = 0; i < 200; ++i) {
        file("src/" + std::to_string(i), i);
        link("src/" + std::to_string(i), "src/sub/" + std::to_string(i));
    }
    ListSession s(home.path(), at("src"));
    for (const ListInfo& list : kWithFiles) {
        GridView& view = s.open(list);
        const auto withIcon = [&] {
            std::size_t count = 0;
            for (Row row = view.grid().firstRoot(); row != kNoRow; row = view.grid().nextSibling(row))
                count += view.grid().picture(row) != 0 ? 1 : 0;
            return count;
        };
        const auto page = static_cast<std::size_t>(view.viewport()->height() / view.rowRect(0).height());
        const auto allShownHave = [&] {
            const RowRange shown = *view.visibleRange();
            for (std::size_t i = shown.first; i <= shown.last; ++i)
                if (view.grid().picture(view.grid().rowAt(i)) == 0) return false;
            return true;
        };
        EXPECT_TRUE(allShownHave()) << list.bar;
        EXPECT_LE(withIcon(), page + 1);
        QWheelEvent wheel({20, 20}, view.viewport()->mapToGlobal(QPoint(20, 20)), {}, {0, -120 * 2}, {}, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &wheel);
        s.settle();
        EXPECT_TRUE(allShownHave() && withIcon() > page + 1 && withIcon() < page + 20) << withIcon();
        s.key(view, Qt::Key_End);
        EXPECT_TRUE(allShownHave() && withIcon() <= 2 * page + 20) << list.bar;
        s.clickTitleOf(view, 0);
        EXPECT_TRUE(allShownHave()) << "others are visible after a sort";
        s.press(list, 305);
        EXPECT_EQ(withIcon(), 0U);
        s.press(list, 305);
        EXPECT_TRUE(allShownHave() && withIcon() <= page + 1) << list.bar;
    }
}

TEST_F(ListsTest, TheStatusTellsTheListAndWhatIsSelected) {
    someTree();
    ListSession s(home.path(), at("src"));
    const std::string whole[] = {"6 Datei(en) mit insgesamt 2.100 Bytes", "12 Datei(en)", "12 Datei(en)",
                                 "3 Junction(s)"};
    for (std::size_t i = 0; i < 4; ++i) {
        GridView& view = s.open(kAll[i]);
        const bool top = i == 1;
        const auto with = [&](const std::string& selected) {
            return i == 3 ? whole[i] : (top ? "" : whole[i] + " / ") + selected;
        };
        EXPECT_EQ(s.secondPanel(), whole[i]);
        s.clickOn(view, 0);
        EXPECT_EQ(s.secondPanel(), with("1 ausgewählte Datei(en) mit 600 Bytes"));
        s.clickOn(view, 2, Qt::ControlModifier);
        const std::string two = with(i == 0 ? "2 ausgewählte Datei(en) mit 1.000 Bytes"
                                            : "2 ausgewählte Datei(en) mit 1.100 Bytes");
        EXPECT_EQ(s.secondPanel(), two);
        s.key(view, Qt::Key_Up);
        // Keys leave the status of hardlinks and junctions alone.
        const std::string one =
            with("1 ausgewählte Datei(en) mit " + std::string(i == 0 ? "500" : "600") + " Bytes");
        EXPECT_EQ(s.secondPanel(), i < 2 ? one : two);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {20, view.viewport()->height() - 3});
        EXPECT_EQ(view.grid().selectedCount(), 0U);
        EXPECT_EQ(s.secondPanel(), whole[i]);
    }
}

TEST_F(ListsTest, ADoubleClickOpensFilesOfAnyNameAndNothingInTheJunctions) {
    folder("src");
    file("src/" + kBytes, 5);
    fs::create_hard_link(at("src/") + kBytes, at("src/second"));
    fs::create_directory_symlink(tree.path(), at("src/link"));
    ListSession s(home.path(), at("src"));
    for (const ListInfo& list : kAll) {
        GridView& view = s.open(list);
        const Names names = s.names(view);
        for (std::size_t i = 0; i < names.size(); ++i) {
            s.doubleClickOn(view, i);
            if (list.id == GridId::kJunctions) continue;
            ASSERT_FALSE(s.desktop.opened.empty()) << list.bar;
            EXPECT_EQ(s.desktop.opened.back(), at("src/") + names[i]);
        }
    }
    EXPECT_EQ(s.desktop.opened.size(), 6U);
}

TEST_F(ListsTest, TheBoxOfTheLengthTurnsWhatIsNoneIntoOneAndKeepsTheFocusThen) {
    ListSession s(home.path());
    s.start();
    GridView& view = s.open(kTopList);
    const char* const cases[][2] = {{"abc", "100"}, {"3", "5"}, {"30", "30"}, {"7x", "100"}, {"-1", "5"}};
    for (const auto& [typed, kept] : cases)
        for (const bool mouse : {false, true}) {
            s.typeIn(kTopList, 322, typed, mouse ? Qt::Key_Home : Qt::Key_Tab);
            if (mouse) QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {9, 9});
            s.settle();
            EXPECT_EQ(s.edit(kTopList, 322).text().toStdString(), kept) << typed;
            EXPECT_EQ(s.edit(kTopList, 322).hasFocus(), std::string(typed) != kept) << typed << mouse;
        }
}

TEST_F(ListsTest, TheRowUnderThePointerTellsItsFolder) {
    someTree();
    ListSession s(home.path(), at("src"));
    GridView& view = s.open(kTopList);
    const auto note = [&](std::size_t i) { return std::string(view.grid().rowNote(view.grid().rowAt(i))); };
    for (const std::size_t row : {3U, 4U}) {
        QTest::mouseMove(view.viewport(), s.place(view, row));
        const std::string folder(view.grid().cellText(view.grid().rowAt(row), kFilePath));
        EXPECT_EQ(note(row), " " + folder + " ");
        EXPECT_EQ(note(7 - row), "") << "no other row has one";
        const QPoint at = s.place(view, row);
        QHelpEvent help(QEvent::ToolTip, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &help);
        EXPECT_NE(QToolTip::text().toStdString().find(folder), std::string::npos);
    }
    s.scan(at("src"));
    const QPoint beside = s.place(view, 4) + QPoint(1, 0);
    QTest::mouseMove(view.viewport(), beside);
    EXPECT_NE(note(4), "") << "other rows with the same numbers";
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&view, &leave);
    EXPECT_EQ(note(4), "");
}

}  // namespace
}  // namespace hl
