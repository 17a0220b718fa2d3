// Tests that in every language each dialog and each bar shows all of its texts.

#include "app/language.h"
#include "base/text.h"
#include "gui/window_fixture.h"
#include "platform/linux/change/files.h"
#include "platform/qt/bars/tool_bar.h"

namespace hl::test {
namespace {

std::vector<Language> allLanguages() {
    LinuxFiles files;
    return findLanguages(files, {HARBORLANTERN_SOURCE_DIR "/lang"});
}

/// Tells whether the widget is of one of these classes.
template <class... Widgets>
bool isAny(const QWidget& widget) {
    return (... || (dynamic_cast<const Widgets*>(&widget) != nullptr));
}

/// Adds the visible controls in `box`, without their own parts.
void addControls(const QWidget& box, std::vector<const QWidget*>& controls) {
    for (const QObject* child : box.children()) {
        const auto* widget = dynamic_cast<const QWidget*>(child);
        if (widget == nullptr || !widget->isVisible() || widget->isWindow()) continue;
        if (isAny<QAbstractButton, QLabel, QComboBox, QLineEdit, QPlainTextEdit>(*widget)) {
            controls.push_back(widget);
        } else {
            addControls(*widget, controls);
        }
    }
}

/// Returns the room for all of its text, as the toolkit measures it, whatever place the layout gave it.
QSize needed(const QWidget& widget) {
    const auto* label = dynamic_cast<const QLabel*>(&widget);
    if (label != nullptr && label->wordWrap()) return {0, label->heightForWidth(label->width())};
    if (isAny<QPlainTextEdit>(widget)) return widget.minimumSize();  // It scrolls.
    if (const auto* edit = dynamic_cast<const QLineEdit*>(&widget))
        return {edit->fontMetrics().horizontalAdvance(edit->placeholderText()), edit->fontMetrics().height()};
    const auto* combo = dynamic_cast<const QComboBox*>(&widget);
    if (combo != nullptr && !combo->isEditable()) return combo->sizeHint();
    const auto* tool = dynamic_cast<const QToolButton*>(&widget);
    if (tool != nullptr && tool->toolButtonStyle() == Qt::ToolButtonIconOnly) return {};
    return isAny<QAbstractButton>(widget) ? widget.sizeHint() : widget.minimumSizeHint();
}

std::string textOf(const QWidget& widget) {
    const QString text = widget.property("text").toString();
    return (text.isEmpty() ? widget.accessibleName() : text).toStdString();
}

/// Checks that every control lies within `box`, overlaps no other, and shows its whole text. Returns how many
/// there are.
std::size_t checkControls(const QWidget& box, const std::string& where) {
    SCOPED_TRACE(where);
    std::vector<const QWidget*> controls;
    addControls(box, controls);
    std::vector<QRect> places;
    for (const QWidget* control : controls) {
        const QRect place(control->mapTo(&box, QPoint()), control->size());
        EXPECT_TRUE(box.rect().contains(place)) << textOf(*control);
        const QSize room = needed(*control);
        EXPECT_GE(place.width(), room.width()) << textOf(*control);
        EXPECT_GE(place.height(), room.height()) << textOf(*control);
        for (const QRect& other : places) EXPECT_FALSE(place.intersects(other)) << textOf(*control);
        places.push_back(place);
    }
    return controls.size();
}

void checkAccelerators(const QDialog& dialog) {
    std::set<QString> keys;
    for (const auto* button : dialog.findChildren<QAbstractButton*>()) {
        const QString key = button->shortcut().toString();
        EXPECT_TRUE(key.isEmpty() || keys.insert(key).second) << textOf(*button);
    }
}

struct LanguagesTest : WindowTest, testing::WithParamInterface<Language> {
    void SetUp() override {
        smallTree();
        s.start();
        ASSERT_TRUE(has(contentOf(ini()), stored())) << "the language has no library";
    }

    static std::string stored() { return "Lang=" + std::to_string(GetParam().id) + "\r\n"; }
    /// Returns the home from which the session reads its language.
    std::string homeOfLanguage() const {
        writeFile(ini(), replaceAll(contentOf(ini()), "Lang=7\r\n", stored()));
        return home.path();
    }

    /// Does what opens a dialog, checks it, and closes it.
    void lookAt(const char* name, std::size_t controls, const std::function<void()>& open) {
        s.answers.add([=](QDialog& dialog) {
            SCOPED_TRACE(name);
            EXPECT_EQ(dialog.objectName(), QLatin1String(name));
            EXPECT_GE(checkControls(dialog, name), controls);
            checkAccelerators(dialog);
            dialog.reject();
        });
        open();
        Session::settle();
    }

    void checkBars(const std::string& where) {
        for (const auto* bar : s.frame().findChildren<QWidget*>()) {
            const std::string name = bar->objectName().toStdString();
            if (isAny<ToolBar>(*bar) && bar->isVisible() && checkControls(*bar, where + name) > 0)
                seen.insert(name);
        }
    }

    Session s{homeOfLanguage(), kAllAddresses};
    std::set<std::string> seen;
};

TEST_P(LanguagesTest, NoDialogCutsATextOff) {
    using enum Command;
    lookAt("frmOptionen", 7, [&] { s.click(kOptions); });
    lookAt("frmInfo", 10, [&] { s.click(kInfo); });
    s.scan(at("src"));
    lookAt("frmSave", 16, [&] { s.click(kReportSave); });
    lookAt("frmPrint", 12, [&] { s.click(kReportPrint); });
    s.click(kShowFind);
    lookAt("frmFind", 18, [&] { s.click(kFindForm); });
    s.click(kShowFiles);
    s.clickRow("a");
    lookAt("frmSaveFiles", 6, [&] { s.click(kFilesSave); });
    lookAt("printPreview", 8, [&] { s.click(kFilesPrint); });
    lookAt("", 3, [&] { s.click(kDrivesAdd); });
    auto& files = s.window().grid(GridId::kFiles);
    files.sync();
    const QPoint first(20, files.rowRect(0).center().y());
    QTest::mouseClick(files.viewport(), Qt::LeftButton, {}, first);
    lookAt("", 3, [&] { s.click(kFilesDelete); });
    s.desktop.programs = {{"editor.desktop", "Editor"}};
    s.desktop.result = OpenResult::kNoProgram;
    lookAt("frmOpenWith", 4, [&] { doubleClick(files.viewport(), first); });
    s.fileSystem.beforeBlock = [](int) { throw std::runtime_error("provoked"); };
    lookAt("frmFehler", 9, [&] { s.scan(at("src")); });
}

TEST_P(LanguagesTest, TheTextsAboutTheProgramNeedNoScrollingAndTheToolkitIsToldTheLanguage) {
    EXPECT_EQ(s.form().parts().language, GetParam().code);
    s.answers.add([](QDialog& dialog) {
        for (auto* leaf : dialog.findChildren<QRadioButton*>()) {
            leaf->click();
            Session::settle();
            const auto* text = dialog.findChild<QPlainTextEdit*>();
            EXPECT_FALSE(text->toPlainText().isEmpty());
            EXPECT_EQ(text->verticalScrollBar()->maximum(), 0) << text->toPlainText().toStdString();
        }
        dialog.reject();
    });
    s.click(Command::kInfo);
}

TEST_P(LanguagesTest, NoBarCutsACaptionOff) {
    using enum Command;
    s.click(kShowMap);
    for (const char* shown : {"icons ", "captions "}) {
        for (const int width : {1400, 700}) {
            s.frame().resize(width, 900);
            for (const Command list : {kShowFiles, kShowTop, kShowHardlinks, kShowJunctions, kShowFind,
                                       kShowStatistics, kShowChanges}) {
                s.click(list);
                checkBars(shown + std::to_string(width) + " ");
            }
        }
        s.click(kIconText);
    }
    EXPECT_EQ(seen.size(), kBarCount);
}

INSTANTIATE_TEST_SUITE_P(All, LanguagesTest, testing::ValuesIn(allLanguages()),
                         [](const auto& one) { return std::string(one.param.code); });

}  // namespace
}  // namespace hl::test
