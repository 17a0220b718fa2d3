// Gives a file or a folder another name or place. From any thread; no state.
#pragma once

#include "platform/file_operations.h"
#include "platform/linux/process/helper.h"

namespace hl {

/// As FileOperations::move. System error code, 0 for success.
///
/// On one file system the kernel does it in one step. A folder replaces nothing, not even an empty folder
/// (EEXIST); what is no folder replaces a file, but no folder (EISDIR). Of two names of one file, moved onto
/// each other, the new one is left. A change of case alone works where names differ by more than that, too;
/// there the entry has a name of ours for a moment.
///
/// To another file system a regular file or a symbolic link is copied, under a name of ours until it is
/// complete and on the disk; anything else is EXDEV. EBUSY if the file changes meanwhile; what is written
/// between the last look and the removal of the old name, some microseconds, is lost. If the old name cannot
/// go, the new one is taken back and a file replaced by it put in its place again; only where the file system
/// can neither swap two names nor give a file a second one are both files there then, and the replaced one
/// gone. `whereabouts` is told between the blocks of a copy.
int moveEntry(const FilePlace& from, const FilePlace& to, Whereabouts& whereabouts);

/// Whether moveEntry would replace a file by another one.
bool wouldReplace(const FilePlace& from, const FilePlace& to);

}  // namespace hl
