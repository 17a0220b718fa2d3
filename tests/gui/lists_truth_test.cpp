// What the four lists hold, compared with what the system says of the tree, and what is saved of them.

#include <random>

#include "gui/lists_fixture.h"
#include "scan/list_handover.h"

namespace hl {
namespace {

namespace fs = std::filesystem;
using namespace test;

TEST_F(ListsTest, FilesFollowTheSelectedFolderAndAreReadAgainOnlyWhenAsked) {
    smallTree();
    ListSession s(home.path(), at("src"));
    GridView& view = s.window().grid(GridId::kFiles);
    s.key(s.view(), Qt::Key_F8);
    s.clickRow("a");
    EXPECT_EQ(s.names(view), Names{"y"});
    s.key(s.view(), Qt::Key_Down);
    EXPECT_EQ(s.names(view), Names{"x"});
    s.clickRow("Dateien");
    EXPECT_EQ(s.names(view), Names{"y"}) << "the row of a folder's own files lists that folder";
    s.clickRow("a");
    file("src/a/new", 1);
    s.clickRow("a");
    EXPECT_EQ(s.names(view), Names{"y"});
    s.click("cbrFiles.300");
    EXPECT_EQ(s.names(view), (Names{"y", "new"}));
    s.click("cbrMain.307");
    s.clickRow("b");
    s.click("cbrMain.306");
    EXPECT_EQ(s.names(view), Names{"z"}) << "a list that comes back catches up";
}

TEST_F(ListsTest, EscapeInTheMiddleKeepsTheFilesThatWereReadWithTheirSum) {
    constexpr int kCount = 15'000;
    folder("src");
    for (int i = 0; i < kCount; ++i) file("src/" + std::to_string(i), 7);
    ListSession s(home.path());
    s.start();
    s.fileSystem.beforeFiles = [&](int block) {
        if (block == 2) QTest::keyClick(&s.frame(), Qt::Key_Escape);
    };
    s.scan(at("src"));
    GridView& view = s.open(kFileList);
    const std::size_t count = view.grid().rowCount();
    EXPECT_TRUE(count > 0 && count < kCount) << count;
    const auto text = [](std::size_t number) {
        return QLocale(QLocale::German).toString(static_cast<qulonglong>(number)).toStdString();
    };
    EXPECT_EQ(s.secondPanel().substr(s.secondPanel().find(" mit")),
              " mit insgesamt " + text(7 * count) + " Bytes");
    EXPECT_TRUE(s.enabled("cbrFiles.300"));
    s.fileSystem.beforeFiles = nullptr;
    s.press(kFileList, 300);
    EXPECT_EQ(view.grid().rowCount(), std::size_t{kCount});
}

struct FoundFile {
    std::string path;
    double size;
};

/// All files below a folder, the largest first.
std::vector<FoundFile> filesBySize(const std::string& root) {
    std::vector<FoundFile> all;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        if (entry.is_regular_file())
            all.push_back({entry.path().string(), static_cast<double>(entry.file_size())});
    std::sort(all.begin(), all.end(), [](const FoundFile& a, const FoundFile& b) { return a.size > b.size; });
    return all;
}

TEST_F(ListsTest, TheLargestFilesAreThoseOfASortedListingForAnyLength) {
    std::mt19937 random(11);
    for (int i = 0; i < 60; ++i) {
        folder("src/" + std::to_string(i) + "/x");
        for (int j = 0; j < 110; ++j) {
            const int size = j % 10 == 0 ? 0 : 1000 * static_cast<int>(1 + random() % 40);
            file("src/" + std::to_string(i) + (j % 2 == 0 ? "/x/" : "/") + std::to_string(j), size);
        }
    }
    folder("src2");
    for (int i = 1; i < 4; ++i) file("src2/" + std::to_string(i), i);
    const auto all = filesBySize(at("src"));
    for (const std::size_t wanted : {0U, 1U, 5U, 100U, 5000U}) {
        options("TOPmaxcount=" + std::to_string(wanted) + "\r\n");
        ListSession s(home.path());
        s.start();
        s.form().handOver("\"" + at("src2") + "\" \"" + at("src") + "\"");
        s.settle();
        const GridView& view = s.open(kTopList);
        const Grid& grid = view.grid();
        ASSERT_EQ(grid.rowCount(), wanted);
        std::map<std::string, double> shown;
        for (std::size_t i = 0; i < wanted; ++i) {
            EXPECT_EQ(grid.number(grid.rowAt(i), kFileSize), all[i].size) << i << " of " << wanted;
            shown[s.path(grid, grid.rowAt(i))] = grid.number(grid.rowAt(i), kFileSize);
        }
        EXPECT_EQ(shown.size(), wanted) << "no file twice";
        const auto isShown = [&](const FoundFile& one) {
            const auto found = shown.find(one.path);
            return found != shown.end() && found->second == one.size;
        };
        EXPECT_EQ(std::ranges::count_if(all, isShown), static_cast<std::ptrdiff_t>(wanted))
            << "each is on the disk";
        EXPECT_EQ(s.form().parts().bars[static_cast<std::size_t>(BarId::kTop)]->find(0)->caption,
                  std::to_string(wanted) + " größten Dateien von '" + at("src/") + "'");
        EXPECT_EQ(s.reports, Names());
        EXPECT_EQ(s.grid().number(s.row("src"), hl::kFiles), static_cast<double>(all.size()));
        s.form().handOver("\"" + at("src2") + "\"");
        EXPECT_EQ(grid.rowCount(), std::min<std::size_t>(wanted, 3)) << "the last source alone";
    }
}

TEST_F(ListsTest, AListThatIsSortedOtherwiseIsCutByThatOrder) {
    folder("src");
    for (int i = 10; i < 90; ++i) file("src/" + std::to_string(i), i);
    ListSession s(home.path());
    s.start();
    GridView& view = s.open(kTopList);
    s.typeIn(kTopList, 322, "6", Qt::Key_Tab);
    s.scan(at("src"));
    EXPECT_EQ(s.names(view), (Names{"89", "88", "87", "86", "85", "84"}));
    s.clickTitleOf(view, 0);
    s.scan(at("src"));
    EXPECT_EQ(s.names(view), (Names{"10", "11", "12", "13", "14", "15"}));
}

TEST_F(ListsTest, HardlinksAreThoseOfTheInodesAndAnalyseStandsThemTogetherAndShadesThem) {
    for (const char* path : {"none", "one", "two", "many/a", "many/b", "out"}) folder(path);
    for (int i = 0; i < 700; ++i) {
        const std::string name = "/" + std::to_string(i);
        file("many/a" + name, i);
        if (i % 7 != 0) link("many/a" + name, "many/b" + name);
        if (i % 3 == 0) link("many/a" + name, "out" + name);
        if (i < 1) link("many/a" + name, "one" + name);
        if (i > 0 && i < 3) link("many/a" + name, "two" + name);
    }
    ListSession s(home.path());
    s.start();
    GridView& view = s.open(kHardlinkList);
    const Grid& grid = view.grid();
    for (const char* source : {"none", "one", "two", "many"}) {
        std::map<std::string, std::string> truth, shown;
        for (const auto& entry : fs::recursive_directory_iterator(at(source))) {
            struct stat facts {};
            ASSERT_EQ(lstat(entry.path().c_str(), &facts), 0);
            if (entry.is_regular_file() && facts.st_nlink > 1)
                truth[entry.path().string()] = fileId(facts.st_ino) + " " + std::to_string(facts.st_nlink);
        }
        s.scan(at(source));
        s.press(kHardlinkList, 300);
        std::set<std::string> before;
        std::string id;
        std::uint32_t shade = 0xF0F0F0;
        for (std::size_t i = 0; i < grid.rowCount(); ++i) {
            const Row row = grid.rowAt(i);
            const std::string own(grid.cellText(row, kFileId));
            shown[s.path(grid, row)] = own + " " + view.cellText(2, row).toStdString();
            if (own != id) {
                EXPECT_TRUE(before.insert(own).second) << "a group stands in two places";
                shade = shade == 0xFFFFFF ? 0xF0F0F0 : 0xFFFFFF;
            }
            id = own;
            EXPECT_EQ(grid.backColor(row), grid.rowCount() < 2 ? std::nullopt : std::optional(shade))
                << source;
        }
        EXPECT_EQ(shown, truth) << source;
    }
    EXPECT_EQ(grid.rowCount(), 1234U);
    const QImage painted = view.viewport()->grab().toImage();
    const RowRange rows = *view.visibleRange();
    for (std::size_t i = rows.first; i < rows.last; ++i)
        EXPECT_EQ(painted.pixel(1, view.rowRect(i).top() + 2) & 0xFFFFFF, grid.backColor(grid.rowAt(i))) << i;
}

TEST_F(ListsTest, JunctionsAreTheLinksToFoldersWithTheirTargetsInAnyBytes) {
    folder("src/" + kBytes);
    file("src/file", 1);
    const std::map<std::string, std::string> links = {{"folder", tree.path()},
                                                      {"up", ".."},
                                                      {"here", "."},
                                                      {kBytes + "/deep", "../" + kBytes},
                                                      {kBytes + "2", kBytes}};
    for (const auto& [name, target] : links) fs::create_directory_symlink(target, at("src/") + name);
    for (const char* file : {"file", "nowhere", "self"}) fs::create_symlink(file, at("src/to ") + file);
    fs::create_symlink("self", at("src/self"));
    ListSession s(home.path(), at("src"));
    GridView& view = s.open(kJunctionList);
    std::map<std::string, std::string> shown;
    for (Row row = view.grid().firstRoot(); row != kNoRow; row = view.grid().nextSibling(row)) {
        shown[std::string(view.grid().text(row)).substr(at("src/").size())] =
            view.grid().cellText(row, kJunctionTarget);
        EXPECT_EQ(view.cellText(2, row), QStringLiteral("Symbolischer Link"));
        EXPECT_EQ(view.grid().picture(row), int{kPictureLink});
    }
    EXPECT_EQ(shown, links);
}

TEST_F(ListsTest, EachListIsSavedInBothFormatsWithTheColumnsThatShow) {
    folder("src");
    file("src/" + kBytes, 5);
    fs::create_hard_link(at("src/") + kBytes, at("src/b.txt"));
    fs::create_directory_symlink(kBytes + "dir", at("src/link"));
    folder("src/" + kBytes + "dir");
    ListSession s(home.path(), at("src"));
    for (const ListInfo& list : kAll) {
        GridView& view = s.open(list);
        if (list.id != GridId::kJunctions) s.press(list, 311);
        const std::string text = s.saved(list, Qt::Key_T, at(list.bar + std::string(".txt")));
        const std::string csv = s.saved(list, Qt::Key_C, at(list.bar + std::string(".csv")));
        std::string expectedText, expectedCsv;
        const auto line = [&](auto cell) {
            for (const std::size_t column : view.shownColumns()) {
                if (column + 1 == view.grid().columns().size()) continue;
                expectedText += (column == 0 ? "" : "\t") + decodable(cell(column));
                expectedCsv += (column == 0 ? "\"" : ";\"") + decodable(cell(column)) + "\"";
            }
            expectedText += "\r\n";
            expectedCsv += "\r\n";
        };
        line([&](std::size_t column) { return view.grid().columns()[column].title; });
        expectedText.clear();
        for (Row row = view.grid().firstRoot(); row != kNoRow; row = view.grid().nextSibling(row))
            line([&](std::size_t column) {
                const CellId cell = view.grid().cell(view.grid().columns()[column].key);
                if (cell == kNoCell) return std::string(view.grid().text(row));
                if (view.grid().cells().isText(cell)) return std::string(view.grid().cellText(row, cell));
                return std::string(trimBlanks(view.cellText(column, row).toStdString()));
            });
        EXPECT_EQ(text, expectedText);
        EXPECT_EQ(csv, expectedCsv);
        EXPECT_NE(csv.find("\xEF\xBF\xBD\xEF\xBF\xBD odd"), std::string::npos);
    }
}

}  // namespace
}  // namespace hl
