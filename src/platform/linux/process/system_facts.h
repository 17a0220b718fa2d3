// Facts about a Linux machine, read from files of the kernel and of the distribution.
#pragma once

#include <string>

#include "platform/system_facts.h"

namespace hl {

/// It has no state: each call reads anew. From any thread.
class LinuxSystemFacts : public SystemFacts {
  public:
    /// `root` precedes the paths of the files that are read.
    explicit LinuxSystemFacts(std::string root = "") : root_(std::move(root)) {}

    SystemName systemName() override;
    MemoryFacts memory() override;  ///< The page file is the swap space.
    std::uint64_t workingSet() override;
    std::uint64_t upTimeSeconds() override;
    std::string processorName() override;
    std::string userName() override;  ///< For a user without a name, the number.
    std::string computerName() override;
    bool adminRights() override;
    bool emulated() override;
    std::string environment(const std::string& name) override;
    /// Returns the path of this program; without /proc, the path that the kernel was given at the start.
    static std::string executablePath();

  private:
    std::string read(const char* path) const;
    std::string root_;
};

}  // namespace hl
