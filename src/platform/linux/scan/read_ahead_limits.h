// Limits what reading ahead may take of the machine.
#pragma once

#include <chrono>
#include <cstddef>

namespace hl {

struct ReadAheadLimits {
    unsigned helpersWarm = 1;  ///< Helpers while folders come from the cache.
    unsigned helpersCold = 8;  ///< The most while reads wait. If both are 0, the walk reads alone.
    std::size_t bytesAhead = std::size_t{1} << 20;
    std::size_t openFolders = 64;  ///< The budget of descriptors.
    /// How long a disk that can hang may take for one answer, and for the question where a link leads.
    std::chrono::milliseconds answer{30'000}, link{10'000};
};

}  // namespace hl
