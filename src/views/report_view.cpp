// The report's view: columns; folding; commands; the user's actions.
#include "views/report_view.h"

#include <algorithm>

#include "app/command.h"
#include "base/scope_exit.h"
#include "grid/no_redraw.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/left_out.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/report_changes.h"
#include "scan/rollup.h"
#include "views/list_columns.h"
#include "views/report_columns.h"
#include "views/selection_sum.h"

namespace hl {

namespace {

constexpr int kSearchBox = idOf(Command::kReportSearchText);
constexpr int kUsualMargin = 96;
constexpr int kSizeMargin = 32;

}  // namespace

// --- columns

void ReportView::Report_Resize_Width() {
    guarded(scan_.diagnostics, [&] {
        if (grid_.rowCount() == 0) return;
        double width = 0;
        for (const GridColumn& column : grid_.columns())
            if (column.visible) width += column.width;
        host_.setReportWidth(static_cast<int>(width) + pane_.widthBesideColumns());
    });
}

void ReportView::Report_Resize_Columns(bool withRedraw) {
    guarded(scan_.diagnostics, [&] {
        // The column of names comes last, because it gets the width that the numbers leave.
        for (std::size_t column = grid_.columns().size(); column-- > 0;)
            pane_.autosizeColumn(column, kUsualMargin);
        if (withRedraw) pane_.refresh();
    });
}

void ReportView::Report_ChangeColVisible(std::size_t column, bool visible) {
    guarded(scan_.diagnostics, [&] {
        grid_.changeColumn(column).visible = visible;
        pane_.autosizeColumn(column, kUsualMargin);
        Report_Resize_Width();
        const auto selected = grid_.selectedRows();
        if (!selected.empty()) pane_.scrollIntoView(selected.front());
    });
}

void ReportView::Report_Set_SizeFormat() {
    guarded(scan_.diagnostics, [&] {
        showSizes(grid_, kReportTable, options_, scan_.texts);
        pane_.autosizeColumn(kReportSize, kSizeMargin);
        pane_.autosizeColumn(kReportPercent, kSizeMargin);
    });
}

// --- folding

void ReportView::Report_ExpandAllFolders(bool expand) {
    fold("Report_ExpandAllFolders", expand ? Folding::kExpandAll : Folding::kCollapseAll, 0);
}

void ReportView::Report_ExpandFolderLevels(std::uint32_t level) {
    fold("Report_ExpandFolderLevels", Folding::kByLevel, level);
}

void ReportView::fold(const char* routine, Folding how, std::uint32_t level) {
    guarded(scan_.diagnostics, {.routine = routine}, [&] {
        if (grid_.rowCount() < 2) return;
        const BusyPointer busy(scan_.controls);
        DisableControls(scan_, false);
        {
            const ScopeExit unlock([this] { EnableControls(scan_); });
            foldRows(how, level);
        }
        Report_Resize_Columns(true);
        scan_.state.CancelState = kCancelNone;
        host_.setFirstPanel(scan_.texts.TL(3525, "OK."));
        leaveHiddenRows();
    });
}

// Goes from row to row by the links, because a list of indexes would take 8 bytes for each row and would
// stay.
void ReportView::foldRows(Folding how, std::uint32_t level) {
    const NoRedraw off(grid_);
    const RowTree& tree = grid_.tree();
    const bool up = how == Folding::kCollapseAll;
    Row row = up ? tree.preceding(kNoRow) : grid_.firstRoot();
    for (std::size_t done = 0; row != kNoRow; ++done) {
        grid_.setExpanded(
            row, how == Folding::kExpandAll || (how == Folding::kByLevel && grid_.level(row) <= level));
        if (!progress(done, grid_.rowCount())) return;
        row = up ? tree.preceding(row) : tree.following(row);
    }
}

// Lets messages run. Returns false once Stop was pressed.
bool ReportView::progress(std::size_t done, std::size_t all) {
    constexpr std::size_t kRowsBetweenLooks = 1024;  // A row takes some 20 ns; so does a look at the clock.
    if (done % kRowsBetweenLooks != 0) return true;
    const std::uint64_t tick = scan_.pump.GetTickCount();
    const bool due = tick > scan_.state.pump.lastTick + scan_.state.pump.interval;
    if (!due && !scan_.pump.GetInputState()) return scan_.state.CancelState != kCancelStop;
    host_.setFirstPanel(std::to_string(done * 100 / all) + " %");
    scan_.state.pump.lastTick = tick;
    scan_.pump.PumpMessages();
    return scan_.state.CancelState != kCancelStop;
}

void ReportView::Report_ExpandSubFolders(bool expand) {
    guarded(scan_.diagnostics, [&] {
        const Row top = grid_.currentRow();
        if (top == kNoRow) return;
        {
            scan_.state.ScanActive = true;
            const ScopeExit idle([this] { scan_.state.ScanActive = false; });
            const NoRedraw off(grid_);
            const std::uint32_t level = grid_.level(top);
            for (Row row = top; row != kNoRow && (row == top || grid_.level(row) > level);
                 row = grid_.tree().following(row))
                grid_.setExpanded(row, expand);
        }
        Report_Resize_Columns(true);
        host_.setFirstPanel(scan_.texts.TL(3525, "OK."));
        leaveHiddenRows();
    });
}

void ReportView::expandedByUser(Row /*row*/) {
    if (!scan_.state.ScanActive) Report_Resize_Columns(true);
    guarded(scan_.diagnostics, {.routine = "leaveHiddenRows"}, [&] { leaveHiddenRows(); });
}

// Returns the row itself, or the highest of the folded rows that hide it.
Row ReportView::shownFor(Row row) const {
    Row shown = row;
    for (Row above = grid_.parent(row); above != kNoRow; above = grid_.parent(above))
        if (!grid_.expanded(above)) shown = above;
    return shown;
}

// A command must not act on selected rows that nobody sees: the folded row is selected instead, and the
// window shows it.
void ReportView::leaveHiddenRows() {
    bool moved = false;
    {
        const NoRedraw off(grid_);
        for (const Row row : grid_.selectedRows()) {
            const Row shown = shownFor(row);
            if (shown == row) continue;
            grid_.setSelected(row, false);
            grid_.setSelected(shown, true);
            moved = true;
        }
        if (grid_.currentRow() != kNoRow) grid_.setCurrentRow(shownFor(grid_.currentRow()));
    }
    if (moved && scan_.state.ScanActive) scan_.state.RowPicked = true;  // What shows stays at the run's end.
    if (!moved || scan_.state.ScanActive) return;
    if (grid_.selectedCount() == 1) return tellOf(grid_.selectedRows().front(), MouseButton::kLeft, {});
    showSelection({});
}

// --- commands

void ReportView::Report_StartSearch() {
    guarded(scan_.diagnostics, [&] {
        const std::string part = bar_.textOf(kSearchBox);
        if (grid_.rowCount() == 0 || part.empty()) return;
        const BusyPointer busy(scan_.controls);
        Row start = grid_.currentRow();
        if (start == kNoRow && grid_.selectedCount() > 0) start = grid_.selectedRows().front();
        searchFromStart(start == kNoRow ? grid_.rowAt(0) : start, part);
        barPane_.focusEdit(kSearchBox);
    });
}

void ReportView::searchFromStart(Row start, const std::string& part) {
    const std::size_t last = grid_.rowCount() - 1;
    std::size_t from = grid_.indexOf(start) + 1;
    if (from > last) from = 0;
    Row hit = grid_.find(part, from, last);
    if (hit == kNoRow && from >= 1) hit = grid_.find(part, 0, from);
    barPane_.markEdit(kSearchBox, hit == kNoRow);
    if (hit != kNoRow) return show(hit);
    host_.setFirstPanel(scan_.texts.TL(9750, "'%1' wurde nicht gefunden.", {part}));
}

void ReportView::show(Row row) {
    {
        const NoRedraw off(grid_);
        for (Row above = grid_.parent(row); above != kNoRow; above = grid_.parent(above))
            grid_.setExpanded(above, true);
        grid_.selectNone();
        grid_.setSelected(row, true);
        grid_.setCurrentRow(row);
    }
    pane_.scrollToMiddle(row);
    follow(row);
}

bool ReportView::goTo(const std::string& path) {
    return goTo(scan_.state.ScanActive ? kNoRow : rowOf(path));
}

bool ReportView::goTo(Row row) {
    return guarded(scan_.diagnostics, {.routine = "goTo"}, [&] {
        if (row == kNoRow || scan_.state.ScanActive) return false;
        show(row);
        Report_Resize_Columns(true);
        return true;
    });
}

void ReportView::removeAll() {
    grid_.clear();
    if (scan_.statistics != nullptr) scan_.statistics->clear();
    if (scan_.largest != nullptr) scan_.largest->clear();
    if (scan_.facts != nullptr) scan_.facts->clear();
    scan_.host.rowsChanged();
    host_.showFilesOf("");
    scan_.state.DeepestLevel = 0;
    scan_.state.fileList.folder.clear();
    host_.setFirstPanel("");
    host_.Preview_Reset_View();  // A list that a scan filled still has a file selected.
}

// --- what the user does

void ReportView::GridColumnTitleClick(std::size_t column) {
    guarded(scan_.diagnostics, {.routine = "tvwPL_GridColumnTitleClick"}, [&] {
        if (grid_.rowCount() == 0 || !grid_.redraw() || scan_.state.ScanActive) return;
        if (std::exchange(ColumnDragGuard_, false) || column >= grid_.columns().size()) return;
        const BusyPointer busy(scan_.controls);
        {
            const NoRedraw off(grid_);
            const std::string key = grid_.columns()[column].key;
            sortAgain(key, !key.empty());
            grid_.selectNone();
            grid_.setCurrentRow(grid_.rowAt(0));
            grid_.setSelected(grid_.rowAt(0), true);
            grid_.setTopRow(grid_.rowAt(0));
        }
        Report_Resize_Columns(false);
    });
}

void ReportView::reckonAnew() {
    guarded(scan_.diagnostics, {.routine = "Report_ReckonAnew"}, [&] {
        if (grid_.rowCount() == 0) return;
        const BusyPointer busy(scan_.controls);
        const NoRedraw off(grid_);
        Report_ReckonAnew(scan_);
        showSelection({});
    });
}

// Each click reverses all levels, whatever the column.
void ReportView::sortAgain(const std::string& key, bool numbers) {
    for (std::uint32_t level = 0; level < Grid::kSortLevels && level <= scan_.state.DeepestLevel; ++level) {
        LevelSort& sort = grid_.levelSort(level);
        sort = {key, numbers, !sort.descending};
    }
    grid_.sortLevels(scan_.state.DeepestLevel);
}

void ReportView::MouseUp(Row row, MouseButton button, bool shift, Point at) {
    guarded(scan_.diagnostics, {.routine = "tvwPL_MouseUp"}, [&] {
        if (grid_.rowCount() == 0 || !grid_.redraw() || scan_.state.ScanActive) return;
        if (row == kNoRow) {
            if (shift || grid_.selectedCount() == 0) return;
            if (grid_.selectedCount() > 1) host_.setFirstPanel("");
            dropSelection();
        } else if (button == MouseButton::kLeft) {
            // If Ctrl removed the clicked row from the selection, this is another row.
            if (grid_.selectedCount() == 1)
                return Report_MouseClick(grid_.selectedRows().front(), button, at);
            showSelection({});
        } else {
            selectOther(row, button, shift);
            if (grid_.selectedCount() == 1) {
                Report_MouseClick(row, button, at);
                return;
            }
            showSelection({});
            if (button == MouseButton::kRight) host_.openRowsMenu(at);
        }
    });
}

void ReportView::selectOther(Row row, MouseButton button, bool shift) {
    const bool right = button == MouseButton::kRight;
    if ((right && !grid_.selected(row)) || (!right && !shift)) dropSelection();
    grid_.setSelected(row, true);
    grid_.setCurrentRow(row);
}

void ReportView::dropSelection() {
    const NoRedraw off(grid_);
    grid_.selectNone();
}

// Returns the row itself, or the folder that a files row belongs to.
Row ReportView::folderOf(Row row) const {
    const bool files = grid_.number(row, kIsFolder) != 1 && grid_.parent(row) != kNoRow;
    return files ? grid_.parent(row) : row;
}

std::string ReportView::folderPath(Row row) const {
    return Report_GetFullpathOfNode(grid_, folderOf(row), true, scan_.paths);
}

std::string ReportView::listedFolder(Row row) const {
    return isOnDisk(scan_, row) ? folderPath(row) : std::string();
}

void ReportView::Report_MouseClick(Row row, MouseButton button, Point at) {
    guarded(scan_.diagnostics, [&] {
        grid_.setSelected(row, true);
        grid_.setCurrentRow(row);
        tellOf(row, button, at);
    });
}

void ReportView::tellOf(Row row, MouseButton button, Point at) {
    if (!follow(row)) return;
    pane_.focus();
    const bool folder = grid_.number(row, kIsFolder) == 1;
    if (button == MouseButton::kRight && folder)
        host_.Report_ShellContextMenu(row, AddTrailingSlash(pathOf(row), scan_.paths), at);
}

// Makes drives, lists, preview and status show the folder of a row. Messages run meanwhile; returns false if
// another row is selected then.
bool ReportView::follow(Row row) {
    const Row current = grid_.currentRow();
    const std::string path = folderPath(row);
    if (isOnDisk(scan_, row)) host_.selectDriveOf(row);
    host_.showFilesOf(listedFolder(row));
    // Another row may be current now, and this one may be gone.
    if (grid_.currentRow() != current || !grid_.selected(row) || scan_.state.ScanActive ||
        folderPath(row) != path)
        return false;
    if (isOnDisk(scan_, row)) history_.visited(pathOf(row));
    showSelection(path);
    host_.refreshPreview();
    return true;
}

std::string ReportView::pathOf(Row row) const {
    return Report_GetFullpathOfNode(grid_, folderOf(row), false, scan_.paths);
}

Row ReportView::rowOf(const std::string& path) const {
    const auto below = [&](Row root) { return rowOfFolder(grid_, root, path, scan_.paths); };
    for (Row root = firstLiveSource(scan_); root != kNoRow; root = nextLiveSource(scan_, root))
        if (const Row row = below(root); row != kNoRow) return row;
    for (Row root = grid_.firstRoot(); root != kNoRow; root = grid_.nextSibling(root))
        if (const Row row = below(root); row != kNoRow) return row;
    return kNoRow;
}

void ReportView::selectionArrived() {
    if (grid_.selectedCount() != 1) return;
    if (const Row row = grid_.selectedRows().front(); isOnDisk(scan_, row)) history_.visited(pathOf(row));
}

void ReportView::Shortcut(GridShortcut what) {
    guarded(scan_.diagnostics, {.routine = "tvwPL_Shortcut"}, [&] {
        if (grid_.rowCount() == 0 || scan_.state.ScanActive) return;
        if (what == GridShortcut::kCopy) return copySelected();
        const std::string path =
            history_.step(what == GridShortcut::kBack ? -1 : 1,
                          [this](const std::string& one) { return rowOf(one) != kNoRow; });
        if (!path.empty()) goTo(path);
    });
}

// The row of a folder's files stands for the folder, which may be selected, too.
void ReportView::copySelected() {
    std::vector<std::string> paths;
    for (const Row row : grid_.selectedRows()) {
        std::string path = pathOf(row);
        if (std::ranges::find(paths, path) == paths.end()) paths.push_back(std::move(path));
    }
    if (!paths.empty()) host_.copyPaths(paths);
}

// Shows the sum of several rows, or of one row the path; nothing changes for an empty path.
void ReportView::showSelection(const std::string& path) {
    if (grid_.selectedCount() > 1) {
        host_.setFirstPanel(selectionSum(grid_, options_, scan_.texts, scan_.numbers));
    } else if (!path.empty()) {
        host_.setFirstPanel(path);
    }
}

void ReportView::DblClick() {
    guarded(scan_.diagnostics, {.routine = "tvwPL_DblClick"}, [&] {
        if (grid_.rowCount() == 0 || grid_.selectedCount() == 0 || scan_.state.ScanActive) return;
        const Row row = grid_.selectedRows().front();
        if (isLeftOutByRule(grid_, row)) return Report_ReadAllTheSame(scan_, row);
        grid_.setExpanded(row, !grid_.expanded(row));
        expandedByUser(row);
    });
}

void ReportView::KeyUp(int key) {
    guarded(scan_.diagnostics, {.routine = "tvwPL_KeyUp"}, [&] {
        if (grid_.selectedCount() == 0 || scan_.state.ScanActive) return;
        if (key == kKeyReturn) return DblClick();
        const Row first = grid_.selectedRows().front();
        // The current row stays, because with Ctrl and Shift the keys move it and go on from it.
        if (key == kKeyUp || key == kKeyDown) tellOf(first, MouseButton::kLeft, {});
        if (key == kKeyPageUp || key == kKeyPageDown) showSelection({});
        if (key == kKeyF2 && grid_.selectedCount() == 1 && grid_.level(first) > 0 &&
            grid_.number(first, kIsFolder) == 1 && isOnDisk(scan_, first))
            pane_.editCell(first);
    });
}

}  // namespace hl
