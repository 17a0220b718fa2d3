// Removes, recycles and moves on Linux. Each operation works on a helper thread, and is abandoned if the user
// wants an end while its disk does not answer. For the thread of the logic.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_operations.h"
#include "platform/linux/change/trash.h"
#include "platform/linux/drives/silent_disks.h"
#include "platform/linux/scan/directory_calls.h"

namespace hl {

class LinuxFileOperations final : public FileOperations {
  public:
    struct Settings {
        std::string home;                         ///< The user's home; empty if there is none.
        std::vector<std::string> programFolders;  ///< The folders where the program is, and where it writes.
        TrashSettings trash;
        std::size_t budget = 64;  ///< The largest number of folders open at once.
    };
    /// Trees are removed through `calls`. `disks`, which must outlive this object, tells which disks may not
    /// answer; null means that all do.
    LinuxFileOperations(std::shared_ptr<DirectoryCalls> calls, Settings settings,
                        SilentDisks* disks = nullptr);

    Result<> removeFile(const FilePlace& place, OperationWatch& watch) override;
    Removal removeTree(const FilePlace& place, OperationWatch& watch) override;
    Result<Moved> recycle(const FilePlace& place, OperationWatch& watch) override;
    Result<> putBack(const Moved& what, const FilePlace& to, OperationWatch& watch) override;
    Result<Moved> move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) override;
    Result<bool> wouldReplace(const FilePlace& from, const FilePlace& to, OperationWatch& watch) override;
    Protection protectionOf(const FilePlace& place, OperationWatch& watch) override;

  private:
    /// What operations use, also those that were abandoned.
    struct Tools {
        std::shared_ptr<DirectoryCalls> calls;
        Settings settings;
    };
    using Places = std::vector<std::string>;

    template <class Answer>
    Answer beside(const Places& paths, Answer none, OperationWatch& watch,
                  std::function<Answer(Whereabouts&)> work);
    static Protection lookAt(const Tools& tools, const FilePlace& place);

    std::shared_ptr<const Tools> tools_;
    SilentDisks* disks_;
};

/// Returns the home of the user who runs this process: as the environment names it, or else as the system
/// knows it.
std::string homeFolder();

}  // namespace hl
