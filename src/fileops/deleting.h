// Deletes and recycles what the views show. For the thread of the logic only.
//
// The log gets a line for everything that went and everything that could not go, but none for what Stop kept
// from being tried. When all is done, the report, drives, lists and preview are updated, and then one message
// tells what stayed, and why.
#pragma once

#include <string>
#include <vector>

#include "fileops/file_run.h"

namespace hl {

class Gone;
class ListView;

/// Deletes folders of the report; rows that sum up files are skipped. Of a folder and one above it both may
/// be given. Asks before it deletes for good, unless the user has switched that off. If one of the rows is a
/// source, nothing is deleted, and the status bar says how a source leaves the report. What is left of a
/// folder that did not go wholly is read again.
void DeleteFolders(const FileOps& ops, const std::vector<Row>& rows, bool recycle);

/// Deletes the files of the selected rows of a list, with the same question.
void List_DeleteFiles(const FileOps& ops, ListView& list, bool recycle);

/// Deletes one file and logs it. Returns an empty text if it went, else the line for the log and the user.
std::string Delete_Files(const FileOps& ops, FileRun& run, const std::string& path, bool recycle, Gone& gone);

/// Returns true if the file is gone, even if it was gone before; `errorText` is unchanged then.
bool xDeleteFile_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText);

/// Removes the folder with everything in it. Returns false with an empty text if there was no such folder.
bool xDeleteFolder_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText);

}  // namespace hl
