// Measures the window from inside, and prints lines of a name and a number. bench/window.py runs it.
//
//     window_views start NANOSECONDS    milliseconds from that time of CLOCK_MONOTONIC to the first painted
//     window window_views scan TREE            seconds of a run in the window, and its peak memory
//     window_views clicks TREE          the longest times in milliseconds that input waited during such a run
//     window_views silent TREE          seconds of a run with no window, without its report
//     window_views rows                 work on 1,000,000 rows
//
// The parts are put together as the program does, and the module with the window is that of the program, so
// what is measured is what users have. HARBORLANTERN_HOME names a folder that may be written to,
// HARBORLANTERN_MODULES the one with the module.
#include <malloc.h>
#include <unistd.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "app/log.h"
#include "app/product.h"
#include "app/settings.h"
#include "app/texts.h"
#include "mainwindow/window_form.h"
#include "platform/linux/console.h"
#include "platform/linux/drives.h"
#include "platform/linux/file_system.h"
#include "platform/linux/files.h"
#include "platform/linux/folder_verb.h"
#include "platform/linux/programs.h"
#include "platform/linux/system_facts.h"

namespace hl {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void tell(const char* what, double value) {
    std::printf("%s %.6f\n", what, value);
}

// --- the program's parts

class PrintedErrors final : public ErrorSink {
  public:
    void LogError(const std::string&, bool, bool) override {}
    void showReport(const std::string& text) override {
        std::fputs(text.c_str(), stderr);
        std::exit(1);  // What was measured would be something else.
    }
};

class WindowPump final : public MessagePump {
  public:
    void PumpMessages() override {
        if (window != nullptr) window->PumpMessages();
    }
    bool GetInputState() override { return window != nullptr && window->GetInputState(); }
    std::uint64_t GetTickCount() override {
        return static_cast<std::uint64_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now().time_since_epoch()).count());
    }

    MessagePump* window = nullptr;
};

class Parts {
  public:
    Parts() {
        texts_.Init_Sprache("", std::string(kTranslatorFileName), false);
        texts_.Init_Textbausteine();
    }
    FormServices services() {
        return {settings_, texts_, log_,         files_,      fileSystem_, pump,
                console_,  facts_, diagnostics_, kPosixPaths, numbers_};
    }

    const std::string home = std::getenv("HARBORLANTERN_HOME");
    const std::string modules = std::getenv("HARBORLANTERN_MODULES");
    WindowPump pump;

  private:
    LinuxSystemFacts facts_;
    LinuxFiles files_;
    LinuxConsole console_;
    SettingsStore settings_{files_, home + "/" + std::string(kIniName)};
    Log log_{files_, home, dateFormatOf("C")};
    PrintedErrors errors_;
    AppFacts app_;
    Diagnostics diagnostics_{app_, facts_, errors_};
    Texts texts_{files_, settings_, diagnostics_, {home, modules, "", "C"}};
    NumberFormat numbers_ = numberFormatOf("C");
    LinuxFileSystem fileSystem_{limitsOfThisMachine(true), nullptr};
};

/// Calls `painted` once, when the first window was painted.
class FirstPaint final : public QObject {
  public:
    explicit FirstPaint(std::function<void()> painted) : painted_(std::move(painted)) {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && !std::exchange(seen_, true)) QTimer::singleShot(0, painted_);
        return false;
    }

  private:
    std::function<void()> painted_;
    bool seen_ = false;
};

using Measurement = std::function<void(WindowForm&)>;

/// Shows the window, and does `measure` in it once it was painted.
int inWindow(Parts& parts, const Measurement& measure) {
    LinuxDrives drives;
    LinuxFolderVerb verb("harborlantern-bench", parts.home, parts.home);
    WindowForm* shown = nullptr;
    std::unique_ptr<FirstPaint> first;
    const auto body = [&] {
        measure(*shown);
        std::fflush(stdout);
        std::_Exit(0);
    };
    const auto windowThere = [&](Window* window, MessagePump* pump) {
        parts.pump.window = pump;
        if (window != nullptr) first = std::make_unique<FirstPaint>(body);
    };
    WindowForm form(parts.services(),
                    {drives, verb, "window_views", parts.home, "", "0", false, windowThere});
    shown = &form;
    form.parts().dataFolder = parts.modules;
    std::string reason;
    const auto show = loadWindowModule(parts.modules + "/" + kWindowModuleName, reason);
    if (show == nullptr) return std::fprintf(stderr, "%s\n", reason.c_str()), 1;
    show({.parts = form.parts(),
          .events = form,
          .handOverReady = {},
          .answersDescriptor = drives.answersDescriptor(),
          .answersReady = [&] { form.takeDriveAnswers(); },
          .executable = "window_views"});
    std::fputs("No window was shown.\n", stderr);
    return 1;
}

QAbstractScrollArea& report() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* found = window->findChild<QAbstractScrollArea*>(QStringLiteral("tvwPL"))) return *found;
    std::fputs("There is no report.\n", stderr);
    std::exit(1);
}

/// Lets the window do all that waits, and paint.
void settle() {
    for (int i = 0; i < 3; ++i) QApplication::processEvents();
    report().viewport()->repaint();
}

// --- a run

double peakMebibytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
    return 0;
}

void scan(WindowForm& form, const std::string& tree) {
    form.formActivate();
    settle();
    const auto start = Clock::now();
    form.handOver('"' + tree + '"');
    settle();
    tell("scan", secondsSince(start));
    tell("peak", peakMebibytes());
    tell("rows", static_cast<double>(form.scan().tvwPL.rowCount()));
}

void silent(Parts& parts, const std::string& tree) {
    MainForm form(parts.services(), true);
    form.Form_Load();
    form.state().SourceQueue.push_back(tree);
    const auto start = Clock::now();
    Ordnerliste_Abarbeiten(form.scan());
    tell("silent", secondsSince(start));
}

/// Sends itself events from a thread, one every few milliseconds, and notes how long each waited. For the
/// event loop they are what clicks are.
class ClickWatch final : public QObject {
  public:
    ClickWatch() : sender_([this](const std::stop_token& stop) { send(stop); }) {}
    ~ClickWatch() override { sender_ = {}; }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        waits.push_back(secondsSince(sent_) * 1e3);
        waiting_ = false;
        return true;
    }

    std::vector<double> waits;

  private:
    void send(const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            if (!waiting_.exchange(true)) {
                sent_ = Clock::now();
                QApplication::postEvent(this, new QEvent(QEvent::User));
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
        }
    }

    std::atomic<bool> waiting_ = false;
    Clock::time_point sent_;
    std::jthread sender_;
};

void clicks(WindowForm& form, const std::string& tree) {
    form.formActivate();
    settle();
    ClickWatch watch;
    form.handOver('"' + tree + '"');
    settle();
    std::sort(watch.waits.begin(), watch.waits.end());
    tell("longest", watch.waits.back());
    tell("of100", watch.waits[watch.waits.size() * 99 / 100]);
    tell("half", watch.waits[watch.waits.size() / 2]);
}

// --- a million rows

constexpr std::size_t kRows = 1000000;
constexpr std::uint32_t kDeepest = 6;
constexpr int kChildren = 10;

/// Names and sizes in no order, and the same each time.
class Disorder {
  public:
    std::uint32_t next() { return state_ = state_ * 1664525 + 1013904223; }

  private:
    std::uint32_t state_ = 1;
};

Row addFolder(Grid& grid, Row parent, Disorder& numbers) {
    char name[24];
    std::snprintf(name, sizeof name, "Folder-%08x", numbers.next());
    const Row row = grid.addRow(parent, name);
    grid.setNumber(row, kIsFolder, 1);
    grid.setNumber(row, kSize, numbers.next());
    grid.setNumber(row, kFiles, numbers.next() % 1000);
    grid.setPicture(row, kPictureFolder);
    return row;
}

void addBelow(Grid& grid, Row parent, std::uint32_t level, Disorder& numbers) {
    for (int i = 0; i < kChildren && grid.rowCount() < kRows; ++i) {
        const Row row = addFolder(grid, parent, numbers);
        if (level < kDeepest) addBelow(grid, row, level + 1, numbers);
    }
}

double residentBytes() {
    malloc_trim(0);
    std::ifstream statm("/proc/self/statm");
    double total = 0, resident = 0;
    statm >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void timed(const char* what, const std::function<void()>& body) {
    const auto start = Clock::now();
    body();
    settle();
    tell(what, secondsSince(start));
}

void fill(WindowForm& form) {
    Grid& grid = form.scan().tvwPL;
    Disorder numbers;
    grid.setRedraw(false);
    const Row root = addFolder(grid, kNoRow, numbers);
    grid.setCurrentRow(root);
    grid.setSelected(root, true);
    addBelow(grid, root, 1, numbers);
    form.state().DeepestLevel = kDeepest;
}

void scrollPages() {
    constexpr int kPages = 200;
    QScrollBar& bar = *report().verticalScrollBar();
    std::vector<double> times;
    for (int i = 0; i < kPages; ++i) {
        const auto start = Clock::now();
        bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
        settle();
        times.push_back(secondsSince(start));
    }
    if (bar.value() == 0) std::exit(1);
    std::sort(times.begin(), times.end());
    tell("page", times[times.size() / 2]);
    tell("page_longest", times.back());
}

void search(WindowForm& form) {
    constexpr int kSearchBox = 29;
    form.editChanged(BarId::kReport, kSearchBox, "nothing has this name");
    timed("search", [&] { form.editKeyDown(BarId::kReport, kSearchBox, kKeyReturn); });
}

void rows(WindowForm& form) {
    constexpr int kCollapseAll = 24, kExpandAll = 25;
    constexpr std::size_t kName = 0, kSizeColumn = 1;
    form.formActivate();
    settle();
    fill(form);
    const double before = residentBytes();
    form.scan().tvwPL.setRedraw(true);
    settle();
    timed("expand", [&] { form.execute(BarId::kReport, kExpandAll); });
    tell("bytes", (residentBytes() - before) / static_cast<double>(form.scan().tvwPL.rowCount()));
    scrollPages();
    timed("sort_numbers", [&] { form.gridTitleClick(GridId::kReport, kSizeColumn); });
    timed("sort_numbers_again", [&] { form.gridTitleClick(GridId::kReport, kSizeColumn); });
    timed("sort_texts", [&] { form.gridTitleClick(GridId::kReport, kName); });
    timed("sort_texts_again", [&] { form.gridTitleClick(GridId::kReport, kName); });
    search(form);
    timed("collapse", [&] { form.execute(BarId::kReport, kCollapseAll); });
}

int run(const std::vector<std::string>& words) {
    const std::string mode = words.empty() ? "" : words[0];
    const std::string subject = words.size() > 1 ? words[1] : "";
    Parts parts;
    if (mode == "silent") return silent(parts, subject), 0;
    const Measurement start = [&](WindowForm&) {
        const Clock::time_point from{std::chrono::nanoseconds(std::stoll(subject))};
        tell("start", secondsSince(from) * 1e3);
    };
    if (mode == "start") return inWindow(parts, start);
    if (mode == "scan") return inWindow(parts, [&](WindowForm& form) { scan(form, subject); });
    if (mode == "clicks") return inWindow(parts, [&](WindowForm& form) { clicks(form, subject); });
    if (mode == "rows") return inWindow(parts, rows);
    std::fputs("Usage: see the top of bench/window_views.cpp\n", stderr);
    return 2;
}

}  // namespace
}  // namespace hl

int main(int argc, char** argv) {
    return hl::run(std::vector<std::string>(argv + 1, argv + argc));
}
