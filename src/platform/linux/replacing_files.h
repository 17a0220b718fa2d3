// The two kinds of a file that is written by replacing: a regular one, and a device, pipe or socket.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/files.h"

namespace hl {

/// A file for `path`, whichever kind fits it; null and a system error code in `error` if it cannot be made.
std::unique_ptr<ReplacingFile> makeReplacingFile(const std::string& path, Unfinished unfinished, int& error);

/// The folder part of a path: "." for a bare name, "/" for one below the root.
std::string folderOf(const std::string& path);

}  // namespace hl
