// Describes a subvolume: a part of a file system that has an identity of its own. It can be copied at once,
// without its data being copied; such a copy is a snapshot.
#pragma once

#include <cstdint>

namespace hl {

/// Both halves are 0 if there is none.
struct SubvolumeId {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    bool operator==(const SubvolumeId&) const = default;
    bool operator<(const SubvolumeId& other) const {
        return high != other.high ? high < other.high : low < other.low;
    }
    bool isKnown() const { return high != 0 || low != 0; }
};

struct Subvolume {
    SubvolumeId id = {};
    SubvolumeId origin = {};  ///< What it was made of, if it is a snapshot. That may be gone by now.
    bool readOnly = false;

    bool isSnapshot() const { return origin.isKnown(); }
    bool operator==(const Subvolume&) const = default;
};

}  // namespace hl
