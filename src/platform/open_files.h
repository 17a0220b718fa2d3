// Lists the files that processes hold open or mapped into their memory. The space of a deleted file comes
// back only when the last of them lets it go.
//
// Only processes that the system shows to this user take part: without root, those are the user's own. The
// kernel holds files, too: those of loop devices, and swap files. Files on disks that may not answer are left
// out, so that none of them is asked.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/folder_id.h"

namespace hl {

/// A regular file that one process holds; there is one such for each process.
struct HeldFile {
    FolderId id;              ///< As in FilePlace: the device is that of stat (st_dev).
    std::uint64_t mount = 0;  ///< The mount through which it was opened (see mountinfo); 0 if unknown.
    /// What it takes on the disk, in bytes (blocks of 512); nothing if only root may know that.
    std::optional<std::uint64_t> bytes = {};
    std::uint64_t links = 0;   ///< The number of its names; 0 for a deleted file.
    long process = 0;          ///< 0 if the kernel holds it.
    std::string program = {};  ///< The name of the process as the kernel has it, at most 15 bytes, any. Of
                               ///< what the kernel holds, the device ("loop0") or "swap".

    bool isDeleted() const { return links == 0; }
};

struct OpenFilesAnswer {
    std::vector<HeldFile> files = {};  ///< In the order of processes.
    /// False if there are processes whose files this user may not see, or that are hidden: then there may be
    /// more such files, and only root knows.
    bool sawAll = false;
};

/// For any thread. Has no state of its own.
class OpenFiles {
  public:
    using Wanted = std::function<bool(const HeldFile&)>;

    virtual ~OpenFiles() = default;
    /// Returns the files for which `wanted` returns true (null: all). It is asked when all but the program is
    /// known. Takes some 20 ms for 500 files, and may wait for a process that hangs in the kernel: the thread
    /// of the logic leaves the call to a helper.
    virtual OpenFilesAnswer list(const Wanted& wanted) const = 0;
};

}  // namespace hl
