// The message pump of a run with a window: Qt's event loop, one turn at a time.
#pragma once

#include <chrono>

#include "platform/message_pump.h"
#include "platform/window.h"

namespace hl {

/// Input counts as waiting when kQuiet has gone by since the last pump: to ask the display would cost more
/// than to pump. REQUIRES: a QApplication lives. Thread of the logic only.
class QtPump final : public MessagePump {
  public:
    static constexpr std::chrono::milliseconds kQuiet{15};

    explicit QtPump(WindowEvents& events) : events_(events) {}
    /// A handler that runs here may pump in its turn; beyond some depth that does nothing, so that a user who
    /// clicks on cannot use up the stack.
    void PumpMessages() override;
    bool GetInputState() override { return Clock::now() - lastPump_ > kQuiet; }
    std::uint64_t GetTickCount() override;

  private:
    using Clock = std::chrono::steady_clock;

    WindowEvents& events_;
    Clock::time_point lastPump_ = Clock::now();
    int depth_ = 0;
};

}  // namespace hl
