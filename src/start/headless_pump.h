// The message pump of a run without a window. For one thread.
#pragma once

#include <functional>
#include <utility>

#include "platform/message_pump.h"

namespace hl {

/// The one message that it can have is the wish to stop.
class HeadlessPump final : public MessagePump {
  public:
    HeadlessPump() = default;
    /// `stop` is called in the pauses of a loop as long as `asked` returns true.
    HeadlessPump(bool (*asked)(), std::function<void()> stop) : asked_(asked), stop_(std::move(stop)) {}

    void PumpMessages() override {
        if (GetInputState()) stop_();
    }
    bool GetInputState() override { return asked_ != nullptr && asked_(); }
    std::uint64_t GetTickCount() override;

  private:
    bool (*asked_)() = nullptr;
    std::function<void()> stop_;
};

}  // namespace hl
