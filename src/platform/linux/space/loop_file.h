// Asks a loop device which file it holds, where that file has no name any more. For any thread.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/drives/mount_table.h"
#include "platform/open_files.h"

namespace hl {

/// Fills in the identity of the deleted file that the loop device ("loop0") holds, and its bytes where the
/// file system tells them to root (the ext ones). Returns a system error code. Only root may ask.
int deletedFileOfLoop(const std::string& device, const std::vector<Mount>& mounts, HeldFile& file);

}  // namespace hl
