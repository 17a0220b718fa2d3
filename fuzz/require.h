// A promise that a fuzz target holds its subject to, in every kind of build.
#pragma once

namespace hl::fuzz {

inline void require(bool kept) {
    if (!kept) __builtin_trap();
}

}  // namespace hl::fuzz
