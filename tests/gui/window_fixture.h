// The program in this process: everything that its main() puts together, with a window on no screen, driven
// by mouse and keys. main() of the tests has made a QApplication.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <deque>
#include <filesystem>

#include "app/log.h"
#include "app/settings.h"
#include "gui/entry_name.h"
#include "gui/gestures.h"
#include "mainwindow/window_form.h"
#include "platform/linux/change/file_operations.h"
#include "platform/linux/change/files.h"
#include "platform/linux/drives/drives.h"
#include "platform/linux/drives/patience.h"
#include "platform/linux/process/system_error.h"
#include "platform/linux/process/system_facts.h"
#include "platform/linux/scan/file_system.h"
#include "platform/qt/window/main_window.h"
#include "platform/qt/window/qt_pump.h"
#include "robustness/fakes.h"
#include "start/program_core.h"
#include "support/recording_console.h"
#include "support/recording_desktop.h"
#include "support/temp_dir.h"
#include "support/trees.h"
#include "support/whole_files.h"

namespace hl::test {

/// The addresses of a build in which every address is set.
inline const Addresses kAllAddresses = {"https://home.test/", "http://forum.test/", "give.test",
                                        "bugs@mail.test"};

/// The machine's files. `beforeBlock` runs before each block of a scan, counted from 1 for each source;
/// `beforeFiles` before each block of a list of files.
class PausingFileSystem final : public FileSystem {
  public:
    explicit PausingFileSystem(Patience& patience)
        : disk_(std::make_shared<LinuxFileSystem>(limitsOfThisMachine(false)), patience) {}
    std::function<void(int block)> beforeBlock, beforeFiles;
    std::function<void()> beforeLook = [] {};

    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override {
        auto reader = disk_.read(source, options, wait);
        return std::make_unique<Reader>(std::move(reader), options.recursive ? beforeBlock : beforeFiles);
    }
    bool mayHang(std::string_view path) override { return disk_.mayHang(path); }
    Result<PathFacts> look(std::string_view path) override { return beforeLook(), disk_.look(path); }
    Result<std::string> target(std::string_view path) override { return disk_.target(path); }

  private:
    class Reader final : public FolderReader {
      public:
        Reader(std::unique_ptr<FolderReader> reader, std::function<void(int)>& before)
            : reader_(std::move(reader)), before_(before) {}
        std::unique_ptr<Listing> next() override {
            ++block_;
            if (before_) before_(block_);
            return reader_->next();
        }

      private:
        std::unique_ptr<FolderReader> reader_;
        std::function<void(int)>& before_;
        int block_ = 0;
    };

    PatientFileSystem disk_;
};

/// Changes the machine's files. `before` runs before each operation, with the caller's watch.
class PausingOperations final : public FileOperations {
  public:
    PausingOperations(const LinuxFileOperations::Settings& settings, SilentDisks& disks)
        : disk_(std::make_shared<DirectoryCalls>(), settings, &disks) {}
    std::function<void(OperationWatch&)> before = [](OperationWatch&) {};

    /// Operations are refused where it returns false; links on the way are followed. For users who delete at
    /// random.
    std::function<bool(const std::filesystem::path&)> allows;

    Result<> removeFile(const FilePlace& place, OperationWatch& watch) override {
        if (refused(place)) return systemError(EACCES);
        return before(watch), disk_.removeFile(place, watch);
    }
    Removal removeTree(const FilePlace& place, OperationWatch& watch) override {
        if (refused(place)) return {.failures = {{systemError(EACCES, place.base), true}}, .failureCount = 1};
        return before(watch), disk_.removeTree(place, watch);
    }
    Result<Moved> recycle(const FilePlace& place, OperationWatch& watch) override {
        if (refused(place)) return recycleError(RecycleError::kAccess);
        return before(watch), disk_.recycle(place, watch);
    }
    Result<> putBack(const Moved& what, const FilePlace& to, OperationWatch& watch) override {
        if (refused(to)) return systemError(EACCES);
        return before(watch), disk_.putBack(what, to, watch);
    }
    Result<Moved> move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) override {
        if (refused(from) || refused(to)) return systemError(EACCES);
        return before(watch), disk_.move(from, to, watch);
    }
    Result<bool> wouldReplace(const FilePlace& from, const FilePlace& to, OperationWatch& watch) override {
        return disk_.wouldReplace(from, to, watch);
    }
    Protection protectionOf(const FilePlace& place, OperationWatch& watch) override {
        return disk_.protectionOf(place, watch);
    }

  private:
    bool refused(const FilePlace& place) const {
        if (!allows) return false;
        const std::filesystem::path path = place.base + (place.below.empty() ? "" : "/" + place.below);
        std::error_code error;
        const auto folder = std::filesystem::canonical(path.parent_path(), error);
        return error || !allows(folder / path.filename());
    }

    LinuxFileOperations disk_;
};

class NoFolderVerb final : public FolderVerb {
  public:
    Result<> offer(const FolderOffer&) override { return {}; }
    Result<> withdraw() override { return {}; }
};

/// Acts on the dialogs that open next, one after another. Each act closes its dialog, or opens the next one.
class Answers {
  public:
    using Act = std::function<void(QDialog&)>;
    ~Answers() { EXPECT_TRUE(acts_.empty()) << acts_.size() << " dialogs never opened"; }
    void add(Act act) {
        acts_.push_back(std::move(act));
        if (acts_.size() == 1) wait();
    }

  private:
    void wait() {
        QTimer::singleShot(5, &context_, [this] {
            auto* dialog = dynamic_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || dialog == last_ || !dialog->isVisible()) return wait();
            last_ = dialog;
            const Act act = std::move(acts_.front());
            acts_.pop_front();
            if (!acts_.empty()) wait();
            act(*dialog);
        });
    }
    QObject context_;
    std::deque<Act> acts_;
    QPointer<QDialog> last_;  ///< Null once it is gone, since the next one may have its address.
};

/// Presses the button with this caption.
inline void pressIn(QWidget& dialog, const char* caption) {
    for (auto* button : dialog.findChildren<QAbstractButton*>())
        if (button->text().remove(QLatin1Char('&')) == QString::fromUtf8(caption)) return button->click();
    ADD_FAILURE() << "no button " << caption;
}
/// Chooses a path in a file dialog.
inline void choosePath(QDialog& dialog, const std::string& path) {
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    edit->setText(QString::fromStdString(path));
    QTest::keyClick(edit, Qt::Key_Return);
}

/// Clicks an entry, named by bar and id, in the bar or in one of its lists.
inline void clickEntry(QWidget& frame, const QString& name) {
    auto* widget = frame.findChild<QWidget*>(name);
    if (widget != nullptr && widget->isVisible())
        return QTest::mouseClick(widget, Qt::LeftButton, {}, {8, widget->height() / 2});
    const QString bar = name.section(QLatin1Char('.'), 0, 0), id = name.section(QLatin1Char('.'), 1);
    for (auto* menu : frame.findChild<QWidget*>(bar)->findChildren<QMenu*>())
        for (QAction* action : menu->actions()) {
            if (action->data().toString() != id) continue;
            menu->popup({});
            return QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        }
    ADD_FAILURE() << "no entry " << name.toStdString();
}

/// The program without its window. It speaks German, unless its settings say otherwise.
class Logic {
  public:
    explicit Logic(const std::string& home, const Addresses& addresses = {}) : home_(home) {
        std::filesystem::create_directories(machine_.path() + "/proc/self");
        writeFile(machine_.path() + "/proc/self/mountinfo", "21 1 0:2 / / rw - overlay overlay rw\n");
        core_.errors().waitForWindow(true);
        core_.texts().Init_Sprache("", "");
        core_.texts().storeLanguage();
        WindowServices services = core_.windowServices(drives_, verb_, operations_, addresses);
        services.windowThere = [this, mail = addresses.mail](const Window* window, MessagePump* pump) {
            core_.windowThere(window, pump, mail);
            if (window != nullptr && onThere) onThere();
        };
        form_.emplace(core_.services(fileSystem), services);
        form_->parts().dataFolder = HARBORLANTERN_SOURCE_DIR "/data";
        form_->parts().desktop = &desktop;
        files_.setPatience(&patience);
        patience.setWait(&form_->diskWait());
        form_->parts().clipboardHolder =
            std::filesystem::path(HARBORLANTERN_PROGRAM).parent_path().string() + "/harborlantern-clipboard";
    }

    SilentDisks disks;
    LinuxPatience patience{disks};
    PausingFileSystem fileSystem{patience};
    Answers answers;
    std::vector<std::string> reports;  ///< The reports of errors.
    std::function<void()> onThere;     ///< Is called when the window exists but is not yet shown.
    std::function<void()> endProcess = [] { FAIL(); };

    WindowForm& form() { return *form_; }
    MessagePump& pump() { return core_.pump(); }
    const Texts& texts() { return core_.texts(); }
    RecordingDesktop desktop;
    PausingOperations& operations() { return operations_; }
    std::string userHome() const { return machine_.path() + "/home/user"; }
    std::string trash() const { return machine_.path() + "/Trash"; }

  private:
    TempDir machine_;  ///< Holds the mounts.
    std::string home_;
    FakeSystemFacts facts_;
    LinuxFiles files_;
    RecordingConsole console_;
    ProgramCore core_{{facts_,
                       files_,
                       console_,
                       home_,
                       HARBORLANTERN_SOURCE_DIR "/lang",
                       "",
                       HARBORLANTERN_PROGRAM,
                       true,
                       numberFormatOf("de_DE.UTF-8"),
                       dateFormatOf("de_DE.UTF-8"),
                       "de_DE",
                       {userHome() + "/now", userHome()},
                       [this](const std::string& report) { reports.push_back(report); },
                       [this] { endProcess(); }}};
    LinuxDrives drives_{{.root = machine_.path(), .space = [](const std::string&) {
                             return DriveSpace{4000, 1000, 4, 500};
                         }}};
    NoFolderVerb verb_;
    PausingOperations operations_{
        {.home = userHome(), .programFolders = {home_}, .trash = {machine_.path() + "/Trash", ::geteuid()}},
        disks};
    std::optional<WindowForm> form_;
};

/// The program with its window, from its start to its end.
class Session : public Logic {
  public:
    explicit Session(const std::string& home, const Addresses& addresses = {}) : Logic(home, addresses) {
        auto& cellText = form().parts().cellText;
        cellText = [this, cellText](GridId grid, std::size_t column, Row row) {
            const std::string text = cellText(grid, column, row);
            if (grid == GridId::kReport && column == 0) painted.insert(text);
            return text;
        };
    }
    /// Shows the window; `before` runs before the form is loaded.
    void show() {
        window_ = std::make_unique<MainWindow>(form().parts(), form());
        qtPump_ = std::make_unique<QtPump>(form());
        form().formLoad(window_->window(), *qtPump_);
        window_->show();
    }
    /// Shows the window and waits until it is active.
    void start() {
        show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&frame()));
        settle();
    }
    ~Session() {
        window_.reset();
        settle();
    }

    std::set<std::string> painted;  ///< The names of the rows that the window has asked for.

    MainWindow& window() { return *window_; }
    Frame& frame() { return window_->frame(); }
    GridView& view() { return window_->grid(GridId::kReport); }
    const Grid& grid() { return view().grid(); }
    static void settle() {
        for (int i = 0; i < 3; ++i) QApplication::processEvents();
    }

    // --- what the user does
    void click(Command command) {
        clickEntry(frame(), entryName(command));
        settle();
    }
    /// Executes a command without a click, whether its entry is visible or not.
    void execute(Command command) { form().parts().barEvents->execute(barOf(command), idOf(command)); }
    void key(QWidget& on, Qt::Key key) {
        QTest::keyClick(&on, key);
        settle();
    }
    void type(Command box, const std::string& text, Qt::Key end) { type(entryName(box), text, end); }
    void type(const QString& edit, const std::string& text, Qt::Key end) {
        auto* widget = frame().findChild<QWidget*>(edit);
        ASSERT_NE(widget, nullptr);
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(widget, QString::fromStdString(text));
        key(*widget, end);
    }
    void scan(const std::string& folder) { type(QStringLiteral("cboOrdner"), folder, Qt::Key_Return); }
    /// Returns the place of a column's title, scrolled into view.
    static QPoint title(GridView& view, int column) {
        const QHeaderView& header = *view.horizontalHeader();
        view.horizontalScrollBar()->setValue(header.sectionPosition(column));
        return {header.sectionViewportPosition(column) + header.sectionSize(column) / 2, 5};
    }
    static void clickTitleOf(GridView& view, int column) {
        const QPoint at = title(view, column);
        QTest::mouseClick(view.horizontalHeader()->viewport(), Qt::LeftButton, {}, at);
        settle();
    }
    void clickTitle(int column) { clickTitleOf(view(), column); }
    void clickRow(const std::string& name) {
        view().sync();
        const auto index = view().rows().find(row(name));
        ASSERT_TRUE(index) << name;
        view().scrollIntoView(row(name));
        const QPoint at(view().columnViewportPosition(0) + view().columnWidth(0) / 2,
                        view().rowRect(*index).center().y());
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, at);
        settle();
    }

    // --- what the user sees
    bool enabled(Command command) { return frame().findChild<QWidget*>(entryName(command))->isEnabled(); }
    std::string status() { return panel("panel1"); }
    std::string secondPanel() { return panel("panel2"); }
    /// Returns the names of the visible rows; for a source, the last part of its path.
    std::string rows() {
        view().sync();
        std::string all;
        for (std::size_t i = 0; i < view().rows().count(); ++i)
            all += (i > 0 ? " " : "") + nameOf(view().rows().at(i));
        return all;
    }
    Row row(const std::string& name) {
        for (std::size_t i = 0; i < grid().rowCount(); ++i)
            if (nameOf(grid().rowAt(i)) == name) return grid().rowAt(i);
        return kNoRow;
    }
    /// Returns "Size|Files|Folders" of a row. A zero shows as nothing.
    std::string numbers(Row row) {
        const auto cell = [&](std::size_t column) { return view().cellText(column, row).toStdString(); };
        return cell(1) + "|" + cell(3) + "|" + cell(4);
    }
    std::string numbers(const std::string& name) { return numbers(row(name)); }
    /// Returns the widths of the report's columns.
    std::vector<double> widths() {
        std::vector<double> all;
        for (const GridColumn& column : grid().columns()) all.push_back(column.width);
        return all;
    }
    /// Expects that the columns are as wide as the command that fits them makes them.
    void expectFitted() {
        const std::vector<double> found = widths();
        click(Command::kReportFit);
        EXPECT_EQ(found, widths());
    }
    /// Returns the visible grids.
    std::string panes() {
        std::string all;
        for (std::size_t i = 0; i < kGridCount; ++i) {
            const GridView& grid = window().grid(static_cast<GridId>(i));
            if (grid.isVisible()) all += (all.empty() ? "" : " ") + grid.objectName().toStdString();
        }
        return all;
    }

  private:
    std::string panel(const char* name) {
        return frame().findChild<QWidget*>(QLatin1String(name))->accessibleName().toStdString();
    }
    std::string nameOf(Row row) {
        const std::string text(grid().text(row));
        return grid().parent(row) == kNoRow ? text.substr(text.rfind('/') + 1) : text;
    }

    std::unique_ptr<MainWindow> window_;
    std::unique_ptr<QtPump> qtPump_;
};

/// A fresh home, with a window wide enough for all columns, and a place for trees.
class WindowTest : public testing::Test {
  protected:
    WindowTest() { setSettings(""); }
    void setSettings(const std::string& more) const {
        writeFile(ini(),
                  "[Allgemein]\r\nLang=7\r\n[Form]\r\nWidth=21000\r\nHeight=13500\r\nTVW=12000\r\n" + more);
    }
    std::string ini() const { return home.path() + "/Harborlantern.ini"; }
    std::string at(const std::string& path) const { return tree.path() + "/" + path; }
    void folder(const std::string& path) const { std::filesystem::create_directories(at(path)); }
    void file(const std::string& path, int size) const { makeFile(at(path), size); }
    /// Makes `count` folders with one file of 10 bytes each.
    void folders(int count) const {
        for (int i = 0; i < count; ++i) {
            folder("src/f" + std::to_string(i));
            file("src/f" + std::to_string(i) + "/x", 10);
        }
    }
    /// Makes src(a(aa(x 300) y 100) b(z 50) w 7).
    void smallTree() const {
        folder("src/a/aa");
        folder("src/b");
        file("src/a/aa/x", 300);
        file("src/a/y", 100);
        file("src/b/z", 50);
        file("src/w", 7);
    }

    TempDir home, tree;
};

}  // namespace hl::test
