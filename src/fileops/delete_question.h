// Asks before something is deleted for good. For the thread of the logic only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fileops/file_run.h"
#include "platform/freed_space.h"

namespace hl {

class ListView;

/// What is to be deleted.
struct ToDelete {
    /// The names of what was selected, and the paths; no folder lies in another.
    std::vector<std::string> names = {};
    std::vector<std::string> paths = {};
    bool folders = false;
    double files = 0;  ///< With those in the folders.
    double bytes = 0;
    Unshown leftOut =
        {};  ///< What rules left out of the folders: it goes with them, and nobody has counted it.
};

/// `rows` are those of folders in the report.
ToDelete foldersOf(const FileOps& ops, const std::vector<Row>& rows);
/// Returns what is selected in the list.
ToDelete filesOf(const ListView& list);

/// Begins to find out what the delete gives back; null if nobody tells that.
std::unique_ptr<FreedSurvey> beginSurvey(const FileOps& ops, const ToDelete& what);

/// Tells below the question what comes back, as soon as and as far as that is known; nobody waits for it.
/// Returns true at once if the user has switched the question off (AskBeforeDelete).
bool wantsToDelete(const FileOps& ops, const ToDelete& what);

}  // namespace hl
