// A file that is written where the disk may not answer. Thread of the logic only.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/patience.h"

namespace hl {

/// The file that `make` gives for `path`, a null one and the system's error code where it gives none. All
/// that touches the disk, closing too, is done by `patience`, which outlives the file. A disk that does not
/// answer is ETIMEDOUT, and nothing more is written then; what the disk has in hand it may still do.
std::unique_ptr<ReplacingFile> replacePatiently(
    Patience& patience, const std::string& path,
    std::function<std::unique_ptr<ReplacingFile>(int& error)> make, int& error);

}  // namespace hl
