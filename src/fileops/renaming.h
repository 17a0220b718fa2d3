// Renaming what the views show, after its name was edited in its cell. Thread of the logic only.
#pragma once

#include <string>

#include "fileops/file_run.h"

namespace hl {

class ListView;

/// Gives `from` the path `to`; see FileOperations::move. Empty on success, else the system's message.
std::string xMoveFile_W(const FileOps& ops, FileRun& run, const std::string& from, const std::string& to);

/// A file of a list got another name. A file of that name goes to the trash; where there is none it is
/// replaced, and the status bar says so. A message tells why the old name stays; other cells of the row, and
/// rows of the same file in other lists, stay as they are.
void renameInList(const FileOps& ops, ListView& list, Row row, const std::string& name);

/// A folder of the report got another name. What the file list shows of it lies under that name then.
void renameInReport(const FileOps& ops, Row row, const std::string& name);

}  // namespace hl
