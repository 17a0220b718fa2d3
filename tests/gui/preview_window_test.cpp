// Tests that the preview in the window follows the selection of the list, and what it tells of failures.

#include "gui/lists_fixture.h"
#include "platform/linux/preview/preview_tools.h"
#include "platform/qt/preview/preview_area.h"
#include "platform/qt/preview/preview_texts.h"

namespace hl::test {
namespace {

struct PreviewWindowTest : ListsTest {
    /// Reads src, whose files contain their names, and shows the list and its preview.
    GridView& open(const ListInfo& info, Command preview) {
        s.form().parts().preview.tools = &tools;
        s.start();
        s.scan(at("src"));
        return show(info, preview);
    }
    GridView& show(const ListInfo& info, Command preview) {
        GridView& list = s.open(info);
        s.sortByName(list);
        s.click(preview);
        area = dynamic_cast<PreviewArea*>(s.frame().findChild<QWidget*>(QStringLiteral("preview")));
        EXPECT_TRUE(area != nullptr && area->isVisible());
        return list;
    }
    void files(std::initializer_list<const char*> names) const {
        folder("src");
        for (const char* name : names) writeFile(at("src/") + name, name);
    }
    std::string shown() const {
        auto* view = dynamic_cast<TextView*>(area->viewer());
        return view != nullptr ? view->toPlainText().toStdString() : "nothing";
    }
    std::string click(GridView& list, std::size_t row) { return s.clickOn(list, row), shown(); }
    std::string log() const { return contentOf(home.path() + "/Harborlantern.log"); }

    LinuxPreviewTools tools{fs::path(HARBORLANTERN_PROGRAM).parent_path().string(), "", at("src")};
    ListSession s{home.path()};
    PreviewArea* area = nullptr;
};

TEST_F(PreviewWindowTest, FollowsTheSelectionAndGoesWithIt) {
    files({"a.txt", "b\xFF.txt", "cc.xyz"});
    GridView& list = open(kFileList, Command::kFilesPreview);
    EXPECT_EQ(shown(), "nothing");
    EXPECT_EQ(click(list, 0), "a.txt");
    writeFile(at("src/a.txt"), "new");
    s.key(list, Qt::Key_Up);
    EXPECT_EQ(shown(), "a.txt") << "what shows is read again only by a click";
    EXPECT_EQ(click(list, 0), "new");
    writeFile(at("src/a.txt"), "a.txt");
    QTest::mouseClick(list.viewport(), Qt::MiddleButton, {}, s.place(list, 0));
    EXPECT_EQ(shown(), "a.txt");
    EXPECT_EQ(click(list, 1), "b\u00FF.txt") << "as a Latin text";
    EXPECT_EQ(click(list, 2), " - Unbekanntes Dateiformat - \n");
    {
        const MenuAnswer menu("");
        QTest::mouseClick(list.viewport(), Qt::RightButton, {}, s.place(list, 0));
        EXPECT_EQ(shown(), "a.txt");
        EXPECT_TRUE(has(s.secondPanel(), "1 ausgewählte Datei(en) mit 5 Bytes"));
    }
    QTest::keyClick(&list, Qt::Key_Down, Qt::ControlModifier);
    const MenuAnswer menu("");
    QTest::keyClick(&list, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(shown(), "b\u00FF.txt") << "the key is a right click on the current row";
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, {20, list.viewport()->height() - 3});
    EXPECT_EQ(shown(), "nothing");
    click(list, 0);
    s.click(Command::kFilesPreview);
    EXPECT_EQ(click(list, 1), "nothing") << "a hidden preview opens nothing";
    s.click(Command::kFilesPreview);
    EXPECT_EQ(shown(), "b\u00FF.txt");
}

TEST_F(PreviewWindowTest, FollowsKeysAndSearchesWhereTheListWantsIt) {
    files({"a.txt", "b.txt"});
    for (const char* name : {"a.txt", "b.txt"}) link(std::string("src/") + name, std::string("src/z") + name);
    const std::tuple<ListInfo, Command, std::string, std::string> cases[] = {
        {kFileList, Command::kFilesPreview, "b.txt", "b.txt"},
        {kTopList, Command::kTopPreview, "b.txt", "a.txt"},
        {kHardlinkList, Command::kHardlinksPreview, "a.txt", "a.txt"}};
    open(kFileList, Command::kFilesPreview);
    s.click(Command::kFilesPreview);
    for (const auto& [info, preview, byKey, bySearch] : cases) {
        SCOPED_TRACE(static_cast<int>(info.id));
        GridView& list = show(info, preview);
        EXPECT_EQ(click(list, 0), "a.txt");
        s.key(list, Qt::Key_Down);
        EXPECT_EQ(shown(), byKey);
        s.clickOn(list, 0);
        s.type(info.searchText, "b.t", Qt::Key_Return);
        EXPECT_EQ(shown(), bySearch);
    }
}

TEST_F(PreviewWindowTest, IsEmptyWhenAllSourcesAreRemovedThoughAListKeepsTheFile) {
    files({"a.txt"});
    GridView& list = open(kTopList, Command::kTopPreview);
    EXPECT_EQ(click(list, 0), "a.txt");
    s.execute(Command::kReportRemoveAll);
    EXPECT_EQ(area->viewer(), nullptr);
    EXPECT_EQ(click(list, 0), "a.txt") << "what the list has can still be looked at";
}

TEST_F(PreviewWindowTest, AFileThatCannotBeShownIsToldThereAndOnceInTheLogOneThatIsNoneThereAlone) {
    files({"a\n.txt", "b.png"});
    must(::mkfifo(at("src/pipe.txt").c_str(), 0600));
    GridView& list = open(kFileList, Command::kFilesPreview);
    EXPECT_EQ(click(list, 2), "'" + at("src/pipe.txt") + "' ist keine gewöhnliche Datei.");
    EXPECT_FALSE(has(log(), "ERROR"));
    fs::remove(at("src/a\n.txt"));
    const std::string name = at("src/a\u240A.txt"), reason = "No such file or directory";
    EXPECT_EQ(click(list, 0), "Die Datei '" + name + "' kann nicht angezeigt werden!\n\n" + reason);
    const std::string line = "ERROR: Preview_ShowFile " + reason + " (" + name + ")\r\n";
    s.key(list, Qt::Key_Up);
    EXPECT_TRUE(has(log(), line));
    EXPECT_EQ(log().find("ERROR"), log().rfind("ERROR")) << "a key does not log it again";
    click(list, 1);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return has(log(), "Sie ist beschädigt oder zu groß, oder es dauert zu lange. (" + at("src/b.png"));
    })) << log();
    EXPECT_TRUE(has(shown(), "'" + at("src/b.png") + "'"));
}

}  // namespace
}  // namespace hl::test
