// Tests what the window shows after something went from the disk, against a fresh scan.
#include "gui/files_fixture.h"
#include "support/mounted.h"

namespace hl::test {
namespace {

/// The rows that a command deletes, and what is gone below src then.
struct Deletion {
    Command command;
    Names rows, gone;
};

struct GoneTest : FilesTest {
    void makeTree() const {
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
    }
    /// Recycles rows one after another, and deletes one or two at once, by their menus.
    void removeInReport(const Deletion& one) {
        if (one.command == Command::kRecycleFolders) {
            for (const std::string& row : one.rows) chooseInMenu(row, "Ordner in den Papierkorb verschieben");
            return;
        }
        if (one.rows.size() == 1) return chooseInMenu(one.rows[0], "Ordner löschen");
        s().clickRow(one.rows[0]);
        toggleRow(one.rows[1]);
        chooseInMenu(one.rows[1], "Markierte Ordner löschen");
    }
    void removeIn(const ListInfo& info, const Deletion& one) {
        GridView& list = session_->open(info);
        Grid& grid = *s().form().parts().grids[static_cast<std::size_t>(info.id)];
        grid.selectNone();
        for (Row row = grid.firstRoot(); row != kNoRow; row = grid.nextSibling(row))
            if (std::ranges::count(one.rows, grid.text(row)) > 0) grid.setSelected(row, true);
        deleteInList(one.command);
        for (const std::string& name : ListSession::names(list))
            EXPECT_EQ(std::ranges::count(one.rows, name), 0);
    }
};

TEST_F(GoneTest, WhateverGoesNumbersAndListsAreThoseOfAFreshScan) {
    using enum Command;
    const Deletion deletions[] = {
        {kDeleteFolders, {"deep"}, {"sub/deep"}},
        {kRecycleFolders, {"deep", "other"}, {"sub/deep", "other"}},
        {kDeleteFolders, {"only"}, {"sub/lone/only"}},  // It is the last folder of its folder.
        {kDeleteFolders, {"to other"}, {"sub/deep/to other"}},
        {kDeleteFolders, {"deep", "lone"}, {"sub/deep", "sub/lone"}},
        {kDeleteFolders, {"deep", "sub"}, {"sub/deep", "sub"}},
        {kDeleteFolders, {"sub"}, {"sub"}},  // There is a source in it.
        {kFilesDelete, {"a.txt", "c.txt"}, {"a.txt", "c.txt"}},
        {kFilesRecycle, {"c.txt"}, {"c.txt"}},
        {kFilesDelete, {"a.txt", "b.txt", "c.txt"}, {"a.txt", "b.txt", "c.txt"}},
        {kTopDelete, {"e.txt", "f.txt"}, {"sub/deep/e.txt", "sub/lone/f.txt"}},
        {kHardlinksDelete, {"e.txt", "c again"}, {"sub/deep/e.txt", "sub/c again"}}};
    for (const bool once : {false, true}) {
        options(once ? "AddHardlinksOnlyOnce=1\r\nFolderShowPercentBar=1\r\n" : "");
        for (const Deletion& one : deletions) {
            SCOPED_TRACE(std::to_string(idOf(one.command)) + " " + one.rows[0] +
                         (once ? ", names count once" : ""));
            makeTree();
            session_.emplace(home.path(), at("src/sub"));
            const Names others = {at("src/sub"), fs::path(s().trash()).parent_path()};
            s().scan(others[1]);
            s().scan(at("src"));
            s().click(kReportUnfoldAll);
            // Messages run while it works, as they do for a large tree.
            s().operations().before = [](OperationWatch&) { Session::settle(); };
            fs::remove(home.path() + "/Harborlantern.log");
            const auto* list = std::ranges::find(kWithFiles, barOf(one.command),
                                                 [](const ListInfo& info) { return barOf(info.fullView); });
            if (list == std::end(kWithFiles)) {
                removeInReport(one);
            } else {
                removeIn(*list, one);
            }
            const bool recycles = one.command == kRecycleFolders || one.command == kFilesRecycle;
            for (const std::string& path : one.gone) {
                EXPECT_FALSE(there("src/" + path)) << path;
                EXPECT_TRUE(
                    has(protocol(), (recycles ? "PAPIERKORB: " : "GELÖSCHT: ") + at("src/" + path) + "\r\n"));
            }
            expectNumbersOfAFreshScan(others);
            EXPECT_EQ(s().reports, Names());
            session_.reset();
        }
    }
}

TEST_F(GoneTest, ALinkToAFolderThatWentIsAFileAndNoJunction) {
    fs::create_directory_symlink("../sub", at("src/other/link"));
    startUnfolded();
    chooseInMenu("sub", "Ordner löschen");
    EXPECT_EQ(s().row("link"), kNoRow);
    EXPECT_EQ(s().grid().number(s().row("other"), kFiles), 1);
    EXPECT_EQ(s().grid().number(s().row("src"), kSize), 606);
    EXPECT_EQ(s().grid().number(s().row("src"), kFolders), 1);
    EXPECT_EQ(s().window().grid(GridId::kJunctions).grid().rowCount(), 0u);
}

TEST_F(GoneTest, ANameThatWentIsLostByTheFileOfItsOwnDiskAlone) {
    // Where they can be mounted, two disks on which the numbers of files are the same.
    const Mounted disks[] = {{"none", at("src/one"), "tmpfs"}, {"none", at("src/two"), "tmpfs"}};
    for (const std::string disk : {"src/one", "src/two"}) {
        file(disk + "/x", 1);
        for (const char* name : {"/x 2", "/x 3"}) link(disk + "/x", disk + name);
    }
    options("ScanHardlinks=1\r\n");
    start();
    GridView& view = session_->open(kHardlinkList);
    Grid& list = s().form().form().session.lvwHardlinks;
    const auto rowOf = [&](const std::string& path) {
        Row row = list.firstRoot();
        while (row != kNoRow && ListSession::path(list, row) != path) row = list.nextSibling(row);
        return row;
    };
    list.selectNone();
    list.setSelected(rowOf(at("src/one/x 3")), true);
    deleteInList(Command::kHardlinksDelete);
    EXPECT_EQ(ListSession::names(view).size(), 5U);
    EXPECT_EQ(list.number(rowOf(at("src/one/x")), kFileLinks), 2);
    EXPECT_EQ(list.number(rowOf(at("src/two/x")), kFileLinks), 3);
}

TEST_F(GoneTest, WhatIsLeftOfAFolderIsReadAgainAndToldOnce) {
    startUnfolded();
    s().clickRow("deep");
    for (const char* row : {"sub", "other"}) toggleRow(row);
    s().operations().allows = [&](const fs::path& path) {
        fs::remove(at("src/sub/deep/e.txt"));
        return path.filename() == "other";
    };
    std::string text;
    answer("OK", &text);
    s().click(Command::kReportFullView);
    QTest::qWait(150);  // A panel shows the progress of a run at most every 100 ms.
    s().execute(Command::kDeleteFolders);
    EXPECT_EQ(s().secondPanel(), "") << "it is no run";
    for (const char* folder : {"src/sub", "src/sub/deep"}) {
        const std::string line = "Beim Löschen des Ordners '" + at(folder) + "'";
        EXPECT_TRUE(has(text, line));
        EXPECT_TRUE(has(protocol(), line));
    }
    EXPECT_TRUE(has(protocol(), "GELÖSCHT: " + at("src/other") + "\r\n"));
    EXPECT_EQ(s().grid().selectedCount(), 2u) << "what stayed";
    EXPECT_TRUE(s().grid().expanded(s().row("sub")));
    expectNumbersOfAFreshScan();
}

}  // namespace
}  // namespace hl::test
