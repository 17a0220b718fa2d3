#include "platform/qt/window/qt_pump.h"

#include <QCoreApplication>

#include "base/scope_exit.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kQtPumpGuard{};

constexpr int kDeepest = 12;
/// One turn of the loop handles only one kind of event; turns follow one another while there are more, for at
/// most this many milliseconds.
constexpr int kTurnsMilliseconds = 8;

}  // namespace

void QtPump::PumpMessages() {
    if (depth_ >= kDeepest) return;
    ++depth_;
    const ScopeExit done([this] {
        --depth_;
        lastPump_ = Clock::now();
    });
    kQtPumpGuard(events_, [] { QCoreApplication::processEvents(QEventLoop::AllEvents, kTurnsMilliseconds); });
}

std::uint64_t QtPump::GetTickCount() {
    const auto sinceStart = Clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

}  // namespace hl
