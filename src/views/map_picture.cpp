#include "views/map_picture.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace hl {

namespace {

// The surface of a cushion along one axis is a parabola; this is its slope, a*x + b. The slopes of a tile are
// the sums of those of all tiles that hold it.
struct Slope {
    float a = 0, b = 0;

    void add(int from, int to, float height) {
        const auto length = static_cast<float>(to - from);
        a -= 8 * height / length;
        b += 4 * height * static_cast<float>(from + to) / length;
    }
};

struct Cushion {
    Slope x, y;
};

// The bulge of the outermost folder, and how much less each further one bulges.
constexpr float kBulge = 0.4F, kBulgeOfNext = 0.8F;
// Where the light comes from, as a direction of length 1, and how bright a tile is that it does not reach.
constexpr float kLightX = 0.0976F, kLightY = 0.1952F, kLightZ = 0.9759F;
constexpr float kShadow = 0.45F;
constexpr int kLevels = 256;

// A colour from dark to light: the light's level picks one.
using Shades = std::array<std::uint32_t, kLevels>;

Shades shadesOf(std::uint32_t colour) {
    Shades shades{};
    for (int level = 0; level < kLevels; ++level) {
        const float light = kShadow + (1 - kShadow) * static_cast<float>(level) / (kLevels - 1);
        std::uint32_t shade = 0xff;
        for (const int shift : {16, 8, 0}) {
            const auto part = static_cast<float>(colour >> shift & 0xff);
            shade = shade << 8 | static_cast<std::uint32_t>(std::lround(part * light));
        }
        shades[static_cast<std::size_t>(level)] = shade;
    }
    return shades;
}

// Four neighbours at once: the compilers make one instruction of each operation. bench/window.py has the
// times; one pixel after the other, with a root and a division, takes two to three times as long.
using Floats = float __attribute__((vector_size(16)));
using Integers = std::int32_t __attribute__((vector_size(16)));
constexpr int kLanes = 4;

// Returns about 1 over the root: half the exponent as a guess, and one step of Newton's. The error is below
// half a level of light.
Floats inverseRoot(const Floats& value) {
    constexpr std::int32_t kHalfOfExponents = 0x5f375a86;
    const Floats guess = std::bit_cast<Floats>(kHalfOfExponents - (std::bit_cast<Integers>(value) >> 1));
    return guess * (1.5F - 0.5F * value * guess * guess);
}

// Finds the levels of one row of pixels, and of up to kLanes - 1 behind it.
void lightRow(const Slope& x, int left, float slopeY, int count, std::int32_t* levels) {
    constexpr float kMost = kLevels - 1;
    const float alongY = kLightZ + slopeY * kLightY;
    const float square = 1 + slopeY * slopeY;
    Floats slope = x.b + x.a * (static_cast<float>(left) + 0.5F + Floats{0, 1, 2, 3});
    for (int i = 0; i < count; i += kLanes) {
        Floats level = (slope * kLightX + alongY) * inverseRoot(slope * slope + square) * kMost;
        level = level > 0 ? level : Floats{};
        level = level < kMost ? level : Floats{} + kMost;
        const Integers whole = __builtin_convertvector(level, Integers);
        std::memcpy(levels + i, &whole, sizeof whole);
        slope += kLanes * x.a;
    }
}

void paintTile(const MapTile& tile, const Cushion& cushion, const Shades& shades, const MapPixels& pixels,
               std::vector<std::int32_t>& levels) {
    const int count = tile.right - tile.left;
    for (int y = tile.top; y < tile.bottom; ++y) {
        const float slopeY = cushion.y.b + cushion.y.a * (static_cast<float>(y) + 0.5F);
        lightRow(cushion.x, tile.left, slopeY, count, levels.data());
        std::uint32_t* row = pixels.first + static_cast<std::size_t>(y) * pixels.rowLength + tile.left;
        for (int i = 0; i < count; ++i)
            row[i] = shades[static_cast<std::size_t>(levels[static_cast<std::size_t>(i)])];
    }
}

}  // namespace

void paintMap(const std::vector<MapTile>& tiles, std::span<const std::uint32_t> colours,
              const MapPixels& pixels) {
    std::vector<Shades> shades;
    shades.reserve(colours.size());
    for (const std::uint32_t colour : colours) shades.push_back(shadesOf(colour));
    std::vector<std::int32_t> levels(static_cast<std::size_t>(pixels.width + kLanes));
    std::array<Cushion, kDeepestTile + 2>
        cushions;  // Of the tiles that hold the current one, by their depth.
    std::array<float, kDeepestTile + 1> bulges{};
    for (float bulge = kBulge; float& each : bulges) {
        each = bulge;
        bulge *= kBulgeOfNext;
    }
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const MapTile& tile = tiles[i];
        if (tile.right <= tile.left || tile.bottom <= tile.top) continue;
        Cushion cushion = cushions[tile.depth];
        // The whole map is flat, so that its parts stand out.
        if (tile.depth > 0) {
            cushion.x.add(tile.left, tile.right, bulges[tile.depth]);
            cushion.y.add(tile.top, tile.bottom, bulges[tile.depth]);
        }
        cushions[tile.depth + 1U] = cushion;
        if (tile.next == i + 1) paintTile(tile, cushion, shades[tile.colour], pixels, levels);
    }
}

}  // namespace hl
