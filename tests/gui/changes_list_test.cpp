// The list of changes in the window.
#include <QClipboard>

#include "gui/files_fixture.h"
#include "platform/qt/print/print_preview.h"
#include "views/cell_text.h"

namespace hl::test {
namespace {

using State = ShownChange::State;

struct ChangesListTest : FilesTest {
    ChangesListTest() { options("FileSizeFormatChanges=0\r\n"); }
    /// Shows the list beside the report, with five changes of src.
    GridView& open() {
        start();
        s().click(Command::kShowChanges);
        show({{State::kShrunk, at("src/sub"), "", 3000, 2500},
              {State::kGrown, at("src"), "", 100, 400},
              {State::kNew, at("src/sub/deep"), "", 0, 9000},
              {State::kGone, at("src/old"), "", 12000, 0},
              {State::kRenamed, at("src/other"), at("src/another"), 70, 70}});
        return view();
    }
    void show(std::vector<ShownChange> changes) {
        s().form().form().lists.changes().show(std::move(changes));
        Session::settle();
    }
    GridView& view() { return s().window().grid(GridId::kChanges); }
    /// Returns the texts of a column, from the top.
    Names column(std::size_t number) {
        Names texts;
        for (Row row = view().grid().firstRoot(); row != kNoRow; row = view().grid().nextSibling(row))
            texts.push_back(ColumnText(view().grid(), number, s().form().form().services().numbers).of(row));
        return texts;
    }
    std::string hint() {
        view().viewport()->repaint();
        return view().hint().text().toStdString();
    }
    CommandBar& bar() { return s().form().form().bars.cbrChanges; }
    std::string title() { return bar().find(idOf(Command::kChangesTitle))->caption; }
    std::string shownFolder() { return std::string(s().grid().text(s().grid().currentRow())); }
};

TEST_F(ChangesListTest, ShowsFoldersBelowTheirSourceTheLargestChangeFirst) {
    open();
    EXPECT_EQ(column(0), (Names{"old", "sub/deep", "sub", at("src"), "other"}));
    EXPECT_EQ(column(1), (Names{"weg", "neu", "geschrumpft", "gewachsen", "umbenannt"}));
    EXPECT_EQ(column(4), (Names{"-12.000", "+9.000", "-500", "+300", ""}));
    EXPECT_EQ(column(5).back(), "another");
    EXPECT_EQ(s().secondPanel(), "5 Ordner");
    Session::clickTitleOf(view(), 4);
    EXPECT_EQ(column(4), (Names{"-12.000", "-500", "", "+300", "+9.000"})) << "by the signed number";
    Session::clickTitleOf(view(), 4);
    EXPECT_EQ(column(4).front(), "+9.000");
    s().click(Command::kChangesBytes + 1);
    EXPECT_EQ(column(4), (Names{"+8,79", "+0,29", "", "-0,49", "-11,72"}));
}

TEST_F(ChangesListTest, AClickGoesToTheFolderAndOnlyADoubleClickOpensAHiddenReport) {
    open();
    ListSession::clickOn(view(), 1);
    EXPECT_EQ(shownFolder(), "deep");
    EXPECT_TRUE(view().hasFocus()) << "keys stay in the list";
    ListSession::clickOn(view(), 3);
    EXPECT_EQ(shownFolder(), at("src"));
    ListSession::clickOn(view(), 0);
    EXPECT_EQ(s().secondPanel(), "'" + at("src/old") + "' ist nicht mehr da.");
    EXPECT_EQ(shownFolder(), at("src"));
    s().click(Command::kChangesFullView);
    ListSession::clickOn(view(), 2);
    EXPECT_FALSE(s().view().isVisible());
    ListSession::doubleClickOn(view(), 2);
    Session::settle();
    EXPECT_TRUE(s().view().isVisible());
    EXPECT_EQ(shownFolder(), "sub");
    ListSession::clickOn(view(), 4);
    s().key(view(), Qt::Key_Return);
    EXPECT_EQ(shownFolder(), "other");
    EXPECT_TRUE(s().view().hasFocus());
}

TEST_F(ChangesListTest, ItsMenuDeletesNothingAndIsThereForWhatIsGoneToo) {
    open();
    for (const std::size_t row : {std::size_t{0}, std::size_t{1}}) {
        const MenuAnswer menu("Pfad kopieren");
        QTest::mouseClick(view().viewport(), Qt::RightButton, {}, ListSession::place(view(), row));
        Session::settle();
        EXPECT_EQ(menu.entries(), (Names{"Kopieren", "Pfad kopieren", "-", "In der Ordnerliste zeigen"}));
        EXPECT_EQ(QApplication::clipboard()->text().toStdString(), at(row == 0 ? "src/old" : "src/sub/deep"));
    }
    s().key(view(), Qt::Key_Delete);
    EXPECT_TRUE(there("src/sub/deep"));
    const MenuAnswer menu("In der Ordnerliste zeigen");
    QTest::mouseClick(view().viewport(), Qt::RightButton, {}, ListSession::place(view(), 1));
    Session::settle();
    EXPECT_EQ(shownFolder(), "deep");
}

TEST_F(ChangesListTest, SearchesEarlierPathsAndIsSavedWithItsSigns) {
    open();
    s().type(Command::kChangesSearchText, "anoth", Qt::Key_Return);
    EXPECT_TRUE(view().grid().selected(view().grid().rowAt(4)));
    const std::string saved = session_->saved(kChangesList, Qt::Key_C, home.path() + "/saved.csv");
    EXPECT_NE(saved.find(R"("old";"weg";"12000";"0";"-12000";"")"), std::string::npos) << saved;
    EXPECT_NE(saved.find(R"("other";"umbenannt";"70";"70";"0";"another")"), std::string::npos) << saved;
}

TEST_F(ChangesListTest, IsPrintedWithItsBars) {
    open();
    QImage page(900, 900, QImage::Format_RGB32);
    page.fill(Qt::white);
    s().answers.add([&](QDialog& dialog) {
        const PrintPages& pages = dynamic_cast<PrintPreview&>(dialog).pages();
        QPainter painter(&page);
        const double scale = page.width() / pages.page().fullRect(QPageLayout::Inch).width() / kUnitsPerInch;
        painter.scale(scale, scale);
        pages.paint(painter, 0);
        dialog.accept();
    });
    s().click(Command::kChangesPrint);
    int red = 0, green = 0;
    for (int y = 0; y < page.height(); ++y)
        for (int x = 0; x < page.width(); ++x) {
            const QColor color = page.pixelColor(x, y);
            red += color.red() > color.green() + 20 ? 1 : 0;
            green += color.green() > color.red() + 20 ? 1 : 0;
        }
    EXPECT_GT(red, 100);
    EXPECT_GT(green, red) << "what is gone is larger";
}

TEST_F(ChangesListTest, SaysHowItIsFilledAndThatNothingChanged) {
    options("ChangesVisible=1\r\nFilelistVisible=0\r\n");
    start();
    const std::string how = hint();
    EXPECT_NE(how.find("Ctrl+K"), std::string::npos);
    EXPECT_FALSE(bar().find(idOf(Command::kChangesSave))->enabled);
    show({});
    EXPECT_EQ(hint(), "Kein Ordner hat sich verändert.");
    show({{State::kGrown, at("src"), "", 0, 1}});
    EXPECT_TRUE(bar().find(idOf(Command::kChangesSave))->enabled);
    s().form().form().lists.changes().clear();
    Session::settle();
    EXPECT_EQ(hint(), how);
    EXPECT_FALSE(bar().find(idOf(Command::kChangesSave))->enabled);
}

TEST_F(ChangesListTest, KeepsTheLargestOfManyAndSaysHowManyThereAre) {
    open();
    EXPECT_EQ(title(), "Veränderungen");
    std::vector<ShownChange> many;
    for (std::uint64_t i = 0; i < ChangesView::kMostRows + 3; ++i) {
        const bool grown = i % 2 == 0;
        many.push_back({grown ? State::kGrown : State::kShrunk, at("src/d" + std::to_string(i)), "",
                        grown ? 0 : i, grown ? i : 0});
    }
    show(std::move(many));
    const Grid& grid = view().grid();
    EXPECT_EQ(grid.rowCount(), ChangesView::kMostRows);
    EXPECT_EQ(grid.text(grid.rowAt(0)), "d100002");
    EXPECT_EQ(grid.text(grid.rowAt(ChangesView::kMostRows - 1)), "d3");
    EXPECT_EQ(title(), "Veränderungen (die 100.000 größten von 100.003)");
}

}  // namespace
}  // namespace hl::test
