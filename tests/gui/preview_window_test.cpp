// Tests that the preview in the window follows the selection of the list.
#include "gui/lists_fixture.h"
#include "platform/linux/preview/preview_tools.h"
#include "platform/qt/preview/preview_area.h"
#include "platform/qt/preview/preview_texts.h"

namespace hl::test {
namespace {

TEST_F(ListsTest, ThePreviewFollowsTheSelectionAndGoesWithIt) {
    folder("src");
    for (const char* name : {"a.txt", "b\xFF.txt", "cc.xyz"}) writeFile(at("src/") + name, name);
    LinuxPreviewTools tools(std::filesystem::path(HARBORLANTERN_PROGRAM).parent_path().string(), "",
                            at("src"));
    ListSession s(home.path());
    s.form().parts().preview.tools = &tools;
    s.start();
    s.scan(at("src"));
    GridView& list = s.open(kFileList);
    s.sortByName(list);
    s.click(Command::kFilesPreview);
    auto* area = dynamic_cast<PreviewArea*>(s.frame().findChild<QWidget*>(QStringLiteral("preview")));
    ASSERT_TRUE(area != nullptr && area->isVisible());
    const auto shown = [&] {
        auto* view = dynamic_cast<TextView*>(area->viewer());
        return view != nullptr ? view->toPlainText().toStdString() : "nothing";
    };
    const auto click = [&](std::size_t row) { return s.clickOn(list, row), shown(); };
    EXPECT_EQ(shown(), "nothing");
    EXPECT_EQ(click(0), "a.txt");
    EXPECT_EQ(click(1), "b\u00FF.txt") << "as a Latin text";
    EXPECT_EQ(click(2), " - Unbekanntes Dateiformat - \n");
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
    std::filesystem::remove(at("src/a.txt"));
    EXPECT_TRUE(has(click(0), "/a.txt' kann nicht angezeigt werden!")) << shown();
}

}  // namespace
}  // namespace hl::test
