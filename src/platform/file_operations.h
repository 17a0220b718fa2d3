// Changes files on a disk: removes, recycles and moves them.
//
// A file is named by a FilePlace and reached step by step through open folders, so that swapping folders
// meanwhile cannot lead the operation elsewhere. The last name is never followed: if it is a link, the link
// itself is removed, recycled or moved. Each operation works on another thread, while the caller's thread
// calls OperationWatch; there is only one operation at a time. If a disk does not answer, the error is
// kNoAnswer, and if the base of a place has become another folder, kOtherFolder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/folder_id.h"

namespace hl {

/// Where a file or a folder lies.
struct FilePlace {
    /// The absolute path that the user named. Links in it are followed, except in its last name if `below` is
    /// empty.
    std::string base;
    /// The names from there on, with "/" between them; empty for the base itself.
    std::string below = {};
    /// Links to folders in `below` are followed, except for the last name.
    bool followLinks = false;
    /// The folder that `base` was when the user saw it.
    FolderId id = {};
};

/// Something that was moved, so that it can be put back.
struct Moved {
    FilePlace now = {};    ///< Where it is. The base is empty if the system does not tell.
    FolderId id = {};      ///< What it is.
    bool inTrash = false;  ///< `now` is "TRASH/files/NAME".
};

/// What the caller does during an operation.
class OperationWatch {
  public:
    virtual ~OperationWatch() = default;
    /// Is called some sixty times a second until the operation ends, on the caller's thread, but not for one
    /// that ends at once. `path` is what is being worked on, or empty if unknown yet; `silent` tells that its
    /// disk does not answer. Returning false asks for an end: the removal of a folder stops where it is,
    /// while any other operation goes on to its end. Work on a silent disk is then abandoned, and its result
    /// stays unknown.
    virtual bool stillAt(const std::string& path, bool silent) = 0;
};

struct RemovalFailure {
    Error error;  ///< With the path as its name.
    bool folder = false;
};

struct Removal {
    static constexpr std::size_t kMostFailures = 25;

    bool removed = false;   ///< The folder itself is gone.
    bool vanished = false;  ///< It did not exist when its turn came, or does not exist any more.
    bool stopped = false;   ///< It was ended before it was complete.
    std::vector<RemovalFailure> failures = {};  ///< The first failures, in the order in which they happened.
    std::uint64_t failureCount = 0;             ///< The number of all failures.
    std::uint64_t entries = 0;                  ///< The number of files and folders that were removed.
    bool unknown = false;  ///< Its disk does not answer: the removal was abandoned, or never begun.
};

/// The reasons not to remove a folder, or move it to the trash; they also apply to a folder that contains
/// such a one. kNoAnswer means that the disk does not tell what the folder is.
enum class Protection : std::uint8_t { kNone, kRoot, kHome, kProgram, kNoAnswer, kOtherFolder };

class FileOperations {
  public:
    virtual ~FileOperations() = default;
    /// Removes anything but a folder.
    virtual Result<> removeFile(const FilePlace& place, OperationWatch& watch) = 0;
    /// Removes a folder with everything in it; a link or a file in its place is removed as such. Failures are
    /// reported, and the rest is removed. Links are not followed; other mounts are not entered but busy. If a
    /// folder belongs to the caller but is not writable, it is made writable first. Files that others add
    /// meanwhile may stay: then the folder above is reported as not empty.
    virtual Removal removeTree(const FilePlace& place, OperationWatch& watch) = 0;
    /// Moves it to the trash of its mount. Nothing is ever copied, and nothing removed instead. An error has
    /// no text: its number is not one of the system, but one of those that users of a trash know.
    virtual Result<Moved> recycle(const FilePlace& place, OperationWatch& watch) = 0;
    /// Moves to `to` what was moved before, and out of the trash wholly. Nothing is replaced (kTaken), and no
    /// folder is made (kNotFound, kNoFolder). kMovedOn if it has left the place or changed into something
    /// else. After a failure everything is as before.
    virtual Result<> putBack(const Moved& what, const FilePlace& to, OperationWatch& watch) = 0;
    /// Moves or renames it. A file in the new place is replaced, a folder is not. Onto another mount
    /// only something that is no folder can be moved: it is copied, flushed to the disk, and then removed
    /// here. After a failure everything is as before.
    virtual Result<Moved> move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) = 0;
    /// Tells whether a move would replace a file, that is, another one than `from` itself under another name.
    virtual Result<bool> wouldReplace(const FilePlace& from, const FilePlace& to, OperationWatch& watch) = 0;
    /// Decides by what the folder is, not by its name, so a link or another mount of the same folder makes no
    /// difference.
    virtual Protection protectionOf(const FilePlace& place, OperationWatch& watch) = 0;
};

}  // namespace hl
