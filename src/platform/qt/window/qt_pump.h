// The message pump of a run with a window: Qt's event loop, one turn at a time. For the thread of the logic
// only.
#pragma once

#include <chrono>

#include "platform/message_pump.h"
#include "platform/window.h"

namespace hl {

/// Input counts as waiting when kQuiet has passed since the last pump, because asking the display would cost
/// more than pumping. REQUIRES: there is a QApplication.
class QtPump final : public MessagePump {
  public:
    static constexpr std::chrono::milliseconds kQuiet{15};

    explicit QtPump(WindowEvents& events) : events_(events) {}
    /// A handler that runs here may pump in turn; below some depth that does nothing, so that a user who
    /// keeps clicking cannot use up the stack.
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
