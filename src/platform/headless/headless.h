// The platform of a run without a window: no messages, and nothing is shown. Tests use it, too. For one
// thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/console.h"
#include "platform/message_pump.h"

namespace hl {

/// A pump that never has messages.
class HeadlessPump final : public MessagePump {
  public:
    void PumpMessages() override {}
    bool GetInputState() override { return false; }
    std::uint64_t GetTickCount() override;
};

/// Records what is written instead of showing it.
class RecordingConsole final : public Console {
  public:
    bool outputLine(std::string_view line) override {
        output.emplace_back(line);
        return true;
    }
    void errorLine(std::string_view line) override { errors.emplace_back(line); }
    bool showsProgress() override { return false; }
    void progress(std::string_view) override {}

    std::vector<std::string> output;
    std::vector<std::string> errors;
};

}  // namespace hl
