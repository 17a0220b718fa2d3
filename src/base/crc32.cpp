#include "base/crc32.h"

#include <array>
#include <cstddef>

namespace hl {

namespace {

constexpr std::size_t kStep = 8;  // Bytes that are taken at once.
constexpr std::uint32_t kPolynomial = 0xEDB8'8320;

using Tables = std::array<std::array<std::uint32_t, 256>, kStep>;

// Table n has what a byte adds that is followed by n further ones.
constexpr Tables makeTables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1U) != 0 ? value >> 1 ^ kPolynomial : value >> 1;
        tables[0][byte] = value;
    }
    for (std::size_t n = 1; n < kStep; ++n)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[n - 1][byte];
            tables[n][byte] = before >> 8 ^ tables[0][before & 255U];
        }
    return tables;
}

constexpr Tables kTables = makeTables();

}  // namespace

void Crc32::add(std::string_view bytes) {
    std::uint32_t state = state_;
    const auto at = [&](std::size_t i) { return std::uint32_t{static_cast<unsigned char>(bytes[i])}; };
    for (; bytes.size() >= kStep; bytes.remove_prefix(kStep)) {
        state ^= at(0) | at(1) << 8 | at(2) << 16 | at(3) << 24;
        state = kTables[7][state & 255U] ^ kTables[6][state >> 8 & 255U] ^ kTables[5][state >> 16 & 255U] ^
                kTables[4][state >> 24] ^ kTables[3][at(4)] ^ kTables[2][at(5)] ^ kTables[1][at(6)] ^
                kTables[0][at(7)];
    }
    for (std::size_t i = 0; i < bytes.size(); ++i) state = state >> 8 ^ kTables[0][(state ^ at(i)) & 255U];
    state_ = state;
}

}  // namespace hl
