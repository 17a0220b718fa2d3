#include "views/map_view.h"

#include <algorithm>
#include <array>

#include "base/number_format.h"
#include "base/size_text.h"
#include "base/text.h"
#include "robustness/trap.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "views/map_picture.h"

namespace hl {

namespace {

// From the outermost folder to the deepest, 0xRRGGBB: each is lighter than the one before, so that they can
// be told apart without seeing colours. Deeper folders begin anew.
constexpr std::array<std::uint32_t, 8> kDepthColours = {0x46327e, 0x365c8d, 0x277f8e, 0x1fa187,
                                                        0x4ac16d, 0x73d056, 0xa0da39, 0xd8e219};
// A tile has a name if it is at least so many lines wide.
constexpr int kNameLines = 4, kHeadingLines = 8, kHeadingHeightLines = 4;

Rect placeOf(const MapTile& tile) {
    return {tile.left, tile.top, tile.right - tile.left, tile.bottom - tile.top};
}

bool meet(const Rect& a, const Rect& b) {
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

Point middleOf(const MapTile& tile) {
    return {(tile.left + tile.right) / 2, (tile.top + tile.bottom) / 2};
}

}  // namespace

void MapView::setPane(MapPane* pane) {
    if (pane_ != nullptr) pane_->setEvents(nullptr);
    pane_ = pane;
    if (pane_ != nullptr) pane_->setEvents(this);
}

void MapView::reportChanged() {
    if (pane_ != nullptr) pane_->refresh();
}

// --- the report as a source of tiles

bool MapView::isFolder(Row row) const {
    return grid_.number(row, kIsFolder) != 0 || grid_.level(row) == 0;
}

double MapView::sizeOf(Row row) const {
    return grid_.number(row, reckonedCell(scan_.options));
}

std::string MapView::pathOf(Row row) const {
    return Report_GetFullpathOfNode(grid_, row, false, scan_.paths);
}

void MapView::partsOf(Row folder, std::vector<MapPart>& parts) const {
    for (Row row = folder == kNoRow ? grid_.firstRoot() : grid_.firstChild(folder); row != kNoRow;
         row = grid_.nextSibling(row)) {
        const bool own = !isFolder(row);
        parts.push_back({own ? folder : row, own ? kMapRest : kMapFolder, sizeOf(row)});
    }
}

// A map of one source is that source.
Row MapView::topThere() const {
    if (top_ != kNoRow && grid_.tree().exists(top_) && pathOf(top_) == topPath_) return top_;
    const Row first = grid_.firstRoot();
    return first != kNoRow && grid_.nextSibling(first) == kNoRow ? first : kNoRow;
}

Row MapView::aboveTop() const {
    const Row top = topThere();
    return top == kNoRow ? kNoRow : grid_.parent(top);
}

void MapView::setTop(Row row) {
    top_ = row;
    topPath_ = row == kNoRow ? std::string() : pathOf(row);
    reportChanged();
}

// --- painting

void MapView::paint(const MapPixels& pixels, const MapLooks& looks) {
    guarded(scan_.diagnostics, {.routine = "map_paint"}, [&] {
        lineHeight_ = looks.lineHeight;
        const Row top = topThere();
        MapPart whole{top, kMapFolder, top == kNoRow ? 0 : sizeOf(top)};
        for (Row row = grid_.firstRoot(); top == kNoRow && row != kNoRow; row = grid_.nextSibling(row))
            whole.size += sizeOf(row);
        whole_ = whole.size;
        tiles_.clear();
        if (whole.size > 0)
            tiles_ = layOutMap(*this, whole, std::min(pixels.width, kLargestMapSide),
                               std::min(pixels.height, kLargestMapSide));
        for (MapTile& tile : tiles_)
            tile.colour = static_cast<std::uint16_t>(tile.depth % kDepthColours.size());
        paintMap(tiles_, kDepthColours, pixels);
    });
}

// The names of the outermost folders stand over their parts.
void MapView::addHeadings(MapOverlay& overlay, std::vector<Rect>& taken) const {
    for (std::size_t i = 1; i < tiles_.size(); i = tiles_[i].next) {
        const MapTile& tile = tiles_[i];
        const bool hasParts = tile.next > i + 1;
        Rect place = placeOf(tile);
        if (!hasParts || place.width < kHeadingLines * lineHeight_ ||
            place.height < kHeadingHeightLines * lineHeight_)
            continue;
        place.height = lineHeight_;
        overlay.names.push_back({place, std::string(grid_.text(tile.row)), true});
        // About as much as the name takes.
        place.width = std::min(place.width, lineHeight_ * static_cast<int>(grid_.text(tile.row).size()));
        taken.push_back(place);
    }
}

MapOverlay MapView::overlay() {
    return guarded(scan_.diagnostics, {.routine = "map_overlay"}, [&] {
        MapOverlay overlay;
        if (tiles_.empty()) {
            overlay.hint = scan_.texts.TL(9770, "Die Karte zeigt die Ordner, die eingelesen sind.");
            return overlay;
        }
        std::vector<Rect> taken;
        addHeadings(overlay, taken);
        for (std::size_t i = 0; i < tiles_.size(); ++i) {
            const MapTile& tile = tiles_[i];
            if (tile.next != i + 1 || tile.file != kMapFolder || tile.row == kNoRow) continue;
            const Rect place = placeOf(tile);
            if (place.width < kNameLines * lineHeight_ || place.height < lineHeight_) continue;
            const Rect line = {place.left, middleOf(tile).y - lineHeight_ / 2, place.width, lineHeight_};
            if (std::ranges::none_of(taken, [&](const Rect& other) { return meet(line, other); }))
                overlay.names.push_back({place, std::string(grid_.text(tile.row))});
        }
        const std::size_t selected = selectedTile();
        if (selected < tiles_.size()) overlay.frame = placeOf(tiles_[selected]);
        return overlay;
    });
}

// --- the selection

// The row of a folder's files is the folder's rest.
std::size_t MapView::selectedTile() const {
    if (grid_.selectedCount() != 1) return tiles_.size();
    const Row row = grid_.selectedRows().front();
    const Row folder = isFolder(row) ? row : grid_.parent(row);
    const std::int32_t file = isFolder(row) ? kMapFolder : kMapRest;
    const auto found = std::ranges::find_if(
        tiles_, [&](const MapTile& tile) { return tile.row == folder && tile.file == file; });
    return static_cast<std::size_t>(found - tiles_.begin());
}

void MapView::select(std::size_t tile) {
    if (tile >= tiles_.size() || tiles_[tile].row == kNoRow || scan_.state.ScanActive) return;
    host_.selectFolder(pathOf(tiles_[tile].row));
}

void MapView::pressed(Point at, MouseButton button, Point onScreen) {
    guarded(scan_.diagnostics, {.routine = "map_pressed"}, [&] {
        const std::size_t tile = tileAt(tiles_, at.x, at.y);
        if (tile >= tiles_.size() || tiles_[tile].row == kNoRow || scan_.state.ScanActive) return;
        const Row row = tiles_[tile].row;
        const std::string path = pathOf(row);
        host_.selectFolder(path);
        // Messages ran meanwhile, and the row may be gone.
        const bool there = grid_.tree().exists(row) && pathOf(row) == path;
        if (button == MouseButton::kRight && there && !scan_.state.ScanActive)
            host_.openFolderMenu(row, onScreen);
    });
}

void MapView::menuKey() {
    guarded(scan_.diagnostics, {.routine = "map_menuKey"}, [&] {
        const std::size_t tile = selectedTile();
        if (tile >= tiles_.size() || scan_.state.ScanActive || pane_ == nullptr) return;
        host_.openFolderMenu(tiles_[tile].row, pane_->onScreen(middleOf(tiles_[tile])));
    });
}

// --- levels and steps

// The map then shows the part of the outermost level that holds the tile.
void MapView::goInto(std::size_t tile) {
    if (tile >= tiles_.size()) return;
    const Point at = middleOf(tiles_[tile]);
    const std::size_t outermost = tileAt(tiles_, at.x, at.y, 1);
    if (outermost < tiles_.size() && tiles_[outermost].file == kMapFolder && tiles_[outermost].depth == 1)
        setTop(tiles_[outermost].row);
}

void MapView::levelAt(Point at, bool down) {
    guarded(scan_.diagnostics, {.routine = "map_levelAt"}, [&] {
        if (!down) return setTop(aboveTop());
        goInto(tileAt(tiles_, at.x, at.y));
    });
}

void MapView::stepped(MapStep step) {
    guarded(scan_.diagnostics, {.routine = "map_stepped"}, [&] {
        const std::size_t from = selectedTile();
        if (step == MapStep::kOutOf) return setTop(aboveTop());
        if (step == MapStep::kInto) return goInto(from);
        // From the whole map, which has no neighbours, and from nothing, to the largest folder.
        if (from >= tiles_.size() || tiles_[from].depth == 0) return select(tileAt(tiles_, 0, 0, 1));
        const MapTile& tile = tiles_[from];
        Point to = middleOf(tile);
        if (step == MapStep::kLeft) to.x = tile.left - 1;
        if (step == MapStep::kRight) to.x = tile.right;
        if (step == MapStep::kUp) to.y = tile.top - 1;
        if (step == MapStep::kDown) to.y = tile.bottom;
        select(tileAt(tiles_, to.x, to.y, std::max<int>(tile.depth, 1)));
    });
}

// --- texts

std::string MapView::textOf(const MapTile& tile) const {
    std::string path = tile.row == kNoRow ? std::string() : visible(pathOf(tile.row));
    if (tile.file == kMapRest) {
        return scan_.texts.TL(9771, "Dateien und kleinere Ordner in '%1'", {path});
    }
    const auto bytes = static_cast<std::uint64_t>(sizeOf(tile.row));
    std::string size = FormatSizeAuto(SizeValue::fromBytes(bytes), true, scan_.numbers);
    if (whole_ > 0)
        size += " (" +
                formatNumber(static_cast<double>(bytes) * 100 / whole_, {.decimals = 2}, scan_.numbers) +
                " %)";
    return path + "\n" + size;
}

std::string MapView::tip(Point at) {
    return guarded(scan_.diagnostics, {.routine = "map_tip"}, [&] {
        const std::size_t tile = tileAt(tiles_, at.x, at.y);
        const bool there =
            tile < tiles_.size() && tiles_[tile].row != kNoRow && grid_.tree().exists(tiles_[tile].row);
        return there ? textOf(tiles_[tile]) : std::string();
    });
}

std::string MapView::spoken() {
    return guarded(scan_.diagnostics, {.routine = "map_spoken"}, [&] {
        const std::size_t tile = selectedTile();
        return tile < tiles_.size() ? textOf(tiles_[tile]) : std::string();
    });
}

}  // namespace hl
