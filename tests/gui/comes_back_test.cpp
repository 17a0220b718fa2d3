// What comes back if the selection is deleted: the dialog of the command, and the question before a delete.
#include <QTableWidget>

#include "gui/files_fixture.h"
#include "support/mounted.h"

namespace hl::test {
namespace {

struct ComesBackTest : FilesTest {
    ComesBackTest() {
        link("src/sub/d.txt", "src/other/again");
        open_ = must(::open(at("src/sub/deep/e.txt").c_str(), O_RDONLY | O_CLOEXEC));
    }
    ~ComesBackTest() override { ::close(open_); }
    static void pressB(QWidget& on) {
        on.setFocus();
        QTest::keyClick(&on, Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
        Session::settle();
    }
    /// Reads the dialog that opens next when its figures are complete, and closes it.
    void onDialog(const std::function<void(const QTableWidget&)>& read) {
        s().answers.add([read](QDialog& dialog) {
            EXPECT_EQ(dialog.objectName(), QStringLiteral("frmComesBack"));
            auto* table = dialog.findChild<QTableWidget*>();
            ASSERT_NE(table, nullptr);
            EXPECT_TRUE(QTest::qWaitFor([&] { return !table->accessibleDescription().isEmpty(); }));
            read(*table);
            pressIn(dialog, "OK");
        });
    }
    /// Returns the number of files in the line that begins so; empty if there is no such line.
    static std::string filesIn(const QTableWidget& table, const std::string& begin) {
        const auto cells = table.findItems(QString::fromStdString(begin), Qt::MatchStartsWith);
        return cells.empty() ? "" : table.item(cells[0]->row(), 2)->text().toStdString();
    }

    int open_;
};

TEST_F(ComesBackTest, TheKeyTellsItOfTheSelectionInTheReportAndInAList) {
    const Mounted mount("none", at("src/sub/at"), "tmpfs");
    startUnfolded();
    s().clickRow("sub");
    const std::string self = "(" + std::to_string(::getpid()) + ")";
    onDialog([&](const QTableWidget& table) {
        EXPECT_EQ(filesIn(table, "Kommt sofort zurück"), "0");
        EXPECT_EQ(filesIn(table, "Bleibt: hat noch andere Namen"), "1");
        EXPECT_EQ(filesIn(table, "Kommt zurück, wenn gui_tests " + self), "1");
        EXPECT_EQ(filesIn(table, "Stattdessen im Papierkorb"), "2");
        EXPECT_EQ(filesIn(table, "Kommt vielleicht zurück"), "");
        EXPECT_EQ(filesIn(table, "Bleibt: Subvolumes und Einhängepunkte: 1"), mount.done() ? "?" : "");
    });
    pressB(s().view());
    s().clickRow("src");
    GridView& list = session_->open(kFileList);
    session_->sortByName(list);
    selectFirst(list, 2);
    onDialog([&](const QTableWidget& table) { EXPECT_EQ(filesIn(table, "Kommt sofort zurück"), "2"); });
    pressB(list);
    EXPECT_TRUE(there("src/a.txt"));
}

TEST_F(ComesBackTest, TheQuestionBeforeADeleteIsFilledInWhileItStands) {
    options("AskBeforeDelete=1\r\n");
    GridView& list = startWithList();
    selectFirst(list, 1);
    const auto question = [&](const char* button) {
        s().answers.add([&, button](QDialog& dialog) {
            const auto& box = dynamic_cast<QMessageBox&>(dialog);
            EXPECT_TRUE(QTest::qWaitFor([&] {
                const QString text = box.informativeText();
                return text.startsWith(QStringLiteral("Davon kommen sofort zurück: ")) &&
                       !text.endsWith(QStringLiteral("..."));
            })) << box.informativeText().toStdString();
            // What changes now does no harm.
            writeFile(at("src/a.txt"), std::string(100'000, 'x'));
            pressIn(dialog, button);
        });
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_Delete, Qt::ShiftModifier);
        Session::settle();
    };
    question("Abbrechen");
    EXPECT_TRUE(there("src/a.txt"));
    question("Löschen");
    EXPECT_FALSE(there("src/a.txt"));
}

}  // namespace
}  // namespace hl::test
