// The preview in the window: it follows the selection of the list.

#include "platform/linux/preview_tools.h"
#include "platform/qt/preview_area.h"
#include "platform/qt/preview_texts.h"
#include "window_fixture.h"

namespace hl::test {
namespace {

using PreviewWindowTest = WindowTest;

TEST_F(PreviewWindowTest, FollowsTheSelectionOfTheListAndGoesWithIt) {
    setSettings("[Optionen]\r\nFilelistVisible=1\r\nDiskinfoVisible=0\r\n");
    writeFile(tree.path() + "/a.txt", "first");
    writeFile(tree.path() + "/b\xFF.txt", "second");
    writeFile(tree.path() + "/c.xyz", "third");
    LinuxPreviewTools tools(std::filesystem::path(HARBORLANTERN_PROGRAM).parent_path().string(), "",
                            tree.path());
    Session session(home.path());
    session.form().parts().preview.tools = &tools;
    session.start();
    session.form()
        .parts()
        .splitters[static_cast<std::size_t>(SplitterId::kFilesAndPreview)]
        ->setControl2Visible(true);
    auto* area = dynamic_cast<PreviewArea*>(session.frame().findChild<QWidget*>(QStringLiteral("preview")));
    session.settle();
    ASSERT_TRUE(area != nullptr && area->isVisible() && area->viewer() == nullptr);
    session.scan(tree.path());
    Grid& list = *session.form().parts().grids[static_cast<std::size_t>(GridId::kFiles)];
    ScanHost& form = session.form();
    form.showFilesOf(tree.path() + "/");
    const auto select = [&](const std::string& name) {
        list.selectNone();
        for (std::size_t i = 0; i < list.rowCount(); ++i)
            if (list.text(list.rowAt(i)) == name) list.setSelected(list.rowAt(i), true);
        form.refreshPreview();
        auto* view = dynamic_cast<TextView*>(area->viewer());
        return view != nullptr ? view->toPlainText().toStdString() : "nothing";
    };
    EXPECT_EQ(select("a.txt"), "first");
    EXPECT_EQ(select("b\xFF.txt"), "second");
    EXPECT_EQ(select("c.xyz"), " - Unbekanntes Dateiformat - \n");
    EXPECT_EQ(select(""), "nothing");
    std::filesystem::remove(tree.path() + "/a.txt");
    const std::string shown = select("a.txt");
    EXPECT_NE(shown.find("/a.txt' kann nicht angezeigt werden!"), std::string::npos) << shown;
}

}  // namespace
}  // namespace hl::test
