// Puts back what was moved. It has no state and may be used from any thread.
#pragma once

#include "platform/file_operations.h"
#include "platform/linux/process/helper.h"

namespace hl {

/// Works as FileOperations::putBack does. `whereabouts` is told before anything is changed, so that abandoned
/// work changes nothing more. An info file that cannot be removed stays: it names nothing then.
Result<> putBack(const Moved& what, const FilePlace& to, Whereabouts& whereabouts);

}  // namespace hl
