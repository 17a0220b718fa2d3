// The drives of the machine, which the drive list and the combo box of sources show.
//
// What the system knows of a drive without asking it (its place, type and label) is there at once. Only the
// drive itself knows its sizes; they arrive later, or never from a share whose server is gone.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace hl {

enum class DriveType : std::uint8_t {
    kUnknown = 0,
    kNoRoot = 1,
    kRemovable = 2,
    kFixed = 3,
    kRemote = 4,
    kDisc = 5,
    kRam = 6,
};

/// A mounted file system.
struct Drive {
    std::string root;  ///< Where it is mounted; for a folder of a share, the path of that folder.
    DriveType type = DriveType::kUnknown;
    std::string fileSystem = {};     ///< Empty if unknown.
    Result<std::string> label = "";  ///< Of any length; a share's label is its source. Empty for a drive
                                     ///< without a label; an error if the labels cannot be read.
};

/// Sizes in bytes.
struct DriveSpace {
    std::uint64_t total = 0;
    std::uint64_t free = 0;  ///< In bytes, for this user.
    std::uint64_t clusterSize = 0;
    std::uint64_t reserved = 0;  ///< Bytes that are neither used nor free for this user.
    /// The number of files and folders; 0 if the file system does not count them.
    std::uint64_t usedEntries = 0;
};

using DriveAnswer = Result<DriveSpace>;

/// For the thread of the logic only; an implementation may have helper threads.
class Drives {
  public:
    virtual ~Drives() = default;
    /// Returns the real file systems in the table of mounts, one per device, in the order of mounting. Never
    /// waits for a drive.
    virtual std::vector<Drive> drives() = 0;
    /// Returns the network mount that a UNC text ("\\server\share" or "//server/share", perhaps with a folder
    /// behind it) names, or nothing if there is none. Never waits for it.
    virtual std::optional<Drive> network(std::string_view unc) = 0;
    /// Asks a drive for its sizes on another thread. takeAnswers() calls `answered` once, also when the time
    /// limit is over; it is never called if the Drives are destroyed before.
    virtual void ask(const Drive& drive, std::function<void(const DriveAnswer&)> answered) = 0;
    /// Delivers the answers that have arrived. To be called when answersDescriptor() is readable; other calls
    /// do no harm.
    virtual void takeAnswers() = 0;
    virtual int answersDescriptor() = 0;
};

}  // namespace hl
