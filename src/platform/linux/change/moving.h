// Gives a file or a folder another name or place. It has no state and may be used from any thread.
#pragma once

#include "platform/file_operations.h"
#include "platform/linux/process/helper.h"

namespace hl {

/// Moves as FileOperations::move does. Returns a system error code, 0 for success.
///
/// Within one file system the kernel does it in one step. A folder replaces nothing, not even an empty folder
/// (EEXIST); anything else replaces a file, but no folder (EISDIR). If two names of one file are moved onto
/// each other, the new one stays. A change of case alone works even if case matters; the entry has a
/// temporary name for a moment then.
///
/// To another file system a regular file or a symbolic link is copied, under a temporary name until it is
/// complete and on the disk; anything else gives EXDEV. EBUSY if the file changes meanwhile; what is written
/// between the last look and the removal of the old name, some microseconds, is lost. If the old name cannot
/// be removed, the new one is removed again, and a file replaced by it gets its place back. Only if the file
/// system can neither swap two names nor give a file a second one, both files exist then, and the replaced
/// one is lost. `whereabouts` is told between the blocks of a copy.
int moveEntry(const FilePlace& from, const FilePlace& to, Whereabouts& whereabouts);

/// Tells whether moveEntry would replace a file by another one.
bool wouldReplace(const FilePlace& from, const FilePlace& to);

}  // namespace hl
