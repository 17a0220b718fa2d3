// Asks before something is deleted for good. For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "fileops/file_run.h"

namespace hl {

class ListView;

/// What is to be deleted.
struct ToDelete {
    /// The names of what was selected; no folder lies in another.
    std::vector<std::string> names = {};
    bool folders = false;
    double files = 0;  ///< With those in the folders.
    double bytes = 0;
};

/// `rows` are those of folders in the report.
ToDelete foldersOf(const FileOps& ops, const std::vector<Row>& rows);
/// Returns what is selected in the list.
ToDelete filesOf(const ListView& list);

/// Returns true at once if the user has switched the question off (AskBeforeDelete).
bool wantsToDelete(const FileOps& ops, const ToDelete& what);

}  // namespace hl
