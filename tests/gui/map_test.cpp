// The map below the report: it selects in the report, follows it, and goes through the levels.
#include <QAccessible>
#include <QHelpEvent>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QXmlStreamReader>

#include "gui/files_fixture.h"
#include "platform/qt/map/map_area.h"
#include "platform/qt/print/print_preview.h"

namespace hl {
namespace {

namespace fs = std::filesystem;

class MapTest : public test::FilesTest {
  protected:
    void startWithMap() {
        start();
        s().click(Command::kShowMap);
        test::Session::settle();
    }
    QWidget& map() { return *s().frame().findChild<MapArea*>(QStringLiteral("map")); }
    std::string selected() {
        const auto rows = s().grid().selectedRows();
        return rows.size() == 1 ? std::string(s().grid().text(rows.front())) : "";
    }
    /// Returns what `tell` returns for places all over the map.
    template <class Tell>
    std::set<std::string> everywhere(const Tell& tell) {
        constexpr int kSteps = 6;
        std::set<std::string> all;
        for (int i = 0; i < kSteps * kSteps; ++i)
            all.insert(tell(QPoint((i % kSteps * 2 + 1) * map().width() / (2 * kSteps),
                                   (i / kSteps * 2 + 1) * map().height() / (2 * kSteps))));
        return all;
    }
    void clickAt(QPoint at) {
        QTest::mouseClick(&map(), Qt::LeftButton, {}, at);
        test::Session::settle();
    }
    /// Clicks all over the map; returns the names of the folders that are selected then.
    std::set<std::string> folders() {
        return everywhere([&](QPoint at) {
            clickAt(at);
            return fs::path(selected()).filename().string();
        });
    }
    /// The same for the files that are selected in the list of files.
    std::set<std::string> files() {
        return everywhere([&](QPoint at) {
            clickAt(at);
            const Grid& list = s().form().form().session.lvwFiles;
            return list.selectedCount() == 1 ? std::string(list.text(list.selectedRows().front())) : "";
        });
    }
    /// Returns the first two lines of all tooltips; the second one is a size, or counts files.
    std::set<std::string> tips() {
        return everywhere([&](QPoint at) {
            QHelpEvent asks(QEvent::ToolTip, at, map().mapToGlobal(at));
            QApplication::sendEvent(&map(), &asks);
            return QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText().toStdString();
        });
    }
    void press(Qt::Key key) {
        QTest::keyClick(&map(), key);
        test::Session::settle();
    }
};

using Folders = std::set<std::string>;

TEST_F(MapTest, AClickSelectsTheFolderAndTheMapFollowsTheReport) {
    startWithMap();
    EXPECT_EQ(folders(), Folders({"src", "sub", "deep"}));  // "other" is empty.
    s().clickRow("sub");
    test::Session::settle();
    EXPECT_NE(map().accessibleDescription().toStdString().find(at("src/sub") + "\n900 "), std::string::npos);
    fs::remove_all(at("src/sub/deep"));
    s().click(Command::kReportRescan);
    test::Session::settle();
    EXPECT_EQ(folders(), Folders({"src", "sub"}));
}

TEST_F(MapTest, ReturnAndBackspaceGoThroughTheLevelsAndArrowsThroughTheTiles) {
    startWithMap();
    s().clickRow("src");
    s().click(Command::kReportUnfoldAll);
    s().clickRow("deep");
    map().setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(folders(), Folders({"sub", "deep"}));
    s().clickRow("deep");
    press(Qt::Key_Return);
    EXPECT_EQ(folders(), Folders({"deep"}));
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_EQ(folders(), Folders({"src", "sub", "deep"}));
    s().clickRow("deep");
    test::Session::settle();
    Folders met;
    for (const Qt::Key key :
         {Qt::Key_Down, Qt::Key_Up, Qt::Key_Right, Qt::Key_Left, Qt::Key_Right, Qt::Key_Right})
        press(key), met.insert(fs::path(selected()).filename());
    EXPECT_TRUE(met.contains("src") && met.contains("sub"));
}

TEST_F(MapTest, ALargeFileIsATileThatSelectsItInTheListAndTheOthersOfItsFolderShareOne) {
    startWithMap();
    EXPECT_EQ(files(), Folders({"a.txt", "b.txt", "c.txt", "d.txt", "e.txt"}));
    s().frame().close();
    session_.reset();
    options("LargestKept=2\r\n");
    start();
    s().click(Command::kShowMap);
    test::Session::settle();
    EXPECT_EQ(files(), Folders({"", "d.txt", "e.txt"}));
    const auto told = tips();
    EXPECT_EQ(told.size(), 3U);
    const auto tells = [&](const std::string& text) {
        return std::ranges::any_of(told, [&](auto& tip) { return tip.find(text) != std::string::npos; });
    };
    EXPECT_TRUE(tells(at("src/sub/deep/e.txt") + "\n500 "));
    EXPECT_TRUE(tells(at("src") + "\n3 kleinere Dateien\n600 "));
}

TEST_F(MapTest, ItIsSavedAsAPictureOrADrawingAndPrinted) {
    startWithMap();
    const auto saved = [&](Command command, const std::string& name) {
        s().answers.add([&](QDialog& dialog) { test::choosePath(dialog, at(name)); });
        s().execute(command);
        return test::contentOf(at(name));
    };
    const std::string png = saved(Command::kMapSavePng, "map.png");
    const QImage picture = QImage::fromData(QByteArray::fromStdString(png));
    EXPECT_EQ(picture.size(), map().size());
    const std::string svg = saved(Command::kMapSaveSvg, "map.svg");
    QXmlStreamReader reader(QByteArray::fromStdString(svg));
    while (!reader.atEnd()) reader.readNext();
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    for (const char* text : {"c.txt", "e.txt", "fill=\"url(#c4)\"", "Dokumente"})
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    s().execute(Command::kMapByOwner);  // It is not painted anew before it is saved.
    EXPECT_NE(saved(Command::kMapSaveSvg, "owner.svg").find("Dokumente"), std::string::npos);
    QImage page(600, 400, QImage::Format_RGB32);
    page.fill(Qt::white);
    s().answers.add([&](QDialog& dialog) {
        const PrintPages& pages = dynamic_cast<PrintPreview&>(dialog).pages();
        EXPECT_EQ(pages.count(), 1);
        QPainter painter(&page);
        painter.scale(600 / pages.page().fullRect(QPageLayout::Inch).width() / kUnitsPerInch,
                      600 / pages.page().fullRect(QPageLayout::Inch).width() / kUnitsPerInch);
        pages.paint(painter, 0);
        dialog.accept();
    });
    s().execute(Command::kMapPrint);
    EXPECT_NE(page.pixelColor(300, 150), QColor(Qt::white));
}

TEST_F(MapTest, ItsColoursAreChosenAndKept) {
    startWithMap();
    std::vector<QImage> pictures;
    for (const Command by :
         {Command::kMapByKind, Command::kMapByAge, Command::kMapByOwner, Command::kMapByDepth}) {
        s().execute(by);
        test::Session::settle();
        pictures.push_back(map().grab().toImage());
        for (std::size_t i = 0; i + 1 < pictures.size(); ++i) EXPECT_NE(pictures[i], pictures.back()) << i;
    }
    s().frame().close();
    session_.reset();
    EXPECT_NE(test::contentOf(ini()).find("MapColour=3"), std::string::npos);
    start();
    EXPECT_TRUE(s().form().form().bars.cbrMap.isChecked(idOf(Command::kMapByDepth)));
}

TEST_F(MapTest, AScreenReaderMeetsATreeOfTilesWithLevels) {
    startWithMap();
    QAccessibleInterface* all = QAccessible::queryAccessibleInterface(&map());
    ASSERT_EQ(all->role(), QAccessible::Tree);
    std::multiset<std::string> levels;
    for (int i = 0; i < all->childCount(); ++i) {
        QAccessibleInterface* tile = all->child(i);
        EXPECT_TRUE(tile->role() == QAccessible::TreeItem && tile->parent() == all) << i;
        EXPECT_EQ(all->indexOfChild(tile), i);
        levels.insert(tile->text(QAccessible::Description).toStdString());
        const QString name = tile->text(QAccessible::Name);
        if (tile->state().expandable || !name.contains(QStringLiteral("d.txt\n400 "))) continue;
        EXPECT_EQ(all->childAt(tile->rect().center().x(), tile->rect().center().y()), tile);
        tile->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        EXPECT_EQ(fs::path(selected()).filename(), "sub");
        EXPECT_TRUE(all->child(i)->state().selected);
    }
    // The source; its three files and "sub"; the file and "deep" in that; the file in "deep".
    EXPECT_EQ(levels, (std::multiset<std::string>{"Ebene 1", "Ebene 2", "Ebene 2", "Ebene 2", "Ebene 2",
                                                  "Ebene 3", "Ebene 3", "Ebene 4"}));
}

TEST_F(MapTest, ItSaysWhenTooFewOfTheLargestFilesAreLeft) {
    options("LargestKept=4\r\nFilelistVisible=1\r\n");
    startWithMap();
    const auto title = [&] { return s().form().form().bars.cbrMap.find(0)->caption; };
    EXPECT_EQ(title(), "Karte");
    s().clickRow("sub");
    s().execute(Command::kDeleteFolders);
    s().clickRow("src");
    test::ListSession::clickOn(session_->open(test::kFileList), 0);
    deleteInList();
    test::Session::settle();
    EXPECT_EQ(title(), "Karte (größte Dateien nach dem Stand des letzten Einlesens)");
    s().clickRow("src");
    s().execute(Command::kReportRescan);
    test::Session::settle();
    EXPECT_EQ(title(), "Karte");
}

TEST_F(MapTest, ItFollowsAScanWhichLeavesItsSelectionAlone) {
    startWithMap();
    s().fileSystem.beforeBlock = [&](int) {
        EXPECT_EQ(folders().size(), 1U);
        press(Qt::Key_Return);
    };
    s().scan(at("src"));
    s().fileSystem.beforeBlock = nullptr;
    EXPECT_EQ(folders(), Folders({"src", "sub", "deep"}));
}

TEST_F(MapTest, WhetherItShowsIsKeptAndAnEmptyReportHasNone) {
    startWithMap();
    EXPECT_TRUE(map().isVisible());
    s().execute(Command::kReportRemoveAll);
    test::Session::settle();
    EXPECT_EQ(folders(), Folders({""}));
    EXPECT_EQ(map().accessibleDescription(), "");
    s().frame().close();
    session_.reset();
    EXPECT_NE(test::contentOf(ini()).find("MapVisible=1"), std::string::npos);
    start();
    EXPECT_TRUE(map().isVisible());
    s().click(Command::kShowMap);
    EXPECT_FALSE(map().isVisible());
}

}  // namespace
}  // namespace hl
