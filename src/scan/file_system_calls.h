// The small questions that the program asks of the file system. None raises a fault on a bad path.
#pragma once

#include <string>
#include <string_view>

#include "scan/scan_context.h"

namespace hl {

/// True if something of that name exists, a dangling link too. An empty path does not.
bool xExistFile(ScanContext& scan, std::string_view path);
/// The same with one trailing separator left out. It does not ask whether it is a folder. `error` (may be
/// null) is why not: a system error code. Where the disk may hang a folder is asked by opening it, with
/// messages running; a Stop leaves it open whether it exists.
bool xExistFolder_W(ScanContext& scan, std::string_view path, int* error = nullptr);
/// Says that the disk of `path` is waited for.
void tellOfWait(ScanContext& scan, std::string_view path);

/// Whether it is not there, and not merely out of reach.
bool hasVanished(const ScanContext& scan, std::string_view path);
/// The same by the system error code of a look at it.
bool isNotThere(int error);
/// Whether its disk does not answer. Only just asked, it is not waited for again.
bool isSilent(const ScanContext& scan, std::string_view path);

/// The number of names of a file, 0 if it has only one. `id` (may be null) is set for any file that exists.
/// 0 with `error` set if it cannot be learned.
std::int32_t xGetHardlinkCount(ScanContext& scan, const std::string& path, std::string* id,
                               std::string& error);
/// Target of a link, or what is mounted there; empty with `error` set if the path is neither.
std::string xGetJunctionPath(ScanContext& scan, const std::string& path, std::string& error);

}  // namespace hl
