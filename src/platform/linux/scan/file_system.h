// The file system of the machine. read() and its result belong to one thread, that of the logic; look() and
// target() may be called from any.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/folder_reader.h"
#include "platform/linux/drives/mount_table.h"
#include "platform/linux/scan/directory_calls.h"
#include "platform/linux/scan/read_ahead_limits.h"

namespace hl {

/// Returns the limits for this machine. While folders come from the system's cache ("warm"), there is one
/// helper for each processor beyond the first; while reads wait for a disk ("cold"), there are up to eight,
/// or more if there are more processors. Descriptors are 8 to 512, by the soft limit of the process; if it
/// leaves fewer than 8 there are no helpers. There are none either if `readAhead` is false.
ReadAheadLimits limitsOfThisMachine(bool readAhead);

class LinuxFileSystem final : public FileSystem {
  public:
    explicit LinuxFileSystem(const ReadAheadLimits& limits,
                             std::shared_ptr<DirectoryCalls> calls = std::make_shared<DirectoryCalls>())
        : calls_(std::move(calls)), limits_(limits) {}

    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override;
    bool mayHang(std::string_view path) override { return canHang(std::string(path)); }
    bool countsBeforeCompression(std::string_view path) override;
    Result<PathFacts> look(std::string_view path) override;
    Result<std::string> target(std::string_view path) override;

  private:
    std::shared_ptr<DirectoryCalls> calls_;
    ReadAheadLimits limits_;
};

}  // namespace hl
