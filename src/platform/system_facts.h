// What the error report says of the machine. A fact that cannot be had is empty or zero.
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

/// In pixels, and bits per pixel; zeros with no screen.
struct ScreenFacts {
    int width = 0, height = 0, depth = 0;
};

class SystemFacts {
  public:
    virtual ~SystemFacts() = default;
    virtual SystemName systemName() = 0;
    virtual MemoryFacts memory() = 0;
    virtual std::uint64_t workingSet() = 0;     ///< Bytes of the process in memory.
    virtual std::uint64_t upTimeSeconds() = 0;  ///< Of the system.
    virtual std::string processorName() = 0;    ///< Several different ones joined with a tab.
    virtual std::string userName() = 0;
    virtual std::string computerName() = 0;
    virtual bool adminRights() = 0;
    virtual bool emulated() = 0;  ///< A 32-bit process on a 64-bit system.
    /// The system's text for one of its error codes ("Permission denied"); empty for a code it does not know.
    virtual std::string errorText(int code) = 0;
    virtual std::string environment(const std::string& name) = 0;
};

}  // namespace hl
