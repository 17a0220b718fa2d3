// Small questions to the file system. None of them raises a fault for a bad path. For the thread of the
// logic.
#pragma once

#include <string>
#include <string_view>

#include "scan/scan_context.h"

namespace hl {

/// Tells whether something of that name exists; a dangling link does, an empty path does not.
bool xExistFile(ScanContext& scan, std::string_view path);
/// Succeeds if the path, without one trailing separator, exists; it need not be a folder. If the disk may
/// hang, the folder is opened while messages run; if Stop ends that, the folder counts as existing.
Result<> xExistFolder_W(ScanContext& scan, std::string_view path);
/// Tells whether the path, as it is, is a folder, and no link to one.
bool isFolder(const ScanContext& scan, std::string_view path);
/// Tells the user that the disk of `path` is waited for.
void tellOfWait(ScanContext& scan, std::string_view path);
/// Tells that a disk to which links lead does not answer. If links are followed (`missing`), what lies behind
/// these is missing in the report; otherwise links are shown as files.
void tellOfSilence(ScanContext& scan, const Error& disk, bool missing);

/// Tells whether the path is gone, and not merely out of reach.
bool hasVanished(const ScanContext& scan, std::string_view path);
/// Tells whether an error from looking at a path means that nothing is there.
bool isNotThere(const Error& error);
/// Tells whether the path's disk does not answer. If that was asked only just now, it is not waited for
/// again.
bool isSilent(const ScanContext& scan, std::string_view path);

/// Returns the number of names of a file, or 0 if it has only one. `id` (may be null) is set for any file
/// that exists. If the number cannot be learned, the result is 0 and `error` is set.
std::int32_t xGetHardlinkCount(ScanContext& scan, const std::string& path, std::string* id,
                               std::string& error);
/// Returns the target of a link, or what is mounted there; if the path is neither, the result is empty and
/// `error` is set.
std::string xGetJunctionPath(ScanContext& scan, const std::string& path, std::string& error);

}  // namespace hl
