// A pump whose clock and waiting input a test sets, and that counts.
#pragma once

#include <functional>

#include "platform/message_pump.h"

namespace hl::test {

class ScriptedPump : public MessagePump {
  public:
    bool input = false;
    std::uint64_t tick = 0;
    std::uint64_t tickStep = 0;  ///< Milliseconds that pass with each look at the clock.
    std::function<void()> onPump = [] {};
    int pumps = 0;
    int looks = 0;

    void PumpMessages() override {
        ++pumps;
        onPump();
    }
    bool GetInputState() override { return input; }
    std::uint64_t GetTickCount() override {
        ++looks;
        return tick += tickStep;
    }
};

}  // namespace hl::test
