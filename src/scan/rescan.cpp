// Reads one folder of the report again: Report_Rescan of driver.h.
#include <optional>
#include <utility>

#include "base/date_format.h"
#include "base/scope_exit.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/file_system_calls.h"
#include "scan/left_out.h"
#include "scan/not_read.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/report_changes.h"
#include "scan/rollup.h"
#include "scan/snapshots.h"
#include "scan/walker.h"

namespace hl {

namespace {

struct FolderNumbers {
    double size = 0, disk = 0, files = 0, folders = 0, newest = 0;
    std::uint32_t notRead = 0;
    Unshown leftOut = {};
};

FolderNumbers numbersOf(const Grid& report, Row row) {
    return {report.number(row, kSize),    report.number(row, kDisk),   report.number(row, kFiles),
            report.number(row, kFolders), report.number(row, kNewest), foldersNotRead(report, row),
            leftOutWith(report, row)};
}

void addTo(Grid& report, Row row, double size, double files) {
    Report_SetNodeSizeAndFilecount(
        report, row, SizeValue::fromBytes(static_cast<std::uint64_t>(report.number(row, kSize) + size)),
        static_cast<std::int32_t>(report.number(row, kFiles) + files));
}

// Calls `act` for the row and all above it; it also ends at a row with an empty text.
template <class Do>
void forRowAndAbove(const Grid& report, Row row, Do&& act) {
    for (; row != kNoRow && !report.text(row).empty(); row = report.parent(row)) act(row);
}

// Restores the picture of a folder that was not read, or not wholly, or was left out. If it still is, the
// walk says so again.
void forgetNotRead(ScanContext& scan, Row row, const std::string& path) {
    Grid& report = scan.tvwPL;
    if (!isNotRead(report, row) && !isLeftOut(report, row)) return;
    report.setRowNote(row, "");
    if (report.level(row) == 0) {
        const SourceItem* item =
            scan.cboOrdner.find(identityKey(AddTrailingSlash(path, scan.paths), scan.paths));
        return report.setPicture(row, item == nullptr ? kPictureSource : item->image);
    }
    const std::string longPath = ToLongPath(path, scan.paths);
    const auto target = scan.fileSystem.target(longPath);
    const ReparseTag tag = !target ? kTagNone : isFolder(scan, longPath) ? kTagMountPoint : kTagSymbolicLink;
    Report_ShowFolderKind(report, row, tag, target.valueOr(""));
}

void correctAbove(Grid& report, Row row, const FolderNumbers& before) {
    const FolderNumbers now = numbersOf(report, row);
    forRowAndAbove(report, report.parent(row), [&](Row above) {
        addTo(report, above, now.size - before.size, now.files - before.files);
        report.setNumber(above, kDisk, report.number(above, kDisk) - before.disk + now.disk);
        report.setNumber(above, kFolders, report.number(above, kFolders) - before.folders + now.folders);
        report.setMark(above, report.mark(above) - before.notRead + now.notRead);
        changeLeftOut(report, above, before.leftOut, now.leftOut);
    });
    Report_UpdateNewest(report, row, before.newest);
}

void readAgain(ScanContext& scan, Row row) {
    Grid& report = scan.tvwPL;
    const FolderNumbers before = numbersOf(report, row);
    if (scan.largest != nullptr) scan.largest->forgetBelow(report, row);
    report.removeChildren(row);
    const std::string path = Report_GetFullpathOfNode(report, row, false, scan.paths);
    forgetNotRead(scan, row, path);
    QuelleEinlesen(scan, path, -1, row);
    if (report.level(row) >= 1) correctAbove(report, row, before);
    forRowAndAbove(report, row, [&](Row above) { Report_ChangePercentValue(scan, above); });
    Report_Sort(scan);
}

// Where names of one file count once, a scan of the source counts a file in the folder that it meets first. A
// folder that is read alone counts it, too; and if its name went from here, another folder has to count it.
// So the whole source is read again, as it is if the folder had the origin of a snapshot elsewhere, or has
// one now; the lists stay as they are. Returns the row of the folder, which is another one then.
Row readSourceToo(ScanContext& scan, Row row, double sizeBefore) {
    const Grid& report = scan.tvwPL;
    const bool linksMove = scan.options.AddHardlinksOnlyOnce == 1 && report.level(row) > 0 &&
                           (scan.state.links.met || report.number(row, kSize) != sizeBefore);
    const bool snapshotsMove = std::exchange(scan.state.snapshots.moved, false);
    if ((!linksMove && !snapshotsMove) || scan.state.CancelState == kCancelStop) return row;
    const Row root = report.rootOf(row);
    const std::string path = Report_GetFullpathOfNode(report, row, false, scan.paths);
    ReportChanges again(scan);
    again.sourcesChanged(path);
    again.finish();
    const Row now = rowOfFolder(report, root, path, scan.paths);
    return now == kNoRow ? root : now;
}

// Makes the row at the former current place current, if it has the former text, else the row that was read
// again.
void makeCurrent(Grid& report, std::size_t formerIndex, const std::string& formerText, Row row) {
    const Row there = report.rowAt(formerIndex);
    if (there != kNoRow && !isGone(report, there) && report.text(there) == formerText) row = there;
    report.setCurrentRow(row);
    report.setSelected(row, true);
}

void rescanCurrent(ScanContext& scan) {
    Grid& report = scan.tvwPL;
    std::optional<BusyPointer> busy(scan.controls);
    scan.host.selectionGone();
    Row row = kNoRow;
    std::size_t formerIndex = 0;
    std::string formerText;
    RunEnd end = RunEnd::kBrokenOff;
    {
        const ScopeExit unlock([&] {
            scan.state.CancelState = kCancelNone;  // A Stop of this reading must not end what comes next.
            scan.host.rowsChanged();
            EnableControls(scan);
            if (end == RunEnd::kBrokenOff) scan.host.runEnded(end);
        });
        DisableControls(scan, false);
        scan.host.rowsWillChange();
        row = report.currentRow();
        if (report.number(row, kIsFolder) == 0 && report.parent(row) != kNoRow) row = report.parent(row);
        formerIndex = report.indexOf(report.currentRow());
        formerText = report.text(row);
        scan.host.runBegan();
        report.setCurrentRow(row);
        const double sizeBefore = report.number(row, kSize);
        readAgain(scan, row);
        row = readSourceToo(scan, row, sizeBefore);
        scan.host.sourceChanged(row);
        end = endOf(scan.state);
    }
    busy.reset();
    if (!scan.state.RowPicked) makeCurrent(report, formerIndex, formerText, row);
    scan.host.runEnded(end);
    scan.state.fileList.folder.clear();
    if (scan.state.SourceQueue.empty()) {
        scan.host.folderShown(Report_GetFullpathOfNode(report, row, true, scan.paths));
    } else {
        Ordnerliste_Abarbeiten(scan);
    }
}

}  // namespace

void Report_ReadAgain(ScanContext& scan, Row row) {
    Grid& report = scan.tvwPL;
    const FolderNumbers before = numbersOf(report, row);
    if (scan.largest != nullptr) scan.largest->forgetBelow(report, row);
    report.removeChildren(row);
    forgetNotRead(scan, row, Report_GetFullpathOfNode(report, row, false, scan.paths));
    // In a silent run the walk fills no lists.
    noteSpaceChanged(scan, row);
    const ScopeExit lists([&, was = scan.state.SilentRun] { scan.state.SilentRun = was; });
    scan.state.SilentRun = true;
    scan.state.links.needCount = scan.options.AddHardlinksOnlyOnce == 1;
    scan.state.NeedSpace = true;
    scan.state.Started = secondsNow();
    scan.state.links.seen.Clear();
    ScanTotals totals;
    Report_ScanFolders(scan, Report_GetFullpathOfNode(report, row, true, scan.paths), row, totals);
    scan.state.links.seen.Clear();
    Report_SetTotals(report, row, totals);
    correctAbove(report, row, before);
}

void Report_ReadAllTheSame(ScanContext& scan, Row row) {
    guarded(scan.diagnostics, [&] {
        if (scan.state.ScanActive || !isLeftOutByRule(scan.tvwPL, row) || isFromFile(scan, row)) return;
        readAllTheSame(scan, row);
        scan.tvwPL.setCurrentRow(row);
        rescanCurrent(scan);
    });
}

void Report_Rescan(ScanContext& scan) {
    guarded(scan.diagnostics, [&] {
        const Row row = scan.tvwPL.currentRow();
        if (scan.tvwPL.rowCount() != 0 && row != kNoRow && isOnDisk(scan, row)) rescanCurrent(scan);
    });
}

}  // namespace hl
