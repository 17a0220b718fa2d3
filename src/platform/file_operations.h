// What changes files on a disk: removing, recycling and moving.
//
// A file is named by a FilePlace and reached step by step through open folders, so that what others swap on
// the way meanwhile leads nowhere else. The last step is never followed: of a link, the link is what is
// removed, recycled or moved. Each operation does its work beside the caller's thread, which is asked for
// what waits there as long as it lasts (OperationWatch); one operation at a time. What a disk has left
// unanswered has the error ETIMEDOUT (110).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/folder_id.h"

namespace hl {

/// System error code of a place whose base is another folder by now (ESTALE).
inline constexpr int kOtherFolderError = 116;

/// Where a file or a folder lies.
struct FilePlace {
    /// What the user named, absolute; links in it are followed, but for its last name if `below` is empty.
    std::string base;
    /// The names from there, "/" between them; empty for the base itself.
    std::string below = {};
    /// Whether links to folders are followed in `below`, too, but for the last name.
    bool followLinks = false;
    /// Of the folder that `base` was when the user saw it. Another one there now is ESTALE (116).
    FolderId id = {};
};

/// What the caller does meanwhile.
class OperationWatch {
  public:
    virtual ~OperationWatch() = default;
    /// Some sixty times a second until the operation ends, on the caller's thread; never for one that ends
    /// at once. `path`: what the operation is at, empty if it has not said so yet. `silent`: its disk does
    /// not answer. False: it is wanted no more. The removal of a folder then ends where it is, anything else
    /// goes on to its end; what a silent disk has in hand is left behind, and nobody knows what comes of it.
    virtual bool stillAt(const std::string& path, bool silent) = 0;
};

struct RemovalFailure {
    std::string path;
    int error = 0;  ///< Code of the system; EBUSY for the root of another mount.
    bool folder = false;
};

struct Removal {
    static constexpr std::size_t kMostFailures = 25;

    bool removed = false;   ///< The folder itself is gone.
    bool vanished = false;  ///< It was not there when its turn came, or is not there any more.
    bool stopped = false;   ///< It was ended on the way.
    std::vector<RemovalFailure> failures = {};  ///< The first ones, in the order in which they came.
    std::uint64_t failureCount = 0;             ///< Of all.
    std::uint64_t entries = 0;                  ///< Files and folders that went.
    bool unknown = false;  ///< Its disk does not answer: it was left behind, or not begun.
};

/// Why something is not in the trash. The numbers are told to the user.
enum class RecycleError : int {
    kNone = 0,
    kRoot = 0x74,    ///< The root of a file system, or a mount point.
    kAccess = 0x78,  ///< No right to take it from where it is.
    kNameTooLong = 0x81,
    kInvalidPath = 0x7C,  ///< It is not there.
    kReadOnly = 0x86,     ///< The file system is read-only.
    kUnknown = 0x402,
    kNoTrash = 0x10000,   ///< The mount has no trash, and none can be made.
    kNoAnswer = 0x10079,  ///< The disk does not answer; what has become of it is not known.
};

/// Folders that are not removed whole, nor moved to the trash; a folder that holds one counts as it.
/// kNoAnswer: their disk does not tell what it is.
enum class Protection : std::uint8_t { kNone, kRoot, kHome, kProgram, kNoAnswer, kOtherFolder };

class FileOperations {
  public:
    virtual ~FileOperations() = default;
    /// Anything but a folder. System error code, 0 for success; EISDIR for a folder.
    virtual int removeFile(const FilePlace& place, OperationWatch& watch) = 0;
    /// A folder with everything in it; a link or a file in its place is removed as what it is. What cannot go
    /// is told, and the rest goes. Links are not followed, other mounts not entered. A folder of the caller's
    /// own that may not be written is made so first. What others go on adding may stay: the folder above it
    /// is then told as not empty.
    virtual Removal removeTree(const FilePlace& place, OperationWatch& watch) = 0;
    /// To the trash of the mount it lies on. Nothing is copied, and nothing is removed instead. `now`: its
    /// absolute path there, "TRASH/files/NAME"; empty after an error, and where the system does not tell.
    virtual RecycleError recycle(const FilePlace& place, OperationWatch& watch, std::string& now) = 0;
    /// Gives it another name or place. A file in that place is replaced, a folder is not (EEXIST). Onto
    /// another mount only what is no folder goes: it is copied, flushed to the disk, and then removed here.
    /// System error code; after a failure everything is as it was.
    virtual int move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) = 0;
    /// Whether a move would replace a file: one lies there, and it is not `from` itself by another name.
    /// Nothing if the disk does not answer.
    virtual std::optional<bool> wouldReplace(const FilePlace& from, const FilePlace& to,
                                             OperationWatch& watch) = 0;
    /// By what it is, not by its name: also through a link or another mount of the same folder.
    virtual Protection protectionOf(const FilePlace& place, OperationWatch& watch) = 0;
};

}  // namespace hl
