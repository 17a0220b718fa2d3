// Tests that numbers can be read: sums of what is selected, tooltips, and columns that stay in sight.

#include "gui/lists_fixture.h"
#include "views/report_columns.h"

namespace hl::test {
namespace {

struct NumbersTest : WindowTest {
    static QPoint place(GridView& view, Row row, int column) {
        view.sync();
        const auto index = view.rows().find(row);
        return {view.columnViewportPosition(column) + 6, view.rowRect(index.value_or(0)).center().y()};
    }
    static void click(Session& s, const std::string& name, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(s.view().viewport(), Qt::LeftButton, keys,
                          place(s.view(), s.row(name), 0) + QPoint(60, 0));
        s.settle();
    }
    static std::string tip(GridView& view, const QPoint& at) {
        QToolTip::showText({}, {});
        QHelpEvent help(QEvent::ToolTip, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &help);
        return QToolTip::text().toStdString();
    }
};

TEST_F(NumbersTest, SeveralSelectedRowsTellTheirSumTheirShareAndTheirCounts) {
    smallTree();
    Session s(home.path(), at("src"));
    s.clickRow("a");
    EXPECT_EQ(s.status(), at("src/a/"));
    click(s, "b", Qt::ControlModifier);
    EXPECT_EQ(s.status(),
              "2 Zeilen ausgewählt: 450 Bytes (98,47 % von '" + at("src") + "'), 3 Datei(en), 1 Ordner");
    s.clickRow("a");
    EXPECT_EQ(s.status(), at("src/a/"));
    QTest::keyClick(&s.view(), Qt::Key_Right);
    click(s, "aa", Qt::ControlModifier);
    EXPECT_EQ(s.status(),
              "2 Zeilen ausgewählt: 400 Bytes (87,53 % von '" + at("src") + "'), 2 Datei(en), 1 Ordner")
        << "what lies in a selected folder counts once";
    click(s, "aa");
    QTest::keyClick(&s.view(), Qt::Key_Down, Qt::ShiftModifier);
    s.settle();
    EXPECT_EQ(s.status(), "2 Zeilen ausgewählt: 400 Bytes (100,00 % von 'a'), 2 Datei(en), 0 Ordner");
    QTest::keyClick(&s.view(), Qt::Key_A, Qt::ControlModifier);
    s.settle();
    EXPECT_EQ(s.status().find("6 Zeilen ausgewählt: 457 Bytes (100,00 % aller Quellen)"), 0U) << s.status();
    s.key(s.view(), Qt::Key_Home);
    EXPECT_EQ(s.status(), at("src/"));
}

TEST_F(NumbersTest, ASizesTooltipHasAllUnitsAndThatOfADriveWhatIsReserved) {
    smallTree();
    Session s(home.path(), at("src"));
    const std::string size = tip(s.view(), place(s.view(), s.row("a"), kReportSize));
    for (const char* line : {"400 Bytes\n", "0,39 KB\n", "0,01 MB\n", "0,01 GB"})
        EXPECT_TRUE(has(size, line));
    GridView& drives = s.window().grid(GridId::kDrives);
    ASSERT_GT(drives.grid().rowCount(), 0U);
    const Row drive = drives.grid().rowAt(0);
    s.form().parts().grids[static_cast<std::size_t>(GridId::kDrives)]->selectNone();
    s.clickRow("a");
    EXPECT_EQ(drives.grid().selectedRows(), std::vector{drive}) << "the folder lies on it";
    for (int i = 0; i < 500 && drives.grid().number(drive, kGsize) == 0; ++i) {
        QTest::qWait(10);
        s.form().takeDriveAnswers();
    }
    for (const int column : {int{kDriveListUsed}, int{kDriveListUsedBar}, int{kDriveListTotal}})
        EXPECT_TRUE(has(tip(drives, place(drives, drive, column)), "Reserviert: 500 Bytes"));
}

TEST_F(NumbersTest, DeepFoldersAndLongNamesLeaveTheNumbersInSight) {
    std::string deep = "src";
    for (int level = 0; level < 40; ++level) deep += "/" + std::to_string(level) + std::string(60, 'w');
    folder(deep);
    file(deep + "/x", 3);
    Session s(home.path(), at("src"));
    s.execute(Command::kReportUnfoldAll);
    s.settle();
    const auto inSight = [&] {
        const int last = kReportFolders;
        return s.view().columnViewportPosition(last) + s.view().columnWidth(last) <=
               s.view().viewport()->width();
    };
    EXPECT_TRUE(inSight());
    int before = -1;
    for (std::size_t i = 0; i < s.view().rows().count(); ++i) {
        const QRect name = *s.view().nameRect(s.view().rows().at(i));
        EXPECT_GE(name.width(), 90) << i;
        EXPECT_GE(name.left(), before + (i < 10 ? 1 : 0)) << i;
        before = name.left();
    }
    const std::string whole = tip(s.view(), place(s.view(), s.view().rows().at(5), 0) + QPoint(150, 0));
    EXPECT_TRUE(has(whole, "4" + std::string(60, 'w')));
    s.frame().resize(900, 600);
    s.settle();
    EXPECT_TRUE(inSight());
}

}  // namespace
}  // namespace hl::test
