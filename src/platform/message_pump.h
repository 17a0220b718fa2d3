// Lets the thread of the logic, during its work, handle what has arrived from outside. For that thread only.
#pragma once

#include <cstdint>

namespace hl {

class MessagePump {
  public:
    virtual ~MessagePump() = default;
    /// Handles what waits: input, timers, another start's message. Handlers that run here must test
    /// ScanActive.
    virtual void PumpMessages() = 0;
    /// Tells whether input waits. It is cheap enough to be called thousands of times a second.
    virtual bool GetInputState() = 0;
    /// Returns the milliseconds of a clock that never goes back.
    virtual std::uint64_t GetTickCount() = 0;
};

}  // namespace hl
