// The panes of the main window. Each has a grid and a bar above it, but the map, whose bar goes with the
// report's grid; the main bar belongs to all.
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
    kStatistics,
    kChanges
};
/// The main bar comes first, then the bars in the order of their grids, then the map's.
enum class BarId : std::uint8_t {
    kMain,
    kReport,
    kDrives,
    kFiles,
    kTop,
    kHardlinks,
    kJunctions,
    kFind,
    kStatistics,
    kChanges,
    kMap
};

constexpr std::size_t kGridCount = static_cast<std::size_t>(GridId::kChanges) + 1;
constexpr std::size_t kBarCount = kGridCount + 2;

/// Returns the grid that a bar works on. REQUIRES: `bar` is not kMain.
constexpr GridId gridOf(BarId bar) {
    return bar == BarId::kMap ? GridId::kReport : static_cast<GridId>(static_cast<int>(bar) - 1);
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
