// A pump that counts, and whose clock and waiting input a test sets.
#pragma once

#include "platform/message_pump.h"

namespace hl::test {

struct ScriptedPump : MessagePump {
    bool input = false;
    std::uint64_t tick = 0;
    std::uint64_t tickStep = 0;  ///< The milliseconds that pass with each call of the clock.
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
