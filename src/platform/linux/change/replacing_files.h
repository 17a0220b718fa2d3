// The two kinds of a file that is written by replacing: a regular one, which takes the place of the older
// when it is complete, and what is written directly: a device, a pipe, a socket, and a descriptor that is
// open already ("-", "/dev/stdout", "/dev/fd/3"). Making files is safe from any thread; each file belongs to
// one.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/change/files.h"

namespace hl {

/// A file for `path`, whichever kind fits it; null and a positive system error code in `error` if it cannot
/// be made. Links at the end of the path are followed, but in a sticky folder that others may write to only
/// those of the user and of the folder's owner (EACCES). An older file that the user may not write, or that
/// the kernel keeps from being opened there (fs.protected_regular, fs.protected_fifos), is not replaced, even
/// where the folder would allow it. The file keeps its descriptors until it is destroyed;
/// `unfinished` matters to the regular kind alone. A pipe that nobody reads waits for its reader or, where
/// that is not wanted, is ENXIO.
std::unique_ptr<ReplacingFile> makeReplacingFile(const std::string& path, Unfinished unfinished,
                                                 bool waitsForReaders, int& error);

/// The folder part of a path: "." for a bare name, "/" for one below the root.
std::string folderOf(const std::string& path);

}  // namespace hl
