// The window with no mouse.
#include <QMenu>
#include <QTimer>
#include <QToolButton>

#include "gui/window_bars_fixture.h"
#include "platform/qt/qt_convert.h"

namespace hl {
namespace {

constexpr int kMostStops = 400;
using Commands = std::set<std::string>;

class KeyboardTest : public test::WindowBars {
  protected:
    static std::string nameOf(const QWidget* widget) {
        return widget == nullptr ? "-" : widget->objectName().toStdString();
    }
    static void key(int code, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(code), keys);
        QApplication::processEvents();
    }
    /// The names of all that has the focus on the way with the Tab key, once around.
    std::vector<std::string> stops() const {
        std::vector<std::string> names;
        QWidget* first = QApplication::focusWidget();
        do {
            names.push_back(nameOf(QApplication::focusWidget()));
            key(Qt::Key_Tab);
        } while (QApplication::focusWidget() != first && names.size() < kMostStops);
        return names;
    }
    /// Opens what belongs to the widget with the focus, and does `inside` with the menu.
    void inMenu(const std::function<void(QMenu&)>& inside) {
        QTimer::singleShot(0, qApp, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            inside(*menu);
            if (QWidget* open = QApplication::activePopupWidget()) open->close();
        });
        QWidget* button = QApplication::focusWidget();
        key(Qt::Key_Down);
        // With no window manager, nobody gives the focus back.
        const auto back = [] { return QApplication::focusWidget() != nullptr; };
        if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
            window->frame().activateWindow();
            button->setFocus();
        }
        ASSERT_TRUE(QTest::qWaitFor(back));
    }
    /// Chooses every line of a menu that opens with Down, one after another.
    void chooseAllBelow(QToolButton& button) {
        const auto unusable = [](const QAction* action) {
            return !action->isEnabled() || action->isSeparator();
        };
        auto lines = button.menu()->actions();
        lines.removeIf(unusable);
        for (int line = 0; line < lines.size(); ++line)
            inMenu([line](QMenu& menu) {
                for (int i = 0; i <= line; ++i) QTest::keyClick(&menu, Qt::Key_Down);
                QTest::keyClick(&menu, Qt::Key_Return);
            });
    }
    /// What stands in a menu and can be chosen, in the menus below it too, as if it had been.
    void offered(const QString& barName, const QMenu& menu) {
        for (const QAction* action : menu.actions()) {
            if (!action->isEnabled()) continue;
            if (action->menu() != nullptr) offered(barName, *action->menu());
            for (const CommandBar* bar : bars.all())
                if (qtText(bar->name()) == barName && action->menu() == nullptr)
                    events.execute(bar->id(), action->data().toInt());
        }
    }
    /// Walks once around with Tab, presses each button with Space, and what is in its list.
    void pressAllWithKeys() {
        std::set<std::string> seen;
        for (int i = 0; i < kMostStops; ++i) {
            QWidget* widget = QApplication::focusWidget();
            ASSERT_NE(widget, nullptr);
            if (!seen.insert(nameOf(widget)).second) return;
            auto* button = qobject_cast<QToolButton*>(widget);
            if (button != nullptr && button->popupMode() == QToolButton::InstantPopup) {
                inMenu([&](QMenu& menu) { offered(widget->parentWidget()->objectName(), menu); });
            } else if (button != nullptr) {
                key(Qt::Key_Space);
                if (button->menu() != nullptr) chooseAllBelow(*button);
            }
            key(Qt::Key_Tab);
        }
        FAIL() << "Tab does not come back";
    }
    static std::string command(const CommandBar& bar, const BarEntry& entry) {
        return "execute " + std::to_string(static_cast<int>(bar.id())) + " " + std::to_string(entry.id);
    }
    static void expect(const CommandBar& bar, const std::vector<BarEntry>& entries, Commands& all) {
        for (const BarEntry& entry : entries) {
            const bool works = entry.kind == EntryKind::kButton || entry.kind == EntryKind::kSplitButton ||
                               entry.kind == EntryKind::kCheckBox;
            if (works && entry.enabled && entry.visible) all.insert(command(bar, entry));
            expect(bar, entry.list, all);
        }
    }
    Commands wanted() const {
        Commands all;
        for (const CommandBar* bar : {&bars.cbrMain, &bars.cbrReport, &bars.cbrDrives})
            expect(*bar, bar->entries(), all);
        return all;
    }
    void expectAllReached() {
        pressAllWithKeys();
        const Commands done(events.told.begin(), events.told.end());
        EXPECT_GT(wanted().size(), 50U);
        for (const std::string& one : wanted()) EXPECT_TRUE(done.contains(one)) << one;
    }
};

TEST_F(KeyboardTest, EveryCommandIsReachedWithTabArrowsAndSpace) {
    show();
    expectAllReached();
}

using OnScreenKeyboardTest = KeyboardTest;
TEST_F(OnScreenKeyboardTest, EveryCommandIsReachedWhereTheWindowIsNarrowAndBarsClip) {
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        GTEST_SKIP()
            << "needs a screen: offscreen, a menu with an edit box keeps the keyboard when it closes";
    for (CommandBar* bar : bars.all()) bar->setClips(true);
    show(420, 600);
    expectAllReached();
}

TEST_F(KeyboardTest, TabGoesFromABarToItsGridAndOnToTheNextPane) {
    show();
    window->focusGrid(GridId::kReport);
    const std::vector<std::string> names = stops();
    // The first stop of each pane, in order.
    std::vector<std::string> panesInOrder;
    for (const std::string& name : names) {
        const std::string pane = name.substr(0, name.find('.'));
        if (panesInOrder.empty() || panesInOrder.back() != pane) panesInOrder.push_back(pane);
    }
    EXPECT_EQ(panesInOrder, (std::vector<std::string>{"tvwPL", "cbrDrives", "lvwDiskinfo", "cbrFiles",
                                                      "lvwFiles", "cboOrdner", "cbrMain", "cbrReport"}));
}

TEST_F(KeyboardTest, F6GoesAroundThePanesThatShow) {
    show();
    window->focusGrid(GridId::kReport);
    std::string way;
    for (int i = 0; i < 5; ++i) {
        way += nameOf(QApplication::focusWidget()) + " ";
        key(Qt::Key_F6);
    }
    EXPECT_EQ(way, "tvwPL lvwDiskinfo lvwFiles cboOrdner tvwPL ");
}

TEST_F(KeyboardTest, EveryAcceleratorPressesItsCommandFromWhereverTheFocusIs) {
    show();
    std::map<int, std::string> keys;
    for (const CommandBar* bar : {&bars.cbrMain, &bars.cbrReport, &bars.cbrDrives})
        for (const BarEntry& entry : bar->entries())
            if (entry.key != 0 && entry.enabled) keys[entry.key] = command(*bar, entry);
    EXPECT_GT(keys.size(), 12U);
    bars.cbrReport.setText(idOf(Command::kReportSearchText),
                           "a");  // A search with no text leads to its box instead.
    QWidget* const places[] = {
        &window->grid(GridId::kReport), &window->grid(GridId::kDrives),
        window->frame().findChild<QWidget*>(QStringLiteral("cboOrdner")),
        window->frame().findChild<QWidget*>(test::entryName(Command::kReportSearchText))};
    for (QWidget* place : places) {
        ASSERT_NE(place, nullptr);
        for (const auto& [code, executed] : keys) {
            place->setFocus();
            events.told.clear();
            const bool function = code >= 112;
            key(function ? Qt::Key_F1 + code - 112 : code, function ? Qt::NoModifier : Qt::ControlModifier);
            EXPECT_EQ(events.told, std::vector<std::string>{executed}) << nameOf(place);
        }
    }
}

TEST_F(KeyboardTest, ASearchWithNoTextLeadsToItsBox) {
    show();
    for (const auto& [from, box] : {std::pair{GridId::kDrives, Command::kReportSearchText},
                                    std::pair{GridId::kFiles, Command::kFilesSearchText}}) {
        window->focusGrid(from);
        events.told.clear();
        key(Qt::Key_F, Qt::ControlModifier);
        EXPECT_EQ(nameOf(QApplication::focusWidget()), test::entryName(box).toStdString());
        EXPECT_EQ(events.told, std::vector<std::string>{});
    }
}

}  // namespace
}  // namespace hl
