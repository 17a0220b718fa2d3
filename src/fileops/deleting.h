// Deleting and recycling what the views show.
//
// Folders go on two roads that differ on purpose: DeleteFolders tells of failures and leaves the numbers
// above alone; Report_DeleteFolder tells of none and takes the folder's numbers out of those above. Files go
// by Delete_Files, whichever list they stand in. Each thing has its line in the log first, then its message,
// and its row goes last. Rows are those that were selected when the command began. Thread of the logic only.
#pragma once

#include <string>

#include "fileops/file_run.h"

namespace hl {

class ListView;

/// Of the selected rows of the report. No question is asked; sizes and counts above stay as they are.
void DeleteFolders(const FileOps& ops, bool recycle);

/// Of one row of the report. Neither log nor message: the row goes and the numbers above it shrink, also
/// where the folder is still there. Only a protected folder stays, and the user is told why.
void Report_DeleteFolder(const FileOps& ops, Row row, bool recycle);

/// Of the selected rows of a list, after a question. The file list is read again afterwards.
void List_DeleteFiles(const FileOps& ops, ListView& list, GridId id, bool recycle);

/// One file: log, and a message if it stays. Returns an empty text if it went, else the reason.
std::string Delete_Files(const FileOps& ops, FileRun& run, const std::string& path, bool recycle);

/// True if the file is gone, also when it was gone before. `errorText` is left alone then.
bool xDeleteFile_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText);

/// The folder with everything in it. False with an empty text if there was none.
bool xDeleteFolder_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText);

}  // namespace hl
