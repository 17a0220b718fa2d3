// A map as an SVG drawing, for saving and for paper. Plain text; for any thread.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/map_pane.h"
#include "views/map_layout.h"

namespace hl {

struct MapDrawing {
    std::span<const MapTile> tiles;
    std::span<const std::uint32_t> colours;  ///< By MapTile::colour, as 0xRRGGBB.
    const MapOverlay& overlay;               ///< Its frame is not drawn.
    int width = 0, height = 0;               ///< Of the tiles.
    int lineHeight = 0;                      ///< Of names; the legend is as high below the tiles.
};

/// Returns the drawing in UTF-8. A unit of it is a pixel of the layout.
std::string svgOf(const MapDrawing& drawing);

}  // namespace hl
