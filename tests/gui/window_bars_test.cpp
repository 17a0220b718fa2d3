// Tests the bars of the window at work: how much room they take, which entries can be used, and their font.

#include "gui/lists_fixture.h"
#include "mainwindow/command_table.h"

namespace hl::test {
namespace {

struct WindowBarsTest : WindowTest {
    QWidget& bar(BarId id) {
        return *s->frame().findChild<QWidget*>(
            QString::fromLatin1(barRows()[static_cast<std::size_t>(id)].name));
    }
    static int rowsOf(const QWidget& bar) {
        std::vector<QRect> places;
        for (const auto* each : bar.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            if (each->isVisible()) places.push_back(each->geometry());
        std::ranges::sort(places, {}, [](const QRect& place) { return place.top(); });
        int rows = 0, bottom = -1;
        for (const QRect& place : places) {
            if (place.top() > bottom) ++rows;
            bottom = std::max(bottom, place.bottom());
        }
        return rows;
    }
    /// Returns the ids of what the button at the end of a bar shows, in its order.
    static std::vector<int> behind(const QWidget& bar) {
        std::vector<int> ids;
        const auto* more = bar.findChild<QToolButton*>(bar.objectName() + QStringLiteral(".extension"));
        if (more->isVisible())
            for (const QAction* action : more->menu()->actions())
                if (!action->isSeparator()) ids.push_back(action->data().toInt());
        return ids;
    }
    /// Expects that the entries with the largest ranks, and of one rank the last ones, are behind the button.
    void expectRanked(BarId id) {
        const std::vector<int> hidden = behind(bar(id));
        std::vector<CommandRow> rows;
        for (const CommandRow& row : commandsOf(id))
            if (row.parent == Command::kNone && row.kind != EntryKind::kLabel &&
                row.kind != EntryKind::kCustom && s->form().form().bar(id).find(idOf(row.command)) != nullptr)
                rows.push_back(row);
        std::vector<int> inOrder;
        for (const CommandRow& row : rows)
            if (std::ranges::find(hidden, idOf(row.command)) != hidden.end())
                inOrder.push_back(idOf(row.command));
        EXPECT_EQ(hidden, inOrder) << "they keep their order";
        std::ranges::reverse(rows);
        std::ranges::stable_sort(rows, std::greater(), &CommandRow::rank);
        for (std::size_t i = 0; i < rows.size(); ++i)
            EXPECT_EQ(std::ranges::find(hidden, idOf(rows[i].command)) != hidden.end(), i < hidden.size())
                << barRows()[static_cast<std::size_t>(id)].name << " " << idOf(rows[i].command);
    }

    std::optional<Session> s{home.path()};
};

TEST_F(WindowBarsTest, NoBarTakesMoreThanTwoRowsAndWhatLeavesGoesByItsRank) {
    writeFile(ini(), "[Allgemein]\r\nLang=7\r\n");
    s->start();
    for (const QSize size : {QSize(1280, 800), QSize(640, 480)}) {
        s->frame().resize(size);
        for (const Command look : {Command::kLargeIcons, Command::kIconText, Command::kLargeIcons}) {
            s->settle();
            for (std::size_t i = 0; i < kBarCount; ++i) {
                const auto id = static_cast<BarId>(i);
                if (!bar(id).isVisible()) continue;
                EXPECT_LE(rowsOf(bar(id)), 2) << size.width() << " " << barRows()[i].name;
                expectRanked(id);
            }
            s->execute(look);
        }
    }
    EXPECT_FALSE(behind(bar(BarId::kReport)).empty());
}

TEST_F(WindowBarsTest, OnlyWhatHasSomethingToWorkOnCanBePressed) {
    smallTree();
    const std::vector<Command> ofRows = {Command::kReportSave, Command::kReportPrint,
                                         Command::kReportRemoveAll, Command::kReportUnfoldAll},
                               ofSelection = {Command::kReportRemove},
                               ofFile = {Command::kFilesDelete, Command::kFilesRecycle};
    const auto expect = [&](const std::vector<Command>& commands, bool on, const char* when) {
        for (const Command each : commands) EXPECT_EQ(s->enabled(each), on) << each << " " << when;
    };
    const auto expectNone = [&](const char* when) {
        for (const auto* commands : {&ofRows, &ofSelection, &ofFile}) expect(*commands, false, when);
    };
    s->start();
    expectNone("at the start");
    EXPECT_FALSE(s->enabled(Command::kFilesSave) || s->enabled(Command::kStop));
    EXPECT_TRUE(s->enabled(Command::kDrivesReadAll) && !s->enabled(Command::kDrivesRead));
    s->fileSystem.beforeBlock = [&](int) { s->settle(), expectNone("during a run"); };
    s->scan(at("src"));
    expect(ofRows, true, "after a run");
    expect(ofSelection, true, "after a run");
    expect(ofFile, false, "with no file selected");
    EXPECT_TRUE(s->enabled(Command::kFilesSave)) << "src has a file";
    ListSession::clickOn(s->window().grid(GridId::kFiles), 0);
    s->settle();
    expect(ofFile, true, "with a file");
    s->click(Command::kReportRemoveAll);
    s->settle();
    expect(ofRows, false, "when all is removed");
}

TEST_F(WindowBarsTest, BarsAndStatusBarFollowTheSizeOfTheFonts) {
    const auto sizes = [&] {
        auto* button = s->frame().findChild<QToolButton*>(entryName(Command::kNewSource));
        return std::pair(
            QFontInfo(button->font()).pointSizeF(),
            QFontInfo(s->frame().statusBar()->findChild<QWidget*>(QStringLiteral("panel1"))->font())
                .pointSizeF());
    };
    s->start();
    const auto first = sizes();
    for (int i = 0; i < 4; ++i) s->click(Command::kLargerFont);
    const auto larger = sizes();
    EXPECT_NEAR(larger.first, first.first + 4, 0.6);
    EXPECT_NEAR(larger.second, first.second + 4, 0.6);
    s->frame().close();
    s.emplace(home.path());
    s->start();
    EXPECT_EQ(sizes(), larger) << "at the next start";
    for (int i = 0; i < 40; ++i) s->execute(Command::kLargerFont);
    s->settle();
    EXPECT_LT(sizes().first, first.first + 20) << "within bounds";
    for (int i = 0; i < 60; ++i) s->execute(Command::kSmallerFont);
    s->settle();
    EXPECT_GE(sizes().first, 5);
}

}  // namespace
}  // namespace hl::test
