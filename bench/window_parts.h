// What the measurements of the window share: the program's parts, put together as main() does it, a window
// with the module of the program, and clocks. HARBORLANTERN_HOME names a folder that may be written to,
// HARBORLANTERN_MODULES the one with the module.
#pragma once

#include <malloc.h>
#include <unistd.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>
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
#include "platform/linux/change/file_operations.h"
#include "platform/linux/change/files.h"
#include "platform/linux/change/folder_verb.h"
#include "platform/linux/drives/drives.h"
#include "platform/linux/process/console.h"
#include "platform/linux/process/programs.h"
#include "platform/linux/process/system_facts.h"
#include "platform/linux/scan/file_system.h"
#include "start/program_core.h"

namespace hl::bench {

using Clock = std::chrono::steady_clock;

inline double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

inline void tell(const char* what, double value) {
    std::printf("%s %.6f\n", what, value);
}

// --- the program's parts

class Parts {
  public:
    Parts() { core.texts().Init_Sprache("", std::string(kTranslatorFileName)); }
    Services services() { return core.services(fileSystem_); }
    WindowServices windowServices() { return core.windowServices(drives, verb_, operations_, {}); }

    const std::string home = std::getenv("HARBORLANTERN_HOME");
    const std::string modules = std::getenv("HARBORLANTERN_MODULES");
    LinuxDrives drives;

  private:
    // After an error, something else would be measured.
    static void stop(const std::string& report) {
        std::fputs(report.c_str(), stderr);
        std::exit(1);
    }

    LinuxSystemFacts facts_;
    LinuxFiles files_;
    LinuxConsole console_;
    LinuxFolderVerb verb_{"harborlantern-bench", home, home};
    LinuxFileOperations operations_{std::make_shared<DirectoryCalls>(), {home, {}, {}, 64}};
    LinuxFileSystem fileSystem_{limitsOfThisMachine(true)};

  public:
    ProgramCore core{{facts_,
                      files_,
                      console_,
                      home,
                      modules,
                      "",
                      "bench",
                      true,
                      numberFormatOf("C"),
                      dateFormatOf("C"),
                      "C",
                      {},
                      stop,
                      {}}};
};

/// Calls `ready` once, when the first window was painted and what follows its first paint is done.
class FirstPaint final : public QObject {
  public:
    explicit FirstPaint(std::function<void()> ready) : ready_(std::move(ready)) {
        qApp->installEventFilter(this);
    }
    /// When the whole window stood painted for the first time.
    Clock::time_point painted() const { return painted_; }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Paint || std::exchange(seen_, true)) return false;
        // The window also queues its work on the first paint; all parts are painted before either runs.
        QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::HighEventPriority);
        QTimer::singleShot(0, ready_);
        return false;
    }

  protected:
    void customEvent(QEvent*) override { painted_ = Clock::now(); }

  private:
    std::function<void()> ready_;
    Clock::time_point painted_{};
    bool seen_ = false;
};

using Measurement = std::function<void(WindowForm&)>;

/// Shows the window, and does `measure` in it once it is ready. `painted` gets the time of the first paint.
inline int inWindow(Parts& parts, const Measurement& measure, Clock::time_point* painted = nullptr) {
    WindowForm* shown = nullptr;
    std::unique_ptr<FirstPaint> first;
    const auto body = [&] {
        if (painted != nullptr) *painted = first->painted();
        measure(*shown);
        std::fflush(stdout);
        std::_Exit(0);
    };
    WindowServices services = parts.windowServices();
    services.windowThere = [&](const Window* window, MessagePump* pump) {
        parts.core.windowThere(window, pump, {});
        if (window != nullptr) first = std::make_unique<FirstPaint>(body);
    };
    WindowForm form(parts.services(), services);
    shown = &form;
    form.parts().dataFolder = parts.modules;
    std::string reason;
    const auto show = loadWindowModule(parts.modules + "/" + kWindowModuleName, reason);
    if (show == nullptr) return std::fprintf(stderr, "%s\n", reason.c_str()), 1;
    show({.parts = form.parts(),
          .events = form,
          .handOverReady = {},
          .answersDescriptor = parts.drives.answersDescriptor(),
          .answersReady = [&] { form.takeDriveAnswers(); },
          .executable = "window_views"});
    std::fputs("No window was shown.\n", stderr);
    return 1;
}

inline QAbstractScrollArea& report() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* found = window->findChild<QAbstractScrollArea*>(QStringLiteral("tvwPL"))) return *found;
    std::fputs("There is no report.\n", stderr);
    std::exit(1);
}

/// Lets the window do everything that waits, and paint.
inline void settle() {
    for (int i = 0; i < 3; ++i) QApplication::processEvents();
    report().viewport()->repaint();
}

inline double peakMebibytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
    return 0;
}

/// Sends itself an event from a thread, waits until it is answered, and sends the next one a pause later.
/// Notes how long each answer took.
class WaitWatch : public QObject {
  public:
    ~WaitWatch() override { sender_ = {}; }

  protected:
    explicit WaitWatch(std::chrono::milliseconds pause)
        : sender_([this, pause](const std::stop_token& stop) { send(stop, pause); }) {}

    void answered() {
        waits_.push_back(secondsSince(sent_) * 1e3);
        waiting_ = false;
    }
    /// Returns the waits in milliseconds, the shortest first. Ends the program if there are none.
    const std::vector<double>& sortedWaits() {
        if (waits_.empty()) std::exit(1);
        std::sort(waits_.begin(), waits_.end());
        return waits_;
    }

  private:
    void send(const std::stop_token& stop, std::chrono::milliseconds pause) {
        while (!stop.stop_requested()) {
            if (!waiting_.exchange(true)) {
                sent_ = Clock::now();
                QApplication::postEvent(this, new QEvent(QEvent::User));
            }
            std::this_thread::sleep_for(pause);
        }
    }

    std::vector<double> waits_;
    std::atomic<bool> waiting_ = false;
    Clock::time_point sent_;
    std::jthread sender_;
};

/// Its events are like clicks to the event loop.
class ClickWatch final : public WaitWatch {
  public:
    ClickWatch() : WaitWatch(std::chrono::milliseconds(3)) {}

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        answered();
        return true;
    }

    void tellWaits() {
        const std::vector<double>& waits = sortedWaits();
        tell("longest", waits.back());
        tell("of100", waits[waits.size() * 99 / 100]);
        tell("half", waits[waits.size() / 2]);
    }
};

/// Clicks on rows of the report and turns the wheel over it in turn; the answer is that the report is
/// painted. The last painting counts from its start, and for one more turn of the loop.
class LookWatch final : public WaitWatch {
  public:
    explicit LookWatch(QWidget& viewport) : WaitWatch(std::chrono::milliseconds(7)), viewport_(viewport) {
        viewport_.installEventFilter(this);
    }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        ++looks_ % 2 == 0 ? click() : turnWheel();
        looked_ = true;
        return true;
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Paint || !std::exchange(looked_, false)) return false;
        QTimer::singleShot(0, this, [this] { answered(); });
        return false;
    }
    void tellWaits() {
        const std::vector<double>& waits = sortedWaits();
        tell("looks", static_cast<double>(waits.size()));
        tell("longest", waits.back());
        tell("of20", waits[waits.size() * 95 / 100]);
        tell("half", waits[waits.size() / 2]);
    }

  private:
    void click() {
        const QPointF at(viewport_.width() / 2.0, 8 + 24 * (looks_ / 2 % 8));
        QMouseEvent press(QEvent::MouseButtonPress, at, viewport_.mapToGlobal(at), Qt::LeftButton,
                          Qt::LeftButton, {});
        QApplication::sendEvent(&viewport_, &press);
    }
    void turnWheel() {
        constexpr int kNotch = 120;
        const QPointF at = viewport_.rect().center();
        QWheelEvent turn(at, viewport_.mapToGlobal(at), {}, {0, looks_ / 2 % 2 == 0 ? -kNotch : kNotch}, {},
                         {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&viewport_, &turn);
    }

    QWidget& viewport_;
    unsigned looks_ = 0;
    bool looked_ = false;
};

/// Names and sizes in a random order that is the same each time.
class Disorder {
  public:
    std::uint32_t next() { return state_ = state_ * 1664525 + 1013904223; }

  private:
    std::uint32_t state_ = 1;
};

inline double residentBytes() {
    malloc_trim(0);
    std::ifstream statm("/proc/self/statm");
    double total = 0, resident = 0;
    statm >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// Executes a command of a bar, as a click on its entry does.
inline void run(WindowForm& form, Command command) {
    form.parts().barEvents->execute(barOf(command), idOf(command));
}

inline void timed(const char* what, const std::function<void()>& body) {
    const auto start = Clock::now();
    body();
    settle();
    tell(what, secondsSince(start));
}

}  // namespace hl::bench
