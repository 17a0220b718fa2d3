#include "scan/rollup.h"

#include <algorithm>
#include <vector>

#include "robustness/trap.h"
#include "scan/left_out.h"
#include "scan/records.h"
#include "scan/yield.h"

namespace hl {

namespace {

// The list of bar pictures has one for each whole percent from 0 to 100, and one more at its end.
constexpr int kBarPictures = 102;

// Returns the background of rows, one step darker for each level. The formula becomes negative below level
// 41; deeper rows keep its last grey.
std::uint32_t greyOf(std::uint32_t level) {
    const auto grey = 255U - 6U * (std::min<std::uint32_t>(level, 41) + 1U);
    return grey << 16 | grey << 8 | grey;
}

// Returns the newest change of the row's children; no further one is looked at once it is `enough`.
double newestBelow(const Grid& report, Row row, double enough) {
    double newest = 0;
    for (Row child = report.firstChild(row); child != kNoRow && newest < enough;
         child = report.nextSibling(child))
        newest = std::max(newest, report.number(child, kNewest));
    return newest;
}

}  // namespace

void Report_SetNodeSizeAndFilecount(Grid& tvwPL, Row row, SizeValue size, std::int32_t files) {
    tvwPL.setNumber(row, kSize, size.asDouble());
    tvwPL.setNumber(row, kFiles, files);
}

void Report_SetTotals(Grid& tvwPL, Row row, const ScanTotals& totals) {
    Report_SetNodeSizeAndFilecount(tvwPL, row, totals.size, totals.files);
    tvwPL.setNumber(row, kFolders, totals.folders);
    tvwPL.setNumber(row, kDisk, totals.disk.asDouble());
    tvwPL.setNumber(row, kNewest, static_cast<double>(totals.newest));
    tvwPL.setUnshown(row, totals.leftOut);
}

// What is missing below the row is not known.
void Report_MarkIncomplete(ScanContext& scan, Row row) {
    scan.tvwPL.setPicture(row, kPictureIncomplete);
    scan.tvwPL.setRowNote(row, scan.texts.TL(9811, "angehalten: unvollständig"));
}

void Report_ShowFolderKind(Grid& tvwPL, Row row, std::uint32_t tag, std::string_view target) {
    tvwPL.setPicture(row, tag == kTagNone         ? kPictureFolder
                          : tag == kTagMountPoint ? kPictureMountPoint
                                                  : kPictureLink);
    if (tag != kTagNone) tvwPL.setRowNote(row, " " + std::string(target) + " ");
}

void Report_Shade(ScanContext& scan, Row row) {
    if (scan.options.FolderColorFade != 1) return;
    scan.tvwPL.setBackColor(row, greyOf(scan.tvwPL.level(scan.tvwPL.parent(row))));
}

void Report_AddFilesRow(ScanContext& scan, Row folder, const ScanTotals& files, TextRef text) {
    Grid& report = scan.tvwPL;
    if (files.files == 0) return;
    const Row row = report.addRow(folder, text);
    Report_SetTotals(report, row, files);
    report.setPicture(row, kPictureFilesRow);
    Report_Shade(scan, row);
}

void addTotals(ScanTotals& sum, const ScanTotals& more) {
    sum.size += more.size;
    sum.disk += more.disk;
    sum.newest = std::max(sum.newest, more.newest);
    sum.files = addCount(sum.files, more.files);
    sum.folders = addCount(sum.folders, more.folders);
    sum.errors = addCount(sum.errors, more.errors);
    sum.leftOut.folders += more.leftOut.folders;
    sum.leftOut.files += more.leftOut.files;
}

void Report_AddAbove(Grid& tvwPL, Row row, Row top, const ScanTotals& more) {
    const auto add = [&](CellId cell, double value) {
        tvwPL.setNumber(row, cell, tvwPL.number(row, cell) + value);
    };
    for (row = tvwPL.parent(row); row != top; row = tvwPL.parent(row)) {
        add(kSize, more.size.asDouble());
        add(kDisk, more.disk.asDouble());
        add(kFiles, more.files);
        add(kFolders, more.folders);
        tvwPL.setNumber(row, kNewest, std::max(tvwPL.number(row, kNewest), static_cast<double>(more.newest)));
        changeLeftOut(tvwPL, row, {}, more.leftOut);
    }
}

void addSpace(ScanTotals& totals, const EntryDetails& file, std::int64_t started, bool counts) {
    if (counts) totals.disk += SizeValue::fromBytes(file.blocks * kBlockBytes);
    if (file.written <= started) totals.newest = std::max(totals.newest, file.written);
}

CellId reckonedCell(const Options& options) {
    return options.ReckonOnDisk != 0 ? kDisk : kSize;
}

// Looks at the children of a row only if the one that made its newest change has lost it.
void Report_UpdateNewest(Grid& tvwPL, Row row, double before) {
    double now = tvwPL.number(row, kNewest);
    for (Row above = tvwPL.parent(row); above != kNoRow; above = tvwPL.parent(above)) {
        const double was = tvwPL.number(above, kNewest);
        const bool lost = before == was && now < before;
        const double newest = lost ? newestBelow(tvwPL, above, was) : std::max(was, now);
        if (newest == was) return;
        tvwPL.setNumber(above, kNewest, newest);
        before = was;
        now = newest;
    }
}

void Report_ChangePercentValue(ScanContext& scan, Row row) {
    guarded(scan.diagnostics, [&] {
        Grid& report = scan.tvwPL;
        const CellId size = reckonedCell(scan.options);
        const double whole = report.number(row, size);
        for (Row child = report.firstChild(row); child != kNoRow; child = report.nextSibling(child)) {
            const double part = report.number(child, size);
            const double percent = whole == 0 || part == 0 ? 0 : roundToHundredths(part * 100 / whole);
            report.setNumber(child, kPercent, percent);
            if (scan.options.FolderShowPercentBar != 1) continue;
            if (percent >= kBarPictures)
                throw Fault(kFaultSubscript, "BarPictures", "Subscript out of range");
            report.setBarPicture(child, static_cast<int>(percent));
        }
    });
}

void Report_ReckonAnew(ScanContext& scan) {
    Grid& report = scan.tvwPL;
    const std::string_view reckoned = kFolderCells[reckonedCell(scan.options)].key;
    for (std::uint32_t level = 0; level < Grid::kSortLevels; ++level) {
        std::string& key = report.levelSort(level).key;
        if (key == kFolderCells[kSize].key || key == kFolderCells[kDisk].key) key = reckoned;
    }
    for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row))
        if (report.hasChildren(row)) Report_ChangePercentValue(scan, row);
    report.sortLevels(scan.state.DeepestLevel);
}

void Report_Sort(ScanContext& scan) {
    guarded(scan.diagnostics, [&] {
        Yield yield(scan.state, scan.pump);
        scan.tvwPL.sortLevels(scan.state.DeepestLevel, [&] { yield.now(); });
    });
}

std::string Report_GetFullpathOfNode(const Grid& tvwPL, Row row, bool addSlash, const PathRules& paths) {
    std::vector<Row> chain;
    for (; row != kNoRow; row = tvwPL.parent(row)) chain.push_back(row);
    std::string path;
    for (auto part = chain.rbegin(); part != chain.rend(); ++part) {
        if (!path.empty() && !path.ends_with(paths.separator)) path += paths.separator;
        path += tvwPL.text(*part);
    }
    if (addSlash && !path.ends_with(paths.separator)) path += paths.separator;
    return path;
}

Row filesRowBelow(const Grid& report, Row row) {
    Row child = report.firstChild(row);
    while (child != kNoRow && report.number(child, kIsFolder) == 1) child = report.nextSibling(child);
    return child;
}

void Report_RemoveFolders(ScanContext& scan) {
    guarded(scan.diagnostics, [&] {
        Grid& report = scan.tvwPL;
        if (report.rowCount() == 0 || report.currentRow() == kNoRow) return;
        const Row row = report.rootOf(report.currentRow());
        const std::string folder = AddTrailingSlash(report.text(row), scan.paths);
        if (identityKey(folder, scan.paths) == identityKey(scan.state.fileList.folder, scan.paths))
            scan.state.fileList.folder.clear();
        report.setEnabled(false);
        report.removeRow(row);
        if (scan.statistics != nullptr) scan.statistics->dropSource(row);
        if (scan.largest != nullptr) scan.largest->dropSource(row);
        if (scan.facts != nullptr) scan.facts->dropSource(row);
        report.setEnabled(true);
        scan.host.rowsChanged();
        scan.host.selectionGone();
        if (report.rowCount() == 0) scan.state.DeepestLevel = 0;
    });
}

}  // namespace hl
