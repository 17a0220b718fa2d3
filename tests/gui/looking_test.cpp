// Tests what is seen, and what the user may do, while a run fills the report.

#include "gui/window_fixture.h"
#include "scan/records.h"

namespace hl::test {
namespace {

constexpr int kTopFolders = 60;

struct LookingTest : WindowTest {
    LookingTest() { makeSource("src"); }
    ~LookingTest() override { EXPECT_EQ(s.reports, std::vector<std::string>()); }

    /// Makes 60 folders with a file and a folder each, of sizes that all differ. A run has two blocks a
    /// folder.
    void makeSource(const std::string& source) const {
        for (int i = 0; i < kTopFolders; ++i) {
            const std::string name = source + "/f" + std::to_string(i);
            folder(name + "/in");
            file(name + "/in/x", 10 * (i + 1));
            file(name + "/y", 1);
        }
    }
    void start() {
        s.start();
        s.frame().resize(1200, 400);
        Session::settle();
        point(false);  // The pointer may rest where another test left it.
    }
    /// Reads the sources; before a block of the last one, what is named for it is done.
    void read(const std::map<int, std::function<void()>>& acts, const std::string& sources = "src") {
        int source = 0;
        const auto count = static_cast<int>(std::ranges::count(sources, ' ')) + 1;
        s.fileSystem.beforeBlock = [&](int block) {
            source += block == 1 ? 1 : 0;
            if (const auto act = acts.find(block); source == count && act != acts.end()) act->second();
        };
        std::string line;
        for (std::size_t from = 0, to = 0; to != std::string::npos; from = to + 1) {
            to = sources.find(' ', from);
            line += " \"" + at(sources.substr(from, to - from)) + "\"";
        }
        s.form().handOver(line);
        s.fileSystem.beforeBlock = nullptr;
        Session::settle();
    }
    static std::function<void()> aSecondPasses() {
        return [] { std::this_thread::sleep_for(std::chrono::milliseconds(1150)); };
    }

    std::vector<double> sizes() const {
        std::vector<double> all;
        const Grid& grid = s.grid();
        for (Row row = grid.firstChild(grid.firstRoot()); row != kNoRow; row = grid.nextSibling(row))
            all.push_back(grid.number(row, kSize));
        return all;
    }
    bool inOrder() const { return std::ranges::is_sorted(sizes(), std::greater()); }
    /// Expects that the row of the source says what those below it say together.
    void expectFresh(std::size_t least) const {
        const Grid& grid = s.grid();
        const Row root = grid.firstRoot();
        std::array<double, 4> sum{};
        std::size_t rows = 0;
        for (Row row = grid.firstChild(root); row != kNoRow; row = grid.nextSibling(row), ++rows) {
            sum[0] += grid.number(row, kSize);
            sum[1] += grid.number(row, kFiles);
            sum[2] += grid.number(row, kFolders) + 1;
            sum[3] += grid.number(row, kPercent);
        }
        EXPECT_GE(rows, least);
        EXPECT_TRUE(grid.number(root, kSize) == sum[0] && grid.number(root, kFiles) == sum[1]);
        EXPECT_NEAR(grid.number(root, kFolders), sum[2], 1) << "a folder may have come since";
        EXPECT_NEAR(sum[3], 100, 0.5);
    }
    /// Returns all rows, folded ones too, with what they say.
    static std::vector<std::string> everything(const Session& of) {
        std::vector<std::string> all;
        const Grid& grid = const_cast<Session&>(of).grid();
        for (Row row = grid.firstRoot(); row != kNoRow; row = grid.tree().following(row)) {
            std::string line = std::to_string(grid.level(row)) + " " + std::string(grid.text(row));
            for (const CellId cell : {kSize, kFiles, kFolders, kPercent})
                line += " " + std::to_string(grid.number(row, cell));
            all.push_back(line);
        }
        return all;
    }
    GridView& view() { return s.view(); }
    LevelSort levelSort() { return view().grid().levelSort(1); }
    Row shownAt(std::size_t index) { return view().rows().at(index); }
    void wheel(int notches) {
        QWidget& on = *view().viewport();
        const QPointF at = on.rect().center();
        QWheelEvent turn(at, on.mapToGlobal(at), {}, {0, -120 * notches}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&on, &turn);
        Session::settle();
    }
    void point(bool atReport) {
        QWidget& to =
            atReport ? *view().viewport() : *s.frame().findChild<QWidget*>(QStringLiteral("panel1"));
        QTest::mouseMove(&to, to.rect().center());
        ASSERT_EQ(view().underMouse(), atReport);
    }
    void clickBranch(std::size_t index) {
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, branchAt(view(), index));
    }

    mutable Session s{home.path()};
};

TEST_F(LookingTest, SumsSharesAndOrderOfTheFirstLevelAreFreshOnceASecond) {
    start();
    const auto look = [&] {
        expectFresh(10);
        EXPECT_TRUE(inOrder());
        Row row = s.grid().firstRoot();
        for (std::size_t i = 0; i < view().rows().count(); ++i, row = VisibleRows::following(s.grid(), row))
            EXPECT_EQ(shownAt(i), row);
        EXPECT_GT(view().verticalScrollBar()->maximum(), 0);
    };
    std::size_t rows = 0;
    const auto holdsAll = [&] {
        EXPECT_GE(s.grid().number(s.grid().firstRoot(), kSize), std::ranges::max(sizes()))
            << "no folder is larger than the source";
    };
    read({{30, holdsAll},
          {40, aSecondPasses()},
          {41, [&] { look(), rows = sizes().size(), view().setColumnWidth(1, 150); }},
          {80, aSecondPasses()},
          {81, [&] {
               look();
               EXPECT_EQ(view().columnWidth(1), 150) << "borders do not follow numbers to and fro";
               EXPECT_GT(sizes().size(), rows);
           }}});
    EXPECT_EQ(s.numbers("src"), "18.360|120|120");
}

TEST_F(LookingTest, LookingIsAllowedAllElseIsRefusedAndTheResultIsTheSame) {
    start();
    Row unfolded = kNoRow, picked = kNoRow, top = kNoRow;
    double width = 0;
    const auto files = [&]() -> const Grid& { return s.window().grid(GridId::kFiles).grid(); };
    const auto look = [&] {
        unfolded = shownAt(2);
        clickBranch(2);
        EXPECT_TRUE(s.grid().expanded(unfolded) && s.grid().level(shownAt(3)) == 2U);
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, view().rowRect(1).center());
        picked = shownAt(1);
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Plus, Qt::Key_Minus})
            QTest::keyClick(&view(), key);
        EXPECT_TRUE(s.grid().currentRow() == picked && s.grid().selectedRows() == std::vector{picked});
        EXPECT_FALSE(s.grid().expanded(picked));
        EXPECT_EQ(files().rowCount(), 0U);
        const QHeaderView& titles = *view().horizontalHeader();
        dragBorder(view(), {titles.sectionViewportPosition(1) + titles.sectionSize(1) - 1, 5}, {30});
        width = s.widths()[1];
        wheel(3);
        top = s.grid().topRow();
        EXPECT_NE(top, s.grid().firstRoot());
    };
    const auto meddle = [&] {
        const auto before = everything(s);
        const bool down = levelSort().descending;
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_F2, Qt::Key_Return, Qt::Key_Asterisk, Qt::Key_F5})
            s.key(view(), key);
        QTest::keyClick(&view(), Qt::Key_A, Qt::ControlModifier);
        QTest::mouseClick(view().viewport(), Qt::RightButton, {}, view().viewport()->rect().center());
        s.clickTitle(1);
        for (const Command command :
             {Command::kReportRemoveAll, Command::kReportRescan, Command::kReportUnfoldAll})
            s.execute(command);
        EXPECT_TRUE(before == everything(s) && levelSort().descending == down);
        EXPECT_EQ(s.grid().selectedRows(), std::vector{picked});
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_EQ(view().findChild<QLineEdit*>(), nullptr);
    };
    const auto expectKept = [&] {
        EXPECT_TRUE(s.grid().topRow() == top && s.grid().currentRow() == picked);
        EXPECT_TRUE(s.grid().expanded(unfolded));
        EXPECT_EQ(s.widths()[1], width);
    };
    read({{60, aSecondPasses()},
          {61, look},
          {70, aSecondPasses()},
          {75, meddle},
          {90, [&] { std::this_thread::sleep_for(std::chrono::milliseconds(2200)); }},
          {100, expectKept}});
    expectKept();
    ASSERT_EQ(files().rowCount(), 1U);
    EXPECT_EQ(s.status().substr(0, 3), "OK.");
    EXPECT_EQ(s.form().state().fileList.folder, at("src/") + std::string(s.grid().text(picked)) + "/");
    const TempDir other;
    Session unseen{other.path()};
    unseen.start();
    unseen.scan(at("src"));
    EXPECT_EQ(everything(s), everything(unseen));
}

TEST_F(LookingTest, RowsKeepTheirPlacesWhileThePointerRestsOnThemOrAKeyWasPressed) {
    start();
    std::vector<Row> before;
    const auto rows = [&] {
        std::vector<Row> all;
        for (Row row = s.grid().firstChild(s.grid().firstRoot()); row != kNoRow;
             row = s.grid().nextSibling(row))
            all.push_back(row);
        return all;
    };
    const auto held = [&] {
        std::vector<Row> now = rows();
        EXPECT_GT(now.size(), before.size());
        now.resize(before.size());
        EXPECT_EQ(now, before);
        EXPECT_FALSE(inOrder());
        expectFresh(10);
    };
    const auto sorted = [&] {
        EXPECT_TRUE(inOrder());
        before = rows();
    };
    read({{20, aSecondPasses()},
          {21, [&] { sorted(), point(true); }},
          {40, aSecondPasses()},
          {41, [&] { held(), point(false); }},
          {50, aSecondPasses()},
          {51, [&] { sorted(), s.key(view(), Qt::Key_Home); }},
          {70, aSecondPasses()},
          {71, held},
          {80, aSecondPasses()},
          {81, sorted}});
}

TEST_F(LookingTest, ASourceBeginsAtTheTopAndNothingIsScrolledForAUserWhoHasScrolled) {
    for (const char* more : {"src2", "src3"}) makeSource(more);
    start();
    Row top = kNoRow;
    const auto topName = [&] { return std::string(s.grid().text(s.grid().topRow())); };
    read({{60, aSecondPasses()}, {61, [&] { EXPECT_EQ(topName(), at("src2")); }}}, "src src2");
    read({{60, aSecondPasses()},
          {61,
           [&] {
               EXPECT_EQ(topName(), at("src3"));
               wheel(-5);
               top = s.grid().topRow();
               EXPECT_NE(topName(), at("src3"));
           }},
          {80, aSecondPasses()},
          {81, [&] { EXPECT_EQ(s.grid().topRow(), top); }}},
         "src3");
    EXPECT_EQ(s.grid().topRow(), top);
    EXPECT_EQ(s.grid().text(s.grid().currentRow()), at("src3"));
}

TEST_F(LookingTest, AFolderThatIsFoldedWhileOneInItIsReadAgainIsTheOnlySelectedRow) {
    start();
    read({});
    s.click(Command::kReportUnfoldAll);
    s.clickRow("in");
    const Row above = s.grid().parent(s.row("in"));
    s.fileSystem.beforeBlock = [&](int) { clickBranch(*view().rows().find(above)); };
    s.click(Command::kReportRescan);
    EXPECT_FALSE(s.grid().expanded(above));
    EXPECT_EQ(s.grid().selectedRows(), std::vector<Row>{above});
}

}  // namespace
}  // namespace hl::test
