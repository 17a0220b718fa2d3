// The message pump of a run without a window. For one thread.
#pragma once

#include "platform/message_pump.h"

namespace hl {

/// It never has messages.
class HeadlessPump final : public MessagePump {
  public:
    void PumpMessages() override {}
    bool GetInputState() override { return false; }
    std::uint64_t GetTickCount() override;
};

}  // namespace hl
