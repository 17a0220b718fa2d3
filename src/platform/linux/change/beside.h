// A change of files that may take long, done beside the thread that asked for it.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/file_operations.h"
#include "platform/linux/process/helper.h"

namespace hl {

/// Runs `work` on a thread of its own and returns true when it has ended; what it throws is thrown here.
/// Meanwhile `watch` is asked for what waits. Where no thread can be had the work is done here. Thread of the
/// logic only.
///
/// `mayHang`: it is at a disk that may not answer. Then it is left behind, and the answer is false, if the
/// watch wants an end and nothing was heard of it for a second; or it is not begun, where there is no thread
/// or no slot. `left` (may be null) gets the helper that was left behind.
bool runBeside(const Helper::Work& work, OperationWatch& watch, bool mayHang,
               std::shared_ptr<Helper>* left = nullptr);

}  // namespace hl
