// Palettes; the colour of a tile; the legend.
#include "views/map_colours.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "views/group_texts.h"

namespace hl {

namespace {

constexpr std::uint32_t kGrey = 0xbdbdbd;

// Kinds that are much alike share a colour. These are known to be told apart with any kind of colour
// blindness; a test computes how far apart they are then.
constexpr std::uint32_t kCategories[] = {kGrey,    0xf0e442, 0xd55e00, 0xcc79a7, 0x0072b2,
                                         0xe69f00, 0x56b4e9, 0x009e73, 0x4d4d4d};
// The same, in another order: most maps have one owner.
constexpr std::uint32_t kOwnerColours[] = {kGrey,    0x56b4e9, 0xe69f00, 0x009e73,
                                           0xcc79a7, 0x0072b2, 0xd55e00, 0xf0e442};
// Grey, then from the newest to the oldest, each darker than the one before, then the future.
constexpr std::uint32_t kAges[] = {kGrey,    0xfde725, 0xa0da39, 0x4ac16d, 0x1fa187,
                                   0x277f8e, 0x365c8d, 0x46327e, 0x440154, 0xd55e00};
// From the outermost folder to the deepest, each lighter than the one before. Deeper ones begin anew.
constexpr std::uint32_t kDepths[] = {0x46327e, 0x365c8d, 0x277f8e, 0x1fa187,
                                     0x4ac16d, 0x73d056, 0xa0da39, 0xfde725};

// Grey for what has not changed, then from what shrank most to what grew most, then what is new.
constexpr std::uint32_t kChanges[] = {kGrey,    0x053061, 0x2b7bba, 0x9ac9e0,
                                      0xf9c29c, 0xe0703e, 0x8c1a28, 0xf0e442};
constexpr double kMuchChanged = 0.5, kChanged = 0.1;  // Shares of what it took then.

constexpr std::uint8_t kPictures = 1, kFilms = 2, kSounds = 3, kDocuments = 4, kArchives = 5, kPrograms = 6,
                       kSources = 7, kCaches = 8, kOthers = 0;
// In the order of FileKind.
constexpr std::uint8_t kColourOfKind[kFileKinds] = {
    kPictures, kFilms,     kSounds,   kDocuments, kDocuments, kDocuments, kDocuments,
    kArchives, kArchives,  kArchives, kPrograms,  kPrograms,  kSources,   kSources,
    kSources,  kDocuments, kOthers,   kCaches,    kCaches,    kOthers,
};
// By colour.
constexpr RowText kCategoryTexts[] = {
    kKindTexts[static_cast<std::size_t>(FileKind::kOther)],
    kKindTexts[static_cast<std::size_t>(FileKind::kPicture)],
    kKindTexts[static_cast<std::size_t>(FileKind::kFilm)],
    kKindTexts[static_cast<std::size_t>(FileKind::kSound)],
    kKindTexts[static_cast<std::size_t>(FileKind::kDocument)],
    kKindTexts[static_cast<std::size_t>(FileKind::kArchive)],
    kKindTexts[static_cast<std::size_t>(FileKind::kProgram)],
    TL(9416, "Quelltexte, Daten"),
    TL(9417, "Sicherungen, Cache"),
};
static_assert(std::size(kCategoryTexts) == std::size(kCategories));
// By colour.
constexpr RowText kChangeTexts[] = {
    TL(9093, "unverändert"),
    TL(9094, "um die Hälfte kleiner"),
    TL(9095, "um ein Zehntel kleiner"),
    TL(9096, "etwas kleiner"),
    TL(9097, "etwas größer"),
    TL(9098, "um ein Zehntel größer"),
    TL(9099, "um die Hälfte größer"),
    TL(9117, "neu"),
};
static_assert(std::size(kChangeTexts) == std::size(kChanges));

FileGroups groupsOf(MapColouring by) {
    if (by == MapColouring::kAge) return FileGroups::kAge;
    return by == MapColouring::kOwner ? FileGroups::kOwner : FileGroups::kKind;
}

}  // namespace

// --- palettes

std::span<const std::uint32_t> mapPalette(MapColouring by) {
    if (by == MapColouring::kAge) return kAges;
    if (by == MapColouring::kDepth) return kDepths;
    if (by == MapColouring::kChange) return kChanges;
    if (by == MapColouring::kOwner) return kOwnerColours;
    return kCategories;
}

std::uint32_t darkened(std::uint32_t colour) {
    constexpr std::uint32_t kPercent = 85;
    std::uint32_t dark = 0;
    for (const int shift : {16, 8, 0}) dark |= ((colour >> shift & 0xff) * kPercent / 100) << shift;
    return dark;
}

MapColouring MapColours::chosen() const {
    const Flag option = scan_.options.MapColour;
    const auto last = report_.showsChanges() ? MapColouring::kChange : MapColouring::kDepth;
    return option > static_cast<Flag>(last) ? MapColouring::kKind : static_cast<MapColouring>(option);
}

// --- the colour of a tile

void MapColours::colour(std::vector<MapTile>& tiles, bool isDark) {
    by_ = chosen();
    const auto colours = mapPalette(by_);
    palette_.assign(colours.begin(), colours.end());
    if (isDark) std::ranges::transform(palette_, palette_.begin(), darkened);
    pixels_.assign(palette_.size(), 0);
    if (by_ == MapColouring::kOwner) chooseOwners();
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        MapTile& tile = tiles[i];
        if (tile.next != i + 1) continue;
        tile.colour = colourOf(tile);
        pixels_[tile.colour] += static_cast<std::uint64_t>(tile.right - tile.left) *
                                static_cast<std::uint64_t>(tile.bottom - tile.top);
    }
}

// The owners of most bytes in all sources have a colour each, the largest one the first.
void MapColours::chooseOwners() {
    std::vector<OwnerSums> all;
    const Grid& grid = scan_.tvwPL;
    for (Row row = grid.firstRoot(); row != kNoRow; row = grid.nextSibling(row))
        for (const OwnerSums& each : report_.ownersOf(row)) {
            const auto found = std::ranges::find(all, each.owner, &OwnerSums::owner);
            found != all.end() ? found->sums.add(each.sums) : all.push_back(each);
        }
    std::ranges::stable_sort(all, std::ranges::greater(),
                             [](const OwnerSums& each) { return each.sums.bytes; });
    owners_.clear();
    for (const OwnerSums& each : all)
        if (owners_.size() + 1 < std::size(kOwnerColours)) owners_.push_back(each.owner);
}

std::uint16_t MapColours::colourOf(const MapTile& tile) const {
    if (by_ == MapColouring::kDepth) return static_cast<std::uint16_t>(tile.depth % palette_.size());
    if (tile.row == kNoRow) return 0;
    if (by_ == MapColouring::kChange) return colourOfChange(report_.changeOf(tile));
    if (const LargestFile* file = report_.fileOf(tile)) return colourOfFile(tile, *file);
    const auto group = report_.largestGroup(tile, groupsOf(by_));
    return group ? colourOfGroup(*group) : 0;
}

// Classes 1 to 3 shrank, 4 to 6 grew.
std::uint16_t MapColours::colourOfChange(const MapChange& change) {
    constexpr std::uint16_t kNew = 7;
    if (change.bytes == 0) return 0;
    if (change.before <= 0) return kNew;
    const double share = std::abs(change.bytes) / change.before;
    const std::uint16_t much = share >= kMuchChanged ? 3 : share >= kChanged ? 2 : 1;
    return change.bytes < 0 ? static_cast<std::uint16_t>(4 - much) : static_cast<std::uint16_t>(3 + much);
}

std::uint16_t MapColours::colourOfFile(const MapTile& tile, const LargestFile& file) const {
    if (by_ == MapColouring::kKind) {
        const FileKind kind = kindOfEnding(Ending(report_.nameOf(tile)).text());
        return colourOfGroup(static_cast<std::uint32_t>(kind));
    }
    if (by_ == MapColouring::kOwner) return colourOfGroup(file.owner);
    return colourOfGroup(ageClassOf(report_.startOf(tile) - file.written));
}

std::uint16_t MapColours::colourOfGroup(std::uint32_t group) const {
    if (by_ == MapColouring::kKind) return kColourOfKind[group];
    if (by_ == MapColouring::kAge) return static_cast<std::uint16_t>(group + 1);
    const auto found = std::ranges::find(owners_, group);
    return found != owners_.end() ? static_cast<std::uint16_t>(found - owners_.begin() + 1)
                                  : std::uint16_t{0};
}

// --- the legend

std::string MapColours::textOf(std::size_t colour) const {
    const Texts& texts = scan_.texts;
    const auto text = [&](const RowText& row) { return texts.TL(row.id, row.german); };
    if (by_ == MapColouring::kDepth) return texts.TL(9418, "Ebene %1", {static_cast<int>(colour) + 1});
    if (by_ == MapColouring::kChange) return text(kChangeTexts[colour]);
    if (by_ == MapColouring::kKind) return text(kCategoryTexts[colour]);
    if (colour == 0) return text(kKindTexts[kFileKinds - 1]);
    if (by_ == MapColouring::kAge) return text(kAgeTexts[colour - 1]);
    const std::uint32_t owner = owners_[colour - 1];
    return scan_.owners != nullptr ? scan_.owners->nameOf(owner) : "#" + std::to_string(owner);
}

std::vector<MapLegend> MapColours::legend() const {
    std::vector<std::size_t> order(palette_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const bool byPixels = by_ == MapColouring::kKind || by_ == MapColouring::kOwner;
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
        if (byPixels) return pixels_[a] > pixels_[b];
        const bool restLast = by_ == MapColouring::kAge && (a == 0 || b == 0);
        return restLast ? b == 0 && a != 0 : a < b;
    });
    std::vector<MapLegend> entries;
    for (const std::size_t colour : order)
        if (pixels_[colour] > 0) entries.push_back({palette_[colour], textOf(colour)});
    return entries;
}

}  // namespace hl
