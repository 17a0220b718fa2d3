// The message pump of a run with no window.
#pragma once

#include "platform/message_pump.h"

namespace hl {

/// No messages ever wait.
class HeadlessPump final : public MessagePump {
  public:
    void PumpMessages() override {}
    bool GetInputState() override { return false; }
    std::uint64_t GetTickCount() override;
};

}  // namespace hl
