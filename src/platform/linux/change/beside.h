// Makes a change of files that may take long on another thread than the one that asks for it.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/file_operations.h"
#include "platform/linux/process/helper.h"

namespace hl {

/// Runs `work` on a thread of its own and returns true when it has ended; what it throws is thrown here.
/// Meanwhile `watch` is called, so that messages can run. If there is no thread, the work is done here. For
/// the thread of the logic only.
///
/// `mayHang` means that the disk may not answer. Then the work is abandoned, and the result is false, if the
/// watch wants an end and nothing was heard of the work for a second; or the work is not begun, if there is
/// no thread or no slot. `left` (may be null) receives the helper that was abandoned.
bool runBeside(const Helper::Work& work, OperationWatch& watch, bool mayHang,
               std::shared_ptr<Helper>* left = nullptr);

}  // namespace hl
