#include "views/map_layout.h"

#include <algorithm>
#include <cmath>

namespace hl {

namespace {

// Exact edges. All that share an edge have the same number for it, so that rounding leaves no gaps.
struct Area {
    double left = 0, top = 0, right = 0, bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    double shortSide() const { return std::min(width(), height()); }
};

// Rounding an edge moves it by half a pixel at most, so a side never loses more than its fraction.
bool isLargeEnough(double width, double height) {
    return std::floor(width) * std::floor(height) >= kLeastTileArea;
}

std::uint16_t pixel(double edge) {
    return static_cast<std::uint16_t>(std::lround(edge));
}

class MapLayout {
  public:
    MapLayout(const MapSource& source, std::vector<MapTile>& tiles) : source_(source), tiles_(tiles) {}

    void place(const MapPart& part, const Area& area, int depth);

  private:
    struct Strip {
        std::size_t end = 0;  ///< The index behind its last part.
        double size = 0;
    };

    void placeParts(const MapPart& folder, const Area& area, int depth);
    std::size_t keepLarge(std::size_t begin, double pixelsPerSize, double& rest);
    Strip nextStrip(std::size_t begin, std::size_t end, double side, double pixelsPerSize) const;
    void placeStrip(std::size_t begin, const Strip& strip, const Area& area, bool isColumn, int depth);

    const MapSource& source_;
    std::vector<MapTile>& tiles_;
    std::vector<MapPart> parts_;  ///< Of all folders that are being laid out; the deepest folder's last.
};

void MapLayout::place(const MapPart& part, const Area& area, int depth) {
    const std::size_t index = tiles_.size();
    tiles_.push_back({.row = part.row,
                      .file = part.file,
                      .left = pixel(area.left),
                      .top = pixel(area.top),
                      .right = pixel(area.right),
                      .bottom = pixel(area.bottom),
                      .depth = static_cast<std::uint16_t>(depth)});
    if (part.file == kMapFolder && depth < kDeepestTile) placeParts(part, area, depth + 1);
    tiles_[index].next = static_cast<std::uint32_t>(tiles_.size());
}

// Cuts strips off the area, each along its shorter side. What remains when no further part can be shown is
// the rest; if even that is too small, the last strip takes it.
void MapLayout::placeParts(const MapPart& folder, const Area& area, int depth) {
    const std::size_t begin = parts_.size();
    source_.partsOf(folder.row, kLeastTileArea * folder.size / (area.width() * area.height()), parts_);
    double sum = 0;
    for (std::size_t i = begin; i < parts_.size(); ++i) sum += std::max(parts_[i].size, 0.0);
    const double pixelsPerSize = sum > 0 ? area.width() * area.height() / sum : 0;
    double rest = 0;
    const std::size_t end = keepLarge(begin, pixelsPerSize, rest);
    Area free = area;
    std::size_t at = begin;
    bool isCovered = false;
    while (at < end && !isCovered) {
        const double side = free.shortSide();
        const Strip strip = nextStrip(at, end, side, pixelsPerSize);
        const double thickness = strip.size * pixelsPerSize / side;
        if (!isLargeEnough(thickness, parts_[strip.end - 1].size / strip.size * side)) break;
        const bool isColumn = free.width() >= free.height();
        Area taken = free;
        double& cut = isColumn ? taken.right : taken.bottom;
        double& freeFrom = isColumn ? free.left : free.top;
        freeFrom = cut = freeFrom + thickness;
        isCovered = (strip.end == end && rest <= 0) || !isLargeEnough(free.width(), free.height());
        if (isCovered) cut = isColumn ? free.right : free.bottom;
        placeStrip(at, strip, taken, isColumn, depth);
        at = strip.end;
    }
    // A folder of which no part is seen is a tile without parts.
    if (at > begin && !isCovered) {
        for (std::size_t i = at; i < end; ++i) rest += parts_[i].size;
        place({folder.row, kMapRest, rest}, free, depth);
    }
    parts_.resize(begin);
}

// Sorts the parts that can have a tile, largest first, and returns the index behind them. The others add to
// `rest`.
std::size_t MapLayout::keepLarge(std::size_t begin, double pixelsPerSize, double& rest) {
    const auto first = parts_.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto end = std::partition(first, parts_.end(), [&](const MapPart& part) {
        return part.file != kMapRest && part.size * pixelsPerSize >= kLeastTileArea;
    });
    for (auto part = end; part != parts_.end(); ++part) rest += std::max(part->size, 0.0);
    std::sort(first, end, [](const MapPart& a, const MapPart& b) {
        if (a.size != b.size) return a.size > b.size;
        return a.row != b.row ? a.row < b.row : a.file < b.file;
    });
    return static_cast<std::size_t>(end - parts_.begin());
}

// A strip takes parts as long as its worst tile becomes no worse, the longer side over the shorter one.
MapLayout::Strip MapLayout::nextStrip(std::size_t begin, std::size_t end, double side,
                                      double pixelsPerSize) const {
    const double perSide = side * side / pixelsPerSize;
    const auto worst = [&](double sum, double largest, double smallest) {
        return std::max(perSide * largest / (sum * sum), sum * sum / (perSide * smallest));
    };
    const double largest = parts_[begin].size;
    Strip strip{begin + 1, largest};
    double ratio = worst(largest, largest, largest);
    while (strip.end < end) {
        const double next = parts_[strip.end].size;
        const double nextRatio = worst(strip.size + next, largest, next);
        if (nextRatio > ratio) break;
        ratio = nextRatio;
        strip.size += next;
        ++strip.end;
    }
    return strip;
}

void MapLayout::placeStrip(std::size_t begin, const Strip& strip, const Area& area, bool isColumn,
                           int depth) {
    const double start = isColumn ? area.top : area.left;
    const double length = isColumn ? area.height() : area.width();
    double sum = 0;
    Area tile = area;
    for (std::size_t i = begin; i < strip.end; ++i) {
        const MapPart part = parts_[i];  // A copy: the parts of what lies below make the list longer.
        sum += part.size;
        const double edge = i + 1 == strip.end ? start + length : start + sum / strip.size * length;
        (isColumn ? tile.bottom : tile.right) = edge;
        place(part, tile, depth);
        (isColumn ? tile.top : tile.left) = edge;
    }
}

}  // namespace

std::vector<MapTile> layOutMap(const MapSource& source, const MapPart& whole, int width, int height) {
    std::vector<MapTile> tiles;
    if (width > 0 && height > 0)
        MapLayout(source, tiles)
            .place(whole, {0, 0, static_cast<double>(width), static_cast<double>(height)}, 0);
    return tiles;
}

std::size_t tileAt(const std::vector<MapTile>& tiles, int x, int y, int deepest) {
    std::size_t found = tiles.size(), end = tiles.size();
    for (std::size_t i = 0; i < end;) {
        if (!tiles[i].holds(x, y) || tiles[i].depth > deepest) {
            i = tiles[i].next;
            continue;
        }
        found = i;
        end = tiles[i++].next;
    }
    return found;
}

}  // namespace hl
