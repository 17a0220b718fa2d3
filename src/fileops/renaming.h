// Renames what the views show, after a name was edited in its cell. For the thread of the logic only.
#pragma once

#include <string>

#include "fileops/file_run.h"

namespace hl {

class ListView;

/// Moves `from` to `to`; see FileOperations::move. Returns an empty text on success, else the system's
/// message. `now` (may be null) receives what is at `to` now.
std::string xMoveFile_W(const FileOps& ops, FileRun& run, const std::string& from, const std::string& to,
                        Moved* now = nullptr);

/// Renames a file of a list. Another file of that name goes to the trash; where there is none it is replaced,
/// and the status bar says so. If the renaming fails, a message tells why. Other cells of the row, and rows
/// of the same file in other lists, stay as they are.
void renameInList(const FileOps& ops, ListView& list, Row row, const std::string& name);

/// Renames a folder of the report. The files that the file list shows of it are found under the new name
/// then.
void renameInReport(const FileOps& ops, Row row, const std::string& name);

}  // namespace hl
