// Tests the window without a mouse, and what a screen reader finds in it.

#include "gui/window_bars_fixture.h"
#include "platform/qt/common/qt_convert.h"

namespace hl::test {
namespace {

constexpr int kMostStops = 400;
using Commands = std::set<std::string>;

struct KeyboardTest : WindowBars {
    static std::string nameOf(const QWidget* widget) {
        return widget == nullptr ? "-" : widget->objectName().toStdString();
    }
    static void key(int code, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(code), keys);
        QApplication::processEvents();
    }
    /// Returns the names of everything that gets the focus when Tab goes once around.
    std::vector<std::string> stops() const {
        std::vector<std::string> names;
        QWidget* first = QApplication::focusWidget();
        do {
            names.push_back(nameOf(QApplication::focusWidget()));
            key(Qt::Key_Tab);
        } while (QApplication::focusWidget() != first && names.size() < kMostStops);
        return names;
    }
    /// Opens the menu of the widget with the focus, and does `inside` with it.
    void inMenu(const std::function<void(QMenu&)>& inside) {
        QTimer::singleShot(0, qApp, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            inside(*menu);
            if (QWidget* open = QApplication::activePopupWidget()) open->close();
        });
        QWidget* button = QApplication::focusWidget();
        key(Qt::Key_Down);
        // Without a window manager, nobody gives the focus back.
        const auto back = [] { return QApplication::focusWidget() != nullptr; };
        if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
            window->frame().activateWindow();
            button->setFocus();
        }
        ASSERT_TRUE(QTest::qWaitFor(back));
    }
    /// Chooses each line of a menu that opens with Down, one after another.
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
    /// Notes as chosen what can be chosen in a menu and the menus below it.
    void offered(const QString& barName, const QMenu& menu) {
        for (const QAction* action : menu.actions()) {
            if (!action->isEnabled()) continue;
            if (action->menu() != nullptr) offered(barName, *action->menu());
            for (const CommandBar* bar : bars.all())
                if (qtText(bar->name()) == barName && action->menu() == nullptr)
                    events.execute(bar->id(), action->data().toInt());
        }
    }
    /// Presses the button with the focus with Space, and chooses everything in its list.
    void pressWithKeys() {
        QWidget* widget = QApplication::focusWidget();
        auto* button = qobject_cast<QToolButton*>(widget);
        if (button != nullptr && button->popupMode() == QToolButton::InstantPopup) {
            inMenu([&](QMenu& menu) { offered(widget->parentWidget()->objectName(), menu); });
        } else if (button != nullptr) {
            key(Qt::Key_Space);
            if (button->menu() != nullptr) chooseAllBelow(*button);
        }
    }
    /// Goes once around with Tab and, in each bar, with the arrows, and presses all buttons.
    void pressAllWithKeys() {
        std::set<std::string> seen;
        const auto isNew = [&] { return seen.insert(nameOf(QApplication::focusWidget())).second; };
        int stops = 0;
        while (isNew()) {
            ASSERT_LT(++stops, kMostStops) << "Tab does not come back";
            const bool inBar = dynamic_cast<ToolBar*>(QApplication::focusWidget()->parentWidget()) != nullptr;
            do {
                pressWithKeys();
                if (!inBar) break;
                key(Qt::Key_Right);
            } while (isNew());
            key(Qt::Key_Tab);
        }
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

TEST_F(KeyboardTest, TabGoesFromABarWhichIsOneStopToItsGridAndOnToTheNextPane) {
    show();
    window->grid(GridId::kReport).focus();
    const auto panesOf = [](std::vector<std::string> names) {
        for (std::string& name : names) name.resize(std::min(name.size(), name.find('.')));
        return names;
    };
    using Names = std::vector<std::string>;
    EXPECT_EQ(panesOf(stops()),
              (Names{"tvwPL", "cbrDrives", "lvwDiskinfo", "cbrFiles", "lvwFiles", "cboOrdner", "cbrReport"}));
}

TEST_F(KeyboardTest, ArrowsGoAroundABarWhichKeepsItsPlaceAndABoxKeepsThoseForItsText) {
    show();
    auto& box = *window->frame().findChild<QLineEdit*>(entryName(Command::kReportSearchText));
    box.setFocus();
    QTest::keyClicks(&box, QStringLiteral("ab"));
    const auto goes = [](int code, int times) {
        for (int i = 0; i < times; ++i) key(code);
        return nameOf(QApplication::focusWidget());
    };
    const std::string name = nameOf(&box), after = entryName(Command::kReportSearch).toStdString();
    EXPECT_EQ(goes(Qt::Key_Left, 2), name);
    EXPECT_EQ(goes(Qt::Key_Right, 2), name);
    EXPECT_EQ(goes(Qt::Key_Right, 1), after);
    const std::string first = goes(Qt::Key_Home, 1);
    EXPECT_EQ(first, entryName(Command::kReportRescan).toStdString());
    const std::string last = goes(Qt::Key_Left, 1);
    EXPECT_EQ(goes(Qt::Key_End, 1), last) << "around";
    EXPECT_EQ(goes(Qt::Key_Right, 1), first);
    key(Qt::Key_Right);
    const std::string place = nameOf(QApplication::focusWidget());
    key(Qt::Key_Tab);
    EXPECT_EQ(nameOf(QApplication::focusWidget()), "tvwPL");
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(nameOf(QApplication::focusWidget()), place);
}

TEST_F(KeyboardTest, F6GoesAroundThePanesThatShow) {
    show();
    window->grid(GridId::kReport).focus();
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
                           "a");  // Without a text, searching leads to its box instead.
    QWidget* const places[] = {&window->grid(GridId::kReport), &window->grid(GridId::kDrives),
                               window->frame().findChild<QWidget*>(QStringLiteral("cboOrdner")),
                               window->frame().findChild<QWidget*>(entryName(Command::kReportSearchText))};
    for (QWidget* place : places) {
        ASSERT_NE(place, nullptr);
        for (const auto& [code, executed] : keys) {
            place->setFocus();
            events.told.clear();
            const bool shift = (code & kKeyWithShift) != 0, function = code >= 112 && !shift;
            const auto with = shift ? Qt::ControlModifier | Qt::ShiftModifier
                                    : Qt::KeyboardModifiers(function ? Qt::NoModifier : Qt::ControlModifier);
            key(function ? Qt::Key_F1 + code - 112 : code & ~kKeyWithShift, with);
            // In a box, Ctrl+Z takes back what was typed, and on some systems Ctrl+D removes a character, and
            // Ctrl+K the rest of the line.
            const QKeySequence control(Qt::ControlModifier | static_cast<Qt::Key>(code));
            const bool edits = QKeySequence::keyBindings(QKeySequence::Delete).contains(control) ||
                               QKeySequence::keyBindings(QKeySequence::DeleteEndOfLine).contains(control);
            const bool ofBox = (code == 'Z' || edits) && dynamic_cast<GridView*>(place) == nullptr;
            if (ofBox)
                EXPECT_EQ(events.told, std::vector<std::string>{});
            else
                EXPECT_EQ(events.told, std::vector<std::string>{executed}) << nameOf(place);
        }
    }
}

TEST_F(KeyboardTest, ASearchWithNoTextLeadsToItsBox) {
    show();
    for (const auto& [from, box] : {std::pair{GridId::kDrives, Command::kReportSearchText},
                                    std::pair{GridId::kFiles, Command::kFilesSearchText}}) {
        window->grid(from).focus();
        events.told.clear();
        key(Qt::Key_F, Qt::ControlModifier);
        EXPECT_EQ(nameOf(QApplication::focusWidget()), entryName(box).toStdString());
        EXPECT_EQ(events.told, std::vector<std::string>{});
    }
}

struct AccessibleTest : WindowBars {
    using Object = QAccessibleInterface;

    AccessibleTest() {
        // The rows are a(aa(aaa) ab) b, with `a` unfolded.
        const Row a = report.addRow(kNoRow, "a");
        report.addRow(report.addRow(a, "aa"), "aaa");
        report.addRow(a, "ab");
        report.addRow(kNoRow, "b");
        report.setExpanded(a, true);
    }
    void SetUp() override { show(); }
    static Object* of(QObject& object) { return QAccessible::queryAccessibleInterface(&object); }
    Object* tree() { return of(window->grid(GridId::kReport)); }
    static std::string name(Object* object) { return utf8(object->text(QAccessible::Name)); }

    /// Finds "ROLE PATH" of every control below that has no name. Fillers, and texts that are only for the
    /// eye, need none.
    static void findNameless(Object* object, const std::string& path, std::vector<std::string>& found) {
        static const std::set<QAccessible::Role> kNeedless = {QAccessible::Client,    QAccessible::Separator,
                                                              QAccessible::Window,    QAccessible::ScrollBar,
                                                              QAccessible::StatusBar, QAccessible::Grip};
        for (int i = 0; i < object->childCount(); ++i) {
            Object* child = object->child(i);
            if (child == nullptr) continue;
            const std::string here = path + "/" + std::to_string(i);
            const auto role = child->role();
            if (!kNeedless.contains(role) && child->text(QAccessible::Name).isEmpty())
                found.push_back(std::to_string(role) + " " + here + " " +
                                (child->object() != nullptr ? utf8(child->object()->objectName()) : ""));
            if (role != QAccessible::Tree && role != QAccessible::List) findNameless(child, here, found);
        }
    }
    std::vector<std::string> nameless() {
        std::vector<std::string> found;
        findNameless(of(window->frame()), "", found);
        return found;
    }
    /// Returns the rows as "NAME[LEVEL+]", where + means unfolded and - folded.
    std::string rows() {
        std::string all;
        for (int i = 0; i < tree()->childCount(); ++i) {
            Object* row = tree()->child(i);
            const QAccessible::State flags = row->state();
            const char* fold = flags.expanded ? "+" : flags.collapsed ? "-" : "";
            all += name(row) + "[" + utf8(row->text(QAccessible::Description)) + fold + "] ";
        }
        return all;
    }
};

TEST_F(AccessibleTest, EveryControlHasANameAlsoWhereBarsClip) {
    for (const bool clips : {false, true}) {
        for (CommandBar* bar : bars.all()) bar->setClips(clips);
        show(clips ? 420 : 1200, 600);
        window->setSources({{"/", 0}, {"/usr", 0}}, "/", 0);
        EXPECT_EQ(nameless(), std::vector<std::string>());
    }
}

TEST_F(AccessibleTest, TheBoxOfSourcesTellsWhatItIsAndWhatStandsInIt) {
    window->setSources({{"/", 0}, {"/usr", 0}}, "/usr", 1);
    Object* box = of(*window->frame().findChild<QWidget*>(QStringLiteral("cboOrdner")));
    EXPECT_EQ(box->role(), QAccessible::ComboBox);
    EXPECT_EQ(name(box), bars.cbrMain.find(idOf(Command::kSourceBox))->tooltip);
    EXPECT_EQ(box->text(QAccessible::Value), QStringLiteral("/usr"));
    for (int i = 0; i < box->childCount(); ++i) EXPECT_EQ(box->indexOfChild(box->child(i)), i);
}

TEST_F(AccessibleTest, RowsAreItemsOfATreeWithLevelAndFoldedState) {
    EXPECT_EQ(tree()->role(), QAccessible::Tree);
    EXPECT_EQ(name(tree()), "Folder list");
    EXPECT_EQ(rows(), "a[Level 1+] aa[Level 2-] ab[Level 2] b[Level 1] ");
    for (int i = 0; i < tree()->childCount(); ++i) {
        Object* row = tree()->child(i);
        EXPECT_TRUE(row->role() == QAccessible::TreeItem && row->parent() == tree()) << i;
        EXPECT_EQ(tree()->indexOfChild(row), i);
        EXPECT_EQ(tree()->childAt(row->rect().center().x(), row->rect().center().y()), row);
    }
}

TEST_F(AccessibleTest, RowsFollowWhatIsUnfoldedAddedAndGone) {
    Object* folded = tree()->child(1);
    ASSERT_NE(folded->actionInterface(), nullptr);
    folded->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(rows(), "a[Level 1+] aa[Level 2+] aaa[Level 3] ab[Level 2] b[Level 1] ");
    report.addRow(kNoRow, "c");
    QApplication::processEvents();
    EXPECT_EQ(rows(), "a[Level 1+] aa[Level 2+] aaa[Level 3] ab[Level 2] b[Level 1] c[Level 1] ");
    Object* last = tree()->child(5);
    report.clear();
    EXPECT_FALSE(last->isValid());
    EXPECT_EQ(name(last), "");
}

TEST_F(AccessibleTest, ARowHasACellForEachColumnThatShows) {
    Object* row = tree()->child(2);
    ASSERT_EQ(row->childCount(), 2);
    EXPECT_EQ(row->child(0)->role(), QAccessible::Cell);
    EXPECT_EQ(name(row->child(0)) + " " + name(row->child(1)), "ab note");
    EXPECT_EQ(row->child(1)->text(QAccessible::Description), QStringLiteral("Note"));
    EXPECT_TRUE(row->indexOfChild(row->child(1)) == 1 && row->child(1)->parent() == row);
    report.changeColumn(1).visible = false;
    QApplication::processEvents();
    EXPECT_EQ(tree()->child(2)->childCount(), 1);
}

TEST_F(AccessibleTest, TheRowWithTheFocusIsFound) {
    window->grid(GridId::kReport).focus();
    QTest::keyClick(&window->grid(GridId::kReport), Qt::Key_Home);
    QTest::keyClick(&window->grid(GridId::kReport), Qt::Key_Down);
    ASSERT_NE(tree()->focusChild(), nullptr);
    EXPECT_EQ(name(tree()->focusChild()), "aa");
    EXPECT_TRUE(tree()->focusChild()->state().focused);
}

}  // namespace
}  // namespace hl::test
