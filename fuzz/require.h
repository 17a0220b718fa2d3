// Checks, in every kind of build, what a fuzz target promises.
#pragma once

namespace hl::fuzz {

inline void require(bool kept) {
    if (!kept) __builtin_trap();
}

}  // namespace hl::fuzz
