// Identifies a folder or a file, whatever its name.
#pragma once

#include <cstdint>

namespace hl {

/// Both numbers are 0 if it is unknown.
struct FolderId {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const FolderId&) const = default;
    bool isKnown() const { return device != 0 || inode != 0; }
};

}  // namespace hl
