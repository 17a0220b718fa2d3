#include "platform/percent_bar.h"

#include <algorithm>
#include <cmath>

namespace hl {

namespace {

constexpr int kTintLeft = 140;
constexpr int kTintRight = 200;

int channel(std::uint32_t color, int shift) {
    return static_cast<int>(color >> shift & 0xFFU);
}

// Composes a colour from its channels, for each of which `make` is called with the channel's shift.
template <class Make>
std::uint32_t eachChannel(Make make) {
    std::uint32_t color = 0;
    for (const int shift : {16, 8, 0})
        color |= static_cast<std::uint32_t>(std::clamp(make(shift), 0, 255)) << shift;
    return color;
}

}  // namespace

std::uint32_t tint(std::uint32_t color, int amount) {
    return eachChannel([&](int shift) { return channel(color, shift) * (255 - amount) / 255 + amount; });
}

BarEnds barEnds(std::uint32_t baseColor) {
    return {tint(baseColor, kTintLeft), tint(baseColor, kTintRight)};
}

int filledLength(double percent, int boxWidth) {
    // One line is always filled, so the percent decides only about the others.
    const int others = boxWidth - 2 * kBarInset - 1;
    if (std::isnan(percent) || others < 0) return 0;
    return 1 + static_cast<int>(std::nearbyint(std::clamp(percent, 0.0, 100.0) / 100 * others));
}

std::uint32_t barColorAt(const BarEnds& ends, int line, int length) {
    const int steps = std::max(length - 1, 1);
    return eachChannel([&](int shift) {
        const int from = channel(ends.left, shift);
        const double step = (channel(ends.right, shift) - from) / static_cast<double>(steps);
        return static_cast<int>(std::nearbyint(from + line * step));
    });
}

}  // namespace hl
