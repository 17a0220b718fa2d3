// A size as the user writes it, on the command line and in filters: "1.5G". Pure function.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace hl {

struct SizeArgument {
    std::uint64_t bytes = 0;
    bool hasFraction = false;  ///< The size is larger than that, by less than a byte.
};

/// Reads digits, one decimal if wanted, and B, K, M, G or T, large or small, in steps of 1,024; without one
/// it is bytes. Returns nothing for any other text, and for 2^63 and more.
std::optional<SizeArgument> sizeOfArgument(std::string_view text);

}  // namespace hl
