// The search in the window: hits, where they are searched, stop, nonsense, the form, and a hit that goes.
#include "gui/files_fixture.h"
#include "platform/linux/process/owner_names.h"

namespace hl::test {
namespace {

struct FindTest : FilesTest {
    FindTest() { setSettings("[Optionen]\r\nDiskinfoVisible=0\r\nAskBeforeDelete=0\r\n"); }
    GridView& startWithFind() {
        start();
        s().click(Command::kShowFind);
        s().click(Command::kFindFullView);
        return list();
    }
    GridView& list() { return s().window().grid(GridId::kFind); }
    void find(const std::string& filter) { s().type(Command::kFindFilter, filter, Qt::Key_Return); }
    QLineEdit& box() { return session_->edit(Command::kFindFilter); }
    std::string title() {
        return s().form().parts().bars[static_cast<std::size_t>(BarId::kFind)]->find(0)->caption;
    }
    Names found() {
        Names all = ListSession::names(list());
        std::sort(all.begin(), all.end());
        return all;
    }
};

TEST_F(FindTest, FindsBelowTheSelectedRowOrInAllSourcesWhatIsThereNow) {
    folder("more");
    file("more/g.txt", 700);
    startWithFind();
    EXPECT_TRUE(has(list().hint().text().toStdString(), "Filter"));
    find("size>=300 name=*.txt");
    EXPECT_EQ(ListSession::names(list()), (Names{"e.txt", "d.txt", "c.txt"})) << "the largest first";
    EXPECT_EQ(title(), "Gefundene Dateien unter '" + at("src/") + "': 3");
    EXPECT_EQ(s().status(), "OK.");
    const Grid& rows = list().grid();
    EXPECT_EQ(ListSession::path(rows, rows.rowAt(0)), at("src/sub/deep/e.txt"));
    EXPECT_EQ(rows.cellText(rows.rowAt(0), kFileOwner), LinuxOwnerNames().nameOf(::geteuid()));

    s().click(Command::kShowReport);
    s().clickRow("sub");
    file("src/sub/new", 5);
    find("!name=d*");
    EXPECT_EQ(found(), (Names{"e.txt", "new"}));
    s().scan(at("more"));
    find("txt");
    EXPECT_EQ(found(), (Names{"g.txt"}));
    s().click(Command::kFindAllSources);
    find("txt");
    EXPECT_EQ(found().size(), 6U);
    EXPECT_EQ(title(), "Gefundene Dateien in allen Quellen: 6");
    s().scan(at("src/sub"));  // It lies in another source.
    find("txt");
    EXPECT_EQ(found().size(), 6U);
    find("size>1T");
    EXPECT_EQ(list().hint().text().toStdString(), "Dafür wurde nichts gefunden.");
}

TEST_F(FindTest, ShowsRowsWhileItRunsAndKeepsThemWhenItIsStopped) {
    for (int i = 0; i < 10; ++i) {
        folder("src/more" + std::to_string(i));
        file("src/more" + std::to_string(i) + "/f", 1);
    }
    GridView& rows = startWithFind();
    for (const bool byKey : {false, true}) {
        std::size_t seen = 0;
        s().fileSystem.beforeBlock = [&](int) {
            std::this_thread::sleep_for(std::chrono::milliseconds(60));
            seen = std::max(seen, rows.rows().count());
            if (seen == 0) return;
            if (byKey)
                s().key(s().frame(), Qt::Key_Escape);
            else
                s().click(Command::kStop);
        };
        find("");
        s().fileSystem.beforeBlock = nullptr;
        EXPECT_GT(seen, 0U);
        EXPECT_GT(found().size(), 0U);
        EXPECT_LT(found().size(), 15U);
        EXPECT_TRUE(has(title(), "Angehalten: ")) << title();
        EXPECT_TRUE(s().enabled(Command::kStart));
    }
    find("");
    EXPECT_EQ(found().size(), 15U);
    EXPECT_TRUE(title().ends_with(": 15"));
}

TEST_F(FindTest, TheBoxSaysWhyAFilterMakesNoSenseAndTheListStays) {
    startWithFind();
    find("b.txt");
    const QColor plain = box().palette().color(QPalette::Base);
    find("size>1G colour=red");
    EXPECT_NE(box().palette().color(QPalette::Base), plain);
    EXPECT_TRUE(box().hasFocus());
    EXPECT_TRUE(has(box().toolTip().toStdString(), "\"colour=red\""));
    EXPECT_TRUE(has(s().secondPanel(), "\"colour=red\""));
    EXPECT_EQ(found(), Names{"b.txt"});
    find("a.txt");
    EXPECT_FALSE(has(box().toolTip().toStdString(), "colour"));
    EXPECT_EQ(found(), Names{"a.txt"});
}

TEST_F(FindTest, WhatIsFoundIsDeletedRenamedAndSavedLikeTheRowsOfOtherLists) {
    GridView& rows = startWithFind();
    find("size>=400");
    ListSession::sortByName(rows);
    ListSession::clickOn(rows, 0);
    s().click(Command::kFindDelete);
    EXPECT_FALSE(there("src/sub/d.txt"));
    EXPECT_EQ(found(), Names{"e.txt"});
    EXPECT_EQ(title(), "Gefundene Dateien unter '" + at("src/") + "': 1");
    rename(rows, QStringLiteral("renamed"));
    EXPECT_TRUE(there("src/sub/deep/renamed"));
    EXPECT_EQ(found(), Names{"renamed"});
    const ListInfo list = {GridId::kFind, Command::kShowFind, Command::kFindFullView, Command::kFindSave,
                           Command::kFindSearchText};
    EXPECT_TRUE(has(session_->saved(list, Qt::Key_C, at("saved.csv")), "\"renamed\";"));
    ListSession::clickOn(rows, 0);
    s().click(Command::kFindRecycle);
    EXPECT_EQ(found(), Names());
    EXPECT_FALSE(there("src/sub/deep/renamed"));
    expectReportOfAFreshScan();
}

TEST_F(FindTest, TheFormWritesTheFilterAndNamesWhatMakesNoSense) {
    startWithFind();
    find("size>=150 !type=l");
    s().answers.add([this](QDialog& dialog) {
        const auto boxes = dialog.findChildren<QLineEdit*>();
        ASSERT_EQ(boxes.size(), 6);
        EXPECT_EQ(boxes[1]->text(), QStringLiteral("150"));
        QTest::keyClicks(boxes[2], QStringLiteral("much"));
        pressIn(dialog, "Finden");
        std::string texts;
        for (const QLabel* label : dialog.findChildren<QLabel*>()) texts += label->text().toStdString();
        EXPECT_TRUE(has(texts, "\"size<=much\""));
        boxes[2]->selectAll();
        QTest::keyClicks(boxes[2], QStringLiteral("300"));
        pressIn(dialog, "Finden");
    });
    s().click(Command::kFindForm);
    EXPECT_EQ(box().text().toStdString(), "size>=150 size<=300 !type=l");
    EXPECT_EQ(found(), (Names{"b.txt", "c.txt"}));
}

}  // namespace
}  // namespace hl::test
