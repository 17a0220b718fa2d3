// Tests the keys of the grids, the pane with the focus, and what the menus of rows and titles lead to.

#include "gui/files_fixture.h"
#include "platform/qt/grid/grid_colors.h"
#include "views/report_columns.h"

namespace hl::test {
namespace {

struct KeysTest : FilesTest {
    static void key(QWidget& on, Qt::Key code, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(&on, code, keys);
        Session::settle();
    }
    GridView& grid(GridId id) { return s().window().grid(id); }
    std::string selected() {
        const Grid& report = s().grid();
        return report.selectedCount() == 1 ? std::string(report.text(report.selectedRows().front())) : "";
    }
    static std::string clip() { return QGuiApplication::clipboard()->text().toStdString(); }
    /// Returns the colours of the view's frame, and of a row beside its text.
    static std::pair<QColor, QColor> look(GridView& view, Row row) {
        const QImage image = view.grab().toImage();
        const QRect place = view.rowRect(*view.rows().find(row)).translated(view.viewport()->pos());
        return {image.pixelColor(0, image.height() / 2),
                image.pixelColor(view.viewport()->x() + view.columnWidth(0) - 3, place.top() + 3)};
    }
};

TEST_F(KeysTest, ThePaneWithTheFocusHasAFrameAndSelectionsElsewhereArePale) {
    startUnfolded();
    s().clickRow("sub");
    GridView &report = s().view(), &list = grid(GridId::kFiles);
    ListSession::clickOn(list, 0);
    const Row folder = s().row("sub"), file = list.grid().rowAt(0);
    for (const bool inReport : {true, false}) {
        (inReport ? report : list).setFocus();
        Session::settle();
        const QColor strong = report.palette().color(QPalette::Active, QPalette::Highlight);
        for (const auto& [view, row, focused] :
             {std::tuple(&report, folder, inReport), std::tuple(&list, file, !inReport)}) {
            const auto [frame, ground] = look(*view, row);
            EXPECT_EQ(frame == strong, focused);
            EXPECT_EQ(ground == strong, focused);
            EXPECT_NE(ground, view->palette().color(QPalette::Base));
            EXPECT_TRUE(focused || contrast(ground, view->palette().color(QPalette::Text)) >= 4.5);
        }
    }
}

TEST_F(KeysTest, CtrlCCopiesPathsAsFilesAndAsTextAndABoxKeepsItsOwnKeys) {
    startUnfolded();
    s().clickRow("deep");
    key(s().view(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clip(), at("src/sub/deep"));
    GridView& list = session_->open(kFileList);
    ListSession::clickOn(list, 0);
    key(list, Qt::Key_C, Qt::ControlModifier);
    const QMimeData& data = *QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(data.text().toStdString(), at("src/sub/deep/e.txt"));
    const std::string url = "file://" + at("src/sub/deep/e.txt");
    EXPECT_EQ(data.data(QStringLiteral("text/uri-list")).toStdString(), url + "\r\n");
    EXPECT_EQ(data.data(QStringLiteral("x-special/gnome-copied-files")).toStdString(), "copy\n" + url);

    QLineEdit& box = session_->edit(Command::kFilesSearchText);
    box.setFocus();
    QTest::keyClicks(&box, QStringLiteral("word"));
    box.selectAll();
    key(box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clip(), "word");
    key(box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(box.text(), QStringLiteral("word"));
}

TEST_F(KeysTest, BackspaceGoesToTheFolderAboveAndAltWithAnArrowThroughWhatWasSelected) {
    startUnfolded();
    GridView& report = s().view();
    s().clickRow("deep");
    key(report, Qt::Key_Backspace);
    EXPECT_EQ(selected(), "sub");
    EXPECT_EQ(s().status(), at("src/sub/"));
    s().clickRow("other");
    const std::string root = at("src");
    const std::pair<Qt::Key, std::string> steps[] = {
        {Qt::Key_Left, "sub"},   {Qt::Key_Left, "deep"}, {Qt::Key_Left, root},     {Qt::Key_Left, root},
        {Qt::Key_Right, "deep"}, {Qt::Key_Right, "sub"}, {Qt::Key_Right, "other"}, {Qt::Key_Right, "other"}};
    for (const auto& [code, name] : steps) {
        key(report, code, Qt::AltModifier);
        EXPECT_EQ(selected(), name);
    }
    // What is folded is unfolded, and what has gone is passed over.
    fs::remove_all(at("src/sub/deep"));
    s().clickRow("sub");
    key(report, Qt::Key_F5);
    s().click(Command::kReportFoldAll);
    key(report, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(selected(), "sub");
    for (int i = 0; i < 3; ++i) key(report, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(selected(), root);
}

TEST_F(KeysTest, F1OpensTheGuide) {
    start();
    key(s().view(), Qt::Key_F1);
    ASSERT_EQ(s().desktop.opened.size(), 1U);
    EXPECT_TRUE(fs::equivalent(s().desktop.opened.front(), HARBORLANTERN_SOURCE_DIR "/docs/guide.md"));
}

TEST_F(KeysTest, TheMenuOfATitleSwitchesColumns) {
    start();
    const auto choose = [](GridView& view, const char* caption, Names* all) {
        MenuAnswer menu(caption);
        QWidget& titles = *view.horizontalHeader()->viewport();
        const QPoint place(40, 5);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, titles.mapToGlobal(place));
        QApplication::sendEvent(&titles, &event);
        Session::settle();
        if (all != nullptr) *all = menu.entries();
    };
    const std::vector<GridColumn>& columns = s().grid().columns();
    const bool shown = columns[kReportFiles].visible;
    Names entries;
    choose(s().view(), "Dateien", &entries);
    EXPECT_EQ(columns[kReportFiles].visible, !shown);
    EXPECT_EQ(entries, (Names{"Prozent", "Dateien", "Ordner", "Auf Datenträger", "Neueste Änderung"}));
    GridView& list = session_->open(kTopList);
    const std::size_t type = kTopTable.columnOf(kFileType);
    const bool typeShown = list.grid().columns()[type].visible;
    for (int times = 1; times <= 3; ++times) {
        choose(list, "Typ", &entries);
        EXPECT_EQ(list.grid().columns()[type].visible, typeShown != (times % 2 == 1));
    }
    EXPECT_EQ(entries.size(), kTopTable.columns.size() - 1) << "each but the name";
}

TEST_F(KeysTest, ARowLeadsToItsTerminalToTheReportAndToItsProperties) {
    start();
    GridView& list = session_->open(kTopList);
    const auto choose = [&](const char* entry) {
        const MenuAnswer menu(entry);
        rightClick(list, list.grid().rowAt(0));
    };
    choose("Terminal hier öffnen");
    s().desktop.known[at("src/sub/deep/e.txt")] = {.type = "Text",
                                                   .size = 5000,
                                                   .space = 8192,
                                                   .owner = "ann",
                                                   .group = "users",
                                                   .mode = 0104640,
                                                   .links = 1};
    std::string shown;
    s().answers.add([&](QDialog& dialog) {
        EXPECT_EQ(dialog.objectName(), QStringLiteral("frmProperties"));
        for (const QLineEdit* edit : dialog.findChildren<QLineEdit*>())
            shown += edit->text().toStdString() + "|";
        dialog.close();
    });
    choose("Eigenschaften");
    EXPECT_EQ(shown, at("src/sub/deep/e.txt") +
                         "|Text|4,88 KB (5.000 Bytes)|8,00 KB (8.192 Bytes)|ann : users|" +
                         "rwSr----- (4640)|");
    EXPECT_FALSE(s().view().isVisible());
    choose("In der Ordnerliste zeigen");
    EXPECT_TRUE(s().view().isVisible());
    EXPECT_EQ(selected(), "deep");
    EXPECT_EQ(s().status(), at("src/sub/deep/"));
    s().desktop.hasTerminal = false;
    chooseInMenu("other", "Terminal hier öffnen");
    EXPECT_EQ(s().desktop.terminals, (Names{at("src/sub/deep"), at("src/other")}));
    EXPECT_TRUE(has(s().status(), "kein Terminal"));
}

}  // namespace
}  // namespace hl::test
