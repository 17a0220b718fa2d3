// What a screen reader finds in the window.
#include <QAccessible>

#include "gui/window_bars_fixture.h"
#include "platform/qt/qt_convert.h"

namespace hl {
namespace {

class AccessibleTest : public test::WindowBars {
  protected:
    using Object = QAccessibleInterface;

    AccessibleTest() {
        // a(aa(aaa) ab) b, with `a` unfolded.
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

    /// "ROLE PATH" of every control below that has no name. Fillers and texts for the eye alone need none.
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
    /// The rows as "NAME[LEVEL+]", + unfolded, - folded.
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
    window->focusGrid(GridId::kReport);
    QTest::keyClick(&window->grid(GridId::kReport), Qt::Key_Home);
    QTest::keyClick(&window->grid(GridId::kReport), Qt::Key_Down);
    ASSERT_NE(tree()->focusChild(), nullptr);
    EXPECT_EQ(name(tree()->focusChild()), "aa");
    EXPECT_TRUE(tree()->focusChild()->state().focused);
}

}  // namespace
}  // namespace hl
