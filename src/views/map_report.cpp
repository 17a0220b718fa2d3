#include "views/map_report.h"

#include <algorithm>

#include "scan/records.h"
#include "scan/rollup.h"
#include "views/report_columns.h"

namespace hl {

// --- tiles

MapPart MapReport::whole(Row top) const {
    if (top != kNoRow) return {top, kMapFolder, sizeOf(top)};
    MapPart all;
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row)) all.size += sizeOf(row);
    return all;
}

// Whatever is in the folder and has no part of its own is the rest. During a scan a folder may hold more
// already than its row says.
void MapReport::partsOf(Row folder, double least, std::vector<MapPart>& parts) const {
    double own = folder == kNoRow ? 0 : sizeOf(folder), small = 0;
    const auto add = [&](const MapPart& part) {
        own -= part.size;
        if (part.size >= least) return parts.push_back(part);
        small += part.size;
    };
    for (Row row = folder == kNoRow ? grid_.firstRoot() : grid_.firstChild(folder); row != kNoRow;
         row = grid_.nextSibling(row))
        if (isFolder(row)) add({row, kMapFolder, sizeOf(row)});
    if (folder == kNoRow) return;
    LargestFiles* largest = own >= least || scan_.state.ScanActive ? largestOf(folder) : nullptr;
    if (largest != nullptr)
        for (auto [i, end] = largest->of(folder); i < end; ++i)
            add({folder, static_cast<std::int32_t>(i), sizeOf(largest->at(i))});
    const double rest = small + std::max(own, 0.0);
    if (rest > 0) parts.push_back({folder, kMapRest, rest});
}

bool MapReport::isFolder(Row row) const {
    return grid_.number(row, kIsFolder) != 0 || grid_.level(row) == 0;
}

double MapReport::sizeOf(Row row) const {
    return grid_.number(row, reckonedCell(scan_.options));
}

double MapReport::sizeOf(const LargestFile& file) const {
    return static_cast<double>(scan_.options.ReckonOnDisk != 0 ? file.blocks * kBlockBytes : file.size);
}

// --- files

LargestFiles* MapReport::largestOf(Row row) const {
    return scan_.largest != nullptr ? scan_.largest->of(grid_, row) : nullptr;
}

const LargestFile* MapReport::fileOf(const MapTile& tile) const {
    if (tile.file < 0 || tile.row == kNoRow || !grid_.tree().exists(tile.row)) return nullptr;
    const LargestFiles* largest = largestOf(tile.row);
    const auto index = static_cast<std::size_t>(tile.file);
    if (largest == nullptr || index >= largest->count()) return nullptr;
    const LargestFile& file = largest->at(index);
    return file.folder == tile.row ? &file : nullptr;
}

std::string_view MapReport::nameOf(const MapTile& tile) const {
    if (tile.row == kNoRow || !grid_.tree().exists(tile.row)) return {};
    if (tile.file == kMapFolder) return grid_.text(tile.row);
    const LargestFile* file = fileOf(tile);
    return file != nullptr ? largestOf(tile.row)->nameOf(*file) : std::string_view();
}

MapRest MapReport::restOf(const std::vector<MapTile>& tiles, std::size_t folder) const {
    const Row row = tiles[folder].row;
    MapRest rest{.files = static_cast<std::int64_t>(grid_.number(row, kFiles)), .size = sizeOf(row)};
    for (Row child = grid_.firstChild(row); child != kNoRow; child = grid_.nextSibling(child)) {
        if (!isFolder(child)) continue;
        rest.files -= static_cast<std::int64_t>(grid_.number(child, kFiles));
        if (sizeOf(child) > 0) ++rest.folders;
    }
    for (std::size_t i = folder + 1; i < tiles[folder].next; i = tiles[i].next) {
        const LargestFile* file = fileOf(tiles[i]);
        if (tiles[i].file == kMapFolder) --rest.folders, rest.size -= sizeOf(tiles[i].row);
        if (file != nullptr) --rest.files, rest.size -= sizeOf(*file);
    }
    return rest;
}

// --- groups

std::optional<std::uint32_t> MapReport::largestGroup(const MapTile& tile, FileGroups by) const {
    if (scan_.statistics == nullptr || !grid_.tree().exists(tile.row)) return std::nullopt;
    return scan_.statistics->largestGroup(
        grid_, tile.row,
        {.by = by, .onlyOwn = tile.file == kMapRest, .onDisk = scan_.options.ReckonOnDisk != 0},
        scan_.state.ScanActive);
}

// Without statistics the files that are kept tell. While a source is read again they do, too.
std::vector<OwnerSums> MapReport::ownersOf(Row root) const {
    if (scan_.statistics != nullptr && !scan_.state.ScanActive)
        if (const auto sums = scan_.statistics->of(grid_, root)) return sums->owners;
    std::vector<OwnerSums> owners;
    const LargestFiles* largest = largestOf(root);
    for (std::size_t i = 0; largest != nullptr && i < largest->count(); ++i) {
        const LargestFile& file = largest->at(i);
        auto found = std::ranges::find(owners, file.owner, &OwnerSums::owner);
        if (found == owners.end()) found = owners.insert(found, {file.owner, {}});
        found->sums.add({1, file.size, file.blocks});
    }
    return owners;
}

std::int64_t MapReport::startOf(const MapTile& tile) const {
    const LargestFiles* largest = largestOf(tile.row);
    return largest != nullptr ? largest->started() : 0;
}

bool MapReport::showsChanges() const {
    const auto& columns = grid_.columns();
    return columns.size() > kReportChange && columns[kReportChange].visible;
}

// A file stands for the files of its folder, whose changes alone are known.
MapChange MapReport::changeOf(const MapTile& tile) const {
    Row row = tile.row;
    if (tile.file != kMapFolder)
        if (const Row files = filesRowBelow(grid_, row); files != kNoRow) row = files;
    return {grid_.number(row, kBefore), grid_.number(row, kChange)};
}

bool MapReport::isThin() const {
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row))
        if (const LargestFiles* largest = largestOf(row); largest != nullptr && largest->isThin())
            return true;
    return false;
}

std::string MapReport::pathOf(Row row) const {
    return Report_GetFullpathOfNode(grid_, row, false, scan_.paths);
}

}  // namespace hl
