// The two kinds of a file that is written by replacing: a regular file, which takes the place of the older
// one when it is complete, and a target that is written directly: a device, a pipe, a socket, or a descriptor
// that is open already ("-", "/dev/stdout", "/dev/fd/3"). Any thread may make files; each file is for one
// thread.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/change/files.h"

namespace hl {

/// Returns a file of the fitting kind for `path`. Links at the end of the path are followed, but in a sticky
/// folder that others may write to only those of the user and of the folder's owner (EACCES). An older file
/// that the user may not write, or that the kernel protects there (fs.protected_regular, fs.protected_fifos),
/// is not replaced, even if the folder would allow it. The file keeps its descriptors until it is destroyed;
/// `unfinished` matters only to the regular kind. A pipe without a reader is waited for or, if that is not
/// wanted, gives ENXIO.
Result<std::unique_ptr<ReplacingFile>> makeReplacingFile(const std::string& path, Unfinished unfinished,
                                                         bool waitsForReaders);

/// Returns the folder part of a path: "." for a bare name, "/" for a name below the root.
std::string folderOf(const std::string& path);

}  // namespace hl
