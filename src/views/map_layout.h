// Lays a tree of folders and files out as a map: each thing is a tile, each folder's tile is covered by the
// tiles of its parts, and areas are proportional to sizes. Tiles are as square as can be ("squarified").
// Plain arithmetic: it knows neither the report nor a toolkit. For any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "grid/row_tree.h"

namespace hl {

/// Values of MapPart::file that stand for no file.
inline constexpr std::int32_t kMapFolder = -1;
inline constexpr std::int32_t kMapRest = -2;  ///< What is in the folder and has no tile of its own.

struct MapPart {
    Row row = kNoRow;                ///< The folder's row, or that of the folder that holds the file.
    std::int32_t file = kMapFolder;  ///< A number that the source gives to a file, or one of the two above.
    double size = 0;
};

/// Tells what a folder consists of.
class MapSource {
  public:
    virtual ~MapSource() = default;
    /// Appends the folder's parts, in any order, with at most one kMapRest. Those that are smaller than
    /// `least` have no tile, so they may be part of it. A part of size 0 is left out of the map.
    virtual void partsOf(Row folder, double least, std::vector<MapPart>& parts) const = 0;
};

struct MapTile {
    Row row = kNoRow;
    std::int32_t file = kMapFolder;
    std::uint16_t left = 0, top = 0, right = 0, bottom = 0;  ///< In pixels; right and bottom lie outside.
    std::uint16_t depth = 0;                                 ///< 0 for the tile of the whole map.
    std::uint16_t colour = 0;  ///< For whoever paints; the layout leaves it at 0.
    std::uint32_t next = 0;    ///< The index behind the tiles that lie in this one.

    bool holds(int x, int y) const { return left <= x && x < right && top <= y && y < bottom; }
};

// There is one for each thing that is seen: some 100,000 on a large screen.
static_assert(sizeof(MapTile) == 24);

/// The smallest tile, in square pixels. What would be smaller is part of its folder's kMapRest.
inline constexpr int kLeastTileArea = 9;
/// Folders that lie deeper than this below the whole map are tiles without parts.
inline constexpr int kDeepestTile = 255;
inline constexpr int kLargestMapSide = std::numeric_limits<std::uint16_t>::max();

/// Returns the tiles in preorder: each folder's before those of its parts. They cover the map, and those of a
/// folder cover it unless it has no tile of a part; none overlap. The sides of a tile differ from its exact
/// share of its folder's tile by at most a pixel, or by what a neighbour takes that is too small to be shown.
/// The result is empty if the map has no pixel. REQUIRES: the sides are at most kLargestMapSide.
std::vector<MapTile> layOutMap(const MapSource& source, const MapPart& whole, int width, int height);

/// Returns the index of the deepest tile there, but of none deeper than `deepest`; the number of tiles if
/// there is none.
std::size_t tileAt(const std::vector<MapTile>& tiles, int x, int y, int deepest = kDeepestTile + 1);

}  // namespace hl
