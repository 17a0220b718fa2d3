// The balance in the window: what it shows, where it leads, and what it says when there is none.
#include <QTableWidget>

#include "gui/files_fixture.h"
#include "support/mounted.h"

namespace hl::test {
namespace {

struct BalanceTest : FilesTest {
    BalanceTest() : disk_("none", at("src"), "tmpfs") {
        folder("src/sub");
        writeFile(at("src/data"), std::string(10'000, 'x'));
        fs::create_hard_link(at("src/data"), at("src/sub/again"));
    }
    /// Answers the balance that opens next.
    void onBalance(const std::function<void(QDialog&, QTableWidget&)>& act) {
        s().answers.add([act](QDialog& dialog) {
            EXPECT_EQ(dialog.objectName(), QStringLiteral("frmBalance"));
            auto* table = dialog.findChild<QTableWidget*>();
            ASSERT_NE(table, nullptr);
            act(dialog, *table);
        });
    }
    void pressKey() {
        s().view().setFocus();
        QTest::keyClick(&s().view(), Qt::Key_B, Qt::ControlModifier);
        Session::settle();
    }
    static std::string figure(const QTableWidget& table, const char* line) {
        const auto cells = table.findItems(QString::fromUtf8(line), Qt::MatchStartsWith);
        return cells.empty() ? "" : table.item(cells[0]->row(), 2)->text().toStdString();
    }
    static void activate(QTableWidget& table, const char* line) {
        const auto cells = table.findItems(QString::fromUtf8(line), Qt::MatchStartsWith);
        ASSERT_FALSE(cells.empty());
        table.setCurrentItem(cells[0]);
        QTest::keyClick(&table, Qt::Key_Return);
    }

    Mounted disk_;
};

TEST_F(BalanceTest, OfADiskAddsUpIsSavedAndLeadsToTheRowsOfItsLines) {
    if (!disk_.done()) GTEST_SKIP() << "the test may not mount";
    start();
    onBalance([&](QDialog& dialog, QTableWidget& table) {
        EXPECT_EQ(figure(table, "Gefundene Dateien"), "+20.000");
        EXPECT_EQ(figure(table, "Weitere Namen"), "-10.000");
        EXPECT_EQ(figure(table, "Aufgerundet"), "+2.288");
        EXPECT_EQ(figure(table, "Rest"), "0");
        EXPECT_EQ(figure(table, "Belegt laut"), "12.288");
        EXPECT_TRUE(table.accessibleDescription().endsWith(
            QString::fromUtf8("Rest 0 Bytes, Belegt laut Dateisystem 12,00 KB")))
            << table.accessibleDescription().toStdString();
        for (int row = 0; row < table.rowCount(); ++row)
            EXPECT_FALSE(table.item(row, 0)->toolTip().isEmpty());
        s().answers.add([&](QDialog& question) { choosePath(question, at("balance.txt")); });
        pressIn(dialog, "Speichern");
        pressIn(dialog, "Kopieren");
        activate(table, "Weitere Namen");
    });
    pressKey();
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), contentOf(at("balance.txt")));
    EXPECT_TRUE(has(contentOf(at("balance.txt")), "Bilanz: " + at("src")));
    EXPECT_TRUE(s().window().grid(GridId::kHardlinks).isVisible());

    // What is changed then is not counted: the balance says how old it is.
    fs::remove(at("src/sub/again"));
    s().click(Command::kReportUnfoldAll);
    s().clickRow("sub");
    s().click(Command::kReportRescan);
    onBalance([](QDialog& dialog, QTableWidget& table) {
        EXPECT_EQ(figure(table, "Gefundene Dateien"), "+20.000");
        EXPECT_TRUE(std::ranges::any_of(dialog.findChildren<QLabel*>(), [](const QLabel* label) {
            return label->text().startsWith(QStringLiteral("Stand: "));
        }));
        pressIn(dialog, "OK");
    });
    pressKey();
}

TEST_F(BalanceTest, IsRefusedWithItsReasonForAFolderAndAfterAStop) {
    start();
    s().scan(at("src/sub"));
    std::string text;
    answer("OK", &text);
    pressKey();
    EXPECT_TRUE(has(text, at("src/sub") + " ist nicht die Wurzel eines Dateisystems"));
    s().fileSystem.beforeBlock = [&](int block) {
        if (block == 2) s().click(Command::kStop);
    };
    s().clickRow("src");
    s().click(Command::kReportRescan);
    text.clear();
    answer("OK", &text);
    pressKey();
    EXPECT_TRUE(has(text, at("src") + " wurde nicht bis zum Ende eingelesen"));
}

}  // namespace
}  // namespace hl::test
