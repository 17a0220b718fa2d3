// The yield of the one thread of logic to the world outside it.
#pragma once

#include <cstdint>

namespace hl {

class MessagePump {
  public:
    virtual ~MessagePump() = default;
    /// Runs what waits: input, timers, a second instance's message. Handlers that run here test ScanActive.
    virtual void PumpMessages() = 0;
    /// Whether input waits. Cheap; may be asked thousands of times a second.
    virtual bool GetInputState() = 0;
    /// Milliseconds of a clock that only goes forward.
    virtual std::uint64_t GetTickCount() = 0;
};

}  // namespace hl
