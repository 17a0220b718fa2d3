#include "views/map_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include "support/always.h"

namespace hl::test {

namespace {

/// A made tree; row 0 is the whole map.
class MadeTree final : public MapSource {
  public:
    MadeTree(std::mt19937_64& random, int folders)
        : parts_(static_cast<std::size_t>(folders)), sizes_(parts_.size()) {
        std::lognormal_distribution<double> size(10, 3);
        for (Row row = 0; row < parts_.size(); ++row) {
            const auto files = random() % 12;
            for (std::uint64_t file = 0; file < files; ++file)
                add(row, static_cast<std::int32_t>(file), random() % 20 == 0 ? 0 : std::floor(size(random)));
            if (random() % 2 == 0) add(row, kMapRest, std::floor(size(random)));
        }
        for (Row row = static_cast<Row>(parts_.size()) - 1; row > 0; --row)
            add(static_cast<Row>(random() % row), kMapFolder, sizes_[row], row);
    }

    MapPart whole() const { return {0, kMapFolder, sizes_[0]}; }
    double sizeOf(Row row, std::int32_t file) const {
        if (file == kMapFolder) return sizes_[row];
        for (const MapPart& part : parts_[row])
            if (part.file == file) return part.size;
        return 0;
    }
    void partsOf(Row folder, double /*least*/, std::vector<MapPart>& parts) const override {
        parts.insert(parts.end(), parts_[folder].begin(), parts_[folder].end());
    }

  private:
    void add(Row to, std::int32_t file, double size, Row row = kNoRow) {
        parts_[to].push_back({row == kNoRow ? to : row, file, size});
        sizes_[to] += size;
    }

    std::vector<std::vector<MapPart>> parts_;
    std::vector<double> sizes_;
};

int areaOf(const MapTile& tile) {
    return (tile.right - tile.left) * (tile.bottom - tile.top);
}

/// Paints the tiles without parts and finds holes and overlaps; returns the number of pixels that are not
/// painted exactly once.
int wronglyCovered(const std::vector<MapTile>& tiles, int width, int height) {
    std::vector<int> times(static_cast<std::size_t>(width * height));
    for (std::size_t i = 0; i < tiles.size(); ++i)
        if (tiles[i].next == i + 1)
            for (int y = tiles[i].top; y < tiles[i].bottom; ++y)
                for (int x = tiles[i].left; x < tiles[i].right; ++x)
                    ++times[static_cast<std::size_t>(y * width + x)];
    return static_cast<int>(std::ranges::count_if(times, [](int each) { return each != 1; }));
}

}  // namespace

TEST(MapLayout, TilesCoverTheMapOnceAndAreProportionalAndLargeEnoughToBeSeen) {
    const std::uint64_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    for (int round = 0; round < 60; ++round) {
        const MadeTree tree(random, 1 + static_cast<int>(random() % 300));
        if (tree.whole().size <= 0) continue;
        const int width = 1 + static_cast<int>(random() % 900), height = 1 + static_cast<int>(random() % 700);
        const auto tiles = layOutMap(tree, tree.whole(), width, height);
        ASSERT_EQ(wronglyCovered(tiles, width, height), 0) << width << " x " << height;
        std::array<MapTile, kDeepestTile + 2> above{tiles.front()};  // By depth.
        for (std::size_t i = 1; i < tiles.size(); ++i) {
            const MapTile& tile = tiles[i];
            above[tile.depth] = tile;
            EXPECT_GE(areaOf(tile), kLeastTileArea);
            if (tile.file == kMapRest) continue;
            // Its share of the tile that it lies in, whose own sides are rounded, too.
            const MapTile& folder = above[tile.depth - 1U];
            const double exact =
                tree.sizeOf(tile.row, tile.file) / tree.sizeOf(folder.row, kMapFolder) * areaOf(folder);
            const double sides = tile.right - tile.left + tile.bottom - tile.top;
            EXPECT_NEAR(areaOf(tile), exact, sides + 2 * kLeastTileArea) << i;
        }
    }
}

TEST(MapLayout, TheDeepestTileIsUnderThePoint) {
    std::mt19937_64 random(7);
    const MadeTree tree(random, 200);
    const auto tiles = layOutMap(tree, tree.whole(), 300, 200);
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 300; ++x) {
            const std::size_t found = tileAt(tiles, x, y);
            ASSERT_LT(found, tiles.size());
            EXPECT_TRUE(tiles[found].holds(x, y) && tiles[found].next == found + 1);
        }
    EXPECT_EQ(tileAt(tiles, 300, 0), tiles.size());
    EXPECT_TRUE(layOutMap(tree, tree.whole(), 0, 50).empty());
}

}  // namespace hl::test
