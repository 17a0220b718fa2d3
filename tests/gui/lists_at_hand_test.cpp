// Tests lists that are switched off and are filled when the user asks for it, what empty lists say, and what
// a search leaves in the window.

#include "gui/files_fixture.h"

namespace hl::test {
namespace {

struct ListsAtHandTest : FilesTest {
    ListsAtHandTest() {
        setSettings("[Optionen]\r\nDiskinfoVisible=0\r\n");  // The lists are switched off.
        link("src/a.txt", "src/sub/again");
        fs::create_directory_symlink(at("src/other"), at("src/to other"));
    }
    QPushButton* buttonOf(GridView& view) {
        view.viewport()->repaint();
        Session::settle();
        auto* button = view.viewport()->findChild<QPushButton*>();
        return button != nullptr && button->isVisible() ? button : nullptr;
    }
    void press(GridView& view) {
        QPushButton* button = buttonOf(view);
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
        Session::settle();
    }
    std::string hint(GridId id) { return s().window().grid(id).hint().text().toStdString(); }
};

TEST_F(ListsAtHandTest, AListThatIsSwitchedOffIsFilledByItsButtonAndTheReportStaysAsItIs) {
    start();
    s().clickRow("sub");
    const Names before = reportFacts(s());
    const std::pair<ListInfo, std::size_t> lists[] = {{kTopList, 6}, {kHardlinkList, 2}, {kJunctionList, 1}};
    for (const auto& [list, count] : lists) {
        GridView& view = session_->open(list);
        press(view);
        EXPECT_EQ(ListSession::names(view).size(), count);
        EXPECT_EQ(buttonOf(view), nullptr);
        EXPECT_EQ(s().status(), "OK.");
        EXPECT_EQ(reportFacts(s()), before);
    }
    s().click(Command::kShowReport);
    EXPECT_EQ(s().grid().text(s().grid().selectedRows().front()), "sub");
    const Grid& top = session_->open(kTopList).grid();
    EXPECT_EQ(top.number(top.rowAt(0), kFileSize), 500);
    // The options stay, and so the next run empties the lists again.
    s().scan(at("src/other"));
    for (const auto& [list, count] : lists) EXPECT_NE(buttonOf(session_->open(list)), nullptr);
}

TEST_F(ListsAtHandTest, StopEndsTheFillingAndSaysSo) {
    start();
    GridView& view = session_->open(kTopList);
    s().fileSystem.beforeBlock = [this](int block) {
        if (block == 2) s().click(Command::kStop);
    };
    press(view);
    EXPECT_EQ(s().status(), "Abgebrochen. Die Liste ist unvollständig.");
    s().fileSystem.beforeBlock = nullptr;
    EXPECT_LT(ListSession::names(view).size(), 6U);
    EXPECT_TRUE(s().enabled(Command::kStart));
}

TEST_F(ListsAtHandTest, AnEmptyListSaysWhyItIsEmpty) {
    start();
    s().clickRow("other");
    EXPECT_EQ(hint(GridId::kFiles), "Direkt in diesem Ordner liegen keine Dateien.");
    s().clickRow("sub");
    EXPECT_EQ(hint(GridId::kFiles), "");
    fs::remove_all(at("src/other"));
    s().clickRow("other");
    EXPECT_EQ(hint(GridId::kFiles), "") << "it could not be read";
    s().scan(at("src/sub/deep"));
    GridView& view = session_->open(kJunctionList);
    EXPECT_TRUE(has(hint(GridId::kJunctions), "ausgeschaltet"));
    press(view);
    EXPECT_EQ(hint(GridId::kJunctions), "Dafür wurde nichts gefunden.");
}

struct SearchTest : ListsTest {
    static QColor ground(const QLineEdit& box) { return box.palette().color(QPalette::Base); }
};

TEST_F(SearchTest, AHitStandsInTheMiddleAndTheStatusTellsOfItAndWhatIsNotFoundTurnsTheBoxRed) {
    for (int i = 0; i < 100; ++i) folder("src/f" + std::to_string(1000 + i));
    for (int i = 0; i < 100; ++i) file("src/g" + std::to_string(1000 + i), 10 + i);
    ListSession s(home.path(), at("src"));
    GridView& list = s.window().grid(GridId::kFiles);
    const std::tuple<GridView*, Command, std::string, std::string> searches[] = {
        {&s.view(), Command::kReportSearchText, "f1050", at("src/f1050/")},
        {&list, Command::kFilesSearchText, "g1050", "1 ausgewählte Datei(en) mit 60 Bytes"}};
    for (const auto& [view, box, text, status] : searches) {
        s.clickRow("src");
        const bool ofReport = view == &s.view();
        const auto told = [&] { return ofReport ? s.status() : s.secondPanel(); };
        QLineEdit& edit = s.edit(box);
        const QColor plain = ground(edit);
        s.type(box, text, Qt::Key_Return);
        EXPECT_TRUE(has(told(), status));
        const Row hit = view->grid().selectedRows().front();
        const int middle = view->viewport()->height() / 2;
        EXPECT_LE(std::abs(view->rowRect(*view->rows().find(hit)).center().y() - middle),
                  2 * view->rowRect(0).height());
        EXPECT_EQ(ground(edit), plain);
        s.type(box, "nowhere", Qt::Key_Return);
        EXPECT_EQ(told(), "'nowhere' wurde nicht gefunden.");
        EXPECT_NE(ground(edit), plain);
        EXPECT_TRUE(edit.hasFocus());
        QTest::keyClicks(&edit, QStringLiteral("x"));
        EXPECT_EQ(ground(edit), plain);
    }
}

}  // namespace
}  // namespace hl::test
