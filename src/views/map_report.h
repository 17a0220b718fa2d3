// The report as the map shows it: its folders, and the largest files, which the window keeps. For the thread
// of the logic only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scan/scan_context.h"
#include "views/map_layout.h"

namespace hl {

/// What a folder's kMapRest stands for.
struct MapRest {
    std::int64_t files = 0, folders = 0;
    double size = 0;
};

/// What has changed in a folder since the earlier scan, in bytes.
struct MapChange {
    double before = 0, bytes = 0;
};

class MapReport final : public MapSource {
  public:
    /// `scan` must outlive it.
    explicit MapReport(ScanContext& scan) : scan_(scan), grid_(scan.tvwPL) {}

    // MapSource
    void partsOf(Row folder, double least, std::vector<MapPart>& parts) const override;

    /// Returns the tile of the whole map that shows this folder; kNoRow stands for all sources.
    MapPart whole(Row top) const;
    bool isFolder(Row row) const;
    /// Returns what counts for the row, in bytes.
    double sizeOf(Row row) const;
    std::string pathOf(Row row) const;

    /// Returns the tile's file; null if the tile is none, or its file is no longer known.
    const LargestFile* fileOf(const MapTile& tile) const;
    double sizeOf(const LargestFile& file) const;
    /// Returns the last name of the tile's folder or file.
    std::string_view nameOf(const MapTile& tile) const;
    /// Returns what the rest of a folder holds; `folder` is the index of the folder's tile.
    MapRest restOf(const std::vector<MapTile>& tiles, std::size_t folder) const;
    // --- groups
    /// Returns the group of most bytes among the files that a tile without parts stands for: a FileKind, a
    /// class of age, or a uid. Returns nothing if it is not known.
    std::optional<std::uint32_t> largestGroup(const MapTile& tile, FileGroups by) const;
    /// Returns what each owner has in a source, as far as it is known.
    std::vector<OwnerSums> ownersOf(Row root) const;
    /// Returns the time against which the ages of the tile's files count, in seconds since 1970.
    std::int64_t startOf(const MapTile& tile) const;

    /// Tells whether a source is compared with an earlier scan.
    bool showsChanges() const;
    /// Returns what has changed in the folder of a tile without parts.
    MapChange changeOf(const MapTile& tile) const;

    /// Tells whether the largest files of a source are no longer the largest ones for sure.
    bool isThin() const;

  private:
    LargestFiles* largestOf(Row row) const;

    ScanContext& scan_;
    const Grid& grid_;
};

}  // namespace hl
