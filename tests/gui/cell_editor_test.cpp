// Tests editing the name of a row in its cell, with real keys and clicks.

#include "gui/grid_view_fixture.h"
#include "gui/window_bars_fixture.h"
#include "platform/qt/common/qt_convert.h"

namespace hl::test {
namespace {

// --- bytes

TEST(EditableText, GivesEveryByteBack) {
    EXPECT_EQ(editableText("a\nb\t\x01ä😀\xFF"), QString::fromUtf8("a\nb\t\x01ä😀") + QChar(0xDCFF));
    for (const char16_t alone : {u'\xD800', u'\xDC7F', u'\xDFFF'})
        EXPECT_EQ(bytesOfEditable(QString(QChar(alone)) + QLatin1Char('x')), "\xEF\xBF\xBDx");
    std::mt19937 random(7);
    // These bytes are likelier than others, so that whole characters come up.
    const std::string likely("\x80\xBF\xA4\xC3\xE2\xED\xF0\xF4\xFF\n\t\x01.a", 14);
    QLineEdit box;
    for (int round = 0; round < 20000; ++round) {
        std::string bytes;
        for (std::size_t left = random() % 12; left > 0; --left)
            bytes += random() % 4 == 0 ? static_cast<char>(random() % 256) : likely[random() % likely.size()];
        box.setText(editableText(bytes));
        ASSERT_EQ(bytesOfEditable(box.text()), bytes) << testing::PrintToString(bytes);
    }
}

// --- the box over a view

struct CellEditorTest : GridViewTest {
    QWidget window;
    QLineEdit other{&window};

    static void waitForActive(QWidget& which) {
        which.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&which));
    }
    /// Shows the view in a window beside a box that takes the focus.
    void showWindow(bool tree, std::size_t roots = 0) {
        showRoots(roots, tree);
        view->setParent(&window);
        window.resize(700, 340);
        view->setGeometry(0, 0, 600, 300);
        other.setGeometry(0, 305, 200, 30);
        window.show();
        view->show();
        waitForActive(window);
        view->setFocus();
    }
    ~CellEditorTest() override { view.reset(); }
    QLineEdit* box() const { return view->findChild<QLineEdit*>(QStringLiteral("cellEditor")); }
    bool editing() const { return box() != nullptr && box()->isVisible(); }
    QLineEdit& edit(std::string_view text) {
        view->editCell(row(text));
        EXPECT_TRUE(editing() && box()->hasFocus()) << text;
        return *box();
    }
    void press(int code, Qt::KeyboardModifiers keys = {}) { QTest::keyClick(box(), Qt::Key(code), keys); }
    void type(const char* text) { QTest::keyClicks(box(), QLatin1String(text)); }
    LogLines takeTold() { return std::exchange(told.told, {}); }
    LogLines edited(std::string_view text, const std::string& bytes) const {
        return {"edited " + std::to_string(row(text)) + " " + bytes};
    }
    /// Edits r1, and does what ends that.
    void ends(const std::function<void()>& end, bool tells, bool focusInGrid, const std::string& how) {
        edit("r1");
        type("new");
        end();
        EXPECT_FALSE(editing()) << how;
        QTest::qWait(1);
        EXPECT_EQ(takeTold(), tells ? edited("r1", "new") : LogLines{}) << how;
        EXPECT_EQ(view->hasFocus(), focusInGrid) << how;
        view->setFocus();
        QTest::qWait(1);
    }
    /// Opens the box's own menu, does `inside` with it, and closes it.
    void inMenu(const std::function<void()>& inside) {
        QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 5}, box()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(box(), &menu);
        ASSERT_NE(QApplication::activePopupWidget(), nullptr);
        inside();
        QApplication::activePopupWidget()->close();
        window.activateWindow();
    }
};

TEST_F(CellEditorTest, SelectsAFilesNameWithoutItsExtension) {
    using Case = std::tuple<const char*, bool, const char*>;
    for (const auto& [file, tree, selected] :
         {Case{"a.tar.gz", false, "a.tar"}, Case{"README", false, "README"},
          Case{".profile", false, ".profile"}, Case{"end.", false, "end"}, Case{"a.d", true, "a.d"}}) {
        grid.clear();
        grid.addRow(kNoRow, file);
        show(tree);
        waitForActive(*view);
        view->setFocus();
        const QLineEdit& name = edit(file);
        EXPECT_EQ(name.text().toStdString(), file);
        EXPECT_EQ(name.selectedText().toStdString(), selected) << file;
        EXPECT_EQ(name.accessibleName(), QStringLiteral("Name"));
    }
}

TEST_F(CellEditorTest, KeysAndClicksElsewhereEndItOnceAndAllButEscapeTellTheName) {
    showWindow(false, 3);
    using Press = std::pair<Qt::Key, Qt::KeyboardModifiers>;
    for (const auto& [code, keys] :
         {Press{Qt::Key_Return, {}}, Press{Qt::Key_Enter, Qt::KeypadModifier}, Press{Qt::Key_Tab, {}},
          Press{Qt::Key_Backtab, Qt::ShiftModifier}, Press{Qt::Key_Escape, {}}})
        ends([&, code = code, keys = keys] { press(code, keys); }, code != Qt::Key_Escape, true,
             "key " + std::to_string(code));
    using Click = std::pair<QWidget*, QPoint>;
    for (const auto& [on, at] :
         {Click{view->viewport(), {550, 100}}, Click{view->horizontalHeader()->viewport(), {20, 5}},
          Click{&window, {650, 320}}, Click{&other, {5, 5}}})
        ends([on = on, at = at] { QTest::mouseClick(on, Qt::LeftButton, {}, at); }, true, on != &other,
             "click");
    ends([&] { view->editCell(row("r2")), press(Qt::Key_Escape); }, true, true, "another edit");
}

TEST_F(CellEditorTest, EndsUntoldWhereTheGridChangesUnderItAlsoWithAReturnAtOnce) {
    showWindow(false, 3);
    using Change = std::pair<const char*, std::function<void(bool)>>;
    for (const auto& [name, change] :
         {Change{"a row more",
                 [&](bool on) { on ? void(grid.addRow(kNoRow, "new")) : grid.removeRow(row("new")); }},
          Change{"sorted", [&](bool) { grid.sortLevels(0); }},
          Change{"disabled grid", [&](bool on) { grid.setEnabled(!on); }},
          Change{"Redraw off", [&](bool on) { grid.setRedraw(!on); }}})
        for (const bool atOnce : {false, true}) {
            const auto end = [&, change = change] {
                change(true);
                if (atOnce) press(Qt::Key_Return);
                EXPECT_TRUE(QTest::qWaitFor([this] { return !editing(); }, 2000));
                change(false);
            };
            ends(end, false, true, name);
        }
    ends([&] { view->setEnabled(false), view->setEnabled(true); }, false, false, "disabled view");
}

TEST_F(CellEditorTest, StaysThroughWhatDoesNotLeaveIt) {
    showWindow(false, 3);
    QWidget second;
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
    using Case = std::pair<const char*, std::function<void()>>;
    for (const auto& [name, happens] :
         {Case{"window in the background",
               [&] {
                   second.show();
                   waitForActive(second);
                   QTest::qWait(250);
                   waitForActive(window);
               }},
          Case{"its menu", [&] { inMenu([] { QTest::qWait(250); }); }},
          Case{"a key held down since before", [&] { QApplication::sendEvent(box(), &repeated); }},
          Case{"a click into it", [&] { QTest::mouseClick(box(), Qt::LeftButton); }},
          Case{"cells", [&] { grid.setNumber(row("r0"), 0, 7), QTest::qWait(20); }},
          Case{"Redraw off for a moment",
               [&] {
                   grid.setRedraw(false);
                   grid.setNumber(row("r0"), 0, 8);
                   grid.setRedraw(true);
                   QTest::qWait(20);
               }},
          Case{"another size", [&] { view->resize(500, 250); }}}) {
        edit("r1");
        type("new");
        happens();
        EXPECT_TRUE(editing()) << name;
        EXPECT_EQ(takeTold(), LogLines{}) << name;
        press(Qt::Key_Return);
        EXPECT_EQ(takeTold(), edited("r1", "new")) << name;
    }
}

TEST_F(CellEditorTest, DoesNotOpenWhereNobodyCouldWork) {
    showWindow(false, 3);
    const std::function<void(bool on)> cases[] = {
        [&](bool on) { grid.setEnabled(on); }, [&](bool on) { view->setEnabled(on); },
        [&](bool on) { view->setVisible(on); }, [&](bool on) { grid.setRedraw(on); },
        [&](bool on) { grid.changeColumn(0).visible = on, QTest::qWait(1); }};
    for (const auto& let : cases) {
        let(false);
        view->editCell(row("r1"));
        EXPECT_FALSE(editing()) << &let - cases;
        let(true);
    }
    edit("r1");
}

TEST_F(CellEditorTest, KeysStayInTheBox) {
    showWindow(false, 3);
    grid.setCurrentRow(row("r0"));
    edit("r1");
    for (const int code : {Qt::Key_F2, Qt::Key_Delete, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageDown,
                           Qt::Key_Home, Qt::Key_End, Qt::Key_F5, Qt::Key_Plus})
        press(code);
    EXPECT_EQ(picked(), "@r0");
    EXPECT_EQ(takeLog(), LogLines{});
    EXPECT_EQ(box()->text(), QStringLiteral("+"));
}

TEST_F(CellEditorTest, StrangeBytesSurviveAnEditElsewhere) {
    showWindow(false);
    for (const std::string& name :
         {std::string("\xFF\xFE odd \x80"), std::string("a\nb\tc\x01"),
          std::string("\xF0\x9F\x98\x80\xED\xA0\x80\r\n\x7F"), std::string("\xEF\xBB\xBF mark\xC3")}) {
        grid.addRow(kNoRow, name);
        edit(name);
        press(Qt::Key_End);
        type("x");
        QKeyEvent umlaut(QEvent::KeyPress, Qt::Key_Adiaeresis, {}, QString::fromUtf8("ä"));
        QApplication::sendEvent(box(), &umlaut);
        press(Qt::Key_Home);
        type("<");
        press(Qt::Key_Return);
        EXPECT_EQ(takeTold(), edited(name, "<" + name + "xä"));
    }
}

TEST_F(CellEditorTest, PastedLineBreaksBecomeBlanks) {
    grid.addRow(kNoRow, "x\ny");
    showWindow(true);
    const QString pasted = QString::fromUtf8("a\nb\r\nc\rd\u2028e\tf");
    using Case = std::pair<const char*, std::function<void()>>;
    for (const auto& [name, paste] :
         {Case{"Ctrl+V", [&] { press(Qt::Key_V, Qt::ControlModifier); }},
          Case{"Shift+Insert", [&] { press(Qt::Key_Insert, Qt::ShiftModifier); }},
          Case{"menu",
               [&] { inMenu([&] { box()->findChild<QAction*>(QStringLiteral("paste"))->trigger(); }); }},
          // Such a selection exists only in an X server.
          Case{"middle button", [&] {
                   QApplication::clipboard()->setText(pasted, QClipboard::Selection);
                   QTest::mouseClick(box(), Qt::MiddleButton, {}, {box()->width() - 4, box()->height() / 2});
               }}}) {
        if (name == std::string("middle button") && !QApplication::clipboard()->supportsSelection()) continue;
        QApplication::clipboard()->setText(pasted);
        edit("x\ny");
        press(Qt::Key_End);
        paste();
        press(Qt::Key_Return);
        EXPECT_EQ(takeTold(), edited("x\ny", "x\nya b c d e\tf")) << name;
    }
}

// --- place

TEST_F(CellEditorTest, LiesOverTheNameRightOfWhatStandsInFrontOfIt) {
    addTree();
    grid.setPicture(row("ab"), 3);
    const std::string wide(300, 'w');
    grid.setText(row("ba"), wide);
    showWindow(true);
    const int step = view->style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, view.get());
    for (const std::string& name : {std::string("aaa"), std::string("ab"), wide}) {
        const QRect place = edit(name).geometry(), line = view->rowRect(*view->rows().find(row(name)));
        EXPECT_EQ(std::pair(place.top(), place.height()), std::pair(line.top(), line.height())) << name;
        const int icon = name == "ab" ? view->style()->pixelMetric(QStyle::PM_SmallIconSize) : 0;
        const int front = static_cast<int>(grid.level(row(name)) + 1) * step + icon;
        EXPECT_NEAR(place.left() - view->columnViewportPosition(0), front, 4) << name;
        EXPECT_LE(place.right(), view->viewport()->rect().right()) << name;
        if (name == wide) continue;
        type("a much longer name than before");
        EXPECT_GT(box()->width(), place.width() + 20);
    }
}

TEST_F(CellEditorTest, FollowsItsRowAndEndsOutOfSight) {
    showWindow(false, 100);
    edit("r60");
    EXPECT_TRUE(view->viewport()->rect().contains(box()->geometry()));
    const auto expectOnRow = [&] { EXPECT_TRUE(editing() && box()->y() == view->rowRect(60).top()); };
    QScrollBar* bar = view->verticalScrollBar();
    bar->setValue(bar->value() + 3);
    expectOnRow();
    QWheelEvent wheel({5, 5}, box()->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, {}, {}, Qt::NoScrollPhase,
                      false);
    const int before = bar->value();
    QSpontaneKeyEvent::setSpontaneous(&wheel);  // The view passes only spontaneous wheel events on.
    qApp->notify(box(), &wheel);
    EXPECT_NE(bar->value(), before);
    expectOnRow();
    bar->setValue(0);
    EXPECT_FALSE(editing());
    EXPECT_EQ(takeTold(), LogLines{});
    EXPECT_TRUE(view->hasFocus());
}

TEST_F(CellEditorTest, AViewMayGoInTheMiddleOfAnEdit) {
    showWindow(false, 3);
    edit("r1");
    view.reset();
    EXPECT_EQ(takeTold(), LogLines{});
}

// --- in the window

using CellEditorInWindow = WindowBars;

TEST_F(CellEditorInWindow, KeysOfTheEditDoNotReachTheWindow) {
    const Row row = report.addRow(kNoRow, "folder");
    show();
    QWidget& view = window->grid(GridId::kReport);
    for (const Qt::Key code : {Qt::Key_Escape, Qt::Key_F5, Qt::Key_Delete, Qt::Key_Return}) {
        window->grid(GridId::kReport).editCell(row);
        auto* box = view.findChild<QLineEdit*>(QStringLiteral("cellEditor"));
        ASSERT_TRUE(box != nullptr && box->hasFocus()) << code;
        events.told.clear();
        QTest::keyPress(box, code);
        // The key is held down for a while, then released, wherever the focus is by then.
        QKeyEvent repeated(QEvent::KeyPress, code, {}, {}, true);
        QApplication::sendEvent(QApplication::focusWidget(), &repeated);
        QTest::keyRelease(QApplication::focusWidget(), code);
        QTest::qWait(1);
        const LogLines expected = {"edited " + std::to_string(row) + " folder"};
        EXPECT_EQ(events.told, code == Qt::Key_Return ? expected : LogLines{}) << code;
        if (box->isVisible()) QTest::keyClick(box, Qt::Key_Escape);
        EXPECT_TRUE(view.hasFocus()) << code;
    }
    // Without a box, the key is for the window again.
    events.told.clear();
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(events.told, LogLines{"formKeyUp 27"});
}

}  // namespace
}  // namespace hl::test
