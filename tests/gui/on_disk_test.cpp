// Sizes on the disk: the columns, and reckoning with them.
#include <sys/stat.h>

#include <cstdio>

#include "gui/files_fixture.h"
#include "views/report_columns.h"

namespace hl {
namespace {

namespace fs = std::filesystem;
using test::Session;

const NumberFormat kGerman = numberFormatOf("de_DE.UTF-8");

class OnDiskTest : public test::FilesTest {
  protected:
    OnDiskTest() {
        folder("src/dense");
        folder("src/sparse/below");
        test::writeFile(at("src/dense/data"), std::string(300'001, 'x'));
        test::writeFile(at("src/dense/small"), "x");
        fs::create_hard_link(at("src/dense/data"), at("src/sparse/data again"));
        file("src/sparse/below/hole", 50'000'000);
        test::writeFile(at("src/top"), std::string(5000, 'y'));
    }
    /// Returns what du counts for the folder on its file system, less what find counts for folders
    /// themselves.
    static double truthOf(const std::string& folder) {
        const std::string path = " '" + folder + "'";
        return numberFrom("du -sx --block-size=1" + path + " | cut -f1") -
               numberFrom("find" + path +
                          " -xdev -type d -printf '%b\\n' | awk '{ s += $1 * 512 } END { print s }'");
    }
    static double numberFrom(const std::string& command) {
        FILE* pipe = popen(command.c_str(), "r");
        double number = -1;
        if (std::fscanf(pipe, "%lf", &number) != 1) ADD_FAILURE() << command;
        pclose(pipe);
        return number;
    }
    double cell(const std::string& row, CellId cell) { return s().grid().number(s().row(row), cell); }
};

TEST_F(OnDiskTest, AFolderTakesWhatDuSaysAndKnowsItsNewestChange) {
    options("AddHardlinksOnlyOnce=1\r\nColDiskVisible=1\r\nColNewestVisible=1\r\n");
    start();
    s().click(Command::kReportUnfoldAll);
    EXPECT_EQ(cell("src", kDisk), truthOf(at("src")));
    EXPECT_EQ(cell("below", kDisk), truthOf(at("src/sparse/below")));
    EXPECT_EQ(cell("below", kSize), 50'000'000);
    struct stat newest {};
    ::stat(at("src/top").c_str(), &newest);
    EXPECT_EQ(cell("src", kNewest), static_cast<double>(newest.st_mtime));
    const auto shown = [&](std::size_t column, const char* row) {
        return s().view().cellText(column, s().row(row)).toStdString();
    };
    EXPECT_EQ(shown(kReportDisk, "below"), "");
    EXPECT_EQ(shown(kReportDisk, "src"),
              formatCount(static_cast<std::uint64_t>(truthOf(at("src"))), kGerman));
    EXPECT_NE(shown(kReportNewest, "src"), "");
    s().fileSystem.compresses = true;
    const auto tip = s().form().form().parts.cellTip;
    EXPECT_TRUE(tip(GridId::kReport, kReportDisk, s().row("src")).ends_with("\nvor Komprimierung"));
}

// ON_DISK_OF in the environment names another tree, such as "/usr", on which nobody may write meanwhile.
TEST_F(OnDiskTest, AnyTreeTakesWhatDuSays) {
    const char* named = std::getenv("ON_DISK_OF");
    const std::string whole = named == nullptr ? at("src") : named;
    options("AddHardlinksOnlyOnce=1\r\n");
    session_.emplace(home.path(), whole);
    const double found = s().grid().number(s().grid().firstRoot(), kDisk);
    EXPECT_EQ(found, truthOf(whole));
    if (named != nullptr) std::printf("%s takes %.0f bytes on the disk\n", named, found);
}

TEST_F(OnDiskTest, ReckoningWithTheDiskTurnsSharesAndOrderAndIsKept) {
    start();
    EXPECT_EQ(s().rows(), "src sparse dense Dateien sub other");
    QTest::keyClick(&s().frame(), Qt::Key_D, Qt::ControlModifier);
    Session::settle();
    EXPECT_EQ(s().rows(), "src dense sparse Dateien other sub") << "the hole takes no room";
    const double whole = cell("src", kDisk);
    EXPECT_NEAR(cell("dense", kPercent), cell("dense", kDisk) * 100 / whole, 0.01);
    EXPECT_TRUE(s().frame().close());
    EXPECT_NE(test::contentOf(ini()).find("ReckonOnDisk=1"), std::string::npos);
    start();
    EXPECT_EQ(s().rows(), "src dense sparse Dateien other sub");
    s().clickRow("dense");
    s().execute(Command::kRecycleFolders);
    EXPECT_FALSE(there("src/dense"));
    expectReportOfAFreshScan();
    s().execute(Command::kTakeBack);
    expectReportOfAFreshScan();
    s().execute(Command::kReckonOnDisk);
    EXPECT_EQ(s().rows(), "src sparse dense Dateien sub other");
}

TEST_F(OnDiskTest, ASavedReportHasTheSpaceOnlyIfItIsAskedFor) {
    options("DateFormat=\r\n");  // Dates are empty then.
    start();
    for (const bool space : {false, true}) {
        const std::string path = home.path() + (space ? "/with.csv" : "/without.csv");
        s().answers.add([&](QDialog& dialog) {
            for (auto* box : dialog.findChildren<QCheckBox*>())
                if (space) box->click();
            for (auto* box : dialog.findChildren<QComboBox*>())
                if (box->findText(QStringLiteral("CSV")) >= 0) box->setCurrentIndex(1);
            s().answers.add([&](QDialog& files) { test::choosePath(files, path); });
            test::pressIn(dialog, "OK");
        });
        s().click(Command::kReportSave);
        const std::string text = test::contentOf(path);
        EXPECT_EQ(text.find("\"Auf Datenträger") != std::string::npos, space) << text;
    }
}

}  // namespace
}  // namespace hl
