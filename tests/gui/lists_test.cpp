// Tests what mouse and keys do in the four lists.

#include "gui/lists_fixture.h"

namespace hl::test {
namespace {

TEST_F(ListsTest, ATitleClickSortsAndTurnsTheOrderButOneThatEndsADragDoesNot) {
    someTree();
    ListSession s(home.path(), at("src"));
    for (const ListInfo& list : kAll) {
        GridView& view = s.open(list);
        s.clickTitleOf(view, 0);
        const Names before = s.names(view);
        const QPoint border = s.title(view, 0) + QPoint((view.columnWidth(0) - 1) / 2, 0);
        dragBorder(view, border, {30});
        EXPECT_EQ(s.names(view), before) << static_cast<int>(list.id);
        s.clickTitleOf(view, 0);
        EXPECT_EQ(s.names(view), Names(before.rbegin(), before.rend())) << static_cast<int>(list.id);
        if (list.columns == Command::kNone || list.id == GridId::kHardlinks) continue;
        s.clickTitleOf(view, 1);
        const LevelSort& sort = view.grid().levelSort(0);
        EXPECT_TRUE(sort.key == "size" && sort.numbers) << "by bytes, though two may show alike";
        EXPECT_EQ(view.grid().topRow(), view.grid().rowAt(0));
    }
}

TEST_F(ListsTest, ASearchGoesOnBehindTheCurrentRowWrapsAroundAndKeepsTheFocusInItsBox) {
    someTree();
    ListSession s(home.path(), at("src"));
    const struct {
        const ListInfo& list;
        const char* part;
        std::vector<std::size_t> hits;  // They come one by one; the rows are sorted by name, ascending.
    } cases[] = {{kFileList, ".TXT", {2, 4, 0, 2}}, {kFileList, "nowhere", {0}},
                 {kTopList, "src/sub", {0}},        {kHardlinkList, "src/SUB", {1, 2, 3, 4, 5, 6, 1}},
                 {kJunctionList, "to c", {2, 2}},   {kJunctionList, "/other", {1, 2, 0, 1}}};
    for (const auto& c : cases) {
        GridView& view = s.open(c.list);
        s.sortByName(view);
        s.clickOn(view, 0);
        s.type(c.list.searchText, c.part, Qt::Key_Return);
        for (const std::size_t hit : c.hits) {
            EXPECT_EQ(view.grid().indexOf(view.grid().currentRow()), hit)
                << static_cast<int>(c.list.id) << " " << c.part;
            EXPECT_TRUE(s.edit(c.list.searchText).hasFocus());
            s.click(c.list.searchText + 1);
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
        const auto rows = static_cast<std::size_t>(view.viewport()->height() / view.rowRect(0).height());
        const auto expectIcons = [&](std::size_t most, const char* when) {
            std::size_t count = 0;
            for (std::size_t i = 0; i < view.grid().rowCount(); ++i) {
                const bool has = view.grid().picture(view.grid().rowAt(i)) != 0;
                count += has ? 1 : 0;
                const RowRange shown = *view.visibleRows();
                EXPECT_TRUE(has || most == 0 || i < shown.first || i > shown.last)
                    << static_cast<int>(list.id) << when;
            }
            EXPECT_LE(count, most) << static_cast<int>(list.id) << when;
        };
        expectIcons(rows + 1, " at first");
        QWheelEvent wheel({20, 20}, view.viewport()->mapToGlobal(QPoint(20, 20)), {}, {0, -120 * 2}, {}, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &wheel);
        s.settle();
        expectIcons(rows + 19, " after the wheel");
        s.key(view, Qt::Key_End);
        expectIcons(2 * rows + 20, " at the end");
        s.clickTitleOf(view, 0);
        expectIcons(3 * rows + 20, " after a sort");
        s.click(list.icons);
        expectIcons(0, " switched off");
    }
}

TEST_F(ListsTest, AUnitIsChosenAndAColumnSwitchedByItsCommand) {
    folder("src");
    ListSession s(home.path(), at("src"));
    for (const Command bytes : {Command::kReportBytes, Command::kDrivesBytes, Command::kFilesBytes,
                                Command::kTopBytes, Command::kHardlinksBytes}) {
        const auto id = static_cast<std::size_t>(barOf(bytes));
        const CommandBar& bar = *s.form().parts().bars[id];
        const Grid& grid = *s.form().parts().grids[id - 1];
        const auto commandFor = [&](int mode) {
            return mode == kModeAuto ? commandOf(bar.id(), 404) : bytes + mode;
        };
        for (const int chosen : {2, 0, 6, 3, 1}) {
            s.execute(commandFor(chosen));
            for (const int each : {0, 1, 2, 3, 6})
                EXPECT_EQ(bar.isChecked(idOf(commandFor(each))), each == chosen) << bar.name() << each;
            const auto size = std::ranges::find(grid.columns(), bar.id() == BarId::kDrives ? "Gsize" : "size",
                                                &GridColumn::key);
            ASSERT_NE(size, grid.columns().end());
            EXPECT_EQ(size->unit, chosen) << bar.name();
        }
    }
    for (const ListInfo& list : kWithFiles) {
        const std::vector<GridColumn>& columns = s.open(list).grid().columns();
        for (std::size_t column = 1; column + 1 < columns.size(); ++column) {
            const bool was = columns[column].visible;
            for (const bool now : {!was, was}) {
                s.execute(list.columns + static_cast<int>(column - 1));
                EXPECT_EQ(columns[column].visible, now) << column;
            }
        }
    }
}

TEST_F(ListsTest, TheStatusTellsTheListAndWhatIsSelected) {
    someTree();
    ListSession s(home.path(), at("src"));
    const std::string whole[] = {"6 Datei(en) mit insgesamt 2.100 Bytes", "12 Datei(en)", "12 Datei(en)",
                                 "3 Junction(s)"};
    const std::string one = "1 ausgewählte Datei(en) mit 600 Bytes",
                      both = "2 ausgewählte Datei(en) mit 1.100 Bytes";
    for (std::size_t i = 0; i < 4; ++i) {
        GridView& view = s.open(kAll[i]);
        const auto with = [&](const std::string& selected) {
            return i == 3 ? whole[i] : (i == 1 ? "" : whole[i] + " / ") + selected;
        };
        EXPECT_EQ(s.secondPanel(), whole[i]);
        s.clickOn(view, 0);
        EXPECT_EQ(s.secondPanel(), with(one));
        s.clickOn(view, i == 0 ? 1 : 2, Qt::ControlModifier);
        EXPECT_EQ(s.secondPanel(), with(both));
        for (const int unit : {1, 0}) {
            if (i < 3)
                s.execute(std::array{Command::kFilesBytes, Command::kTopBytes, Command::kHardlinksBytes}[i] +
                          unit);
            EXPECT_TRUE(has(s.secondPanel(), i == 3 ? whole[3] : unit == 1 ? " mit 1,07 KB" : both));
        }
        s.key(view, Qt::Key_Up);
        EXPECT_EQ(s.secondPanel(), with(one)) << "keys, too";
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {20, view.viewport()->height() - 3});
        EXPECT_EQ(s.secondPanel(), whole[i]);
    }
    s.click(kJunctionList.fullView);
    s.click(Command::kShowFiles);
    s.execute(Command::kReportRemove);
    s.settle();
    EXPECT_EQ(s.secondPanel(), "") << "no folder is listed";
}

TEST_F(ListsTest, TheBoxOfTheLengthTurnsWhatIsNoneIntoOneAndKeepsTheFocusThen) {
    ListSession s(home.path());
    s.start();
    GridView& view = s.open(kTopList);
    const char* const cases[][2] = {{"abc", "100"}, {"3", "5"}, {"30", "30"}};
    for (const auto& [typed, kept] : cases)
        for (const bool mouse : {false, true}) {
            s.type(Command::kTopCount, typed, mouse ? Qt::Key_Home : Qt::Key_Tab);
            if (mouse) QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {9, 9});
            s.settle();
            EXPECT_EQ(s.edit(Command::kTopCount).text().toStdString(), kept) << typed;
            EXPECT_EQ(s.edit(Command::kTopCount).hasFocus(), std::string(typed) != kept) << typed << mouse;
        }
}

TEST_F(ListsTest, TheLengthOfTheListFollowsOneRuleInSettingsBoxAndAtTheEnd) {
    const char* const cases[][2] = {
        {"abc", "100"}, {"nan", "100"}, {"3", "5"},   {"-7", "5"},
        {"30", "30"},   {"7.6", "8"},   {"6.5", "6"}, {"99999999999", "2147483647"}};
    for (const auto& [text, count] : cases) {
        options("TOPmaxcount=" + std::string(text) + "\r\n");
        ListSession s(home.path());
        s.start();
        s.open(kTopList);
        const QLineEdit& box = s.edit(Command::kTopCount);
        EXPECT_EQ(box.text().toStdString(), count) << text;
        EXPECT_EQ(box.width(), 50);
        s.type(Command::kTopCount, text, Qt::Key_Home);
        EXPECT_EQ(box.text().toStdString(), text) << "nobody types into what is being typed";
        EXPECT_EQ(std::to_string(s.form().form().session.options.TOPmaxcount), count) << text;
        s.frame().close();
        EXPECT_TRUE(has(contentOf(ini()), std::string("TOPmaxcount=") + count + "\r\n")) << text;
    }
}

TEST_F(ListsTest, TheRowUnderThePointerTellsItsFolder) {
    someTree();
    ListSession s(home.path(), at("src"));
    GridView& view = s.open(kTopList);
    const auto note = [&](std::size_t i) { return std::string(view.grid().rowNote(view.grid().rowAt(i))); };
    for (const std::size_t row : {3U, 4U}) {
        const QPoint at = s.place(view, row);
        QTest::mouseMove(view.viewport(), at);
        const std::string folder(view.grid().cellText(view.grid().rowAt(row), kFilePath));
        EXPECT_EQ(note(7 - row), "") << "no other row has one";
        QHelpEvent help(QEvent::ToolTip, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &help);
        EXPECT_TRUE(has(QToolTip::text().toStdString(), folder));
    }
    EXPECT_NE(note(4), "");
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&view, &leave);
    EXPECT_EQ(note(4), "");
}

}  // namespace
}  // namespace hl::test
