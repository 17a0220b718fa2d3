// A size as it is given on the command line: "10G". Pure function.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace hl {

/// Reads digits, one decimal if wanted, and B, K, M, G or T, in steps of 1,024; without one it is bytes.
/// Returns nothing for any other text, and for 2^63 and more.
std::optional<std::uint64_t> sizeOfArgument(std::string_view text);

}  // namespace hl
