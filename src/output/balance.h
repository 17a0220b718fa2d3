// Makes the balance of a source that is the root of a file system: lines that lead from the sizes of the
// files found to what the file system says is used. Pure functions.
//
// What is not known counts as 0, so the rest has it. The rest is named and signed, and never hidden: it is
// what changed between the scan and the questions, and what nobody tells.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/disk_space.h"
#include "scan/source_space.h"

namespace hl {

enum class BalanceLine : std::uint8_t {
    kFound,
    kRoundedUp,
    kFolders,
    kHidden,
    kHeld,
    kHeldBy,  ///< One program's part of kHeld.
    kKept,
    kHoles,
    kFurtherNames,
    kTiny,
    kRest,
    kUsed,
    kTrash,
    kNotRead,
    kSnapshots,
    kLeftOut,
    kUsedBefore,
    kReserved,
};

enum class BalanceRole : std::uint8_t {
    kAdded,
    kSubtracted,
    kDetail,  ///< A part of the line above it.
    kSum,
    kOfWhich,  ///< A part of the sum, which other lines have already.
    kBeside,
};

struct BalanceEntry {
    BalanceLine line = BalanceLine::kFound;
    std::int64_t bytes = 0;  ///< Only the rest may be negative; a figure that is subtracted is positive.
    Unknown unknown = Unknown::kNo;  ///< Why the figure is missing, or with kHeld why there may be more.
    std::uint32_t folders = 0;       ///< Of kNotRead, kSnapshots and kLeftOut, whose bytes nobody knows.
    std::uint32_t files = 0;         ///< Of kLeftOut.
    std::string program = {};        ///< Of kHeldBy, as the system has it, in any bytes.
    std::int64_t process = 0;        ///< Of kHeldBy; 0 if the kernel holds it, for a device.
};

/// What only the report tells: sums of its rows below the source.
struct BalanceBesides {
    std::uint64_t trash = 0;      ///< Bytes on the disk.
    std::uint32_t notRead = 0;    ///< Folders.
    std::uint32_t snapshots = 0;  ///< Those that are left out since their origin is in the source.
    std::uint32_t leftOutFolders = 0, leftOutFiles = 0;  ///< By rules.
};

enum class BalanceState : std::uint8_t {
    kThere,
    kNoWholeDisk,  ///< The source is not the root of a file system that counts its own blocks.
    kStopped,      ///< The source was not read to its end.
};

/// Tells whether a source can have a balance.
BalanceState balanceState(const SourceSpace& space);

/// Returns the lines in the order in which they are shown. Without `facts` (the disk did not answer) what
/// they would tell is unknown. REQUIRES: balanceState(space) is kThere.
std::vector<BalanceEntry> balanceOf(const SourceSpace& space, const std::optional<SpaceFacts>& facts,
                                    const BalanceBesides& besides);

BalanceRole roleOf(BalanceLine line);

}  // namespace hl
