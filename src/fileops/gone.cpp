#include "fileops/gone.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/path.h"
#include "base/scope_exit.h"
#include "grid/no_redraw.h"
#include "scan/file_system_calls.h"
#include "scan/list_handover.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/report_changes.h"
#include "scan/rollup.h"

namespace hl {

namespace {

std::string pathOfFile(const Grid& list, Row row) {
    return std::string(list.cellText(row, kFilePath)).append(list.text(row));
}

}  // namespace

void Gone::about(const std::string& path, bool folder) {
    ScanContext& scan = ops_.scan;
    if (scan.options.AddHardlinksOnlyOnce != 1) return;
    const auto isLinked = [&] {
        const auto facts = scan.fileSystem.look(path);
        return facts && facts->links > 1;
    };
    if (folder ? holdsLinkedFiles(scan, path) : isLinked()) linked_.insert(path);
}

void Gone::trashed(TrashedItem item) {
    const std::string& now = item.moved.now.base;
    if (now.empty()) return;
    const std::string files = folderAbove(now, kPosixPaths);
    trash_ = folderAbove(files, kPosixPaths);
    trashes_.insert(files);
    trashes_.insert(trash_ + "/info");
    if (item.folder) trashed_.insert(now);
    step_.trashed.push_back(std::move(item));
}

// Tells whether `folders` holds the path itself or a folder above it.
bool Gone::isIn(const Paths& folders, std::string_view path) {
    if (folders.empty()) return false;
    for (std::string above(path); !above.empty(); above = folderAbove(above, kPosixPaths))
        if (folders.contains(above)) return true;
    return false;
}

bool Gone::went(const std::string& path) const {
    return files_.contains(path) || isIn(folders_, path) ||
           (isIn(parts_, path) && hasVanished(ops_.scan, path));
}

// --- the report

void Gone::readWhatIsLeft() {
    ScanContext& scan = ops_.scan;
    const ScopeExit keep([this] { ops_.undo.add(std::move(step_)); });
    if (nothing() || ops_.host.closed()) return;
    Row current = scan.tvwPL.currentRow();
    if (current != kNoRow && scan.tvwPL.number(current, kIsFolder) != 1 && scan.tvwPL.level(current) > 0)
        current = scan.tvwPL.parent(current);
    if (current != kNoRow) current_ = Report_GetFullpathOfNode(scan.tvwPL, current, false, scan.paths);
    findNext(current);
    // The Stop that ended the command is reset here, so that pressing it again ends the reading.
    scan.state.CancelState = kCancelNone;
    const NoRedraw off(scan.tvwPL);
    for (Row root = firstLiveSource(scan); root != kNoRow; root = nextLiveSource(scan, root))
        if (isIn(folders_, scan.tvwPL.text(root))) step_.sources.emplace_back(scan.tvwPL.text(root));
    ReportChanges changes(scan);
    for (const std::string& path : folders_) changes.folderWent(path);
    for (const std::string& path : parts_)
        if (!isIn(parts_, folderAbove(path, kPosixPaths))) changes.folderChanged(path);
    Paths folders;
    for (const std::string& path : files_) folders.insert(folderAbove(path, kPosixPaths));
    for (const std::string& folder : folders) changes.filesChanged(folder);
    readTrash(changes);
    for (const std::string& path : linked_)
        if (went(path)) changes.sourcesChanged(path);
    auto links = changes.finish();
    step_.links.assign(links.begin(), links.end());
    files_.merge(links);
}

// The next is the first folder behind the current one that stays, or else the last one before it.
void Gone::findNext(Row current) {
    const Grid& report = ops_.scan.tvwPL;
    if (current == kNoRow || report.parent(current) == kNoRow) return;
    const auto stays = [&](Row row) {
        if (report.number(row, kIsFolder) != 1 || !isOnDisk(ops_.scan, row)) return false;
        std::string path = Report_GetFullpathOfNode(report, row, false, ops_.scan.paths);
        if (went(path)) return false;
        next_ = std::move(path);
        return true;
    };
    for (Row row = report.nextSibling(current); row != kNoRow; row = report.nextSibling(row))
        if (stays(row)) return;
    for (Row row = report.firstChild(report.parent(current)); row != current; row = report.nextSibling(row))
        stays(row);
}

// The trash may lie in a folder of the report; then recycling frees nothing there.
void Gone::readTrash(ReportChanges& changes) const {
    for (const Paths* folders : {&trashes_, &trashed_})
        for (const std::string& path : *folders) changes.folderCame(path);
    for (const std::string& folder : trashes_) {
        changes.filesChanged(folder);
        if (!linked_.empty()) changes.sourcesChanged(folder);
    }
}

// --- lists, panels and preview

void Gone::show() {
    if (nothing() || ops_.host.closed()) return;
    if (!recycled_) takeNames();
    ops_.host.filesWent([this](const std::string& path) { return went(path); });
    followReport();
    if (!ops_.host.closed()) ops_.host.Preview_ShowFile();
}

// Lowers the number of names of files that lost some, as far as the list knows these names.
void Gone::takeNames() {
    Grid& list = ops_.scan.lvwHardlinks;
    const auto fileOf = [&](Row row) {
        return std::pair(list.number(row, kFileDevice), std::string(list.cellText(row, kFileId)));
    };
    std::map<std::pair<double, std::string>, int> lost;
    for (Row row = list.firstRoot(); row != kNoRow; row = list.nextSibling(row))
        if (went(pathOfFile(list, row))) ++lost[fileOf(row)];
    for (Row row = list.firstRoot(); row != kNoRow && !lost.empty(); row = list.nextSibling(row)) {
        const auto names = lost.find(fileOf(row));
        if (names != lost.end())
            list.setNumber(row, kFileLinks, std::max(1.0, list.number(row, kFileLinks) - names->second));
    }
}

// If the current row went, the next one becomes current, and the file list shows its files.
void Gone::followReport() {
    ScanContext& scan = ops_.scan;
    Grid& report = scan.tvwPL;
    const std::string listed = scan.state.fileList.folder;
    Row row = report.currentRow();
    const bool moved = row == kNoRow && !current_.empty();
    if (moved) row = nearestRow(next_.empty() ? current_ : next_);
    if (row != kNoRow) {
        const NoRedraw off(report);
        report.setCurrentRow(row);
        if (report.selectedCount() == 0) report.setSelected(row, true);
    }
    if (!moved && (listed.empty() || !went(listed.substr(0, listed.size() - 1)))) return;
    if (row == kNoRow) return ops_.host.folderShown(kNoRow, "");
    if (report.number(row, kIsFolder) != 1) row = report.parent(row);
    ops_.host.folderShown(row, Report_GetFullpathOfNode(report, row, true, scan.paths));
}

/// Returns the row of the folder, or of the nearest folder above it that has one, or else the first row.
Row Gone::nearestRow(std::string path) const {
    const Grid& report = ops_.scan.tvwPL;
    for (; !path.empty(); path = folderAbove(path, kPosixPaths))
        for (Row root = firstLiveSource(ops_.scan); root != kNoRow; root = nextLiveSource(ops_.scan, root))
            if (const Row row = rowOfFolder(report, root, path, ops_.scan.paths); row != kNoRow) return row;
    return firstLiveSource(ops_.scan);
}

}  // namespace hl
