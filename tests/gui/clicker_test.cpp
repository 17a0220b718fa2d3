// Plays a user who clicks on everything at any moment, even while something runs: at random, and at the
// moments that are known to be dangerous.

#include "gui/window_fixture.h"
#include "platform/qt/grid/cell_editor.h"
#include "scan/rollup.h"
#include "support/trashing.h"

namespace hl::test {
namespace {

// --- what is scanned

const std::string kOddBytes = "\xff\xfe odd \x80";
const std::string kNewline = "two\nlines\x1b[31m";
const std::string kRightToLeft = "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d \xe2\x80\xae txt.exe";
const std::string kLongest(255, 'n');
constexpr int kChain = 300;
constexpr const char* kLink = "a folder in a deep chain";

void makeOddTree(const std::string& root, const std::string& outside) {
    for (const std::string& name : {kOddBytes, kNewline, kRightToLeft, kLongest, std::string("moving")}) {
        makeFolder(root + "/" + name);
        for (int i = 0; i < 4; ++i) {
            const std::string below = root + "/" + name + "/" + std::to_string(i) + name.substr(0, 100);
            makeFolder(below);
            makeFile(below + "/file " + kOddBytes, 1000 * (i + 1));
        }
    }
    makeFolder(root + "/many");
    for (int i = 0; i < 1500; ++i) makeFile(root + "/many/" + std::to_string(i) + ".dat", i);
    makeFolder(root + "/deep");
    makeChain(root + "/deep", kChain, kLink);
    makeFolder(root + "/denied");
    fs::permissions(root + "/denied", fs::perms::none);
    fs::create_directory_symlink(outside, root + "/out");
    fs::create_directory_symlink(root, root + "/round");
    fs::create_symlink("nowhere", root + "/dangling");
    fs::create_hard_link(root + "/many/7.dat", root + "/many/seven");
}

/// Adds, removes and moves folders below `root`/moving while it lives.
class Mover {
  public:
    Mover(std::string root, unsigned seed) : root_(std::move(root)), random_(seed) {}

  private:
    void step() {
        std::error_code ignored;
        const std::string a = pick(), b = pick(), below = root_ + "/moving/";
        const std::function<void()> steps[] = {
            [&] { fs::create_directories(below + a + "/x/y", ignored); },
            [&] { fs::remove_all(below + a, ignored); },
            [&] { fs::rename(below + a, below + b + "/moved", ignored); },
            [&] { fs::copy_file(root_ + "/many/9.dat", below + a + "/file", ignored); },
            [&] {  // What the user deletes is made again.
                fs::create_directories(root_ + "/" + b, ignored);
                fs::copy_file(root_ + "/many/9.dat", root_ + "/more.txt", ignored);
            }};
        steps[random_() % std::size(steps)]();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::string pick() { return std::to_string(random_() % 8) + "moving"; }

    std::string root_;
    std::mt19937 random_;
    std::jthread thread_{[this](const std::stop_token& end) {
        while (!end.stop_requested()) step();
    }};
};

/// Returns bytes, files and folders. A link to a folder counts as a folder but is not entered; nor is a
/// folder that this user may not read.
std::array<double, 3> truthOf(const std::string& root) {
    std::array<double, 3> truth{};
    auto& [bytes, files, folders] = truth;
    constexpr auto kPassOver = fs::directory_options::skip_permission_denied;
    for (const auto& entry : fs::recursive_directory_iterator(root, kPassOver)) {
        struct stat facts {};  // For a dangling link these are the link's own.
        if (stat(entry.path().c_str(), &facts) != 0) lstat(entry.path().c_str(), &facts);
        const bool folder = S_ISDIR(facts.st_mode);
        (folder ? folders : files) += 1;
        if (!folder) bytes += static_cast<double>(facts.st_size);
    }
    return truth;
}

// --- the user

constexpr Qt::Key kKeys[] = {Qt::Key_Up,    Qt::Key_Down,     Qt::Key_Left,    Qt::Key_Right,  Qt::Key_Plus,
                             Qt::Key_Minus, Qt::Key_Asterisk, Qt::Key_PageUp,  Qt::Key_Home,   Qt::Key_End,
                             Qt::Key_Space, Qt::Key_Return,   Qt::Key_Escape,  Qt::Key_Delete, Qt::Key_F1,
                             Qt::Key_F2,    Qt::Key_F3,       Qt::Key_F4,      Qt::Key_F5,     Qt::Key_F6,
                             Qt::Key_F9,    Qt::Key_Tab,      Qt::Key_Backtab, Qt::Key_Menu,   Qt::Key_A,
                             Qt::Key_F,     Qt::Key_N,        Qt::Key_R,       Qt::Key_S,      Qt::Key_T,
                             Qt::Key_L,     Qt::Key_1,        Qt::Key_3,       Qt::Key_4,      Qt::Key_9};

class Clicker {
  public:
    Clicker(Session& session, std::string tree, std::string home, unsigned seed)
        : s_(session), tree_(std::move(tree)), home_(std::move(home)), random_(seed) {}

    /// Returns when all actions are done and nothing is open or running.
    void run(int actions) {
        left_ = actions;
        QEventLoop loop;
        loop_ = &loop;
        next();
        loop.exec();
    }

    int duringRuns = 0, dialogs = 0, refusedCloses = 0, takenBack = 0;

  private:
    static constexpr int kPausesOfARun = 500;
    static constexpr int kDeepest = 6;  // The most actions on the stack, below menus, dialogs and runs.

    bool runs() const { return s_.form().state().ScanActive; }
    int pick(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
    template <class List>
    auto& any(List& list) {
        return *std::next(std::begin(list), pick(static_cast<int>(std::size(list))));
    }
    Qt::KeyboardModifiers keys() {
        constexpr Qt::KeyboardModifier kAll[] = {Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier};
        return pick(2) == 0 ? any(kAll) : Qt::NoModifier;
    }
    QPoint pointIn(const QWidget& widget) {
        return {pick(std::max(1, widget.width())), pick(std::max(1, widget.height()))};
    }

    // The next action is due before this one is over: whatever lets events run lets the user act.
    void next() {
        QTimer::singleShot(0, &context_, [this] { due(); });
    }
    void due() {
        if (left_ == 0 && depth_ == 0 && !runs() && !closeOpen()) return loop_->quit();
        next();
        if (left_ == 0 && runs()) s_.execute(Command::kStop);
        if (left_ == 0 || depth_ >= kDeepest) return void(closeOpen());
        if (runs() && pick(kPausesOfARun) > 0) return;  // Most commands have to wait for the end of a run.
        --left_;
        ++depth_;
        duringRuns += runs() ? 1 : 0;
        act();
        --depth_;
    }

    bool closeOpen() {
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* modal = QApplication::activeModalWidget();
        if (popup != nullptr) {
            popup->close();
        } else if (auto* dialog = dynamic_cast<QDialog*>(modal)) {
            dialog->reject();
        }
        return popup != nullptr || modal != nullptr;
    }

    void act() {
        if (QWidget* popup = QApplication::activePopupWidget()) return inPopup(*popup);
        if (auto* dialog = dynamic_cast<QDialog*>(QApplication::activeModalWidget()))
            return inDialog(*dialog);
        if (auto* editor = dynamic_cast<CellEditor*>(QApplication::focusWidget()))
            if (pick(2) == 0) return rename(*editor);
        // Each action has a weight; they add up to 26.
        const std::pair<int, std::function<void()>> actions[] = {
            {2, [&] { anyCommand(); }},
            {1, [&] { s_.frame().resize(60 + pick(1500), 60 + pick(1000)); }},
            {1, [&] { refusedCloses += runs() && !s_.frame().close() ? 1 : 0; }},
            {1, [&] { s_.form().handOver("\"" + tree_ + folder() + "\""); }},
            {2, [&] { press(QApplication::focusWidget()); }},
            {1, [&] { s_.pump().PumpMessages(); }},
            {1, [&] { typeSomewhere(); }},
            {2, [&] { clickOn(grid().viewport()); }},
            {1, [&] { clickOn(grid().horizontalHeader()->viewport()); }},
            {5, [&] { onRow(); }},
            {3, [&] { clickOn(anyUsable<QAbstractButton>()); }},
            {1, [&] { press(&s_.frame(), Qt::ControlModifier); }},
            {5, [&] { clickOn(anyIn(s_.frame())); }}};
        int chosen = pick(26);
        for (const auto& [often, action] : actions)
            if ((chosen -= often) < 0) return action();
    }

    /// Executes a command of any bar or of a list below a button, whether it is visible or not.
    void anyCommand() {
        const CommandBar& bar = *any(s_.form().parts().bars);
        const BarEntry* entry = &any(bar.entries());
        if (!entry->list.empty() && pick(3) > 0) entry = &any(entry->list);
        if (entry->visible) s_.form().parts().barEvents->execute(bar.id(), entry->id);
    }
    /// Selects a row, and renames it, opens its menu or deletes it.
    void onRow() {
        const GridId id = pick(2) == 0 ? GridId::kReport : static_cast<GridId>(pick(kGridCount));
        GridView& view = s_.window().grid(id);
        if (!view.sync()) return;  // What it shows may be gone.
        const auto count = static_cast<int>(view.rows().count());
        if (!view.isVisible() || count == 0) return;
        const auto index = static_cast<std::size_t>(pick(count));
        view.scrollIntoView(view.rows().at(index));
        const QPoint at(80, view.rowRect(index).center().y());
        QTest::mouseClick(view.viewport(), pick(3) == 0 ? Qt::RightButton : Qt::LeftButton, {}, at);
        if (pick(3) == 0) QTest::keyClick(&view, Qt::Key_F2);
        // In the bars of lists, too, moving to the trash follows deleting.
        if (pick(3) == 0) s_.execute(commandOf(barOf(id), idOf(Command::kFilesDelete) + pick(2)));
        if (id == GridId::kReport && pick(4) == 0) s_.execute(Command::kDeleteFolders + pick(2));
        if (pick(3) == 0) trashAndTakeBack(id);
    }
    /// What goes to the trash and comes back is as it was, unless the user does something between.
    void trashAndTakeBack(GridId id) {
        const std::vector<Row> rows = s_.window().grid(id).grid().selectedRows();
        if (id == GridId::kDrives || id == GridId::kJunctions || rows.size() != 1) return;
        const Grid& grid = s_.window().grid(id).grid();
        const std::string path =
            id == GridId::kReport ? Report_GetFullpathOfNode(grid, rows[0], false, kPosixPaths)
                                  : std::string(grid.cellText(rows[0], kFilePath)).append(grid.text(rows[0]));
        // A whole drive may be in the report, and other folders are changed by others.
        if (!path.starts_with(tree_ + "/") || path.find("moving") != std::string::npos ||
            path.find("/deep") != std::string::npos)
            return;
        const std::string before = snapshotOf(path);
        const int left = left_;
        if (id == GridId::kReport)
            s_.execute(Command::kRecycleFolders);
        else
            s_.execute(commandOf(barOf(id), idOf(Command::kFilesRecycle)));
        const bool went = snapshotOf(path) == "nothing\n" && before != "nothing\n";
        if (pick(2) == 0 || !went || left != left_) return;
        s_.execute(Command::kTakeBack);
        if (left != left_) return;
        ++takenBack;
        EXPECT_EQ(snapshotOf(path), before) << path;
    }
    std::string folder() {
        const std::string names[] = {"",      "/" + kOddBytes, "/" + kLongest, "/moving/2moving",
                                     "/none", "/many"};
        return any(names);
    }
    GridView& grid() { return s_.window().grid(static_cast<GridId>(pick(kGridCount))); }
    template <class Widget>
    Widget* anyUsable() {
        QList<Widget*> usable;
        for (auto* widget : s_.frame().findChildren<Widget*>())
            if (widget->isVisible() && widget->isEnabled()) usable.push_back(widget);
        return usable.isEmpty() ? nullptr : any(usable);
    }
    QWidget* anyIn(QWidget& top) {
        QList<QWidget*> shown;
        for (auto* widget : top.findChildren<QWidget*>())
            if (widget->isVisible() && widget->window() == &top) shown.push_back(widget);
        return shown.isEmpty() ? &top : any(shown);
    }

    // A press may open a menu and return only after all that is on the stack here.
    void clickOn(const QPointer<QWidget>& widget) {
        if (!widget || !widget->isVisible()) return;
        const Qt::MouseButton button = pick(5) == 0 ? Qt::RightButton : Qt::LeftButton;
        const auto held = keys();
        const QPoint at = pointIn(*widget);
        if (pick(6) == 0) return QTest::mouseDClick(widget, Qt::LeftButton, held, at);
        QTest::mousePress(widget, button, held, at);
        const QPoint to = pick(3) == 0 && widget ? pointIn(*widget) * 2 : at;
        if (widget && to != at) {
            QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, button, held);
            QApplication::sendEvent(widget, &move);
        }
        if (widget) QTest::mouseRelease(widget, button, held, to);
    }
    void press(const QPointer<QWidget>& widget) { press(widget, keys()); }
    void press(const QPointer<QWidget>& widget, Qt::KeyboardModifiers held) {
        const Qt::Key key = any(kKeys);
        if (widget) QTest::keyPress(widget, key, held);
        if (widget) QTest::keyRelease(widget, key, held);
    }
    void rename(CellEditor& editor) {
        const std::string names[] = {"new", "other name", "../up", "new/inside", "0.dat", ".", "same"};
        const QPointer<CellEditor> alive = &editor;
        editor.setText(QString::fromStdString(any(names)));
        QTest::keyPress(&editor, Qt::Key_Return);
        if (alive) QTest::keyRelease(alive, Qt::Key_Return);
    }
    void typeSomewhere() {
        const std::string texts[] = {tree_, tree_ + "/many/", "5",     "777777777777",
                                     "",    "a \t\"",         "/none", "file"};
        const QPointer<QLineEdit> edit = anyUsable<QLineEdit>();
        if (!edit) return;
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, QString::fromStdString(any(texts)));
        if (edit && pick(2) == 0) QTest::keyClick(edit, Qt::Key_Return);
    }

    void inPopup(QWidget& popup) {
        const QPointer<QMenu> menu = dynamic_cast<QMenu*>(&popup);
        if (pick(6) == 0 || menu == nullptr || menu->isEmpty()) return void(popup.close());
        if (pick(3) == 0) return press(&popup);
        const QList<QAction*> actions = menu->actions();
        const QPoint at = menu->actionGeometry(any(actions)).center();
        QTest::mousePress(menu, Qt::LeftButton, {}, at);
        if (menu) QTest::mouseRelease(menu, Qt::LeftButton, {}, at);
    }

    // Keys in a file dialog could rename and delete the files shown there, so it is only answered.
    void inDialog(QDialog& dialog) {
        ++dialogs;
        if (dialog.objectName() == QLatin1String("frmFehler")) return dialog.reject();
        if (auto* files = dynamic_cast<QFileDialog*>(&dialog)) return answer(*files);
        if (auto* text = dynamic_cast<QInputDialog*>(&dialog)) {
            text->setTextValue(QStringLiteral("\\\\server\\share%1").arg(pick(3)));
            return text->done(pick(2));
        }
        if (auto* box = dynamic_cast<QMessageBox*>(&dialog)) {
            const auto buttons = box->buttons();
            return any(buttons)->click();
        }
        if (dynamic_cast<QFontDialog*>(&dialog) != nullptr) return dialog.done(pick(2));
        if (pick(3) == 0) return dialog.reject();
        clickOn(anyIn(dialog));
    }
    void answer(QFileDialog& files) {
        const bool save = files.acceptMode() == QFileDialog::AcceptSave;
        if (pick(2) == 0) return files.reject();
        const std::string path =
            save ? home_ + "/report" + std::to_string(pick(3)) + ".txt" : tree_ + folder();
        choosePath(files, path);
        if (files.isVisible()) files.reject();
    }

    Session& s_;
    std::string tree_, home_;
    std::mt19937 random_;
    QObject context_;
    QEventLoop* loop_ = nullptr;
    int left_ = 0, depth_ = 0;
};

// --- by chance

/// Returns a number from the environment, for longer and for other runs, or the usual one.
unsigned given(const char* name, unsigned usual) {
    const char* text = std::getenv(name);
    return text != nullptr ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : usual;
}

struct ClickerTest : WindowTest {
    ClickerTest() {
        folder("src");
        makeFile(outside.path() + "/theirs", 12345);
        makeOddTree(at("src"), outside.path());
    }
    ~ClickerTest() override {
        std::error_code gone;
        fs::permissions(at("src/denied"), fs::perms::owner_all, gone);
    }
    void keepOpen(Session& s) const {
        using enum Command;
        const auto hide = [&](Command hidden) {
            s.form().parts().bars[static_cast<std::size_t>(barOf(hidden))]->setVisible(idOf(hidden), false);
        };
        for (int language = 0; language < 6; ++language) hide(kLanguageGerman + language);
        for (const Command hidden : {kQuit, kDrivesRead, kDrivesReadAll})  // These would read a whole drive.
            hide(hidden);
    }

    TempDir outside;
};

TEST_F(ClickerTest, TwoThousandActionsOfChanceEndInAWindowThatCountsRight) {
    const unsigned seed = given("CLICKER_SEED", 20240611);
    const auto before = snapshotOf(outside.path());
    Session s{home.path()};
    s.start();
    keepOpen(s);
    constexpr int kLongRun = 1000;
    s.fileSystem.beforeBlock = [&](int block) {
        if (block % 8 == 0) s.pump().PumpMessages();
        if (block > kLongRun) s.execute(Command::kStop);  // This stops the reading of a whole drive.
    };
    s.fileSystem.beforeFiles = [&](int) { s.pump().PumpMessages(); };
    int operations = 0;
    const std::string own = fs::canonical(at("src")).string();  // The drive may be read, and deleted from.
    s.operations().allows = [&](const std::string& path) {
        return path.starts_with(own + "/") && path.size() > own.size() + 1 &&
               !path.starts_with(own + "/deep") && !path.ends_with("/..");
    };
    s.operations().before = [&](OperationWatch&) {
        ++operations;
        s.pump().PumpMessages();
    };
    Clicker clicker(s, at("src"), home.path(), seed);
    {
        const Mover mover(at("src"), seed);
        clicker.run(static_cast<int>(given("CLICKER_ACTIONS", 2000)));
        for (int more = 0; operations == 0 && more < 10; ++more) clicker.run(500);  // They come by chance.
    }
    EXPECT_GT(operations, 0);
    EXPECT_GT(clicker.duringRuns, 200);
    EXPECT_GT(clicker.dialogs, 0);
    EXPECT_GT(clicker.refusedCloses, 2);
    EXPECT_EQ(s.reports, std::vector<std::string>());
    EXPECT_EQ(snapshotOf(outside.path()), before);

    Session::settle();  // A key that still waits would stop what follows.
    // The switches are set as they were at the start.
    const Options& options = s.form().form().session.options;
    if (options.NoHardlinks != 0) s.execute(Command::kHideLinks);
    if (options.AddHardlinksOnlyOnce != 0) s.execute(Command::kCountHardlinksOnce);
    if (options.ScanHardlinks != 0) s.execute(Command::kFollowLinks);
    s.execute(Command::kReportRemoveAll);
    EXPECT_EQ(s.grid().rowCount(), 0U);
    s.form().handOver("\"" + at("src") + "\"");
    EXPECT_EQ(s.form().state().CancelState, kCancelNone) << "stopped";
    const Row root = s.grid().firstRoot();
    ASSERT_NE(root, kNoRow);
    TempDir::remove(at("src/deep"));  // The chain is deeper than the library can name.
    folder("src/deep");
    auto truth = truthOf(at("src"));
    for (double& number : truth) number += kChain;
    const auto found = [&](CellId cell) { return s.grid().number(root, cell); };
    EXPECT_EQ((std::array{found(kSize), found(kFiles), found(kFolders)}), truth);
    // A number of levels that is no number is rightly reported.
    std::erase_if(s.reports, [](const std::string& report) {
        return report.find("Err: 13 - Type mismatch") != std::string::npos;
    });
    EXPECT_EQ(s.reports, std::vector<std::string>());
}

// --- at chosen moments

struct MomentTest : WindowTest {
    MomentTest() { smallTree(); }
    ~MomentTest() override { EXPECT_EQ(s.reports, std::vector<std::string>()); }
    void startWithReport() {
        s.start();
        s.scan(at("src"));
    }
    void closeWhileFilesAreRead() {
        int reads = 0;
        s.fileSystem.beforeFiles = [&](int) { EXPECT_FALSE(++reads > 0 && s.frame().close()); };
        s.clickRow("a");
        s.fileSystem.beforeFiles = nullptr;
        EXPECT_GT(reads, 0);
    }
    void handOver(const char* source) { s.form().handOver("\"" + at(source) + "\""); }

    QObject context;
    Session s{home.path()};
};

TEST_F(MomentTest, SourcesHandedOverBeforeTheFirstActivationAreReadOnceAndInTheWindowAsItIsThen) {
    folder("src2");
    s.onThere = [&] {
        QMetaObject::invokeMethod(
            &context, [&] { s.form().handOver("\"" + at("src") + "\" \"" + at("src2") + "\""); },
            Qt::QueuedConnection);
    };
    s.fileSystem.beforeBlock = [&](int) { Session::settle(); };
    s.start();
    Session::settle();
    EXPECT_EQ(s.rows(), "src a b Dateien src2");
    EXPECT_FALSE(s.form().state().ScanActive);
}

TEST_F(MomentTest, SourcesHandedOverWhileADialogIsOpenAreReadWhenItIsClosedAndItKeepsTheKeyboard) {
    s.start();
    s.answers.add([&](QDialog& dialog) {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        handOver("src");
        QCoreApplication::processEvents();
        EXPECT_EQ(QApplication::activeWindow(), &dialog);
        EXPECT_EQ(s.grid().rowCount(), 0U);
        dialog.reject();
    });
    s.click(Command::kInfo);
    EXPECT_EQ(s.numbers("src"), "457|4|3");
}

TEST_F(MomentTest, SourcesHandedOverWhileRowsAreUnfoldedAreReadAfterwards) {
    folder("src2");
    startWithReport();
    bool handed = false;
    QTimer::singleShot(0, &context, [&] {
        handed = s.form().state().ScanActive;
        handOver("src2");
    });
    s.execute(Command::kReportUnfoldAll);
    EXPECT_TRUE(handed);
    Session::settle();
    EXPECT_NE(s.row("src2"), kNoRow);
}

TEST_F(MomentTest, WhileTheFilesOfAFolderAreReadNothingElseBegins) {
    startWithReport();
    int pauses = 0;
    s.fileSystem.beforeFiles = [&](int) {
        ++pauses;
        s.clickRow("b");
        s.execute(Command::kReportRemoveAll);
    };
    s.clickRow("a");
    EXPECT_GE(pauses, 1);
    const Grid& files = s.window().grid(GridId::kFiles).grid();
    ASSERT_EQ(files.rowCount(), 1U);
    EXPECT_EQ(files.text(files.rowAt(0)), "y");
    EXPECT_EQ(s.grid().text(s.grid().currentRow()), "a");
    EXPECT_TRUE(files.redraw());
    EXPECT_TRUE(s.enabled(Command::kReportRemoveAll));
}

TEST_F(MomentTest, ClosingWhileFilesAreReadEndsTheReadingAndThenTheWindowAndIsNoStopOfTheNextSource) {
    startWithReport();
    closeWhileFilesAreRead();
    s.execute(Command::kReportRemoveAll);
    handOver("src");
    EXPECT_EQ(s.numbers("src"), "457|4|3");
    closeWhileFilesAreRead();
    EXPECT_TRUE(s.frame().close() && s.frame().unloaded());
    s.execute(Command::kStart);
    handOver("src");
    EXPECT_FALSE(s.form().state().ScanActive);
}

TEST_F(MomentTest, ARunThatFailsLeavesAWindowThatWorksOnAndCanBeClosed) {
    s.start();
    const std::function<void(int)> faults[] = {
        [](int) { throw std::bad_alloc(); },
        [](int block) { block == 3 ? throw std::runtime_error("provoked") : void(); }};
    for (const auto& fault : faults) {
        s.fileSystem.beforeBlock = fault;
        s.answers.add([](QDialog& dialog) { pressIn(dialog, "Weiter"); });
        s.scan(at("src"));
        s.fileSystem.beforeBlock = nullptr;
        EXPECT_TRUE(s.enabled(Command::kStart));
        std::string text;
        s.answers.add([&](QDialog& dialog) {
            for (const QLabel* label : dialog.findChildren<QLabel*>()) text += label->text().toStdString();
            pressIn(dialog, "OK");
        });
        s.execute(Command::kReportSave);
        EXPECT_TRUE(has(text, "darum wird nichts gespeichert"));
        s.execute(Command::kReportRemoveAll);
        handOver("src");
        EXPECT_EQ(s.numbers("src"), "457|4|3");
    }
    s.answers.add([](QDialog& dialog) { pressIn(dialog, "Abbrechen"); });
    s.execute(Command::kReportSave);
    EXPECT_TRUE(s.frame().close());
    ASSERT_EQ(s.reports.size(), 2U);
    EXPECT_TRUE(has(std::exchange(s.reports, {})[1], "provoked"));
}

}  // namespace
}  // namespace hl::test
