// Puts back what the last command moved to the trash. For the thread of the logic only.
#pragma once

#include "fileops/file_run.h"

namespace hl {

/// Puts the last step of `ops.undo` back, name by name and never over something that came there meanwhile;
/// the report then shows what a fresh scan would show. A file that was renamed over another one first gets
/// its old name again. One message tells what stayed in the trash, and why. After a Stop, what was not put
/// back yet is the next step.
void TakeBack(const FileOps& ops);

}  // namespace hl
