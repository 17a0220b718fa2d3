// Defines how a percent bar looks: its colours, and how far it is filled.
//
// A bar is a white box with an edge. Inside, a gradient of two light tints of the base colour runs from left
// to right, however short the filled part is; the text is centred over it. Colours are 0xRRGGBB; lengths are
// in pixels of the device, so that a bar is crisp at any scale. Pure functions, for any thread.
#pragma once

#include <cstdint>

namespace hl {

/// The base colours of a two-sided bar, for a number above 0 and below it.
inline constexpr std::uint32_t kAboveColor = 0xC0392B, kBelowColor = 0x2E8B57;

/// The distance between the box and the filled part, on all four sides.
inline constexpr int kBarInset = 2;

/// Returns a lighter colour: `amount` 0 gives the colour itself, 255 white. REQUIRES: 0 <= amount <= 255.
std::uint32_t tint(std::uint32_t color, int amount);

struct BarEnds {
    std::uint32_t left;
    std::uint32_t right;
};
BarEnds barEnds(std::uint32_t baseColor);

/// Returns how many lines, one pixel wide, are filled, from kBarInset right of the box's left side on: one
/// even at 0 %, all between the insets at 100 %. Percents outside of that range count as its ends. The result
/// is 0 for NaN and for a box too narrow for its edges.
int filledLength(double percent, int boxWidth);

/// Returns the colour of line `line` of `length`, counted from 0. REQUIRES: 0 <= line < length.
std::uint32_t barColorAt(const BarEnds& ends, int line, int length);

}  // namespace hl
