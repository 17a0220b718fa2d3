#include "platform/qt/bars/tool_bar.h"
#include "platform/qt/bars/bar_flow.h"

#include "gui/window_bars_fixture.h"
#include "platform/icons.h"

namespace hl::test {
namespace {

using Told = std::vector<std::string>;

constexpr int kCombo = 50, kGo = 2, kFirstCheck = 60, kToggle = 33, kSearch = 29, kLast = 20;

/// A bar with one entry of each kind; it is some 600 pixels wide.
struct ToolBarTest : testing::Test {
    ToolBarTest() {
        bar_.setTitle("Commands");
        bar_.add({.kind = EntryKind::kLabel, .caption = "Folders"});
        bar_.add({.id = kCombo, .kind = EntryKind::kCustom, .caption = "Source"});
        bar_.add({.id = kGo, .kind = EntryKind::kSplitButton, .caption = "Go & read", .key = 'R'});
        for (int i = 0; i < 3; ++i)
            bar_.add({.id = kFirstCheck + i, .kind = EntryKind::kCheckBox, .caption = "Check"}, kGo);
        bar_.add({.id = kToggle, .caption = "Toggle", .beginGroup = true});
        bar_.add({.id = kSearch, .kind = EntryKind::kEdit, .caption = "Search"});
        for (int i = 0; i < 5; ++i)
            bar_.add({.id = kLast - i, .caption = "Command " + std::to_string(i), .beginGroup = i == 0});
        show(900);
    }
    void show(int width) {
        tool_.resize(width, tool_.heightForWidth(width));
        tool_.show();
        QApplication::processEvents();
        // A window manager answers each size later, in turn; its last answer must not come after the next
        // size.
        if (QGuiApplication::platformName() != QLatin1String("offscreen")) QTest::qWait(40);
    }
    template <class Widget = QToolButton>
    Widget* find(int id) {
        return dynamic_cast<Widget*>(tool_.findChild<QWidget*>(QStringLiteral("cbrMain.%1").arg(id)));
    }
    QMenu* menuOf(int id) { return find(id)->menu(); }
    QToolButton* extension() { return tool_.findChild<QToolButton*>(QStringLiteral("cbrMain.extension")); }

    RecordingEvents events_;
    CommandBar bar_{BarId::kMain, "cbrMain"};
    IconStore icons_{HARBORLANTERN_SOURCE_DIR "/data"};
    QComboBox* combo_ = new QComboBox;
    ToolBar tool_{bar_, icons_, events_, events_, combo_};
};

TEST_F(ToolBarTest, AClickIsToldAndOnlyTheLogicSwitchesAnEntryOrDisablesIt) {
    QTest::mouseClick(find(kToggle), Qt::LeftButton);
    EXPECT_EQ(events_.told, Told{"execute 0 33"});
    EXPECT_FALSE(find(kToggle)->isChecked());
    events_.onExecute = [&](BarId, int id) { bar_.toggle(id); };
    QTest::mouseClick(find(kToggle), Qt::LeftButton);
    EXPECT_TRUE(find(kToggle)->isChecked());
    bar_.setEnabled(kToggle, false);
    QTest::mouseClick(find(kToggle), Qt::LeftButton);
    tool_.press(kToggle);
    EXPECT_EQ(events_.told.size(), 2U);
}

TEST_F(ToolBarTest, EveryEntryCanBeReachedAtAnyWidth) {
    for (const bool clips : {false, true})
        for (const int width : {60, 130, 250, 420, 900}) {
            bar_.setClips(clips);
            show(width);
            std::set<int> reached;
            QRegion taken = extension()->isVisible() ? extension()->geometry() : QRect();
            for (const BarEntry& entry : bar_.entries()) {
                auto* widget = entry.id == kCombo ? combo_ : find<QWidget>(entry.id);
                if (entry.id == 0 || !widget->isVisible()) continue;
                EXPECT_TRUE(tool_.rect().contains(widget->geometry())) << width << " " << entry.id;
                EXPECT_FALSE(taken.intersects(widget->geometry())) << width << " " << entry.id;
                taken += widget->geometry();
                reached.insert(entry.id);
            }
            if (extension()->isVisible())
                for (QAction* action : extension()->menu()->actions()) reached.insert(action->data().toInt());
            for (const BarEntry& entry : bar_.entries())
                EXPECT_TRUE(reached.contains(entry.id) || entry.id == 0) << width << " " << entry.id;
            EXPECT_EQ(extension()->isVisible(), width < 900);
        }
}

TEST_F(ToolBarTest, ANarrowerBarGrowsAndTellsIt) {
    const int wide = tool_.heightForWidth(2000);
    EXPECT_GT(tool_.heightForWidth(250), wide);
    show(2000);
    const int before = events_.resized;
    show(250);
    EXPECT_GT(events_.resized, before);
    bar_.setClips(true);
    EXPECT_EQ(tool_.heightForWidth(250), wide);
}

TEST_F(ToolBarTest, WhoIsToldOfAnotherHeightMayHaveTheBarBuiltAnew) {
    events_.onBarResized = [&](BarId) {
        bar_.setClips(true);
        tool_.heightForWidth(tool_.width());
    };
    bar_.setCaption(kToggle, std::string(200, 'w'));
    EXPECT_TRUE(bar_.clips());
    EXPECT_EQ(find(kToggle)->text().size(), 200);
}

TEST_F(ToolBarTest, AnEditBoxBehindTheExtensionGetsTheKeyboardToo) {
    bar_.setClips(true);
    show(130);
    tool_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&tool_)) << "else its menus close at once";
    QTimer look;
    look.callOnTimeout([&] {
        QMenu* menu = extension()->menu();
        // A popup's keys go there.
        if (menu->isVisible() && menu->focusWidget() != nullptr)
            QTest::keyClicks(menu->focusWidget(), QStringLiteral("ab"));
        menu->close();
    });
    look.start(50);
    tool_.focusEdit(kSearch);
    EXPECT_EQ(bar_.textOf(kSearch), "ab");
}

TEST_F(ToolBarTest, CheckBoxesOfAListAreSwitchedOneAfterAnother) {
    events_.onExecute = [&](BarId, int id) { bar_.toggle(id); };
    QMenu* menu = menuOf(kGo);
    menu->popup({10, 10});
    for (const int i : {0, 2})
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().at(i)).center());
    menu->setActiveAction(menu->actions().at(1));
    QTest::keyClick(menu, Qt::Key_Space);
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(events_.told, (Told{"execute 0 60", "execute 0 62", "execute 0 61"}));
    for (QAction* action : menu->actions()) EXPECT_TRUE(action->isChecked());
    menu->close();
}

TEST_F(ToolBarTest, TypingIsToldWithTheTextAlreadyInTheEntry) {
    auto* edit = find<QLineEdit>(kSearch);
    QTest::keyClicks(edit, QStringLiteral("ab"));
    QTest::keyClick(edit, Qt::Key_Enter);
    EXPECT_EQ(events_.told, (Told{"editChanged 0 29 a", "editChanged 0 29 ab", "editKeyDown 0 29 13"}));
    EXPECT_EQ(bar_.textOf(kSearch), "ab");
    bar_.setText(kSearch, "other");
    EXPECT_EQ(edit->text(), QStringLiteral("other"));
}

TEST_F(ToolBarTest, ABarThatIsBuiltAnewWhileACommandRunsKeepsTheClickedButtonAlive) {
    events_.onExecute = [&](BarId, int) {
        bar_.setLargeIcons(!bar_.largeIcons());
        for (int i = 0; i < 3; ++i) QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    QPointer<QToolButton> clicked = find(kToggle);
    QTest::mouseClick(clicked, Qt::LeftButton);
    EXPECT_NE(find(kToggle), clicked);
    EXPECT_EQ(find(kToggle)->iconSize().width(), 32);
    QTest::mouseClick(find(kToggle), Qt::LeftButton);
    EXPECT_EQ(events_.told.size(), 2U);
    EXPECT_EQ(combo_->parent(), &tool_);
}

TEST_F(ToolBarTest, AssistiveToolsFindABarWithItsTitle) {
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&tool_)->role(), QAccessible::ToolBar);
    EXPECT_EQ(tool_.accessibleName(), QStringLiteral("Commands"));
    EXPECT_EQ(find(kGo)->toolTip(), QStringLiteral("Go & read (Ctrl+R)"));
}

TEST(BarFlow, ARowThatHasRoomForNothingKeepsItsButton) {
    const Flow flow = flowOf({{.size = {150, 20}, .smallest = 150}}, 60, {.mostRows = 1});
    EXPECT_TRUE(flow.places[0].isNull());
    EXPECT_EQ(flow.extension.height(), 20);
}

using ToolBarOfTheWindow = WindowBars;

TEST_F(ToolBarOfTheWindow, TheButtonOfTheLanguageIsItsListAndNothingElse) {
    show(1600);
    const std::vector<int> languages = {35, 36, 37, 38, 39, 40};
    const auto idsOf = [](const QMenu& menu) {
        std::vector<int> ids;
        for (const QAction* action : menu.actions()) ids.push_back(action->data().toInt());
        return ids;
    };
    auto* button = window->frame().findChild<QToolButton*>(QStringLiteral("cbrMain.28"));
    ASSERT_TRUE(button != nullptr && button->isVisible());
    for (const bool mouse : {true, false}) {
        bool opened = false;
        QTimer::singleShot(20, button, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            opened = menu != nullptr && idsOf(*menu) == languages;
            if (menu != nullptr) menu->close();
        });
        if (mouse) {
            QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
        } else {
            QTest::keyClick(button, Qt::Key_Return);
        }
        QTest::qWait(40);
        EXPECT_TRUE(opened) << mouse;
    }
    EXPECT_EQ(events.told, Told());
    bars.cbrMain.setClips(true);
    show(300);
    QMenu* more = window->frame().findChild<QToolButton*>(QStringLiteral("cbrMain.extension"))->menu();
    ASSERT_NE(more, nullptr);
    for (const QAction* action : more->actions())
        if (action->data() == 28) {
            EXPECT_EQ(idsOf(*action->menu()), languages);
        }
}

}  // namespace
}  // namespace hl::test
