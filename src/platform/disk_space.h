// Asks a file system what it says of its space, and the system what takes space there without being in any
// folder. For the thread of the logic only; nothing here makes it wait for a disk that does not answer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/folder_reader.h"
#include "platform/open_files.h"
#include "platform/space_count.h"

namespace hl {

/// What a folder is of its disk. It tells why one that is not a whole disk is none.
enum class DiskPart : std::uint8_t {
    kPlain,
    kLayers,     ///< It is put together from folders of other file systems (overlay).
    kSubvolume,  ///< The root of a subvolume of btrfs.
};

/// In bytes, by the file system's own count.
struct UsedSpace {
    std::uint64_t used = 0;
    std::uint64_t reserved = 0;  ///< A part of what is free that only root may use.
    DiskPart part = DiskPart::kPlain;
    std::uint64_t free = 0;  ///< For users other than root.
    std::uint64_t total = 0;
};

/// Why a figure is not there.
enum class Unknown : std::uint8_t {
    kNo,         ///< It is there.
    kNeedsRoot,  ///< Only root is told.
    kNotTold,    ///< This file system, or this kernel, does not tell.
};

/// What takes space besides the files and folders that a scan finds.
struct SpaceFacts {
    std::string kind;        ///< "ext4"
    std::uint64_t kept = 0;  ///< What the file system keeps for itself and counts as used.
    Unknown keptUnknown = Unknown::kNo;
    SpaceCount hidden;          ///< What lies in folders that something else is mounted on.
    std::uint32_t covered = 0;  ///< The number of these places.
    Unknown hiddenUnknown = Unknown::kNo;
    std::vector<HeldFile> held;          ///< Files without a name that a process holds open, each once.
    Unknown heldUnknown = Unknown::kNo;  ///< kNeedsRoot: there may be more than these.
    /// The file system keeps small files within its tree, so `kept` has what they take.
    bool keepsTinyFiles = false;
};

class DiskSpace {
  public:
    virtual ~DiskSpace() = default;
    /// Asks the file system of `folder`. `wait` (it may be null) is called about every 15 ms while a disk is
    /// waited for; returning false gives up, with an error of the kind kNoAnswer.
    virtual Result<UsedSpace> used(const std::string& folder, WaitCallback* wait) = 0;
    /// Collects the facts of the file system whose root is `folder`; the cost is that of reading what is
    /// hidden, and of all open files. Nothing if the disk does not answer or `wait` gave up.
    virtual std::optional<SpaceFacts> facts(const std::string& folder, WaitCallback* wait) = 0;
};

}  // namespace hl
