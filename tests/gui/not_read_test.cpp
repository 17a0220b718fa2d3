// Tests how the window tells that something was not read.

#include "gui/files_fixture.h"
#include "support/no_root_rights.h"

namespace hl::test {
namespace {

struct NotReadTest : FilesTest {
    QPushButton* button() { return statusButton(Command::kShowNotRead); }
    std::string description(const std::string& row) {
        return s().window().grid(GridId::kReport).markNote(s().row(row)).toStdString();
    }
};

TEST_F(NotReadTest, FoldersAboveCountWhatWasNotReadAndTheListSaysWhy) {
    for (const char* path : {"src/sub/deep/shut", "src/sub/shut"}) {
        folder(path);
        fs::permissions(at(path), fs::perms::none);
    }
    const NoRootRights rights;
    startUnfolded();
    EXPECT_EQ(description("src"), "2 Ordner darunter wurden nicht gelesen.");
    EXPECT_EQ(description("sub"), "2 Ordner darunter wurden nicht gelesen.");
    EXPECT_EQ(description("deep"), "1 Ordner darunter wurde nicht gelesen.");
    EXPECT_EQ(description("other"), "");
    ASSERT_NE(button(), nullptr);
    EXPECT_EQ(button()->text().toStdString(), "2 Ordner nicht gelesen");
    s().answers.add([&](QDialog& dialog) {
        EXPECT_EQ(dialog.objectName(), QStringLiteral("frmNotRead"));
        s().answers.add([&](QDialog& question) { choosePath(question, at("list.txt")); });
        pressIn(dialog, "Speichern");
        pressIn(dialog, "OK");
    });
    button()->click();
    Session::settle();
    const std::string saved = contentOf(at("list.txt"));
    EXPECT_TRUE(has(saved, at("src/sub/deep/shut") + "\t"));
    EXPECT_TRUE(has(saved, "Permission denied"));
    EXPECT_EQ(std::ranges::count(saved, '\n'), 2);

    // Whatever is done then, the marks are those of a fresh scan.
    s().clickRow("deep");
    s().execute(Command::kRecycleFolders);
    EXPECT_EQ(button()->text().toStdString(), "1 Ordner nicht gelesen");
    expectReportOfAFreshScan();
    s().execute(Command::kTakeBack);
    expectReportOfAFreshScan();
    fs::permissions(at("src/sub/shut"), fs::perms::owner_all);
    s().clickRow("sub");
    s().click(Command::kReportRescan);
    EXPECT_EQ(button()->text().toStdString(), "1 Ordner nicht gelesen");
    expectReportOfAFreshScan();
    fs::permissions(at("src/sub/deep/shut"), fs::perms::owner_all);
    s().clickRow("src");
    s().click(Command::kReportRescan);
    EXPECT_EQ(button(), nullptr);
    EXPECT_EQ(description("src"), "");
}

TEST_F(NotReadTest, AStoppedSourceSaysThatItIsIncompleteUntilItIsReadAgain) {
    start();
    s().fileSystem.beforeBlock = [&](int block) {
        if (block == 2) s().click(Command::kStop);
    };
    s().scan(at("src"));
    const Row row = s().grid().currentRow();
    EXPECT_EQ(s().grid().picture(row), kPictureIncomplete);
    EXPECT_EQ(s().grid().rowNote(row), "angehalten: unvollständig");
    EXPECT_EQ(s().status().find("Abgebrochen."), 0u);
    const auto title = [&] {
        return s().form().parts().bars[static_cast<std::size_t>(BarId::kHardlinks)]->find(0)->caption;
    };
    EXPECT_EQ(title(), "Unvollständig: Hardlinks");
    std::string text;
    answer("Abbrechen", &text);
    s().click(Command::kReportSave);
    EXPECT_TRUE(has(text, "Der Bericht ist unvollständig"));
    s().fileSystem.beforeBlock = nullptr;
    s().click(Command::kReportRescan);
    EXPECT_EQ(s().grid().rowNote(s().grid().currentRow()), "");
    EXPECT_EQ(title(), "Hardlinks");
    EXPECT_EQ(button(), nullptr);
}

}  // namespace
}  // namespace hl::test
