// Tests deleting, recycling, renaming and the menus, in the window, on files of the disk.
#include "gui/files_fixture.h"

namespace hl::test {
namespace {

TEST_F(FilesTest, TheReportBesideTheListStaysFittedWhenAFileIsDeleted) {
    std::string deep = "src/1";
    for (int level = 2; level <= 16; ++level) deep += "/" + std::to_string(level);
    folder(deep + "/17");
    file(deep + "/x", 5);
    makeFile(at(deep + "/y"), 1'234'567'890'123);
    options("FileSizeFormat=0\r\n");
    startUnfolded();
    s().clickRow("16");
    const std::vector<double> before = s().widths();
    GridView& list = s().window().grid(GridId::kFiles);
    session_->sortByName(list);
    ListSession::clickOn(list, 1);
    deleteInList();
    EXPECT_EQ(ListSession::names(list), Names{"x"});
    s().expectFitted();
    EXPECT_NE(s().widths(), before) << "the largest number went";
}

TEST_F(FilesTest, AFileThatStaysIsToldAndTheNextOneGoes) {
    GridView& list = startWithList();
    fs::remove(at("src/b.txt"));
    folder("src/b.txt");
    selectFirst(list, 3);
    std::string text;
    answer("OK", &text);
    session_->click(Command::kFilesDelete);
    EXPECT_TRUE(has(text, "Beim Löschen der Datei '" + at("src/b.txt")));
    EXPECT_FALSE(there("src/a.txt") || there("src/c.txt"));
    EXPECT_TRUE(has(protocol(), at("src/b.txt")));
}

TEST_F(FilesTest, ASourceHandedOverWhileAMenuIsOpenWaitsAndSelectsNothingThatIsDeleted) {
    startUnfolded();
    s().clickRow("deep");
    toggleRow("sub");
    MenuAnswer menu("Markierte Ordner löschen", [&] { s().form().handOver("\"" + at("src/other") + "\""); });
    rightClick(s().view(), s().row("sub"));
    EXPECT_TRUE(!there("src/sub") && there("src/other"));
    EXPECT_EQ(s().grid().text(s().grid().currentRow()), at("src/other"));
}

TEST_F(FilesTest, WhatIsTakenOutOfTheSelectionStaysAndTheRestIsTold) {
    startUnfolded();
    s().clickRow("sub");
    toggleRow("other");
    toggleRow("sub");
    EXPECT_EQ(s().grid().selectedRows(), std::vector<Row>{s().row("other")});
    EXPECT_EQ(s().grid().currentRow(), s().row("other"));
    EXPECT_EQ(s().status(), at("src/other/"));
    EXPECT_EQ(s().form().state().fileList.folder, at("src/other/"));
    s().execute(Command::kDeleteFolders);
    EXPECT_TRUE(there("src/sub/deep") && !there("src/other"));

    // With Ctrl, keys move from row to row without selecting, and Space deselects.
    s().clickRow("src");
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers with) {
        QTest::keyClick(&s().view(), key, with);
        Session::settle();
    };
    for (const Qt::Key pressed : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Space})
        press(pressed, Qt::ControlModifier);
    EXPECT_EQ(s().grid().selectedCount(), 2u);
    const Row current = s().grid().currentRow();
    EXPECT_TRUE(current != s().row("src") && s().grid().selected(current));
    press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(s().grid().currentRow(), current);
    EXPECT_EQ(s().grid().selectedRows(), std::vector<Row>{s().row("src")});
    EXPECT_EQ(s().status(), at("src/"));
}

TEST_F(FilesTest, WhatHasVanishedHasNoMenuAndTheStatusSaysWhy) {
    startUnfolded();
    fs::remove_all(at("src/sub"));
    const auto waited = [&](const std::string& path) {
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_EQ(s().status(), "'" + path + "' ist nicht mehr da.");
        EXPECT_TRUE(has(contentOf(home.path() + "/debug.log"), path));
    };
    rightClick(s().view(), s().row("deep"));
    waited(at("src/sub/deep"));
    GridView& list = session_->open(kTopList);
    session_->sortByName(list);
    rightClick(list, list.grid().rowAt(4));
    waited(at("src/sub/deep/e.txt"));
}

TEST_F(FilesTest, StopEndsBetweenTwoRowsAndNothingElseBeginsMeanwhile) {
    GridView& list = startWithList();
    selectFirst(list, 3);
    int operations = 0;
    s().operations().before = [&](OperationWatch& watch) {
        ++operations;
        watch.stillAt("/some/where", false);
        EXPECT_EQ(s().status(), "Wird gelöscht: /some/where");
        EXPECT_TRUE(!s().enabled(Command::kStart) && s().enabled(Command::kStop));
        s().clickTitle(0);
        session_->clickTitleOf(list, 0);
        ListSession::clickOn(list, 1);
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Return}) s().key(list, key);
        EXPECT_EQ(ListSession::names(list), (Names{"a.txt", "b.txt", "c.txt"}));
        EXPECT_TRUE(list.grid().selectedCount() == 3 && s().desktop.opened.empty());
        session_->click(Command::kFilesDelete);
        s().form().handOver(at("src/other"));
        s().click(Command::kStop);
    };
    deleteInList();
    EXPECT_EQ(operations, 1);
    EXPECT_TRUE(there("src/a.txt") && there("src/b.txt") && !there("src/c.txt"));
    EXPECT_TRUE(s().enabled(Command::kStart));
}

TEST_F(FilesTest, StopEndsWithinAFolderWhoseRestIsReadAndTold) {
    for (int i = 0; i < 20'000; ++i) file("src/sub/deep/" + std::to_string(i), 0);
    startUnfolded();
    s().clickRow("deep");
    s().operations().before = [&](OperationWatch&) {
        QTimer::singleShot(0, &s().frame(), [&] { s().click(Command::kStop); });
    };
    std::string text;
    answer("OK", &text);
    s().execute(Command::kDeleteFolders);
    EXPECT_TRUE(there("src/sub/deep"));
    EXPECT_TRUE(has(text, "'" + at("src/sub/deep") + "' wurde angehalten"));
    const auto left = std::distance(fs::directory_iterator(at("src/sub/deep")), fs::directory_iterator());
    EXPECT_EQ(s().grid().number(s().row("deep"), kFiles), static_cast<double>(left));
    EXPECT_LT(left, 20'000);
}

TEST_F(FilesTest, EscapeHeldDownInABoxEndsTheBoxAndNoDeleting) {
    GridView& list = startWithList();
    selectFirst(list, 3);
    s().operations().before = [&](OperationWatch& watch) {
        s().answers.add([](QDialog& dialog) { QTest::keyPress(&dialog, Qt::Key_Escape); });
        s().window().window().dialogs.message(MessageKind::kWarning, "box");
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Escape, {}, {}, true);
        QApplication::sendEvent(&s().frame(), &repeated);
        QTest::keyRelease(&s().frame(), Qt::Key_Escape);
        watch.stillAt("/some/where", false);
    };
    deleteInList();
    EXPECT_FALSE(there("src/a.txt") || there("src/b.txt") || there("src/c.txt"));
}

TEST_F(FilesTest, TheMenuOfAFolderFoldsAndDeletesItAndTheNumbersFollow) {
    folder("src/sub/deep/er");
    startUnfolded();
    for (const auto& [entry, unfolds] :
         {std::pair("Alle Unterordner zuklappen", false), {"Alle Unterordner aufklappen", true}}) {
        chooseInMenu("sub", entry);
        for (const char* row : {"sub", "deep"})
            EXPECT_EQ(s().grid().expanded(s().row(row)), unfolds) << entry;
        EXPECT_TRUE(s().grid().expanded(s().row("src")));
    }
    MenuAnswer menu("Ordner löschen");
    rightClick(s().view(), s().row("deep"));
    EXPECT_FALSE(there("src/sub/deep"));
    expectNumbersOfAFreshScan();
    EXPECT_TRUE(has(protocol(), "GELÖSCHT: " + at("src/sub/deep") + "\r\n"));
    const Names own(menu.entries().end() - 14, menu.entries().end());
    EXPECT_EQ(
        own, (Names{"-", "Ordner in den Papierkorb verschieben", "-", "Ordner löschen", "Was kommt zurück?",
                    "-", "Ordner umbenennen", "-", "Alle Unterordner zuklappen",
                    "Alle Unterordner aufklappen", "-", "Ordner neu einlesen", "-", "Terminal hier öffnen"}));
}

TEST_F(FilesTest, AFolderThatHoldsTheHomeStaysAndTheUserIsToldWhy) {
    start();
    fs::create_directories(s().userHome());
    const fs::path homes = fs::path(s().userHome()).parent_path();
    s().scan(homes.parent_path().string());
    s().clickRow(homes.filename());
    std::string text;
    answer("OK", &text);
    s().execute(Command::kDeleteFolders);
    EXPECT_TRUE(has(text, "enthält Ihren persönlichen Ordner"));
    EXPECT_TRUE(fs::exists(s().userHome()));
}

TEST_F(FilesTest, NothingIsChangedWhereTheSourceIsAnotherFolderThanTheOneThatWasRead) {
    GridView& list = startWithList();
    fs::rename(at("src"), at("gone"));
    fs::copy(at("gone"), at("precious"), fs::copy_options::recursive);
    fs::create_directory_symlink(at("precious"), at("src"));
    const auto expectTold = [&](const std::string& what, const std::function<void()>& act) {
        std::string text;
        answer("OK", &text);
        act();
        EXPECT_TRUE(has(text, "ist jetzt ein anderer Ordner")) << what;
    };
    for (const Command command : {Command::kDeleteFolders, Command::kRecycleFolders}) {
        s().clickRow("sub");
        expectTold("report", [&] { s().execute(command); });
    }
    s().clickRow("src");
    for (const Command command : {Command::kFilesDelete, Command::kFilesRecycle}) {
        ListSession::clickOn(list, 0);
        expectTold("list", [&] { session_->click(command); });
    }
    expectTold("name", [&] { rename(list, "new.txt"); });
    for (const char* path : {"a.txt", "sub/d.txt", "sub/deep/e.txt"})
        EXPECT_TRUE(there(std::string("precious/") + path) && there(std::string("gone/") + path)) << path;
    s().scan(at("src"));
    s().clickRow("sub");
    s().execute(Command::kDeleteFolders);
    EXPECT_FALSE(there("precious/sub")) << "read again it is what the user sees";
}

TEST_F(FilesTest, F2RenamesInTheCell) {
    GridView& list = startWithList();
    ListSession::clickOn(list, 0);
    rename(list, QStringLiteral("new ü.txt"));
    EXPECT_TRUE(there("src/new ü.txt") && !there("src/a.txt"));
    rename(list, QStringLiteral("c.txt"));
    EXPECT_EQ(ListSession::names(list), (Names{"c.txt", "b.txt"})) << "the row of the former c.txt is gone";
    EXPECT_EQ(fs::file_size(s().trash() + "/files/c.txt"), 300u);
    EXPECT_EQ(s().status(), "Die frühere Datei '" + at("src/c.txt") + "' liegt jetzt im Papierkorb.");
    EXPECT_EQ(s().grid().number(s().grid().firstRoot(), kSize), 1200);
    rename(list, QStringLiteral("new ü.txt"));
    std::string text;
    answer("OK", &text);
    rename(list, QStringLiteral("none/x"));
    EXPECT_TRUE(has(text, "No such file"));
    EXPECT_EQ(ListSession::names(list)[0], "new ü.txt");

    s().click(Command::kShowReport);
    s().clickRow("sub");
    rename(s().view(), QStringLiteral("bus"));
    EXPECT_TRUE(there("src/bus/deep/e.txt"));
    EXPECT_EQ(s().form().state().fileList.folder, at("src/bus/"));
}

TEST_F(FilesTest, AFileThatGetsTheOtherOfItsTwoNamesLosesARow) {
    fs::create_hard_link(at("src/a.txt"), at("src/z.txt"));
    GridView& list = startWithList();
    ListSession::clickOn(list, 3);
    rename(list, QStringLiteral("a.txt"));
    EXPECT_EQ(ListSession::names(list), (Names{"a.txt", "b.txt", "c.txt"}));
    expectNumbersOfAFreshScan();
}

TEST_F(FilesTest, ADoubleClickOpensAFileOfAnyNameAndAProgramNotWithoutAQuestion) {
    file("src/" + kBytes, 1);
    fs::create_directory_symlink("..", at("src/link"));
    options("");
    start();
    const auto edits = [](const GridView& view) {
        const auto* box = view.viewport()->findChild<QLineEdit*>();
        return box != nullptr && box->isVisible();
    };
    GridView& junctions = session_->open(kJunctionList);
    ListSession::doubleClickOn(junctions, 0);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_F2}) s().key(junctions, key);
    EXPECT_TRUE(s().desktop.opened.empty() && !edits(junctions));
    ListSession::doubleClickOn(session_->open(kTopList), 0);
    EXPECT_EQ(std::exchange(s().desktop.opened, {}), Names{at("src/sub/deep/e.txt")});
    GridView& list = session_->open(kFileList);
    session_->sortByName(list);
    ListSession::doubleClickOn(list, 3);
    EXPECT_EQ(std::exchange(s().desktop.opened, {}), Names{at("src/") + kBytes});
    selectFirst(list, 2);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_F2}) s().key(list, key);
    EXPECT_EQ(std::exchange(s().desktop.opened, {}), Names{at("src/b.txt")}) << "of two the current one";
    EXPECT_FALSE(edits(list)) << "two have no name to edit";
    s().desktop.runs = true;
    s().answers.add([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
    ListSession::doubleClickOn(list, 0);
    EXPECT_TRUE(s().desktop.opened.empty());
    answer("Ja");
    ListSession::doubleClickOn(list, 0);
    EXPECT_EQ(s().desktop.opened, (Names{at("src/a.txt")}));
}

TEST_F(FilesTest, TheFolderThatIsListedIsReadAgainWhicheverRowIsCurrent) {
    file("src/sub/deep/f.txt", 7);
    for (const char* folder : {"sub", "deep"}) {
        startUnfolded();
        session_->open(kFileList);
        s().click(Command::kShowReport);
        s().clickRow(folder);
        s().clickTitle(0);
        GridView& list = s().window().grid(GridId::kFiles);
        session_->sortByName(list);
        ListSession::clickOn(list, 0);
        deleteInList();
        expectNumbersOfAFreshScan();
    }
    EXPECT_TRUE(!(there("src/sub/d.txt") || there("src/sub/deep/e.txt")) && there("src/sub/deep/f.txt"));
}

TEST_F(FilesTest, AListsMenuIsForOneOrForSeveral) {
    GridView& list = startWithList();
    {
        const MenuAnswer menu("Datei umbenennen");
        rightClick(list, list.grid().rowAt(0));
        const Names own(menu.entries().end() - 11, menu.entries().end());
        EXPECT_EQ(own, (Names{"-", "Datei(en) in den Papierkorb verschieben", "-", "Datei(en) löschen",
                              "Was kommt zurück?", "-", "Datei umbenennen", "-", "Dateipfad öffnen",
                              "In der Ordnerliste zeigen", "Terminal hier öffnen"}));
        auto* box = list.viewport()->findChild<QLineEdit*>();
        ASSERT_NE(box, nullptr);
        s().key(*box, Qt::Key_Escape);
    }
    selectFirst(list, 2);
    MenuAnswer menu("Datei(en) löschen");
    rightClick(list, list.grid().rowAt(0));
    EXPECT_EQ(menu.entries().back(), "Was kommt zurück?");
    EXPECT_EQ(ListSession::names(list), (Names{"c.txt"}));
}

}  // namespace
}  // namespace hl::test
