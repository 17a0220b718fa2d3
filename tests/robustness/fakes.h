// Fakes of what the error report asks, and of where it goes.
#pragma once

#include "platform/system_facts.h"
#include "robustness/debug.h"

namespace hl::test {

/// A machine about which everything is known. With `broken`, every question fails.
class FakeSystemFacts : public SystemFacts {
  public:
    bool broken = false;
    MemoryFacts memoryFacts = {1048576, 4194304, 2097152, 8388608, 3145728, 16777216, 75};

    SystemName systemName() override {
        return known(SystemName{"Debian GNU/Linux 12 (bookworm)", "6.1", "debian 12 B6.1.0-18-amd64"});
    }
    MemoryFacts memory() override { return known(memoryFacts); }
    std::uint64_t workingSet() override { return known(std::uint64_t{1572864}); }
    std::uint64_t upTimeSeconds() override { return known(std::uint64_t{90061}); }
    std::string processorName() override { return known(std::string("Some CPU")); }
    std::string userName() override { return known(std::string("ada")); }
    std::string computerName() override { return known(std::string("engine")); }
    bool adminRights() override { return known(true); }
    bool emulated() override { return known(false); }
    std::string environment(const std::string&) override { return {}; }

  private:
    template <class T>
    T known(T value) const {
        if (broken) throw std::runtime_error("not to be had");
        return value;
    }
};

/// Records what it is given. With `broken`, the log cannot be written.
struct FakeErrorSink : ErrorSink {
    struct Entry {
        std::string text;
        bool blankLine, stamp;
    };
    bool broken = false;
    std::vector<Entry> log;
    std::vector<std::string> shown;

    void LogError(const std::string& text, bool blankLine, bool stamp) override {
        if (broken) throw std::runtime_error("disk full");
        log.push_back({text, blankLine, stamp});
    }
    void showReport(const std::string& text, const std::string&) override { shown.push_back(text); }
};

/// Everything that a trap works with.
struct FakeDiagnostics {
    AppFacts app;
    FakeSystemFacts system;
    FakeErrorSink sink;
    Diagnostics diagnostics{app, system, sink};
};

}  // namespace hl::test
