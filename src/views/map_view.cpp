#include "views/map_view.h"

#include <algorithm>

#include "base/number_format.h"
#include "base/size_text.h"
#include "base/text.h"
#include "robustness/trap.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "views/map_picture.h"
#include "views/map_svg.h"

namespace hl {

namespace {

// A tile has a name if it is at least so many lines wide.
constexpr int kNameLines = 4, kHeadingLines = 8, kHeadingHeightLines = 4;

Rect placeOf(const MapTile& tile) {
    return {tile.left, tile.top, tile.right - tile.left, tile.bottom - tile.top};
}

bool meet(const Rect& a, const Rect& b) {
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

// By how bright the eye sees the colour's parts, in thousandths. The middle of a cushion is nearly as bright.
bool isLight(std::uint32_t colour) {
    constexpr std::uint32_t kRed = 299, kGreen = 587, kBlue = 114, kLight = 140'000;
    return (colour >> 16 & 0xff) * kRed + (colour >> 8 & 0xff) * kGreen + (colour & 0xff) * kBlue > kLight;
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

void MapView::selectionChanged() {
    if (pane_ != nullptr) pane_->refreshOverlay();
}

// A map of one source is that source.
Row MapView::topThere() const {
    if (top_ != kNoRow && grid_.tree().exists(top_) && report_.pathOf(top_) == topPath_) return top_;
    const Row first = grid_.firstRoot();
    return first != kNoRow && grid_.nextSibling(first) == kNoRow ? first : kNoRow;
}

Row MapView::aboveTop() const {
    const Row top = topThere();
    return top == kNoRow ? kNoRow : grid_.parent(top);
}

void MapView::setTop(Row row) {
    top_ = row;
    topPath_ = row == kNoRow ? std::string() : report_.pathOf(row);
    reportChanged();
}

// --- painting

void MapView::paint(const MapPixels& pixels, const MapLooks& looks) {
    guarded(scan_.diagnostics, {.routine = "map_paint"}, [&] {
        lineHeight_ = looks.lineHeight;
        width_ = pixels.width;
        height_ = pixels.height;
        const Row top = topThere();
        const MapPart whole = report_.whole(top);
        whole_ = whole.size;
        tiles_.clear();
        if (whole.size > 0)
            tiles_ = layOutMap(report_, whole, std::min(pixels.width, kLargestMapSide),
                               std::min(pixels.height, kLargestMapSide));
        colours_.colour(tiles_, looks.isDark);
        paintMap(tiles_, colours_.palette(), pixels);
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

void MapView::addNames(MapOverlay& overlay) const {
    std::vector<Rect> taken;
    addHeadings(overlay, taken);
    for (std::size_t i = 0; i < tiles_.size(); ++i) {
        const MapTile& tile = tiles_[i];
        if (tile.next != i + 1 || tile.file == kMapRest || tile.row == kNoRow) continue;
        const Rect place = placeOf(tile);
        if (place.width < kNameLines * lineHeight_ || place.height < lineHeight_) continue;
        const Rect line = {place.left, middleOf(tile).y - lineHeight_ / 2, place.width, lineHeight_};
        if (std::ranges::none_of(taken, [&](const Rect& other) { return meet(line, other); }))
            overlay.names.push_back({.place = place,
                                     .text = std::string(report_.nameOf(tile)),
                                     .onLight = isLight(colours_.palette()[tile.colour])});
    }
}

std::string MapView::svg() {
    const MapOverlay all = overlay();
    return svgOf({tiles_, colours_.palette(), all, width_, height_, lineHeight_});
}

std::string MapView::path() const {
    const Row top = topThere();
    return top == kNoRow ? std::string() : report_.pathOf(top);
}

MapOverlay MapView::overlay() {
    return guarded(scan_.diagnostics, {.routine = "map_overlay"}, [&] {
        MapOverlay overlay;
        if (tiles_.empty()) {
            overlay.hint = scan_.texts.TL(9770, "Die Karte zeigt die Ordner, die eingelesen sind.");
            return overlay;
        }
        addNames(overlay);
        overlay.legend = colours_.legend();
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
    const bool isFolder = report_.isFolder(row);
    const Row folder = isFolder ? row : grid_.parent(row);
    const auto found = std::ranges::find_if(tiles_, [&](const MapTile& tile) {
        return tile.row == folder && tile.file == (isFolder ? kMapFolder : kMapRest);
    });
    const auto index = static_cast<std::size_t>(found - tiles_.begin());
    if (!isFolder || picked_.folder != row || found == tiles_.end()) return index;
    for (std::size_t i = index + 1; i < found->next; i = tiles_[i].next)
        if (report_.fileOf(tiles_[i]) != nullptr && report_.nameOf(tiles_[i]) == picked_.name) return i;
    return index;
}

// Returns whether it is selected. Messages run meanwhile, and the row may be gone.
bool MapView::select(std::size_t tile) {
    if (tile >= tiles_.size() || tiles_[tile].row == kNoRow || scan_.state.ScanActive) return false;
    const Row row = tiles_[tile].row;
    const std::string path = report_.pathOf(row);
    picked_ = {};
    if (report_.fileOf(tiles_[tile]) != nullptr) picked_ = {row, std::string(report_.nameOf(tiles_[tile]))};
    const std::string name = picked_.name;
    host_.selectFolder(row);
    if (!name.empty()) host_.selectFile(path, name);
    return grid_.tree().exists(row) && report_.pathOf(row) == path && !scan_.state.ScanActive;
}

void MapView::pressed(Point at, MouseButton button, Point onScreen) {
    guarded(scan_.diagnostics, {.routine = "map_pressed"}, [&] {
        const std::size_t tile = tileAt(tiles_, at.x, at.y);
        const Row row = tile < tiles_.size() ? tiles_[tile].row : kNoRow;
        if (select(tile) && button == MouseButton::kRight) host_.openFolderMenu(row, onScreen);
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
        if (from >= tiles_.size() || tiles_[from].depth == 0) {
            select(tileAt(tiles_, 0, 0, 1));
            return;
        }
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

std::string MapView::shareText(double bytes) const {
    const auto whole = static_cast<std::uint64_t>(std::max(bytes, 0.0));
    std::string size = FormatSizeAuto(SizeValue::fromBytes(whole), true, scan_.numbers);
    if (whole_ <= 0) return size;
    return size + " (" + formatNumber(bytes * 100 / whole_, {.decimals = 2}, scan_.numbers) + " %)";
}

std::string MapView::restText(std::size_t tile) const {
    std::size_t folder = tile;
    while (tiles_[folder].row != tiles_[tile].row || tiles_[folder].file != kMapFolder) --folder;
    const MapRest rest = report_.restOf(tiles_, folder);
    const Texts& texts = scan_.texts;
    const auto number = [&](std::int64_t count) { return formatCount(count, scan_.numbers); };
    std::string text;
    if (rest.files > 0)
        text = rest.files == 1 ? texts.TL(9412, "1 kleinere Datei")
                               : texts.TL(9413, "%1 kleinere Dateien", {number(rest.files)});
    if (rest.files > 0 && rest.folders > 0) text += ", ";
    if (rest.folders > 0)
        text += rest.folders == 1 ? texts.TL(9414, "1 kleinerer Ordner")
                                  : texts.TL(9415, "%1 kleinere Ordner", {number(rest.folders)});
    return text + "\n" + shareText(rest.size);
}

std::string MapView::textOf(std::size_t index) const {
    const MapTile& tile = tiles_[index];
    if (tile.row == kNoRow) return scan_.texts.TL(9772, "Karte") + "\n" + shareText(whole_);
    std::string path = visible(report_.pathOf(tile.row));
    if (tile.file == kMapRest) return path + "\n" + restText(index);
    const LargestFile* file = report_.fileOf(tile);
    if (tile.file != kMapFolder && file == nullptr) return path;  // It is painted anew soon.
    if (file == nullptr) return path + "\n" + shareText(report_.sizeOf(tile.row));
    if (!path.ends_with(scan_.paths.separator)) path += scan_.paths.separator;
    return path + visible(report_.nameOf(tile)) + "\n" + shareText(report_.sizeOf(*file));
}

std::string MapView::tip(Point at) {
    return guarded(scan_.diagnostics, {.routine = "map_tip"}, [&] {
        const std::size_t tile = tileAt(tiles_, at.x, at.y);
        const bool there =
            tile < tiles_.size() && tiles_[tile].row != kNoRow && grid_.tree().exists(tiles_[tile].row);
        return there ? textOf(tile) : std::string();
    });
}

std::string MapView::spoken() {
    return guarded(scan_.diagnostics, {.routine = "map_spoken"}, [&] {
        const std::size_t tile = selectedTile();
        return tile < tiles_.size() ? textOf(tile) : std::string();
    });
}

// --- for a screen reader

MapItem MapView::item(std::size_t number) {
    return guarded(scan_.diagnostics, {.routine = "map_item"}, [&]() -> MapItem {
        if (number >= tiles_.size()) return {};
        const MapTile& tile = tiles_[number];
        const bool there = tile.row == kNoRow || grid_.tree().exists(tile.row);
        return {.place = placeOf(tile),
                .text = there ? textOf(number) : std::string(),
                .level = tile.depth,
                .hasItems = tile.next > number + 1};
    });
}

std::size_t MapView::selectedItem() {
    return guarded(scan_.diagnostics, {.routine = "map_selectedItem"}, [&] { return selectedTile(); });
}

void MapView::selectItem(std::size_t number) {
    guarded(scan_.diagnostics, {.routine = "map_selectItem"}, [&] { select(number); });
}

}  // namespace hl
