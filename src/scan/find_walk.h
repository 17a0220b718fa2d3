// Finds files: a walk of its own with a filter, through the same reader as the report's. It keeps nothing of
// a file that is not found, and finds what is on the disk now. For the thread of the logic only.
//
// Folders, links and mounts are entered as the report's walk enters them, and the same snapshots are left
// out. A link that is not followed is found as a link, wherever it leads.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "scan/file_columns.h"
#include "scan/find_filter.h"
#include "scan/scan_context.h"
#include "scan/subvolumes_met.h"

namespace hl {

/// What is told of the walk. Errors and folders come through the calls of ScanHost.
class FindHost : public ScanHost {
  public:
    /// A file is found. Returning false ends the walk. Messages do not run meanwhile, unless the host itself
    /// lets them.
    virtual bool found(const FoundFile& file) = 0;
};

/// What is told of a file that is found.
enum class FindDetail : std::uint8_t {
    kPath,   ///< Nothing but its path; files are looked at only if the filter asks for more.
    kFacts,  ///< Also its size, what it takes on the disk, when it was written, and its owner.
    kAll,    ///< Also its other times and its attributes.
};

struct FindOrder {
    FindFilter filter;
    std::int64_t started = 0;  ///< Ages are counted back from here, in seconds since 1970.
    FindDetail detail = FindDetail::kFacts;
    std::uint32_t level = 0;       ///< How many levels the folder lies below its source.
    SubvolumesMet elsewhere = {};  ///< The subvolumes of its source that lie outside of the folder.
};

enum class FindEnd : std::uint8_t {
    kDone,
    kStopped,  ///< By Stop or Esc.
    kEnough,   ///< The host wanted no more.
};

/// Walks through `folder`, which ends with a separator. Stop and Esc end it.
FindEnd findFiles(ScanContext& scan, const std::string& folder, const FindOrder& order, FindHost& host);

}  // namespace hl
