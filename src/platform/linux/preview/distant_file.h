// Reads a file on a disk that may not answer, for the player of sound and film: a helper reads ahead into
// memory, and whoever reads waits for the helper alone, which it can end at any time.
#pragma once

#include <memory>
#include <string>

#include "platform/preview_tools.h"

namespace hl {

/// Opens the file and begins to read it. Waits for the disk without a limit, so this is for a helper thread,
/// too. What is no regular file is kUnsuited.
Result<std::unique_ptr<OpenFile>> openDistant(const std::string& path);

}  // namespace hl
