// The colours of the map: what they stand for, which one a tile has, and the legend. All colours of one
// choice can be told apart by people who see fewer of them. For the thread of the logic only.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/map_pane.h"
#include "views/map_report.h"

namespace hl {

/// What colours stand for. The numbers are those of the option MapColour. Changes are shown while a source is
/// compared with an earlier scan; else kinds are, if they are chosen.
enum class MapColouring : std::uint8_t { kKind, kAge, kOwner, kDepth, kChange };

/// Returns all colours of a choice, as 0xRRGGBB, in the order of MapTile::colour. The first one, which is
/// grey, stands for what is none of the others, but for depths.
std::span<const std::uint32_t> mapPalette(MapColouring by);
/// Returns the colour for a dark desktop.
std::uint32_t darkened(std::uint32_t colour);

class MapColours {
  public:
    /// The arguments must outlive it.
    MapColours(ScanContext& scan, const MapReport& report) : scan_(scan), report_(report) {}

    /// Sets the colours of the tiles without parts, and remembers what is seen for the legend.
    void colour(std::vector<MapTile>& tiles, bool isDark);
    /// Returns the colours as they are painted.
    std::span<const std::uint32_t> palette() const { return palette_; }
    /// Returns the colours that are seen, with what they stand for: those of most pixels first, but ages and
    /// depths in their order.
    std::vector<MapLegend> legend() const;

  private:
    MapColouring chosen() const;
    void chooseOwners();
    std::uint16_t colourOf(const MapTile& tile) const;
    static std::uint16_t colourOfChange(const MapChange& change);
    std::uint16_t colourOfGroup(std::uint32_t group) const;
    std::uint16_t colourOfFile(const MapTile& tile, const LargestFile& file) const;
    std::string textOf(std::size_t colour) const;

    ScanContext& scan_;
    const MapReport& report_;
    MapColouring by_ =
        MapColouring::kKind;  ///< As the tiles were coloured last; another may be chosen since.
    std::vector<std::uint32_t> palette_;
    std::vector<std::uint64_t> pixels_;  ///< By colour.
    std::vector<std::uint32_t> owners_;  ///< Those that have a colour, by it.
};

}  // namespace hl
