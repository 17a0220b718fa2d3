// What all lists do: commands; search; the user's actions; icons; what the list shows.
#include "views/list_view.h"

#include <algorithm>
#include <optional>

#include "base/path.h"
#include "base/scope_exit.h"
#include "base/text.h"
#include "grid/no_redraw.h"
#include "views/list_columns.h"
#include "views/size_display.h"

namespace hl {

namespace {

constexpr int kMargin = 32;

bool showsSizes(ColumnKind kind) {
    return kind == ColumnKind::kSize || kind == ColumnKind::kChange;
}

}  // namespace

ListView::ListView(const ListTraits& traits, const ListParts& parts, Grid& grid, CommandBar& bar)
    : traits_(traits), parts_(parts), grid_(grid), pane_(parts.window.grid(traits.grid)), bar_(bar) {}

// --- commands

void ListView::iconsSwitched() {
    SetFileIcons(true);
    pane_.autosizeColumn(0, kMargin);
}

void ListView::showColumn(std::size_t column, bool shows) {
    grid_.changeColumn(column).visible = shows;
    Resize_Columns(true);
}

// --- search

void ListView::StartSearch() {
    trapped(traits_.family, [&] {
        const std::string part = bar_.textOf(idOf(traits_.searchText));
        if (grid_.rowCount() == 0 || part.empty()) return;
        const BusyPointer busy(parts_.scan.controls);
        const std::size_t count = grid_.rowCount();
        const std::size_t behind = grid_.indexOf(searchedFrom()) + 1;
        const std::size_t from = behind < count ? behind : 0;
        std::size_t hit = firstHit(part, from, count - 1);
        if (hit == count && from > 0) hit = firstHit(part, 0, from);
        BarPane& bar = parts_.window.bar(barOf(traits_.searchText));
        bar.markEdit(idOf(traits_.searchText), hit == count);
        if (hit != count) {
            showHit(grid_.rowAt(hit));
        } else {
            parts_.host.setSecondPanel(parts_.scan.texts.TL(9750, "'%1' wurde nicht gefunden.", {part}));
        }
        bar.focusEdit(idOf(traits_.searchText));
    });
}

Row ListView::searchedFrom() const {
    if (grid_.currentRow() != kNoRow) return grid_.currentRow();
    return grid_.selectedCount() > 0 ? grid_.selectedRows().front() : grid_.rowAt(0);
}

// Returns the index of the first row that has `part` in its text or in the other cell that is searched, or
// the number of rows if there is none.
std::size_t ListView::firstHit(const std::string& part, std::size_t from, std::size_t to) const {
    const Row row = grid_.find(part, from, to);
    const std::size_t hit = row == kNoRow ? grid_.rowCount() : grid_.indexOf(row);
    if (traits_.searched == kNoCell) return hit;
    FoldedPart folded(part);
    for (std::size_t index = from; index <= to && index < hit; ++index)
        if (folded.isIn(grid_.cellText(grid_.rowAt(index), traits_.searched))) return index;
    return hit;
}

void ListView::showHit(Row row) {
    selectOnly(row);
    pane_.scrollToMiddle(row);
    if (traits_.hitLoadsIcons) SetFileIcons(false);
    showSelection();
    if (traits_.hitShowsPreview) showPreview(false);
}

void ListView::showRowOf(std::string_view text) {
    Row row = grid_.firstRoot();
    while (row != kNoRow && grid_.text(row) != text) row = grid_.nextSibling(row);
    if (row != kNoRow) showHit(row);
}

void ListView::selectOnly(Row row) {
    const NoRedraw off(grid_);
    grid_.selectNone();
    grid_.setSelected(row, true);
    grid_.setCurrentRow(row);
}

// --- what the user does

bool ListView::ignoresInput() const {
    return grid_.rowCount() == 0 || !grid_.redraw() || parts_.scan.state.ScanActive;
}

void ListView::GridColumnTitleClick(std::size_t column) {
    trapped(traits_.events, [&] {
        if (ignoresInput() || std::exchange(parts_.ColumnDragGuard, false)) return;
        const BusyPointer busy(parts_.scan.controls);
        const std::string key = grid_.columns().at(column).key;
        const bool text = key.empty() || grid_.cells().isText(grid_.cell(key));
        {
            const NoRedraw off(grid_);
            sortBy({.key = key, .numbers = !text, .descending = !grid_.levelSort(0).descending});
            grid_.setTopRow(grid_.rowAt(0));
        }
        Resize_Columns(true);
        rowsSorted();
    });
}

void ListView::sortBy(const LevelSort& sort) {
    grid_.levelSort(0) = sort;
    sortRows();
}

void ListView::MouseUp(Row row, MouseButton button, bool /*shift*/, Point at) {
    guarded(parts_.scan.diagnostics, {.routine = traits_.mouseUp}, [&] {
        if (ignoresInput()) return;
        if (row == kNoRow) {
            grid_.selectNone();
            showPreview(false);
            return ShowFileStat();
        }
        // The window already selected the row when the button was pressed.
        const bool menu = button == MouseButton::kRight;
        if (menu && !grid_.selected(row)) selectOnly(row);
        showSelection();
        showPreview(!menu);
        if (!menu) return;
        beforeMenu(at);
        parts_.host.ShellContextMenuFileList(traits_.grid, at);
    });
}

void ListView::DblClick() {
    guarded(parts_.scan.diagnostics, {.routine = event("ItemDblClick").c_str()}, [&] {
        if (ignoresInput() || !traits_.hasFiles || grid_.selectedCount() == 0) return;
        const Row current = grid_.currentRow();
        const bool chosen = current != kNoRow && grid_.selected(current);
        parts_.host.openFile(pathOf(chosen ? current : grid_.selectedRows().front()));
    });
}

void ListView::KeyUp(int key) {
    trapped(traits_.events, [&] {
        if (ignoresInput() || !traits_.hasFiles) return;
        if (key == kKeyReturn) return DblClick();
        if (key == kKeyF2) {
            if (grid_.selectedCount() == 1) pane_.editCell(grid_.selectedRows().front());
            return;
        }
        if (key != kKeyUp && key != kKeyDown && key != kKeyPageUp && key != kKeyPageDown) return;
        SetFileIcons(false);
        showSelection();
        if (traits_.keysShowPreview) showPreview(false);
    });
}

void ListView::Shortcut(GridShortcut what) {
    trapped(traits_.events, [&] {
        if (ignoresInput() || what != GridShortcut::kCopy || grid_.selectedCount() == 0) return;
        std::vector<std::string> paths;
        for (const Row row : grid_.selectedRows()) paths.push_back(pathOf(row));
        parts_.host.copyPaths(paths);
    });
}

void ListView::showPreview(bool force) {
    if (traits_.hasFiles) parts_.host.showPreview(traits_.grid, force);
}

// --- icons

void ListView::SetFileIcons(bool clear) {
    if (traits_.showIcons == nullptr) return;
    trapped(traits_.family, [&] {
        if (parts_.scan.state.ScanActive && !traits_.iconsDuringScan) return;
        if (parts_.options.*traits_.showIcons == 0) {
            if (clear) takeIconsAway();
            return;
        }
        if (IconsLoaded_ == grid_.rowCount()) return;
        const auto rows = parts_.host.listShows(traits_.grid) ? pane_.visibleRows() : std::nullopt;
        if (!rows || rows == iconRows_) return;
        loadIcons(*rows);
        iconRows_ = rows;
    });
}

void ListView::loadIcons(const RowRange& rows) {
    const NoRedraw off(grid_);
    for (std::size_t index = rows.first; index <= rows.last && index < grid_.rowCount(); ++index) {
        const Row row = grid_.rowAt(index);
        if (grid_.picture(row) != 0) continue;
        ++IconsLoaded_;
        grid_.setPicture(row, parts_.pictures.of(grid_.text(row)));
    }
}

void ListView::takeIconsAway() {
    const NoRedraw off(grid_);
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row)) grid_.setPicture(row, 0);
    iconRows_.reset();
    IconsLoaded_ = 0;
}

void ListView::rowsSorted() {
    iconRows_.reset();
    SetFileIcons(false);
}

// Counts again from 0, although some rows may have their icons, so the count may stay too low. That only
// costs a look at the visible rows with each scrolling; too high a count would leave rows without icons.
void ListView::rowsReplaced() {
    IconsLoaded_ = 0;
    rowsSorted();
}

void ListView::rowsChanged() {
    rowsReplaced();
    Resize_Columns(true);
}

void ListView::removeRows(const std::function<bool(const std::string& path)>& went) {
    std::vector<Row> rows;
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row))
        if (went(pathOf(row))) rows.push_back(row);
    if (rows.empty()) return;
    const std::vector<Row> selected = grid_.selectedRows();
    const std::size_t first = selected.empty() ? 0 : grid_.indexOf(selected.front());
    {
        const NoRedraw off(grid_);
        for (const Row row : rows) grid_.removeRow(row);
        // If all that was selected went, the row behind it is the next.
        if (!selected.empty() && grid_.selectedCount() == 0 && grid_.rowCount() > 0)
            selectOnly(grid_.rowAt(std::min(first, grid_.rowCount() - 1)));
    }
    rowsRemoved();
    rowsChanged();
    if (parts_.host.listShows(traits_.grid)) ShowFileStat();
}

void ListView::renameRows(const std::string& from, const std::string& to) {
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row))
        if (pathOf(row) == from)
            grid_.setText(row, grid_.text(row) == from ? to : std::string(fileNameOf(to, parts_.scan.paths)));
}

// --- what the list shows

std::string ListView::total() const {
    return parts_.scan.texts.TL(9520, "%1 Datei(en)", {formatCount(grid_.rowCount(), parts_.scan.numbers)});
}

std::string ListView::selectedFiles() const {
    SizeValue sum;
    for (const Row row : grid_.selectedRows())
        sum += SizeValue::fromBytes(static_cast<std::uint64_t>(grid_.number(row, kFileSize)));
    const NumberFormat& numbers = parts_.scan.numbers;
    return parts_.scan.texts.TL(9521, "%1 ausgewählte Datei(en) mit %2",
                                {formatCount(grid_.selectedCount(), numbers),
                                 shownSize(parts_.options.*traits_.table.sizeMode, sum, numbers)});
}

void ListView::ShowFileStat() {
    guarded(parts_.scan.diagnostics, {.routine = traits_.fileStat}, [&] {
        std::string text = total();
        if (traits_.hasFiles && grid_.selectedCount() > 0) text += " / " + selectedFiles();
        parts_.host.setSecondPanel(text);
    });
}

void ListView::Resize_Columns(bool withRedraw) {
    trapped(traits_.family, [&] {
        std::optional<NoRedraw> off;
        if (withRedraw) off.emplace(grid_);
        for (std::size_t column = 0; column < grid_.columns().size(); ++column)
            pane_.autosizeColumn(column, kMargin);
    });
}

void ListView::Set_SizeFormat() {
    if (traits_.table.sizeMode == nullptr) return;
    trapped(traits_.family, [&] {
        {
            grid_.setEnabled(false);
            const ScopeExit usable([this] { grid_.setEnabled(true); });
            showSizes(grid_, traits_.table, parts_.options, parts_.scan.texts);
        }
        for (std::size_t i = 0; i < traits_.table.columns.size(); ++i)
            if (showsSizes(traits_.table.columns[i].kind)) pane_.autosizeColumn(i, kMargin);
        ShowFileStat();
    });
}

std::string ListView::pathOf(Row row) const {
    return std::string(grid_.cellText(row, kFilePath)).append(grid_.text(row));
}

std::vector<std::string> ListView::menuPaths() const {
    std::vector<std::string> paths;
    for (const Row row : grid_.selectedRows()) paths.push_back(pathOf(row));
    return paths;
}

}  // namespace hl
