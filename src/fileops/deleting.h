// Deleting and recycling what the views show.
//
// What goes and what cannot go has its line in the log; what Stop kept from being tried has none. Report,
// drives, lists and preview follow when all is done, and then one message tells what stayed, and why. Thread
// of the logic only.
#pragma once

#include <string>
#include <vector>

#include "fileops/file_run.h"

namespace hl {

class Gone;
class ListView;

/// Folders of the report, with or without those above them; rows that sum up files are passed over. No
/// question is asked. What is left of a folder that did not go wholly is read again.
void DeleteFolders(const FileOps& ops, const std::vector<Row>& rows, bool recycle);

/// Of the selected rows of a list, after a question.
void List_DeleteFiles(const FileOps& ops, ListView& list, bool recycle);

/// One file, and its line in the log if it went. Empty then, else the line for the log and the user.
std::string Delete_Files(const FileOps& ops, FileRun& run, const std::string& path, bool recycle, Gone& gone);

/// True if the file is gone, also when it was gone before. `errorText` is left alone then.
bool xDeleteFile_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText);

/// The folder with everything in it. False with an empty text if there was none.
bool xDeleteFolder_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText);

}  // namespace hl
