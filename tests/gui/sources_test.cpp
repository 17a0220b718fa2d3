// Tests sources and drives in the window: how the box shows them, and how they are typed, kept and removed.

#include "gui/lists_fixture.h"

namespace hl::test {
namespace {

struct SourcesTest : WindowTest {
    /// Starts a session whose box has these saved sources.
    Session& start(const std::vector<std::string>& saved = {}) {
        std::string section = "[ComboOrdner]\r\n";
        for (std::size_t i = 0; i < saved.size(); ++i)
            section += std::to_string(i) + "O=" + saved[i] + "\r\n";
        if (session_) session_->frame().close();
        setSettings(section);
        return startAgain();
    }
    /// Starts a session with what the former session left.
    Session& startAgain() {
        if (session_) session_->frame().close();
        session_.emplace(home.path());
        session_->start();
        return *session_;
    }
    QComboBox& box() { return *session_->frame().findChild<QComboBox*>(QStringLiteral("cboOrdner")); }
    std::string shown() { return box().currentText().toStdString(); }
    /// Returns the sources that the user has added.
    Names listed() {
        Names all;
        for (int i = 1; i < box().count(); ++i) all.push_back(box().itemText(i).toStdString());
        return all;
    }

    std::optional<Session> session_;
};

TEST_F(SourcesTest, ALinkToAFolderIsKeptFromStartToStart) {
    folder("real");
    fs::create_directory_symlink(at("real"), at("link"));
    start({at("link/"), at("gone/"), at("real/")});
    for (int i = 0; i < 3; ++i, startAgain()) {
        Names names = listed();
        std::sort(names.begin(), names.end());
        EXPECT_EQ(names, (Names{at("link/"), at("real/")})) << i;
    }
}

TEST_F(SourcesTest, WhatIsTypedIsMadeAbsoluteFirst) {
    Session& s = start();
    for (const char* name : {"/now/a", "/b"}) fs::create_directories(s.userHome() + name);
    const char* const cases[][2] = {
        {"a", "/now/a"}, {"./a/../../b/", "/b"}, {"~/b", "/b"}, {"..", ""}, {"~", ""}};
    for (const auto& [typed, below] : cases) {
        s.scan(typed);
        const std::string path = s.userHome() + below;
        ASSERT_NE(s.grid().currentRow(), kNoRow) << typed << ": " << s.status();
        EXPECT_EQ(s.grid().text(s.grid().currentRow()), path) << typed;
        EXPECT_EQ(shown(), path + "/");
        EXPECT_TRUE(has(contentOf(home.path() + "/Harborlantern.log"), "Einlesen: " + path + "/\r\n"));
    }
    EXPECT_EQ(listed().size(), 3U) << "one source, however it is typed";
}

TEST_F(SourcesTest, TheBoxShowsEachSourceInWorkAndThoseThatAreMissingAreTold) {
    for (const char* name : {"a", "b"}) folder(name);
    Session& s = start();
    Names inWork;
    s.fileSystem.beforeBlock = [&](int block) {
        s.settle();
        if (block == 1) inWork.push_back(shown());
    };
    const auto quoted = [this](const char* name) { return " \"" + at(name) + "\""; };
    s.form().handOver(quoted("a") + quoted("none") + quoted("b") + quoted("nowhere"));
    EXPECT_EQ(inWork, (Names{at("a/"), at("b/")}));
    EXPECT_EQ(shown(), at("b/"));
    EXPECT_EQ(s.rows(), "a b");
    for (const char* name : {"none", "nowhere"}) EXPECT_TRUE(has(s.status(), " " + at(name) + " "));
}

TEST_F(SourcesTest, DelRemovesAnEntryThatIsNotBeingEdited) {
    enum Where { kStart, kEnd, kWhole, kInside, kPart, kTyped };
    const std::pair<Where, bool> cases[] = {{kStart, true},   {kEnd, true},   {kWhole, true},
                                            {kInside, false}, {kPart, false}, {kTyped, false}};
    for (const char* name : {"a", "b", "c"}) folder(name);
    for (const auto& [where, removes] : cases) {
        start({at("a/"), at("b/"), at("c/")});
        QLineEdit& edit = *box().lineEdit();
        box().setFocus();
        for (int i = 0; i < 2; ++i) QTest::keyClick(&box(), Qt::Key_Down);  // They go from the drive to b.
        ASSERT_EQ(shown(), at("b/"));
        const auto end = static_cast<int>(at("b/").size());
        edit.setCursorPosition(where == kEnd || where == kTyped ? end : where == kInside ? 1 : 0);
        if (where == kWhole) edit.selectAll();
        if (where == kPart) edit.setSelection(0, 3);
        if (where == kTyped) QTest::keyClicks(&box(), "x");
        const std::string before = shown();
        session_->key(box(), Qt::Key_Delete);
        EXPECT_EQ(listed(), removes ? (Names{at("a/"), at("c/")}) : (Names{at("a/"), at("b/"), at("c/")}))
            << where;
        EXPECT_EQ(shown() == at("c/"), removes) << "the next one";
        EXPECT_EQ(shown().size() < before.size(), where == kInside || where == kPart) << where;
        startAgain();
        EXPECT_EQ(listed().size(), removes ? 2U : 3U) << where << ": what was removed is not saved";
    }
}

TEST_F(SourcesTest, DelRemovesTheEntryOnWhichTheOpenListStandsButNoDrive) {
    for (const char* name : {"a", "b"}) folder(name);
    start({at("a/"), at("b/")});
    const std::string selected = shown();
    box().showPopup();
    QAbstractItemView& list = *box().view();
    for (const int row : {1, 0}) {
        list.setCurrentIndex(list.model()->index(row, 0));
        session_->key(list, Qt::Key_Delete);
        EXPECT_EQ(listed(), Names{at("b/")}) << "row " << row;
        EXPECT_EQ(list.currentIndex().row(), row);
        EXPECT_EQ(shown(), selected);
    }
    box().hidePopup();
    box().lineEdit()->setCursorPosition(0);
    session_->key(box(), Qt::Key_Delete);
    EXPECT_TRUE(box().itemText(0) == QString::fromStdString(selected) && shown() == selected.substr(1))
        << "a drive stays, and its name is edited";
}

TEST_F(SourcesTest, AnEntryThatTheSettingsCannotHoldIsNotSaved) {
    const std::string odd = "line\nbreak \xFF";
    std::string deep = "deep";
    while (at(deep).size() < 2300) deep += "/" + std::string(200, 'x');
    for (const std::string& name : {deep, odd}) folder(name);
    start().form().handOver("\"" + at(odd) + "\" \"" + at(deep) + "\"");
    EXPECT_EQ(shown(), at(deep) + "/");
    startAgain();
    EXPECT_EQ(listed(), Names{visible(at(odd)) + "/"});
    EXPECT_FALSE(has(contentOf(ini()), "xxx"));
}

TEST_F(SourcesTest, ARightClickOnADriveChoosesItAlone) {
    setSettings("[DriveFolders]\r\n0F=//nas/one/\r\n1F=//nas/two/\r\n");
    Session& s = startAgain();
    GridView& drives = s.window().grid(GridId::kDrives);
    for (const int row : {1, 2})
        ListSession::clickOn(drives, static_cast<std::size_t>(row),
                             row == 2 ? Qt::ControlModifier : Qt::NoModifier);
    ASSERT_EQ(drives.grid().selectedCount(), 2U);
    const MenuAnswer menu("Laufwerk einlesen");
    QTest::mouseClick(drives.viewport(), Qt::RightButton, {}, ListSession::place(drives, 2));
    s.settle();
    EXPECT_EQ(s.status(), "Die Quelle //nas/two/ gibt es nicht.");
    EXPECT_EQ(drives.grid().selectedRows(), std::vector<Row>{drives.grid().rowAt(2)});
}

}  // namespace
}  // namespace hl::test
