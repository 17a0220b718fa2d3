// Tests the content of the four lists against what the system says of the tree, and what is saved of them.

#include "gui/lists_fixture.h"
#include "scan/list_handover.h"
#include "support/mounted.h"

namespace hl::test {
namespace {

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
    file("src/a/new", 1);
    s.clickRow("a");
    EXPECT_EQ(s.names(view), Names{"y"});
    s.click(Command::kFilesRefresh);
    EXPECT_EQ(s.names(view), (Names{"y", "new"}));
    s.click(Command::kShowTop);
    s.clickRow("b");
    EXPECT_EQ(s.names(view), Names()) << "a hidden list reads nothing";
    s.click(Command::kShowFiles);
    EXPECT_EQ(s.names(view), Names{"z"});
    fs::remove_all(at("src/b"));
    s.click(Command::kFilesRefresh);
    EXPECT_EQ(s.secondPanel(), "0 Datei(en) mit insgesamt 0 Bytes");
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
    const std::size_t count = s.open(kFileList).grid().rowCount();
    EXPECT_TRUE(count > 0 && count < kCount) << count;
    const QString sum = QLocale(QLocale::German).toString(static_cast<qulonglong>(7 * count));
    EXPECT_TRUE(s.secondPanel().ends_with(" " + sum.toStdString() + " Bytes")) << s.secondPanel();
}

TEST_F(ListsTest, TheLargestFilesAreAsManyAsAreWantedOfTheLastSource) {
    for (const char* path : {"src/x", "src2"}) folder(path);
    const auto pathOf = [](int size) { return (size % 2 == 0 ? "src/" : "src/x/") + std::to_string(size); };
    for (int size = 1; size <= 1200; ++size) file(pathOf(size), size);
    file("src2/1", 1);
    ListSession s(home.path());
    s.start();
    const Grid& grid = s.open(kTopList).grid();
    for (const int wanted : {5, 1000}) {
        s.type(Command::kTopCount, std::to_string(wanted), Qt::Key_End);
        s.form().handOver("\"" + at("src2") + "\" \"" + at("src") + "\"");
        s.settle();
        ASSERT_EQ(grid.rowCount(), static_cast<std::size_t>(wanted));
        for (int i = 0; i < wanted; ++i) EXPECT_EQ(s.path(grid, grid.rowAt(i)), at(pathOf(1200 - i)));
        EXPECT_EQ(s.form().parts().bars[static_cast<std::size_t>(BarId::kTop)]->find(0)->caption,
                  (wanted == 5 ? "5" : "1.000") + std::string(" größten Dateien von '") + at("src/") + "'");
        s.form().handOver("\"" + at("src2") + "\"");
        EXPECT_EQ(grid.rowCount(), 1U) << "the last source alone";
    }
}

TEST_F(ListsTest, HardlinksAreThoseOfTheInodesAndAnalyseStandsThemTogetherAndShadesThem) {
    for (const char* path : {"many/a", "many/b", "out"}) folder(path);
    // If they can be mounted, the files of these two disks have the same inode numbers.
    const Mounted disks[] = {{"none", at("many/c"), "tmpfs"}, {"none", at("many/d"), "tmpfs"}};
    for (const char* file : {"many/c/x", "many/c/y", "many/d/x", "many/d/y"}) {
        makeFile(at(file), 1);
        link(file, std::string(file) + " again");
    }
    std::map<std::string, std::string> truth, shown;
    std::map<std::string, std::pair<dev_t, ino_t>> files;
    for (int i = 0; i < 70; ++i) {
        const std::string name = "/" + std::to_string(i);
        file("many/a" + name, i);
        if (i % 7 != 0) link("many/a" + name, "many/b" + name);
        if (i % 3 == 0) link("many/a" + name, "out" + name);
    }
    for (const auto& entry : fs::recursive_directory_iterator(at("many"))) {
        struct stat facts {};
        ASSERT_EQ(lstat(entry.path().c_str(), &facts), 0);
        if (entry.is_regular_file() && facts.st_nlink > 1)
            truth[entry.path().string()] = fileId(facts.st_ino) + " " + std::to_string(facts.st_nlink);
        files[entry.path().string()] = {facts.st_dev, facts.st_ino};
    }
    options("ScanHardlinks=1\r\n");
    ListSession s(home.path(), at("many"));
    GridView& view = s.open(kHardlinkList);
    s.click(Command::kHardlinksAnalyze);
    const Grid& grid = view.grid();
    for (std::size_t i = 0; i < grid.rowCount(); ++i) {
        const Row row = grid.rowAt(i);
        shown[s.path(grid, row)] =
            std::string(grid.cellText(row, kFileId)) + " " + view.cellText(2, row).toStdString();
    }
    const auto expectShades = [&] {
        for (std::size_t i = 1; i < grid.rowCount(); ++i) {
            const Row row = grid.rowAt(i), above = grid.rowAt(i - 1);
            EXPECT_EQ(grid.backColor(row) == grid.backColor(above),
                      files[s.path(grid, row)] == files[s.path(grid, above)])
                << s.path(grid, row);
        }
    };
    expectShades();
    for (int order = 0; order < 2; ++order) {
        ListSession::clickTitleOf(view, 1);
        expectShades();
    }
    EXPECT_EQ(shown, truth);
    const QImage painted = view.viewport()->grab().toImage();
    const RowRange rows = *view.visibleRows();
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
    }
    EXPECT_EQ(shown, links);
}

TEST_F(ListsTest, EachListIsSavedInBothFormatsWithTheColumnsThatShow) {
    folder("src");
    file("src/" + kBytes, 5);
    fs::create_hard_link(at("src/") + kBytes, at("src/b.txt"));
    fs::create_directory_symlink("..", at("src/link"));
    ListSession s(home.path(), at("src"));
    const std::string odd = decodable(kBytes);
    const std::tuple<ListInfo, std::string, std::string> cases[] = {
        {kFileList, "\"Dateiname\";\"Größe (Bytes)\";\"Typ\"", odd + "\t5"},
        {kTopList, "\"Dateiname\";\"Größe (Bytes)\";\"Endung\"", odd + "\t5\tTXT"},
        {kHardlinkList, "\"Dateiname\";\"ID\";\"Pfad\"", odd},
        {kJunctionList, "\"Junction\";\"Zielordner\"", at("src/link") + "\t.."}};
    for (const auto& [list, titles, line] : cases) {
        s.open(list);
        if (list.id != GridId::kJunctions) s.click(list.columns + 1);
        const std::string text =
            s.saved(list, Qt::Key_T, at("t" + std::to_string(idOf(list.panel)) + ".txt"));
        const std::string csv = s.saved(list, Qt::Key_C, at("c" + std::to_string(idOf(list.panel)) + ".csv"));
        EXPECT_TRUE(has(text, line));
        EXPECT_EQ(csv.find(titles), 0U) << csv;
        EXPECT_TRUE(has(csv, "\r\n\"" + replaceAll(line, "\t", "\";\"") + "\""));
        EXPECT_EQ(std::ranges::count(text, '\n') + 1, std::ranges::count(csv, '\n'))
            << "all rows, and the titles";
    }
}

}  // namespace
}  // namespace hl::test
