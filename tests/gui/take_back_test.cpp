// Tests what comes back from the trash, and what is asked and told before and after something goes.
#include "gui/files_fixture.h"
#include "support/trashing.h"

namespace hl::test {
namespace {

struct TakeBackTest : FilesTest {
    TakeBackTest() {
        file("src/other/own", 7);
        link("src/c.txt", "src/sub/c again");
        fs::create_directory_symlink("../sub", at("src/other/link"));
        fs::permissions(at("src/sub/d.txt"), fs::perms::owner_read);
        for (const char* path : {"src/sub/deep/e.txt", "src/sub/deep"})
            fs::last_write_time(at(path), fs::file_time_type::clock::now() - std::chrono::hours(1000));
    }
    std::string tree() const { return snapshotOf(at("src")); }
    void takeBack() { pressed(s().view(), Qt::Key_Z, Qt::ControlModifier); }
    static void pressed(QWidget& on, Qt::Key key, Qt::KeyboardModifiers with = {}) {
        on.setFocus();
        QTest::keyClick(&on, key, with);
        Session::settle();
    }
    Names inTrash() {
        Names all;
        for (const char* part : {"/files", "/info"})
            if (fs::exists(s().trash() + part))
                for (const auto& entry : fs::directory_iterator(s().trash() + part))
                    all.push_back(entry.path().filename());
        return all;
    }
};

TEST_F(TakeBackTest, StepByStepTreeAndNumbersAreThoseOfBefore) {
    for (const bool once : {false, true}) {
        options(once ? "AddHardlinksOnlyOnce=1\r\n" : "");
        session_.emplace(home.path(), at("src/sub/deep"));
        const Names others = {fs::path(s().trash()).parent_path(), at("src/sub/deep")};
        s().scan(others[0]);
        s().scan(at("src"));
        s().click(Command::kReportUnfoldAll);
        EXPECT_FALSE(s().enabled(Command::kTakeBack));
        const std::string before = tree();
        s().clickRow("deep");
        toggleRow("other");
        pressed(s().view(), Qt::Key_Delete);
        EXPECT_TRUE(!there("src/sub/deep") && !there("src/other"));
        GridView& list = session_->open(kFileList);
        s().click(Command::kShowReport);
        s().clickRow("src");
        selectFirst(list, 2);
        pressed(list, Qt::Key_Delete);
        const std::string two = tree();
        s().clickRow("sub");
        pressed(s().view(), Qt::Key_Delete);
        EXPECT_FALSE(there("src/sub"));
        takeBack();
        EXPECT_EQ(tree(), two);
        EXPECT_EQ(s().grid().currentRow(), s().row("sub")) << "what came is seen";
        expectReportOfAFreshScan(others);
        for (int step = 0; step < 2; ++step) takeBack();
        EXPECT_EQ(tree(), before);
        EXPECT_EQ(inTrash(), Names());
        expectReportOfAFreshScan(others);
        EXPECT_FALSE(s().enabled(Command::kTakeBack)) << "nothing is left to take back";
        EXPECT_EQ(s().reports, Names());
        session_.reset();
    }
}

TEST_F(TakeBackTest, ALinkThatLedIntoAFolderLeadsThereAgain) {
    startUnfolded();
    s().clickRow("sub");
    pressed(s().view(), Qt::Key_Delete);
    EXPECT_EQ(s().row("link"), kNoRow);
    takeBack();
    EXPECT_NE(s().row("link"), kNoRow);
    expectReportOfAFreshScan();
}

TEST_F(TakeBackTest, ARenamingThatReplacedAFileIsOneStep) {
    GridView& list = startWithList();
    const std::string before = tree();
    ListSession::clickOn(list, 0);
    rename(list, QStringLiteral("c.txt"));
    EXPECT_TRUE(!there("src/a.txt"));
    EXPECT_EQ(fs::file_size(at("src/c.txt")), 100u);
    takeBack();
    EXPECT_EQ(tree(), before);
    session_->sortByName(list);
    EXPECT_EQ(ListSession::names(list), (Names{"a.txt", "b.txt", "c.txt"}));
    expectReportOfAFreshScan();
}

TEST_F(TakeBackTest, ItsMessageHasTheRoomThatTheSecondPanelDoesNotNeed) {
    const std::string longName(60, 'n');
    folder("src/" + longName);
    startUnfolded();
    const int pane = s().view().width();
    s().clickRow(longName);
    pressed(s().view(), Qt::Key_Delete);
    const auto* panel = s().frame().findChild<QWidget*>(QStringLiteral("panel1"));
    EXPECT_GT(panel->width(), pane);
    EXPECT_GE(panel->width(), panel->fontMetrics().horizontalAdvance(QString::fromStdString(s().status())));
    s().clickRow("other");
    Session::settle();
    EXPECT_NEAR(panel->width(), pane, 5) << "a short message leaves the second panel where its pane begins";
}

TEST_F(TakeBackTest, ASmallWindowBecomesWideEnoughForTheButton) {
    startUnfolded();
    s().clickRow("sub");
    s().frame().resize(60, 60);
    const int width = s().frame().width();
    pressed(s().view(), Qt::Key_Delete);
    ASSERT_NE(statusButton(Command::kTakeBack), nullptr);
    EXPECT_GT(s().frame().width(), width);
    statusButton(Command::kTakeBack)->click();
    EXPECT_TRUE(there("src/sub"));
}

TEST_F(TakeBackTest, WhatCannotComeBackIsNamedAndTheRestIsBack) {
    GridView& list = startWithList();
    selectFirst(list, 3);
    pressed(list, Qt::Key_Delete);
    writeFile(at("src/a.txt"), "new");
    fs::remove(s().trash() + "/files/b.txt");
    std::string text;
    answer("OK", &text);
    ASSERT_NE(statusButton(Command::kTakeBack), nullptr) << s().status();
    statusButton(Command::kTakeBack)->click();
    Session::settle();
    EXPECT_TRUE(has(text, "'" + at("src/a.txt") + "' wurde nicht zurückgeholt: dort gibt es inzwischen"));
    EXPECT_TRUE(has(text, "'" + at("src/b.txt") + "' wurde nicht zurückgeholt: es ist nicht mehr"));
    EXPECT_EQ(contentOf(at("src/a.txt")), "new");
    EXPECT_EQ(fs::file_size(at("src/c.txt")), 300u);
    EXPECT_EQ(s().status(), "'" + at("src/c.txt") + "' ist wieder da.");
    EXPECT_EQ(statusButton(Command::kTakeBack), nullptr);
    EXPECT_TRUE(fs::exists(s().trash() + "/files/a.txt"));
    fs::remove(at("src/a.txt"));
    takeBack();
    EXPECT_EQ(fs::file_size(at("src/a.txt")), 100u) << "the place is free now";

    s().click(Command::kShowReport);
    s().click(Command::kReportUnfoldAll);
    s().clickRow("deep");
    pressed(s().view(), Qt::Key_Delete);
    fs::remove_all(at("src/sub"));
    text.clear();
    answer("OK", &text);
    takeBack();
    EXPECT_TRUE(has(text, "der Ordner '" + at("src/sub") + "' fehlt."));
}

TEST_F(TakeBackTest, DeletingForGoodAsksWhatAndHowMuchUnlessItIsToldNotTo) {
    options("AskBeforeDelete=1\r\n");
    startUnfolded();
    s().clickRow("sub");
    toggleRow("deep");
    std::string text;
    const auto ask = [&](QWidget& on, const char* button) {
        text.clear();
        answer(button, &text);
        pressed(on, Qt::Key_Delete, Qt::ShiftModifier);
    };
    ask(s().view(), "Abbrechen");
    EXPECT_TRUE(has(text, "1 Ordner mit 3 Datei(en), 1,17 KB, für immer löschen?"));
    EXPECT_TRUE(has(text, "\nsub")) << "the folder in it is not told again";
    s().answers.add([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
    s().execute(Command::kDeleteFolders);
    EXPECT_TRUE(there("src/sub")) << "Return cancels";
    ask(s().view(), "Löschen");
    EXPECT_FALSE(there("src/sub"));
    EXPECT_EQ(s().status(), "'" + at("src/sub") + "' wurde gelöscht.");
    EXPECT_FALSE(s().enabled(Command::kTakeBack));

    s().clickRow("src");
    GridView& list = session_->open(kFileList);
    session_->sortByName(list);
    selectFirst(list, 2);
    ask(list, "Abbrechen");
    EXPECT_TRUE(has(text, "2 Datei(en), 300 Bytes, für immer löschen?\n\na.txt\nb.txt"));
    s().answers.add([&](QDialog& dialog) {
        pressIn(dialog, "Vor dem Löschen für immer fragen");
        pressIn(dialog, "OK");
    });
    s().click(Command::kOptions);
    pressed(list, Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_FALSE(there("src/a.txt") || there("src/b.txt"));
    EXPECT_EQ(ListSession::names(list), Names{"c.txt"});
    EXPECT_EQ(list.grid().selectedCount(), 1u) << "the next row is selected";
}

TEST_F(TakeBackTest, OnlyANewPressDeletesAndNoSource) {
    startUnfolded();
    s().clickRow("sub");
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Delete, {}, {}, true);
    QApplication::sendEvent(&s().view(), &held);
    EXPECT_TRUE(there("src/sub"));
    toggleRow("src");
    for (const Command command : {Command::kDeleteFolders, Command::kRecycleFolders}) {
        s().execute(command);
        EXPECT_EQ(s().status(), "Eine Quelle wird nicht gelöscht. \"Entfernen\" nimmt sie aus dem Bericht.");
    }
    pressed(s().view(), Qt::Key_Delete);
    EXPECT_TRUE(there("src/sub") && s().row("src") != kNoRow);
    s().clickRow("sub");
    s().key(s().view(), Qt::Key_F2);
    pressed(*s().view().viewport()->findChild<QLineEdit*>(), Qt::Key_Delete);
    EXPECT_TRUE(there("src/sub")) << "the key belongs to the name that is edited";
}

TEST_F(TakeBackTest, TheNextRowIsSelectedAndTheStatusSaysWhatWentWhere) {
    for (const char* name : {"src/x1", "src/x2", "src/x3"}) {
        folder(name);
        file(std::string(name) + "/f", 40 - 10 * (name[5] - '0'));
    }
    startUnfolded();
    for (const auto& [gone, next] : {std::pair("x2", "x3"), {"x3", "other"}, {"deep", "sub"}}) {
        s().clickRow(gone);
        pressed(s().view(), Qt::Key_Delete);
        EXPECT_EQ(s().grid().selectedRows(), std::vector<Row>{s().row(next)}) << gone;
        EXPECT_EQ(s().grid().currentRow(), s().row(next)) << gone;
        EXPECT_EQ(s().status().find("Im Papierkorb: '"), 0u) << s().status();
        EXPECT_TRUE(has(s().status(), gone + std::string("' (") + s().trash() + ")"));
    }
    EXPECT_EQ(ListSession::names(s().window().grid(GridId::kFiles)), (Names{"d.txt", "c again"}))
        << "of the folder above";
    s().clickRow("sub");
    EXPECT_EQ(statusButton(Command::kTakeBack), nullptr) << "the button stands beside its message only";
    EXPECT_TRUE(s().enabled(Command::kTakeBack));
    auto* box = s().frame().findChild<QWidget*>(QStringLiteral("cboOrdner"));
    QTest::keyClicks(box, QStringLiteral("x"));
    pressed(*box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(there("src/sub/deep")) << "the key is that of the box";
    takeBack();
    EXPECT_TRUE(there("src/sub/deep"));
}

}  // namespace
}  // namespace hl::test
