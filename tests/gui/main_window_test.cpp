// The window at work: scans, the report, panels. Trees are read from the disk.
#include <algorithm>
#include <map>
#include <random>
#include <stdexcept>

#include "gui/window_fixture.h"
#include "scan/records.h"

namespace hl {
namespace {

using test::Session;
using test::WindowTest;

class MainWindowTest : public WindowTest {
  protected:
    /// The window with src read, the report alone in it.
    void startWithReport() {
        s.start();
        s.click("cbrReport.323");
        s.scan(at("src"));
    }
    Session s{home.path()};
};

struct Numbers {
    int size = 0, files = 0, folders = 0;
};

/// A random tree below `path`; `truth` gets what each of its rows shows.
Numbers makeTree(std::mt19937& random, const std::string& path, int depth,
                 std::map<std::string, std::string>& truth) {
    const auto pick = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    const auto text = [](const Numbers& n) {
        const auto shown = [](int number) { return number == 0 ? std::string() : std::to_string(number); };
        return shown(n.size) + "|" + shown(n.files) + "|" + shown(n.folders);
    };
    std::filesystem::create_directory(path);
    Numbers all, own;
    for (int i = pick(5); i > 0; --i) {
        const int size = pick(10'000);
        test::makeFile(path + "/file " + std::to_string(i), size);
        own.size += size, ++own.files;
    }
    for (int i = depth == 0 ? 0 : pick(4); i > 0; --i) {
        const Numbers below = makeTree(random, path + "/größe " + std::to_string(i), depth - 1, truth);
        all.size += below.size, all.files += below.files, all.folders += below.folders + 1;
    }
    if (all.folders > 0 && own.files > 0) truth[path + "/Dateien"] = text(own);
    all.size += own.size, all.files += own.files;
    truth[path] = text(all);
    return all;
}

TEST_F(MainWindowTest, AScanShowsTheNumbersThatTheTreeWasMadeOf) {
    std::map<std::string, std::string> truth, shown;
    std::mt19937 random(7);
    while (truth.size() < 60) {
        truth.clear();
        std::filesystem::remove_all(at("src"));
        makeTree(random, at("src"), 4, truth);
    }
    startWithReport();
    s.key(s.view(), Qt::Key_F8);
    for (std::size_t i = 0; i < s.view().rows().count(); ++i) {
        const Row row = s.view().rows().at(i);
        std::string path(s.grid().text(row));
        for (Row up = s.grid().parent(row); up != kNoRow; up = s.grid().parent(up))
            path = std::string(s.grid().text(up)) + "/" + path;
        std::string numbers = s.numbers(row);
        numbers.erase(std::remove(numbers.begin(), numbers.end(), '.'), numbers.end());
        shown[path] = numbers;
    }
    EXPECT_EQ(shown, truth);
    EXPECT_EQ(s.status(), "OK.");
}

TEST_F(MainWindowTest, FoldersOfTheFirstLevelAppearWhileTheScanRuns) {
    folders(20);
    std::size_t shown = 0;
    s.fileSystem.beforeBlock = [&](int block) {
        if (block != 12 && block != 15) return;  // Columns are not fitted in between, which would paint, too.
        s.painted.clear();
        EXPECT_TRUE(QTest::qWaitFor([&] { return s.painted.size() == s.grid().rowCount(); }));
        shown = s.painted.size();
        EXPECT_TRUE(s.enabled("cbrMain.3"));
        for (const char* entry : {"cbrMain.2", "cbrReport.4", "cbrReport.24", "cbrDrives.200"})
            EXPECT_FALSE(s.enabled(entry)) << entry;
        EXPECT_EQ(s.status().substr(0, at("src").size()), at("src"));
    };
    startWithReport();
    EXPECT_EQ(shown, 14U);
    EXPECT_FALSE(s.enabled("cbrMain.3"));
    EXPECT_TRUE(s.enabled("cbrMain.2"));
}

TEST_F(MainWindowTest, StopInTheMiddleKeepsWhatWasRead) {
    folders(20);
    s.fileSystem.beforeBlock = [&](int block) {
        if (block == 12) s.click("cbrMain.3");
    };
    startWithReport();
    int read = 0;
    for (Row row = s.grid().firstChild(s.row("src")); row != kNoRow; row = s.grid().nextSibling(row))
        read += s.numbers(row) == "10|1|" ? 1 : 0;
    EXPECT_GE(read, 10);
    EXPECT_LT(read, 20);
    EXPECT_EQ(s.grid().number(s.row("src"), kFiles), read);
    s.fileSystem.beforeBlock = nullptr;
    s.key(s.view(), Qt::Key_F5);
    EXPECT_EQ(s.numbers("src"), "200|20|20");
}

TEST_F(MainWindowTest, ClosingDuringARunOnlyCancelsItAndTheNextCloseGoesThrough) {
    folders(20);
    s.fileSystem.beforeBlock = [&](int block) {
        if (block != 3) return;
        EXPECT_FALSE(s.frame().close());
    };
    startWithReport();
    EXPECT_TRUE(s.frame().isVisible());
    EXPECT_LT(s.grid().number(s.row("src"), kFiles), 20);
    EXPECT_TRUE(s.enabled("cbrMain.2"));
    EXPECT_TRUE(s.frame().close());
    EXPECT_TRUE(s.frame().unloaded());
}

TEST_F(MainWindowTest, ATitleClickSortsByItsColumnAndTheSecondTurnsTheOrder) {
    for (const char* path : {"src/a/1", "src/b/1", "src/b/2", "src/c"}) folder(path);
    for (const auto& [path, size] :
         {std::pair("src/a/f", 30), std::pair("src/b/f", 3), std::pair("src/b/g", 3), std::pair("src/b/h", 4),
          std::pair("src/c/f", 10), std::pair("src/c/g", 10)})
        file(path, size);
    startWithReport();
    EXPECT_EQ(s.rows(), "src a c b");
    constexpr const char* kRising[] = {"a b c", "b c a", "b c a", "a c b", "c a b"};
    for (int column = 0; column < 5; ++column) {
        std::string order = kRising[column];
        s.clickTitle(column);
        EXPECT_EQ(s.rows(), "src " + order) << column;
        s.clickTitle(column);
        std::reverse(order.begin(), order.end());
        EXPECT_EQ(s.rows(), "src " + order) << column;
    }
}

TEST_F(MainWindowTest, TheClickThatEndsTheDragOfABorderDoesNotSort) {
    smallTree();
    startWithReport();
    auto* header = s.view().horizontalHeader();
    const QPoint border(header->sectionViewportPosition(1) + header->sectionSize(1) - 1, 5);
    const QPoint end = border + QPoint(20, 0);
    const int width = header->sectionSize(1);
    QTest::mousePress(header->viewport(), Qt::LeftButton, {}, border);
    // The titles look for the button in the event, which QTest's own moves lack.
    QMouseEvent move(QEvent::MouseMove, end, header->viewport()->mapToGlobal(end), Qt::NoButton,
                     Qt::LeftButton, {});
    QApplication::sendEvent(header->viewport(), &move);
    QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, end);
    Session::settle();
    EXPECT_EQ(header->sectionSize(1), width + 20);
    EXPECT_EQ(s.rows(), "src a b Dateien");
    s.clickTitle(1);
    EXPECT_EQ(s.rows(), "src Dateien b a");
}

TEST_F(MainWindowTest, FoldersUnfoldByLevelsAndAllAtOnce) {
    smallTree();
    folder("src/a/aa/deep");
    file("src/a/aa/deep/d", 1);
    startWithReport();
    const struct {
        const char* entry;
        const char* rows;
    } cases[] = {{"cbrReport.24", "src"},
                 {"cbrReport.100", "src a b Dateien"},
                 {"cbrReport.101", "src a aa Dateien b Dateien"},
                 {"cbrReport.25", "src a aa Dateien deep Dateien b Dateien"},
                 {"cbrReport.101", "src a aa Dateien b Dateien"},
                 {"cbrReport.24", "src"}};
    for (const auto& c : cases) {
        s.click(c.entry);
        EXPECT_EQ(s.rows(), c.rows) << c.entry;
    }
}

TEST_F(MainWindowTest, ListsExcludeEachOtherAndTheLastPanelStays) {
    s.start();
    const struct {
        const char* entry;
        const char* panes;
    } cases[] = {{"cbrMain.307", "tvwPL lvwDiskinfo lvwTOP"},
                 {"cbrMain.308", "tvwPL lvwDiskinfo lvwHardlinks"},
                 {"cbrMain.309", "tvwPL lvwDiskinfo lvwJunctions"},
                 {"cbrMain.306", "tvwPL lvwDiskinfo lvwFiles"},
                 {"cbrMain.21", "tvwPL lvwFiles"},
                 {"cbrMain.33", "lvwFiles"},
                 {"cbrMain.306", "lvwFiles"},
                 {"cbrMain.21", "lvwDiskinfo lvwFiles"},
                 {"cbrMain.306", "lvwDiskinfo"},
                 {"cbrMain.21", "lvwDiskinfo"},
                 {"cbrMain.33", "tvwPL lvwDiskinfo"},
                 {"cbrReport.323", "tvwPL"},
                 {"cbrMain.33", "tvwPL"},
                 {"cbrMain.307", "tvwPL lvwTOP"}};
    EXPECT_EQ(s.panes(), "tvwPL lvwDiskinfo lvwFiles");
    for (const auto& c : cases) {
        s.click(c.entry);
        EXPECT_EQ(s.panes(), c.panes) << c.entry;
    }
}

TEST_F(MainWindowTest, SizesShowInTheUnitAndWithTheDecimalsThatAreAskedFor) {
    folder("src/a");
    file("src/a/x", 5 << 20);
    startWithReport();
    const auto shown = [&] { return s.numbers("a").substr(0, s.numbers("a").find('|')); };
    EXPECT_EQ(shown(), "5.242.880");
    const std::pair<const char*, const char*> cases[] = {
        {"cbrReport.11", "5.120,00"}, {"cbrReport.12", "5,00"},     {"cbrReport.33", "5"},
        {"cbrReport.11", "5.120"},    {"cbrReport.33", "5.120,00"}, {"cbrReport.10", "5.242.880"}};
    for (const auto& [entry, size] : cases) {
        s.click(entry);
        EXPECT_EQ(shown(), size) << entry;
    }
}

TEST_F(MainWindowTest, ColumnsGoAndComeBack) {
    smallTree();
    startWithReport();
    using Shown = std::vector<std::size_t>;
    EXPECT_EQ(s.view().shownColumns(), (Shown{0, 1, 2, 3, 4}));
    for (const char* entry : {"cbrReport.22", "cbrReport.23", "cbrReport.35"}) s.click(entry);
    EXPECT_EQ(s.view().shownColumns(), (Shown{0, 1}));
    s.click("cbrReport.22");
    EXPECT_EQ(s.view().shownColumns(), (Shown{0, 1, 3}));
}

TEST_F(MainWindowTest, ASearchGoesOnFromTheTopAndUnfoldsWhatItFinds) {
    for (const char* path : {"src/one/Findme1", "src/two/other", "src/zwei/findME2"}) folder(path);
    startWithReport();
    s.click("cbrReport.24");
    std::vector<std::string> found;
    s.type("cbrReport.29", "findme", Qt::Key_Return);
    for (int i = 0; i < 3; ++i) {
        found.emplace_back(s.grid().text(s.grid().currentRow()));
        EXPECT_NE(s.rows().find(found.back()), std::string::npos);
        s.click("cbrReport.30");
    }
    EXPECT_EQ((std::set<std::string>{found[0], found[1]}), (std::set<std::string>{"Findme1", "findME2"}));
    EXPECT_EQ(found[2], found[0]);
    s.type("cbrReport.29", "nowhere", Qt::Key_Return);
    EXPECT_EQ(s.grid().text(s.grid().currentRow()), found[1]);
}

TEST_F(MainWindowTest, ARescanFindsWhatHasGrown) {
    smallTree();
    startWithReport();
    EXPECT_EQ(s.numbers("src"), "457|4|3");
    folder("src/b/new");
    file("src/b/new/big", 1000);
    s.clickRow("b");
    s.key(s.view(), Qt::Key_F5);
    EXPECT_EQ(s.numbers("b"), "1.050|2|1");
    EXPECT_EQ(s.numbers("src"), "1.457|5|4");
    EXPECT_EQ(s.numbers("a"), "400|2|1");
    EXPECT_EQ(s.rows().substr(0, 5), "src b");
}

TEST_F(MainWindowTest, SourcesAreRemovedOneByOneAndAllAtOnce) {
    for (const char* path : {"src/a", "src2/b", "src3"}) folder(path);
    startWithReport();
    s.scan(at("src2"));
    s.scan(at("src3"));
    EXPECT_EQ(s.rows(), "src a src2 b src3");
    s.clickRow("src2");
    s.click("cbrReport.7");
    EXPECT_EQ(s.rows(), "src a src3");
    s.click("cbrReport.9");
    EXPECT_EQ(s.rows(), "");
    s.scan(at("src"));
    EXPECT_EQ(s.rows(), "src a");
}

TEST_F(MainWindowTest, AFaultIsShownAndAfterWeiterTheWindowWorksOn) {
    folders(5);
    s.fileSystem.beforeBlock = [](int block) {
        if (block == 3) throw std::runtime_error("provoked");
    };
    std::string name;
    QString keys;
    s.answers.add([&](QDialog& dialog) {
        name = dialog.objectName().toStdString();
        for (auto* button : dialog.findChildren<QAbstractButton*>()) keys += button->shortcut().toString();
        test::pressIn(dialog, "Weiter");
    });
    startWithReport();
    EXPECT_EQ(name, "frmFehler");
    EXPECT_TRUE(keys.contains(QLatin1String("Alt+W"))) << keys.toStdString();
    ASSERT_EQ(s.reports.size(), 1U);
    EXPECT_NE(s.reports[0].find("provoked"), std::string::npos);
    s.fileSystem.beforeBlock = nullptr;
    s.click("cbrReport.9");
    s.scan(at("src"));
    EXPECT_EQ(s.numbers("src"), "50|5|5");
}

}  // namespace
}  // namespace hl
