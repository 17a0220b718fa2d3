#include "platform/qt/forms/form_dialog.h"

#include "gui/recording_events.h"
#include "platform/qt/forms/dialogs.h"

namespace hl::test {
namespace {

/// A form with a control of each kind, and with its routines.
struct FormDialogTest : testing::Test {
    FormDialogTest() {
        const auto digits = [](char32_t c) { return c >= U'0' && c <= U'9' ? c : c == U',' ? U'.' : U'\0'; };
        form_.name = "frmTest";
        form_.caption = "Test";
        form_.items = {
            {.control = &format_[0], .group = 1, .changed = [this] { box_.enabled = false; }},
            {.control = &format_[1], .column = 1, .group = 1, .changed = [this] { box_.enabled = true; }},
            {.control = &other_, .column = 2, .group = 2},
            {.control = &box_, .row = 1, .changed = [this] { seen_ += box_.checked ? "on " : "off "; }},
            {.control = &prompt_, .row = 2},
            {.control = &text_,
             .row = 2,
             .column = 1,
             .changed = [this] { seen_ = text_.text; },
             .keyPress = digits},
            {.control = &combo_,
             .row = 3,
             .changed = [this] { seen_ = combo_.items[combo_.index]; },
             .name = "Delimiter"},
            {.control = &lines_, .row = 4, .columnSpan = 3},
            {.control = &link_, .row = 5, .changed = [this] { seen_ = "link"; }}};
        form_.buttons = {{.control = &ok_, .changed = [this] { done("ok"); }},
                         {.control = &cancel_, .changed = [this] { done("cancel"); }}};
        form_.cancel = [this] { done("cancel"); };
        form_.loaded = &loaded_;
    }
    void done(const std::string& how) {
        seen_ = how;
        loaded_ = refuses_;
    }
    void open() {
        dialog_ = std::make_unique<FormDialog>(form_, events_, nullptr);
        dialog_->show();
        QApplication::processEvents();
    }
    template <class Widget>
    Widget* nth(int n) {
        return dialog_->findChildren<Widget*>().at(n);
    }

    RecordingEvents events_;
    OptionButton format_[2] = {{"TXT", true}, {"CSV"}}, other_{"Other", true};
    CheckBox box_{"More & more"};
    std::string prompt_ = "Levels", link_ = "a <b> & c";
    TextBox text_, lines_{.text = "one\r\ntwo", .readOnly = true, .multiLine = true};
    ComboBox combo_{.items = {"comma", "tab"}, .index = 0};
    CommandButton ok_{"OK"}, cancel_{"Cancel"};
    bool loaded_ = true, refuses_ = false;
    std::string seen_;
    Form form_;
    std::unique_ptr<FormDialog> dialog_;
};

TEST_F(FormDialogTest, AnOptionExcludesThoseOfItsGroupAndWhatItsRoutineChangesIsShown) {
    open();
    EXPECT_TRUE(nth<QRadioButton>(0)->isChecked());
    QTest::mouseClick(nth<QRadioButton>(0), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_FALSE(nth<QCheckBox>(0)->isEnabled());
    QTest::mouseClick(nth<QRadioButton>(1), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_TRUE(!format_[0].selected && format_[1].selected && other_.selected);
    EXPECT_TRUE(nth<QRadioButton>(2)->isChecked() && nth<QCheckBox>(0)->isEnabled());
}

TEST_F(FormDialogTest, ValuesAreInTheControlsBeforeTheirRoutinesRunAndATextTakesWhatItsFilterLetsThrough) {
    open();
    QTest::keyClick(nth<QCheckBox>(0), Qt::Key_Space);
    QTest::keyClick(nth<QCheckBox>(0), Qt::Key_Space);
    EXPECT_EQ(seen_, "on off ");
    QTest::keyClick(nth<QComboBox>(0), Qt::Key_Down);
    EXPECT_EQ(seen_, "tab");
    auto* line = nth<QLineEdit>(0);
    QTest::keyClicks(line, QStringLiteral("1x,2"));
    EXPECT_EQ(text_.text + seen_, "1.21.2");
    QTest::keyClick(line, Qt::Key_Backspace);
    EXPECT_EQ(text_.text, "1.");
}

TEST_F(FormDialogTest, TheFormClosesWhenItIsNoLongerLoadedAndNotBefore) {
    for (const auto& [key, seen] : {std::pair(Qt::Key_Return, "ok"), std::pair(Qt::Key_Escape, "cancel")})
        for (const bool refuses : {false, true}) {
            loaded_ = true;
            refuses_ = refuses;
            open();
            QTest::keyClick(nth<QLineEdit>(0), key);
            EXPECT_EQ(seen_, seen);
            EXPECT_EQ(dialog_->isVisible(), refuses);
        }
    form_.activated = [this] { loaded_ = false; };
    FormDialog closedAtOnce(form_, events_, nullptr);
    closedAtOnce.run();
    EXPECT_FALSE(closedAtOnce.isVisible());
}

TEST_F(FormDialogTest, ATableIsCopiedAndLeadsOnOnlyWhereALineLeads) {
    TableBox table{.titles = {"Line", "Bytes"},
                   .lines = {{{"Files", "10"}, "all names", false, true}, {{"a\nb", "3"}}}};
    form_.items.push_back({.control = &table, .row = 6, .columnSpan = 3, .changed = [&] {
                               seen_ = std::to_string(table.activated);
                           }});
    open();
    auto* shown = nth<QTableWidget>(0);
    EXPECT_GE(shown->viewport()->height(), 4 * shown->rowHeight(0));
    EXPECT_GE(shown->columnWidth(0), shown->fontMetrics().horizontalAdvance(shown->item(0, 0)->text()));
    EXPECT_EQ(shown->item(0, 0)->toolTip(), QStringLiteral("all names"));
    QTest::keyClick(shown, Qt::Key_Return);
    EXPECT_EQ(seen_, "0");
    QTest::keyClick(shown, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(shown, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("Files\t10\na\u240Ab\t3\n"));
    table.lines[1].cells[1] = "4";
    table.announcement = "complete";
    form_.redraw();
    EXPECT_EQ(shown->item(1, 1)->text() + shown->accessibleDescription(), QStringLiteral("4complete"));
    shown->setCurrentCell(1, 0);
    QTest::keyClick(shown, Qt::Key_Return);
    EXPECT_EQ(seen_, "ok");  // A line that leads nowhere leaves Return to the dialog.
}

TEST_F(FormDialogTest, TextsStandAsTheyAreControlsHaveNamesAndTheFormCanHaveThemShownAnew) {
    open();
    EXPECT_EQ(nth<QCheckBox>(0)->text(), QStringLiteral("More && more"));
    EXPECT_EQ(nth<QPlainTextEdit>(0)->toPlainText(), QStringLiteral("one\ntwo"));
    EXPECT_EQ(nth<QLineEdit>(0)->accessibleName(), QStringLiteral("Levels"));
    EXPECT_EQ(nth<QComboBox>(0)->accessibleName(), QStringLiteral("Delimiter"));
    auto* link = nth<QLabel>(1);
    EXPECT_TRUE(link->text().contains(QStringLiteral("a &lt;b&gt; &amp; c")));
    QTest::keyClick(link, Qt::Key_Tab);
    emit link->linkActivated(QString());
    EXPECT_EQ(seen_, "link");
    text_.text = "new";
    form_.redraw();
    EXPECT_EQ(nth<QLineEdit>(0)->text(), QStringLiteral("new"));
    dialog_.reset();
    EXPECT_FALSE(form_.redraw);
}

TEST_F(FormDialogTest, ARoutineThatFailsIsToldAndTheFormStaysOpen) {
    form_.buttons[0].changed = [] { throw std::runtime_error("no"); };
    open();
    QTest::mouseClick(nth<QPushButton>(0), Qt::LeftButton);
    EXPECT_EQ(events_.told, std::vector<std::string>{"fault FormDialog::changed"});
    EXPECT_TRUE(dialog_->isVisible());
}

TEST(Dialogs, AFilterWithSeveralPartsIsUnderstood) {
    EXPECT_EQ(qtFilter("TXT (*.txt)|*.txt"), QStringLiteral("TXT (*.txt)"));
    EXPECT_EQ(qtFilter("Pictures|*.png;*.jpg|All|*"), QStringLiteral("Pictures (*.png *.jpg);;All (*)"));
    EXPECT_EQ(qtFilter(""), QString());
}

}  // namespace
}  // namespace hl::test
