// Removing, recycling and moving on Linux: each operation beside the thread that asks for it.
#pragma once

#include <string>
#include <vector>

#include "platform/file_operations.h"
#include "platform/linux/directory_calls.h"
#include "platform/linux/trash.h"

namespace hl {

class LinuxFileOperations final : public FileOperations {
  public:
    struct Settings {
        std::string home;                         ///< Of the user; empty if there is none.
        std::vector<std::string> programFolders;  ///< Where the program lies, and where it writes.
        TrashSettings trash;
        std::size_t budget = 64;  ///< Folders open at once, at most.
    };
    /// `calls` is what removing a tree comes down to; it outlives this.
    LinuxFileOperations(DirectoryCalls& calls, Settings settings);

    int removeFile(const FilePlace& place, OperationWatch& watch) override;
    Removal removeTree(const FilePlace& place, OperationWatch& watch) override;
    RecycleError recycle(const FilePlace& place, OperationWatch& watch, std::string& now) override;
    int move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) override;
    bool wouldReplace(const FilePlace& from, const FilePlace& to, OperationWatch& watch) override;
    Protection protectionOf(const FilePlace& place, OperationWatch& watch) override;

  private:
    Protection lookAt(const FilePlace& place) const;

    DirectoryCalls& calls_;
    Settings settings_;
};

/// Home of the user who runs this process: as the environment names it, else as the system knows it.
std::string homeFolder();

}  // namespace hl
