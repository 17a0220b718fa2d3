// The program in this process: everything that its main() puts together, with a window on no screen, driven
// by mouse and keys. main() of the tests has made a QApplication.
#pragma once

#include "app/log.h"
#include "app/settings.h"
#include "gui/entry_name.h"
#include "gui/gestures.h"
#include "mainwindow/pane_table.h"
#include "mainwindow/window_form.h"
#include "platform/linux/change/file_operations.h"
#include "platform/linux/change/files.h"
#include "platform/linux/drives/drives.h"
#include "platform/linux/drives/patience.h"
#include "platform/linux/process/owner_names.h"
#include "platform/linux/process/system_error.h"
#include "platform/linux/process/system_facts.h"
#include "platform/linux/scan/file_system.h"
#include "platform/linux/space/disk_space.h"
#include "platform/linux/space/freed_surveys.h"
#include "platform/linux/space/open_files.h"
#include "platform/qt/window/main_window.h"
#include "platform/qt/window/qt_pump.h"
#include "robustness/fakes.h"
#include "start/program_core.h"
#include "support/recording_console.h"
#include "support/recording_desktop.h"

namespace hl::test {

/// The addresses of a build in which every address is set.
inline const Addresses kAllAddresses = {"https://home.test/", "http://forum.test/", "give.test",
                                        "bugs@mail.test"};

/// The machine's files. `beforeBlock` runs before each block of a scan, counted from 1 for each source;
/// `beforeFiles` before each block of a list of files.
class PausingFileSystem final : public FileSystem {
  public:
    PausingFileSystem(Patience& patience, std::shared_ptr<DirectoryCalls> calls);
    std::function<void(int block)> beforeBlock, beforeFiles;
    std::function<void()> beforeLook = [] {};
    bool compresses = false;

    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override;
    bool mayHang(std::string_view path) override { return disk_.mayHang(path); }
    bool countsBeforeCompression(std::string_view path) override {
        return compresses || disk_.countsBeforeCompression(path);
    }
    Result<PathFacts> look(std::string_view path) override;
    Result<std::string> target(std::string_view path) override { return disk_.target(path); }

  private:
    PatientFileSystem disk_;
};

/// Changes the machine's files. `before` runs before each operation, with the caller's watch.
class PausingOperations final : public FileOperations {
  public:
    PausingOperations(const LinuxFileOperations::Settings& settings, SilentDisks& disks);
    std::function<void(OperationWatch&)> before = [](OperationWatch&) {};

    /// Operations are refused where it returns false; links on the way are followed. For users who delete at
    /// random.
    std::function<bool(const fs::path&)> allows;

    Result<> removeFile(const FilePlace& place, OperationWatch& watch) override;
    Removal removeTree(const FilePlace& place, OperationWatch& watch) override;
    Result<Moved> recycle(const FilePlace& place, OperationWatch& watch) override;
    Result<> putBack(const Moved& what, const FilePlace& to, OperationWatch& watch) override;
    Result<Moved> move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) override;
    Result<bool> wouldReplace(const FilePlace& from, const FilePlace& to, OperationWatch& watch) override;
    Protection protectionOf(const FilePlace& place, OperationWatch& watch) override;

  private:
    bool refused(const FilePlace& place) const;

    LinuxFileOperations disk_;
};

struct NoFolderVerb final : FolderVerb {
    Result<> offer(const FolderOffer&) override { return {}; }
    Result<> withdraw() override { return {}; }
};

/// Acts on the dialogs that open next, one after another. Each act closes its dialog, or opens the next one.
class Answers {
  public:
    using Act = std::function<void(QDialog&)>;
    ~Answers();
    void add(Act act);

  private:
    void wait();
    QObject context_;
    std::deque<Act> acts_;
    QPointer<QDialog> last_;  ///< Null once it is gone, since the next one may have its address.
};

/// Presses the button with this caption.
void pressIn(QWidget& dialog, const char* caption);
/// Chooses a path in a file dialog.
void choosePath(QDialog& dialog, const std::string& path);

/// Clicks an entry, named by bar and id, in the bar or in one of its lists.
void clickEntry(QWidget& frame, const QString& name);

/// The program without its window. It speaks German, unless its settings say otherwise.
class Logic {
  public:
    explicit Logic(const std::string& home, const Addresses& addresses = {});
    ~Logic();

    SilentDisks disks;
    LinuxPatience patience{disks};
    /// What the sessions that begin from now on read folders with.
    static inline std::shared_ptr<DirectoryCalls> folderCalls = std::make_shared<DirectoryCalls>();
    PausingFileSystem fileSystem{patience, folderCalls};
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
    LinuxOwnerNames owners_;
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
                       [this] { endProcess(); },
                       &owners_}};
    LinuxDrives drives_{{.root = machine_.path(), .space = [](const std::string&) {
                             return DriveSpace{4000, 1000, 4, 500};
                         }}};
    LinuxDiskSpace diskSpace_{std::make_shared<LinuxOpenFiles>()};
    NoFolderVerb verb_;
    LinuxFreedSurveys surveys_{std::make_shared<DirectoryCalls>(), std::make_shared<LinuxOpenFiles>(),
                               &disks};
    PausingOperations operations_{
        {.home = userHome(), .programFolders = {home_}, .trash = {machine_.path() + "/Trash", ::geteuid()}},
        disks};
    std::optional<WindowForm> form_;
};

/// The program with its window, from its start to its end.
class Session : public Logic {
  public:
    explicit Session(const std::string& home, const Addresses& addresses = {});
    /// Starts a session and reads a folder.
    Session(const std::string& home, const std::string& source) : Session(home) { start(), scan(source); }
    /// Shows the window.
    void show();
    /// Shows the window and waits until it is active.
    void start();
    ~Session();

    std::set<std::string> painted;  ///< The names of the rows that the window has asked for.

    MainWindow& window() { return *window_; }
    Frame& frame() { return window_->frame(); }
    GridView& view() { return window_->grid(GridId::kReport); }
    const Grid& grid() { return view().grid(); }
    static void settle();

    // --- what the user does
    void click(Command command);
    /// Executes a command without a click, whether its entry is visible or not.
    void execute(Command command);
    void key(QWidget& on, Qt::Key key);
    void type(Command box, const std::string& text, Qt::Key end) { type(entryName(box), text, end); }
    void type(const QString& edit, const std::string& text, Qt::Key end);
    void scan(const std::string& folder) { type(QStringLiteral("cboOrdner"), folder, Qt::Key_Return); }
    /// Returns the place of a column's title, scrolled into view.
    static QPoint title(GridView& view, int column);
    static void clickTitleOf(GridView& view, int column);
    void clickTitle(int column) { clickTitleOf(view(), column); }
    void clickRow(const std::string& name);

    // --- what the user sees
    bool enabled(Command command);
    std::string status() { return panel("panel1"); }
    std::string secondPanel() { return panel("panel2"); }
    /// Returns the names of the visible rows; for a source, the last part of its path.
    std::string rows();
    Row row(const std::string& name);
    /// Returns "Size|Files|Folders" of a row. A zero shows as nothing.
    std::string numbers(Row row);
    std::string numbers(const std::string& name) { return numbers(row(name)); }
    /// Returns the widths of the report's columns.
    std::vector<double> widths();
    /// Expects that the columns are as wide as the command that fits them makes them.
    void expectFitted();
    /// Returns the visible grids.
    std::string panes();

  private:
    std::string panel(const char* name);
    std::string nameOf(Row row);

    std::unique_ptr<MainWindow> window_;
    std::unique_ptr<QtPump> qtPump_;
};

/// A fresh home, with a window wide enough for all columns, and a place for trees.
struct WindowTest : testing::Test {
    WindowTest();
    void setSettings(const std::string& more) const;
    std::string ini() const { return home.path() + "/Harborlantern.ini"; }
    std::string at(const std::string& path) const { return tree.path() + "/" + path; }
    void folder(const std::string& path) const { fs::create_directories(at(path)); }
    void file(const std::string& path, int size) const { makeFile(at(path), size); }
    /// Makes `count` folders with one file of 10 bytes each.
    void folders(int count) const;
    /// Makes src(a(aa(x 300) y 100) b(z 50) w 7).
    void smallTree() const;

    TempDir home, tree;
};

}  // namespace hl::test
