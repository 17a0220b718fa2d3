// Tests what a user would notice at once: numbers that are cut, rows that are hidden, texts that are
// unreadable.

#include "base/scope_exit.h"
#include "gui/grid_view_fixture.h"
#include "platform/percent_bar.h"
#include "platform/qt/grid/grid_colors.h"
#include "platform/qt/window/splitter_widget.h"

namespace hl {
namespace {

struct LooksTest : GridViewTest {
    std::string text = " ";

    void showList(int width, int height) {
        view.reset();
        view = std::make_unique<GridView>(
            grid, GridId::kDrives, false, [this](GridId, std::size_t, Row) { return text; }, told);
        view->resize(width, height);
        view->show();
        view->sync();
    }
    /// Returns the colour against which the ink has the least contrast, in a line of pixels without the first
    /// and last three.
    QColor worst(const QColor& ink, const QRect& area) {
        const QImage image = view->viewport()->grab(area).toImage();
        std::vector<QColor> line;
        for (int x = 3; x < image.width() - 3; ++x) line.push_back(image.pixelColor(x, image.height() / 2));
        return std::ranges::min(line, {}, [&](const QColor& ground) { return contrast(ground, ink); });
    }
};

TEST_F(LooksTest, FittedColumnCutsNoNumber) {
    grid.addRow(kNoRow, "r");
    showList(600, 200);
    for (const double points : {8.0, 9.0, 9.5, 11.0, 13.3}) {
        QFont font = view->font();
        font.setPointSizeF(points);
        font.setHintingPreference(QFont::PreferNoHinting);  // Widths are fractions of pixels.
        view->setFont(font);
        for (int number = 1; number < 200; ++number) {
            text = std::to_string(number * 7919) + "." + std::to_string(number % 90 + 10) + " GB";
            view->autosizeColumn(1, 0);
            constexpr int kEdges = 8;  // Left and right of every text together.
            const QString shown = QString::fromStdString(text);
            const int room = view->columnWidth(1) - kEdges;
            ASSERT_EQ(view->fontMetrics().elidedText(shown, Qt::ElideRight, room), shown) << points;
        }
    }
}

TEST_F(LooksTest, ANumberThatGrowsWidensItsColumnAndADragDoesNotCutIt) {
    grid.addRow(kNoRow, "r");
    showList(600, 200);
    const auto wide = [this] {
        view->viewport()->grab();
        settle();
        return view->columnWidth(1) >=
               view->fontMetrics().horizontalAdvance(QString::fromStdString(text)) + 8;
    };
    text = "922.337.203.685.477 Bytes";
    EXPECT_TRUE(wide());
    dragBorder(*view, border(1), {-20, -60});
    EXPECT_TRUE(wide());
}

TEST_F(LooksTest, ABarWithAThirdToneShowsItBehindTheFirst) {
    const CellId more = 1;
    grid.changeColumn(1).barColor = 0x0000FF;
    grid.changeColumn(1).barMoreKey = "more";
    grid.setNumber(grid.addRow(kNoRow, "r"), 0, 40);
    grid.setNumber(grid.rowAt(0), more, 20);
    showList(600, 200);
    const QRect cell(view->columnViewportPosition(1), view->rowRect(0).top(), view->columnWidth(1),
                     view->rowRect(0).height());
    const QImage image = view->viewport()->grab(cell).toImage();
    const auto at = [&](double part) {
        return image.pixelColor(static_cast<int>(image.width() * part), image.height() / 2);
    };
    EXPECT_GT(at(0.2).blue(), at(0.2).red() + 40) << "used";
    EXPECT_TRUE(at(0.55).red() == at(0.55).blue() && at(0.55) != at(0.8)) << "reserved";
    EXPECT_EQ(at(0.8), view->palette().color(QPalette::Base)) << "free";
}

TEST_F(LooksTest, ATwoSidedBarGoesRightOrLeftAsFarAsItsNumberIsLarge) {
    const QPalette before = QApplication::palette();
    const ScopeExit restore([&before] { QApplication::setPalette(before); });
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    dark.setColor(QPalette::Text, QColor(252, 252, 252));
    GridColumn& column = grid.changeColumn(1);
    column.key = "more";
    column.barColor = kAboveColor;
    column.barTwoSided = true;
    column.barMost = 200;
    for (const double number : {200.0, -200.0, 100.0, -100.0, 1.0, 900.0})
        grid.setNumber(grid.addRow(kNoRow, "r"), 1, number);
    grid.setNumber(grid.addRow(kNoRow, "not compared"), 1, std::numeric_limits<double>::quiet_NaN());
    for (const auto& [palette, selected] :
         {std::pair(before, false), {dark, false}, {before, true}, {dark, true}}) {
        QApplication::setPalette(palette);
        for (std::size_t row = 0; row < 7; ++row) grid.setSelected(grid.rowAt(row), selected);
        showList(800, 300);
        view->autosizeColumn(1, 0);
        const int left = view->columnViewportPosition(1);
        struct Bar {
            int from = 0, length = 0;
            QColor color;
        };
        // Finds the bar in a line of pixels above the text.
        const auto barOf = [&](std::size_t row) {
            const QRect at(left, view->rowRect(row).top() + 4, view->columnWidth(1), 1);
            const QImage line = view->viewport()->grab(at).toImage();
            Bar bar;
            for (int x = 0; x < line.width(); ++x) {
                if (contrast(line.pixelColor(x, 0), line.pixelColor(0, 0)) < 1.9) continue;
                if (bar.length++ == 0) bar.from = x;
                bar.color = line.pixelColor(bar.from + bar.length / 3, 0);
            }
            return bar;
        };
        const Bar grown = barOf(0), shrunk = barOf(1);
        EXPECT_NEAR(grown.from, shrunk.from + shrunk.length, 2) << "they meet in the middle";
        EXPECT_GE(grown.length, 25);
        EXPECT_NEAR(grown.length, shrunk.length, 1);
        EXPECT_NEAR(barOf(2).length, grown.length / 2, 1);
        EXPECT_NEAR(barOf(3).length, grown.length / 2, 1);
        EXPECT_GE(barOf(4).length, 1) << "the smallest shows, too";
        EXPECT_EQ(barOf(5).length, grown.length);
        EXPECT_EQ(barOf(6).length, 0);
        if (selected) continue;
        EXPECT_GT(grown.color.red(), grown.color.green() + 50);
        EXPECT_GT(shrunk.color.green(), shrunk.color.red() + 50);
    }
}

TEST_F(LooksTest, ATwoSidedBarHasRoomBesideTheTextOfItsColumn) {
    grid.setNumber(grid.addRow(kNoRow, "r"), 1, 100);
    text = "+1.234,56 MB";
    showList(800, 300);
    view->autosizeColumn(1, 0);
    const int alone = view->columnWidth(1);
    grid.changeColumn(1).barColor = kAboveColor;
    grid.changeColumn(1).barTwoSided = true;
    view->autosizeColumn(1, 0);
    EXPECT_GE(view->columnWidth(1), alone + 50);
}

TEST_F(LooksTest, LongPathLeavesRoomForTheOtherColumnsOfAList) {
    grid.addRow(kNoRow, "r");
    text = std::string(300, 'w');
    showList(600, 200);
    view->autosizeColumn(0, 0);
    EXPECT_LE(view->columnWidth(0), 300);
    view->autosizeColumn(1, 0);
    EXPECT_GT(view->columnWidth(1), 600) << "a number is never cut";
}

TEST_F(LooksTest, HeightOfRowsShowsAllOfThemInAnyFontWithAndWithoutABarBelow) {
    for (const int width : {300, 1200}) {
        showList(width, 400);
        grid.setRedraw(false);
        addRoots(5);
        const int height = view->heightOfRows();
        grid.setRedraw(true);
        EXPECT_EQ(view->heightOfRows(), height);
        view->setGridFont({.name = "no such font", .points = width == 300 ? 30.0 : 9.0});
        for (std::size_t column = 0; column < 3; ++column) grid.changeColumn(column).width = 200;
        view->sync();
        view->resize(width, view->heightOfRows());
        QTest::qWait(0);
        EXPECT_EQ(view->horizontalScrollBar()->isVisible(), width == 300);
        EXPECT_EQ(view->verticalScrollBar()->maximum(), 0) << width;
        EXPECT_GE(view->viewport()->height(), view->rowRect(grid.rowCount() - 1).bottom()) << width;
    }
}

TEST_F(LooksTest, BarsCanBeReadInBothPalettes) {
    const QPalette before = QApplication::palette();
    const ScopeExit restore([&before] { QApplication::setPalette(before); });
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    dark.setColor(QPalette::Text, QColor(252, 252, 252));
    grid.setNumber(grid.addRow(kNoRow, "r"), 0, 100);
    for (const QPalette& palette : {before, dark}) {
        QApplication::setPalette(palette);
        for (const auto& [color, behind, selected] : {std::tuple(0x0000FFU, false, false),
                                                      {0x5B963CU, false, false},
                                                      {0xFF0000U, false, false},
                                                      {0x0000FFU, true, false},
                                                      {0x0000FFU, true, true}}) {
            grid.changeColumn(1).barColor = color;
            grid.changeColumn(1).barBehind = behind;
            grid.setSelected(grid.rowAt(0), selected);
            showList(600, 200);
            QRect cell = view->rowRect(0);
            cell.setLeft(view->columnViewportPosition(1) + 4);
            cell.setWidth(view->columnWidth(1) - 8);
            const QPalette::ColorGroup group = view->hasFocus() ? QPalette::Active : QPalette::Inactive;
            // Where the keys do not go, a selection is pale, and its text that of other rows.
            const bool strong = selected && view->hasFocus();
            const QColor ink = palette.color(group, strong ? QPalette::HighlightedText : QPalette::Text);
            const QColor ground = worst(ink, cell);
            const QColor plain = palette.color(group, strong ? QPalette::Highlight : QPalette::Base);
            EXPECT_GE(contrast(ground, ink), std::min(4.5, contrast(plain, ink)))
                << color << " " << ground.name().toStdString();
            EXPECT_NE(ground.rgb(), plain.rgb()) << "no bar was drawn";
        }
    }
}

/// A pane whose bar needs another row once it is narrower than 200 pixels, and says so at once.
class WrappingPane final : public QWidget {
  public:
    explicit WrappingPane(cSplitter& splitter) : splitter_(splitter) {}

  protected:
    void resizeEvent(QResizeEvent*) override {
        const int rows = width() < 200 ? 60 : 30;
        splitter_.setMinimumSize(1, rows);
        splitter_.setMaximumSize(1, rows);
    }

  private:
    cSplitter& splitter_;
};

TEST(SplitterLooks, GridFollowsTheBarAboveItWhenThatWrapsAndUnwraps) {
    Told told;
    cSplitter splitter;
    splitter.setPosition(30);
    WrappingPane bar(splitter);
    QWidget below;
    SplitterWidget widget(
        splitter, [&](const PaneRef& ref) -> QWidget* { return ref.number == 0 ? &bar : &below; }, told);
    splitter.Bind({PaneRef::Kind::kBar, 0}, {PaneRef::Kind::kGrid, 1});
    widget.resize(400, 300);
    widget.show();
    for (const int width : {150, 400, 180, 300}) {
        widget.resize(width, 300);
        const int gap = splitter.SplitterSize();
        EXPECT_EQ(bar.height(), width < 200 ? 60 : 30) << width;
        EXPECT_EQ(below.geometry(), QRect(0, bar.height() + gap, width, 300 - bar.height() - gap)) << width;
    }
    bar.setParent(nullptr);
    below.setParent(nullptr);
}

}  // namespace
}  // namespace hl
