// The file system of the machine.
#pragma once

#include <memory>
#include <string>

#include "platform/folder_reader.h"
#include "platform/linux/directory_calls.h"
#include "platform/linux/read_ahead.h"

namespace hl {

/// Limits for this machine: one warm helper for each processor beyond the first, and descriptors by the soft
/// limit of the process. With `readAhead` false no helper at all.
ReadAheadLimits limitsOfThisMachine(bool readAhead);

class LinuxFileSystem final : public FileSystem {
  public:
    /// `prepareThread` (may be null) runs first in each helper thread.
    LinuxFileSystem(const ReadAheadLimits& limits, void (*prepareThread)())
        : limits_(limits), prepareThread_(prepareThread) {}

    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override;
    PathFacts look(std::string_view path) override;
    std::string target(std::string_view path, int& error) override;

  private:
    DirectoryCalls calls_;
    ReadAheadLimits limits_;
    void (*prepareThread_)();
};

}  // namespace hl
