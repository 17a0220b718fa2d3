// Tests the first minutes: what an empty report offers, what is dropped on the window, and a source that was
// typed wrong.

#include "gui/lists_fixture.h"

namespace hl::test {
namespace {

struct StartPageTest : WindowTest {
    StartPageTest() {
        for (const char* name : {"a", "b"}) folder(name);
        setSettings("[ComboOrdner]\r\n0O=" + at("a/") + "\r\n1O=" + at("gone/") + "\r\n");
        fs::create_directories(s.userHome() + "/docs");
    }
    QWidget& page() { return *s.frame().findChild<QWidget*>(QStringLiteral("startPage")); }
    /// Returns the captions of the buttons that can be seen.
    Names offered() {
        Names all;
        for (auto* button : page().findChildren<QPushButton*>())
            if (button->isVisible()) all.push_back(button->accessibleName().toStdString());
        return all;
    }
    QPushButton& button(const std::string& caption) {
        for (auto* button : page().findChildren<QPushButton*>())
            if (button->accessibleName().toStdString() == caption) return *button;
        throw std::runtime_error("no button " + caption);
    }
    void press(const std::string& caption) {
        QTest::mouseClick(&button(caption), Qt::LeftButton);
        s.settle();
    }
    /// F6 goes from the box of sources to the report's pane.
    void focusPage() {
        s.window().focusBox();
        s.key(s.frame(), Qt::Key_F6);
    }
    std::string focused() {
        auto* widget = QApplication::focusWidget();
        return widget == nullptr ? "" : widget->accessibleName().toStdString();
    }
    /// Drags the URIs over the window and drops them, as another program does that would also move them.
    void drop(const std::string& uris) {
        QMimeData data;
        data.setData(QStringLiteral("text/uri-list"), QByteArray::fromStdString(uris));
        const auto actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter({40, 40}, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&s.frame(), &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent event({40, 40}, actions, &data, Qt::LeftButton, Qt::NoModifier);
        event.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(&s.frame(), &event);
        EXPECT_EQ(event.dropAction(), Qt::CopyAction) << "the other program must not remove what it gave";
        s.settle();
    }
    std::string uri(const std::string& path) const {
        return "file://" + QByteArray::fromStdString(at(path)).toPercentEncoding("/").toStdString() + "\r\n";
    }

    Session s{home.path()};
    const std::string kHome = "Persönlicher Ordner", kChoose = "Ordner auswählen ...";
};

TEST_F(StartPageTest, AnEmptyReportOffersPlacesAndOnePressReadsThem) {
    s.start();
    const Names first = {kHome, kChoose, "/", at("a/")};
    EXPECT_EQ(offered(), first);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        s.form().takeDriveAnswers();
        return button("/").accessibleDescription() == QStringLiteral("1.000 Bytes von 3,91 KB frei");
    })) << button("/").accessibleDescription().toStdString();
    press(kHome);
    EXPECT_EQ(s.rows(), "user docs");
    EXPECT_EQ(offered(), Names{});
    s.click(Command::kReportRemoveAll);
    EXPECT_EQ(offered(), first);
    s.scan(at("b"));
    EXPECT_EQ(s.rows(), "b") << s.status();
    EXPECT_TRUE(s.enabled(Command::kReportRemove));
    s.click(Command::kReportRemove);
    EXPECT_EQ(s.rows(), "");
    const Names later = {kHome, kChoose, "/", at("b/"), at("a/")};
    EXPECT_EQ(offered(), later);
    s.answers.add([&](QDialog& dialog) { choosePath(dialog, at("a")); });
    press(kChoose);
    EXPECT_EQ(s.rows(), "a");
}

TEST_F(StartPageTest, TheKeyboardReachesEveryButton) {
    s.start();
    focusPage();
    for (const std::string& next : {kHome, kChoose}) {
        EXPECT_EQ(focused(), next);
        s.key(*QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(focused(), "/");
    s.key(*QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(focused(), at("a/"));
    s.key(*QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(s.rows(), "a");
    EXPECT_TRUE(s.view().hasFocus()) << "the keyboard stays in the pane";
}

TEST_F(StartPageTest, AssistiveToolsFindButtonsWithNamesAndCanPressThem) {
    s.start();
    QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&button(kHome));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->role(), QAccessible::Button);
    EXPECT_EQ(found->text(QAccessible::Description).toStdString(), s.userHome());
    Names above;
    for (const QAccessibleInterface* at = found->parent(); at != nullptr; at = at->parent())
        above.push_back(at->text(QAccessible::Name).toStdString());
    EXPECT_NE(std::ranges::find(above, "Was soll eingelesen werden?"), above.end());
    found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(QTest::qWaitFor([&] { return s.rows() == "user docs"; }));
}

TEST_F(StartPageTest, WhatDoesNotFitCanBeScrolledTo) {
    s.start();
    s.frame().resize(700, 260);
    s.settle();
    QPushButton& last = button(at("a/"));
    EXPECT_TRUE(last.visibleRegion().isEmpty());
    focusPage();
    for (int i = 0; i < 3; ++i) s.key(*QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_TRUE(last.hasFocus());
    EXPECT_FALSE(last.visibleRegion().isEmpty());
}

TEST_F(StartPageTest, ASourceThatDoesNotExistLeavesTheBoxReadyToMend) {
    s.start();
    s.scan(at("bb"));
    auto& box = *s.frame().findChild<QComboBox*>(QStringLiteral("cboOrdner"));
    EXPECT_TRUE(box.lineEdit()->hasFocus() || box.hasFocus());
    EXPECT_EQ(box.lineEdit()->selectedText().toStdString(), at("bb/"));
    EXPECT_EQ(s.status(), "Die Quelle " + at("bb/") + " gibt es nicht.");
    EXPECT_EQ(offered().back(), at("a/")) << "it is not offered";
    QTest::keyClicks(box.lineEdit(), QString::fromStdString(at("b")));
    s.key(box, Qt::Key_Return);
    EXPECT_EQ(s.rows(), "b");
}

TEST_F(StartPageTest, WhatIsDroppedIsReadInItsOrderAndWhatCannotBeIsNamedOnce) {
    const std::string odd = "odd %41 \xFF name";
    folder(odd);
    folder("files");
    for (const char* name : {"files/one", "files/two"}) file(name, 3);
    fs::create_directory_symlink(at("b"), at("link"));
    s.start();
    std::string message;
    s.answers.add([&](QDialog& dialog) {
        message = dialog.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))->text().toStdString();
        dialog.accept();
    });
    drop("# a comment\r\n" + uri("b") + "sftp://host/far%20away\r\n" + uri("none") +
         "file://elsewhere.test/x\r\n" + uri(odd) + uri("link") + uri("files/two"));
    Names read;
    for (Row row = s.grid().firstRoot(); row != kNoRow; row = s.grid().nextSibling(row))
        read.emplace_back(s.grid().text(row));
    EXPECT_EQ(std::set<std::string>(read.begin(), read.end()),
              (std::set<std::string>{at("b"), at(odd), at("link"), at("files")}));
    for (const std::string& named :
         {std::string("sftp://host/far away"), at("none"), std::string("file://elsewhere.test/x")})
        EXPECT_TRUE(has(message, named));
    EXPECT_FALSE(has(message, at("b")));
    EXPECT_EQ(s.grid().text(s.grid().currentRow()), at("files"));
    const Grid& files = s.window().grid(GridId::kFiles).grid();
    ASSERT_EQ(files.selectedCount(), 1U);
    EXPECT_EQ(files.text(files.selectedRows().front()), "two");
}

TEST_F(StartPageTest, WhatIsDroppedDuringARunWaitsUntilItsEndUnlessItIsStopped) {
    for (const bool stops : {false, true}) {
        bool done = false;
        s.fileSystem.beforeBlock = [&](int block) {
            if (block != 1 || std::exchange(done, true)) return;
            drop(uri("b"));
            if (stops) s.click(Command::kStop);
        };
        if (!stops) s.start();
        s.scan(at("a"));
        EXPECT_EQ(s.rows(), stops ? "a" : "a b") << s.status();
        s.click(Command::kReportRemoveAll);
        EXPECT_EQ(s.rows(), "");
    }
}

}  // namespace
}  // namespace hl::test
