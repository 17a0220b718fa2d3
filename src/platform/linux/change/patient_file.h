// Writes a file whose disk may not answer. For the thread of the logic only.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/patience.h"

namespace hl {

/// Returns the file that `make` returns for `path`. `patience`, which must outlive the file, does everything
/// that touches the disk, closing too. If the disk does not answer, the error is kNoAnswer, and nothing more
/// is written; the disk may still carry out what it has in hand.
Result<std::unique_ptr<ReplacingFile>> replacePatiently(
    Patience& patience, const std::string& path,
    std::function<Result<std::unique_ptr<ReplacingFile>>()> make);

}  // namespace hl
