// What the window shows after something went from the disk, compared with a fresh scan.
#include "gui/files_fixture.h"

namespace hl {
namespace {

using namespace test;

using GoneTest = FilesTest;

/// A way to delete something below src, and what is gone then.
struct Deletion {
    const char* name;
    std::function<void()> act;
    Names gone;
};

TEST_F(GoneTest, WhateverGoesNumbersAndListsAreThoseOfAFreshScan) {
    const auto makeTree = [&] {
        fs::remove_all(at("src"));
        for (const char* path : {"src/sub/deep", "src/other", "src/sub/lone/only"}) folder(path);
        int size = 0;
        for (const char* path : {"src/a.txt", "src/b.txt", "src/c.txt", "src/sub/d.txt", "src/sub/deep/e.txt",
                                 "src/sub/lone/f.txt", "src/sub/lone/only/g.txt"})
            file(path, size += 100);
        file("src/other/own", 7);
        link("src/c.txt", "src/sub/c again");
        for (const char* path : {"src/sub/deep/e 2", "src/other/e 3"}) link("src/sub/deep/e.txt", path);
        fs::create_directory_symlink("../../other", at("src/sub/deep/to other"));
    };
    const auto menu = [&](const char* row, const char* command) {
        const MenuAnswer answer(command);
        rightClick(s().view(), s().row(row));
    };
    const auto inList = [&](const ListInfo& info, const Names& names, Command command) {
        GridView& list = session_->open(info);
        Grid& grid = *s().form().parts().grids[static_cast<std::size_t>(info.id)];
        grid.selectNone();
        for (Row row = grid.firstRoot(); row != kNoRow; row = grid.nextSibling(row))
            if (std::ranges::count(names, grid.text(row)) > 0) grid.setSelected(row, true);
        answer("Ja");
        session_->click(command);
        for (const std::string& name : ListSession::names(list))
            EXPECT_EQ(std::ranges::count(names, name), 0);
    };
    const Deletion deletions[] = {
        {"menu", [&] { menu("deep", "Ordner löschen"); }, {"sub/deep"}},
        {"recycle",
         [&] {
             for (const char* row : {"deep", "other"}) menu(row, "Ordner in den Papierkorb verschieben");
         },
         {"sub/deep", "other"}},
        {"last folder of a folder", [&] { menu("only", "Ordner löschen"); }, {"sub/lone/only"}},
        {"link", [&] { menu("to other", "Ordner löschen"); }, {"sub/deep/to other"}},
        {"several",
         [&] {
             s().clickRow("deep");
             QTest::mouseClick(s().view().viewport(), Qt::LeftButton, Qt::ControlModifier,
                               centerOf(s().view(), s().row("lone")));
             s().execute(Command::kDeleteFolders);
         },
         {"sub/deep", "sub/lone"}},
        {"a source within", [&] { menu("sub", "Ordner löschen"); }, {"sub"}},
        {"files",
         [&] {
             inList(kFileList, {"a.txt", "c.txt"}, Command::kFilesDelete);
         },
         {"a.txt", "c.txt"}},
        {"recycled files", [&] { inList(kFileList, {"c.txt"}, Command::kFilesRecycle); }, {"c.txt"}},
        {"all files",
         [&] {
             inList(kFileList, {"a.txt", "b.txt", "c.txt"}, Command::kFilesDelete);
         },
         {"a.txt", "b.txt", "c.txt"}},
        {"largest",
         [&] {
             inList(kTopList, {"e.txt", "f.txt"}, Command::kTopDelete);
         },
         {"sub/deep/e.txt", "sub/lone/f.txt"}},
        {"hard links",
         [&] {
             inList(kHardlinkList, {"e.txt", "c again"}, Command::kHardlinksDelete);
         },
         {"sub/deep/e.txt", "sub/c again"}},
    };
    for (const bool once : {false, true}) {
        options(once ? "AddHardlinksOnlyOnce=1\r\nFolderShowPercentBar=1\r\n" : "");
        for (const auto& [name, act, gone] : deletions) {
            SCOPED_TRACE(std::string(name) + (once ? ", names count once" : ""));
            makeTree();
            session_.emplace(home.path(), at("src/sub"));
            const Names others = {at("src/sub"), fs::path(s().trash()).parent_path()};
            s().scan(others[1]);
            s().scan(at("src"));
            s().click(Command::kReportUnfoldAll);
            act();
            for (const std::string& path : gone) EXPECT_FALSE(there("src/" + path)) << path;
            expectNumbersOfAFreshScan(others);
            EXPECT_EQ(s().reports, Names());
            session_.reset();
        }
    }
}

TEST_F(GoneTest, ALinkToAFolderThatWentIsAFileAndNoJunction) {
    fs::create_directory_symlink("../sub", at("src/other/link"));
    start();
    s().click(Command::kReportUnfoldAll);
    {
        const MenuAnswer menu("Ordner löschen");
        rightClick(s().view(), s().row("sub"));
    }
    EXPECT_EQ(s().row("link"), kNoRow);
    EXPECT_EQ(s().grid().number(s().row("other"), kFiles), 1);
    EXPECT_EQ(s().grid().number(s().row("src"), kSize), 606);
    EXPECT_EQ(s().grid().number(s().row("src"), kFolders), 1);
    EXPECT_EQ(s().window().grid(GridId::kJunctions).grid().rowCount(), 0u);
}

TEST_F(GoneTest, WhatIsLeftOfAFolderIsReadAgainAndToldOnce) {
    start();
    s().click(Command::kReportUnfoldAll);
    s().clickRow("deep");
    for (const char* row : {"sub", "other"})
        QTest::mouseClick(s().view().viewport(), Qt::LeftButton, Qt::ControlModifier,
                          centerOf(s().view(), s().row(row)));
    s().operations().allows = [&](const fs::path& path) {
        fs::remove(at("src/sub/deep/e.txt"));
        return path.filename() == "other";
    };
    std::string text;
    answer("OK", &text);
    s().execute(Command::kDeleteFolders);
    for (const char* folder : {"src/sub", "src/sub/deep"}) {
        const std::string line = "Beim Löschen des Ordners '" + at(folder) + "'";
        EXPECT_NE(text.find(line), std::string::npos) << text;
        EXPECT_NE(protocol().find(line), std::string::npos);
    }
    EXPECT_NE(protocol().find("GELÖSCHT: " + at("src/other") + "\r\n"), std::string::npos);
    EXPECT_EQ(s().grid().selectedCount(), 2u) << "what stayed";
    EXPECT_TRUE(s().grid().expanded(s().row("sub")));
    expectNumbersOfAFreshScan();
}

TEST_F(GoneTest, WhatShowsADeletedFolderGoesOnWithTheFolderAboveIt) {
    start();
    s().click(Command::kReportUnfoldAll);
    s().clickRow("deep");
    s().execute(Command::kRecycleFolders);
    EXPECT_EQ(s().grid().currentRow(), s().row("sub"));
    EXPECT_EQ(s().grid().selectedRows(), std::vector<Row>{s().row("sub")});
    EXPECT_EQ(s().status(), at("src/sub/"));
    EXPECT_EQ(ListSession::names(s().window().grid(GridId::kFiles)), Names{"d.txt"});
    s().clickRow("src");
    s().execute(Command::kDeleteFolders);
    EXPECT_EQ(s().grid().rowCount(), 0u);
    EXPECT_EQ(s().status(), "");
    EXPECT_EQ(ListSession::names(s().window().grid(GridId::kFiles)), Names());
}

}  // namespace
}  // namespace hl
