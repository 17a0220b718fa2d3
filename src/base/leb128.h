// Numbers of few bytes: seven bits a byte, the lowest first (unsigned LEB128); signed ones as zigzag. Pure
// functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hl {

inline constexpr std::size_t kMostLebBytes = 10;

inline void appendLeb(std::string& out, std::uint64_t number) {
    for (; number >= 0x80; number >>= 7) out += static_cast<char>(number | 0x80U);
    out += static_cast<char>(number);
}

/// Takes a number off the front of the bytes. Returns nothing if it is cut, has another form than the
/// shortest, or does not fit.
inline std::optional<std::uint64_t> takeLeb(std::string_view& bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < bytes.size() && i < kMostLebBytes; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (i == kMostLebBytes - 1 && byte > 1) return std::nullopt;
        number |= std::uint64_t{byte & 0x7FU} << (7 * i);
        if ((byte & 0x80U) != 0) continue;
        if (byte == 0 && i > 0) return std::nullopt;
        bytes.remove_prefix(i + 1);
        return number;
    }
    return std::nullopt;
}

/// Turns small numbers of either sign into small ones without one.
inline std::uint64_t zigzag(std::int64_t number) {
    return static_cast<std::uint64_t>(number) << 1 ^ static_cast<std::uint64_t>(number >> 63);
}
inline std::int64_t unzigzag(std::uint64_t number) {
    return static_cast<std::int64_t>(number >> 1 ^ (~(number & 1) + 1));
}

}  // namespace hl
