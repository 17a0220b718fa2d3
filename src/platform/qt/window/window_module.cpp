#include "platform/qt/window/window_module.h"

#include <QApplication>
#include <QSocketNotifier>
#include <memory>

#include "platform/qt/common/qt_guard.h"
#include "platform/qt/window/desktop_settings.h"
#include "platform/qt/window/display_check.h"
#include "platform/qt/window/main_window.h"
#include "platform/qt/window/qt_pump.h"

namespace hl {

namespace {

constexpr QtGuard kWindowModuleGuard{};

/// The command line as Qt expects it: the program, and the platform if that has to be named.
class QtArguments {
  public:
    QtArguments(std::string executable, const std::string& platform)
        : words_{std::move(executable), "-platform", platform} {
        count_ = platform.empty() ? 1 : 3;
        for (std::size_t i = 0; i < words_.size(); ++i) pointers_[i] = words_[i].data();
        pointers_[static_cast<std::size_t>(count_)] = nullptr;
    }
    QtArguments(const QtArguments&) = delete;
    QtArguments& operator=(const QtArguments&) = delete;

    int& count() { return count_; }
    char** values() { return pointers_.data(); }

  private:
    std::array<std::string, 3> words_;
    std::array<char*, 4> pointers_{};
    int count_ = 1;
};

/// Returns null if there is nothing to listen to.
std::unique_ptr<QSocketNotifier> listenTo(int descriptor, const std::function<void()>& ready,
                                          WindowEvents& events) {
    if (descriptor < 0 || !ready) return nullptr;
    auto notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                     [&] { kWindowModuleGuard(events, "QSocketNotifier::activated", ready); });
    return notifier;
}

void runWindow(const WindowStart& start) {
    QtPump pump(start.events);
    MainWindow window(start.parts, start.events);
    kWindowModuleGuard(start.events, "formLoad", [&] { start.events.formLoad(window.window(), pump); });
    if (window.frame().unloaded()) return;
    const auto handOver = listenTo(start.handOverDescriptor, start.handOverReady, start.events);
    const auto answers = listenTo(start.answersDescriptor, start.answersReady, start.events);
    window.show();
    QApplication::exec();
}

}  // namespace

}  // namespace hl

hl::WindowResult harborlanternWindow(const hl::WindowStart& start) {
    using namespace hl;
    if (start.version != kWindowModuleVersion) return WindowResult::kOtherVersion;
    GuardedRoutine::countWith(start.guardedDepth);
    const auto platform = displayPlatform();
    if (!platform) return WindowResult::kNoDisplay;
    quietMessages();
    WritesLedTo writes(start.parts.folder);
    QtArguments arguments(start.executable, *platform);
    QApplication application(arguments.count(), arguments.values());
    application.setQuitOnLastWindowClosed(false);
    followDesktop(start.parts);
    writes.settle();
    runWindow(start);
    return WindowResult::kClosed;
}
