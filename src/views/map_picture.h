// Paints the tiles of a map as cushions: each folder and file bulges a little, so that the tree is seen in
// the light on its tiles. Plain arithmetic on pixels in memory; for any thread.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/map_pane.h"
#include "views/map_layout.h"

namespace hl {

/// Paints the tiles without parts. `colours` is indexed by MapTile::colour, as 0xRRGGBB.
/// REQUIRES: the tiles were laid out for a map of the pixels' size.
void paintMap(const std::vector<MapTile>& tiles, std::span<const std::uint32_t> colours,
              const MapPixels& pixels);

}  // namespace hl
