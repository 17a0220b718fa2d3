// The properties of files and folders, for desktops whose file manager does not show them. For the thread of
// the logic only.
#pragma once

#include <string>
#include <vector>

#include "fileops/file_run.h"

namespace hl {

/// Shows what the system tells of one path, or the sums of several, and waits until it is closed.
void showProperties(const FileOps& ops, const std::vector<std::string>& paths);

}  // namespace hl
