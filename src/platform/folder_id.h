// What tells a folder from every other one, whatever its name.
#pragma once

#include <cstdint>

namespace hl {

/// Device and inode. Both 0: not known.
struct FolderId {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const FolderId&) const = default;
    bool isKnown() const { return device != 0 || inode != 0; }
};

}  // namespace hl
