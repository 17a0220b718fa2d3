// The panes of the main window. Each has a grid and a bar above it; the main bar belongs to all.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hl {

/// The grids, in the order in which the window is locked and fonts are stored.
enum class GridId : std::uint8_t {
    kReport,
    kDrives,
    kFiles,
    kTop,
    kHardlinks,
    kJunctions,
    kFind,
    kStatistics
};
/// The main bar comes first, then the bars in the order of their grids.
enum class BarId : std::uint8_t {
    kMain,
    kReport,
    kDrives,
    kFiles,
    kTop,
    kHardlinks,
    kJunctions,
    kFind,
    kStatistics
};

constexpr std::size_t kBarCount = static_cast<std::size_t>(BarId::kStatistics) + 1;
constexpr std::size_t kGridCount = kBarCount - 1;

/// Returns the grid below a bar. REQUIRES: `bar` is not kMain.
constexpr GridId gridOf(BarId bar) {
    return static_cast<GridId>(static_cast<int>(bar) - 1);
}
/// Returns the bar above a grid.
constexpr BarId barOf(GridId grid) {
    return static_cast<BarId>(static_cast<int>(grid) + 1);
}

/// Tells whether the rows of a grid have rows below them.
constexpr bool hasHierarchy(GridId grid) {
    return grid == GridId::kReport || grid == GridId::kStatistics;
}

}  // namespace hl
