// What the error report says about the machine. A fact that cannot be learned is empty or zero. From
// any thread.
#pragma once

#include <cstdint>
#include <string>

namespace hl {

struct MemoryFacts {
    std::uint64_t physicalAvailable = 0, physicalTotal = 0;
    std::uint64_t pageFileAvailable = 0, pageFileTotal = 0;
    std::uint64_t virtualAvailable = 0, virtualTotal = 0;
    std::uint32_t loadPercent = 0;
};

struct SystemName {
    std::string name;        ///< "Debian GNU/Linux 12 (bookworm)"
    std::string version;     ///< "6.1": major and minor number of the kernel
    std::string identifier;  ///< "debian 12 B6.1.0-18-amd64"
};

/// Pixels, and bits per pixel; all are 0 without a screen.
struct ScreenFacts {
    int width = 0, height = 0, depth = 0;
};

class SystemFacts {
  public:
    virtual ~SystemFacts() = default;
    virtual SystemName systemName() = 0;
    virtual MemoryFacts memory() = 0;
    virtual std::uint64_t workingSet() = 0;     ///< The bytes of the process in memory.
    virtual std::uint64_t upTimeSeconds() = 0;  ///< How long the system has been running.
    virtual std::string processorName() = 0;    ///< Different processors are joined with a tab.
    virtual std::string userName() = 0;
    virtual std::string computerName() = 0;
    virtual bool adminRights() = 0;
    virtual bool emulated() = 0;  ///< True for a 32-bit process on a 64-bit system.
    virtual std::string environment(const std::string& name) = 0;
};

}  // namespace hl
