// A console that records what is written.
#pragma once

#include "platform/console.h"

namespace hl {

struct RecordingConsole final : Console {
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
