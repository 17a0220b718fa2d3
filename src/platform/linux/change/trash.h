// The freedesktop trash, where things that were thrown away can be restored.
//
// All access goes through open folders. Nothing is ever copied or removed: an entry is renamed into the trash
// of its mount, or it stays. It has no state and may be used from any thread. Others may use the same trash
// meanwhile.
#pragma once

#include <string>

#include "base/result.h"
#include "platform/file_operations.h"
#include "platform/linux/process/helper.h"

namespace hl {

struct TrashSettings {
    /// "$XDG_DATA_HOME/Trash", absolute; links in it are followed. Empty if the user has none.
    std::string homeTrash;
    /// The user who must own the trash of another mount; the number is part of its name.
    unsigned user = 0;
};

/// Why something could not be moved to the trash. The user sees the numbers.
enum class RecycleError : int {
    kNone = 0,
    kRoot = 0x74,    ///< It is the root of a file system or subvolume, a mount point, or holds one.
    kAccess = 0x78,  ///< There is no right to remove it from its place.
    kNameTooLong = 0x81,
    kInvalidPath = 0x7C,  ///< It does not exist.
    kReadOnly = 0x86,     ///< The file system is read-only.
    kUnknown = 0x402,
    kNoTrash = 0x10000,   ///< The mount has no trash, and none can be made.
    kNoAnswer = 0x10079,  ///< The disk does not answer; the result is unknown.
};

/// Returns the error for any of them but kNone.
Error recycleError(RecycleError reason);

/// Returns the settings of the user that this process acts for. REQUIRES: no other thread changes the
/// environment.
TrashSettings trashSettingsFromEnvironment();

/// Moves what is at `place` to the home trash if that is (or can be made) on the same mount, else to the
/// trash at the top of the mount, which is made if missing. The entry itself is never followed. After an
/// error it is where it was, and the trash holds nothing new; folders made for a trash stay. A folder with
/// something mounted on it, or below it, gives kRoot, as does the root of a subvolume, or a folder with one
/// below it: whoever empties the trash would delete that, too.
/// `now` (may be null) receives where it is. `whereabouts` (may be null) is told before anything is
/// changed, so that abandoned work changes nothing more.
RecycleError moveToTrash(const FilePlace& place, const TrashSettings& settings, Moved* now = nullptr,
                         Whereabouts* whereabouts = nullptr);

}  // namespace hl
