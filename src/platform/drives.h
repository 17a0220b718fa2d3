// The drives of the machine: what the drive list and the combo box of sources show.
//
// What the system knows of a drive without asking it (where it is, its type, its label) is there at once. Its
// sizes only the drive itself can tell; a share whose server is gone never does, so they arrive later.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
    std::string root;  ///< Where it is mounted; for a folder of a share, that folder.
    DriveType type = DriveType::kUnknown;
    std::string fileSystem = {};  ///< Empty if it is not known.
    std::string label = {};       ///< Of a share its source. Any length; empty for a drive that has none.
    int labelError = 0;           ///< System error code if the labels cannot be read.
};

/// Sizes in bytes.
struct DriveSpace {
    std::uint64_t total = 0;
    std::uint64_t free = 0;  ///< For this user.
    std::uint64_t clusterSize = 0;
    std::uint64_t reserved = 0;  ///< Neither used nor free for this user.
};

/// Nothing for a drive that does not answer.
using DriveAnswer = std::optional<DriveSpace>;

/// Thread of the logic only; helper threads stay behind it.
class Drives {
  public:
    virtual ~Drives() = default;
    /// Reads the table of mounts: real file systems, once per device, in the order of mounting. Never waits
    /// for a drive.
    virtual std::vector<Drive> drives() = 0;
    /// The network mount that a UNC text ("\\server\share" or "//server/share", a folder behind it allowed)
    /// names, or nothing if there is none. Never waits for it.
    virtual std::optional<Drive> network(std::string_view unc) = 0;
    /// Asks a drive for its sizes, beside the logic. `answered` is called once, from takeAnswers(), also when
    /// the time limit is over; never if the Drives are destroyed before.
    virtual void ask(const Drive& drive, std::function<void(const DriveAnswer&)> answered) = 0;
    /// Delivers what has arrived. Called when answersDescriptor() is readable; any other call does no harm.
    virtual void takeAnswers() = 0;
    virtual int answersDescriptor() = 0;
};

}  // namespace hl
