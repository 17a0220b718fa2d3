// Facts about a Linux machine, from the files of the kernel and of the distribution.
#pragma once

#include <string>

#include "platform/system_facts.h"

namespace hl {

/// Holds no state: each call looks anew. From any thread.
class LinuxSystemFacts : public SystemFacts {
  public:
    /// `root` is put in front of the paths of the files that are read.
    explicit LinuxSystemFacts(std::string root = "") : root_(std::move(root)) {}

    SystemName systemName() override;
    MemoryFacts memory() override;  ///< The page file is the swap space.
    std::uint64_t workingSet() override;
    std::uint64_t upTimeSeconds() override;
    std::string processorName() override;
    std::string userName() override;  ///< The number of a user who has no name.
    std::string computerName() override;
    bool adminRights() override;
    bool emulated() override;
    /// In English, whatever the locale. Sets errno to EINVAL for a code that is not known.
    std::string errorText(int code) override;
    std::string environment(const std::string& name) override;
    /// Of this program; where /proc is missing, as the kernel was told it when the program was started.
    static std::string executablePath();

  private:
    std::string read(const char* path) const;
    std::string root_;
};

}  // namespace hl
