// Sections: files; folders; the lists; the report.
#include "fileops/deleting.h"

#include <utility>
#include <vector>

#include "base/path.h"
#include "base/text.h"
#include "fileops/recycle_texts.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "views/list_view.h"

namespace hl {

namespace {

constexpr const char* kModul = "frmMain";

std::string statusOf(const FileOps& ops, bool recycle) {
    const Texts& texts = ops.scan.texts;
    return recycle ? texts.TL(9550, "In den Papierkorb: %1") : texts.TL(9549, "Wird gelöscht: %1");
}

/// To the trash. Empty if it went, else "REASON (CODE)".
std::string recycled(const FileOps& ops, FileRun& run, const std::string& path) {
    const RecycleError error = ops.operations.recycle(placeOf(ops.scan, path), run);
    if (error == RecycleError::kNone) return {};
    const int code = static_cast<int>(error);
    return xGetErrorTextFromSH(code, false) + " (" + std::to_string(code) + ")";
}

std::string folderStays(const FileOps& ops, const std::string& path, const std::string& reason) {
    return ops.scan.texts.TL(3783, "Beim Löschen des Ordners '%1' ist ein Fehler aufgetreten: %2",
                             {path, reason});
}

void logGone(const FileOps& ops, const std::string& path, bool recycle) {
    const Texts& texts = ops.scan.texts;
    ops.scan.log.LogProtokoll(recycle ? texts.TL(3760, "PAPIERKORB: %1", {path})
                                      : texts.TL(3761, "GELÖSCHT: %1", {path}));
}

/// No screen shows more of a path.
std::string cut(const std::string& path) {
    constexpr std::size_t kFront = 300, kBack = 200;
    if (path.size() <= kFront + kBack) return path;
    return path.substr(0, kFront) + " ... " + path.substr(path.size() - kBack);
}

/// Log first, then the message.
void tellFailure(const FileOps& ops, const std::string& text) {
    ops.scan.log.LogProtokoll(text);
    ops.window.message(MessageKind::kWarning, visible(text));
}

/// Why a folder is not removed whole; empty if it may be.
std::string protectedReason(const FileOps& ops, FileRun& run, const std::string& path) {
    const Texts& texts = ops.scan.texts;
    switch (ops.operations.protectionOf(placeOf(ops.scan, path), run)) {
        case Protection::kRoot:
            return texts.TL(9552, "'%1' ist das ganze Dateisystem und bleibt.", {path});
        case Protection::kHome:
            return texts.TL(9553, "'%1' enthält Ihren persönlichen Ordner und bleibt.", {path});
        case Protection::kProgram:
            return texts.TL(9554, "'%1' enthält dieses Programm und bleibt.", {path});
        default:
            return {};
    }
}

bool refused(const FileOps& ops, FileRun& run, const std::string& path) {
    const std::string reason = protectedReason(ops, run, path);
    if (!reason.empty()) tellFailure(ops, reason);
    return !reason.empty();
}

}  // namespace

// --- files

bool xDeleteFile_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText) {
    constexpr int kNotFound = 2;  // Gone already counts as deleted.
    const int error = ops.operations.removeFile(placeOf(ops.scan, path), run);
    if (error == 0 || error == kNotFound) return true;
    errorText = ops.scan.facts.errorText(error) + " (" + path + ")";
    return false;
}

std::string Delete_Files(const FileOps& ops, FileRun& run, const std::string& path, bool recycle) {
    const Texts& texts = ops.scan.texts;
    std::string reason;
    if (recycle) {
        // A folder may have taken the file's name since; to remove one as a file would be refused anyway.
        reason = protectedReason(ops, run, path);
        if (reason.empty()) reason = recycled(ops, run, path);
    } else {
        xDeleteFile_W(ops, run, path, reason);
    }
    if (reason.empty()) {
        logGone(ops, path, recycle);
    } else {
        tellFailure(ops, recycle
                             ? texts.TL(3763,
                                        "Beim Verschieben der Datei '%1' in den Papierkorb ist ein Fehler "
                                        "aufgetreten: %2",
                                        {path, reason})
                             : texts.TL(3762, "Beim Löschen der Datei '%1' ist ein Fehler aufgetreten: %2",
                                        {path, reason}));
    }
    return reason;
}

// --- folders

bool xDeleteFolder_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText) {
    const std::int32_t before = std::exchange(ops.scan.state.CancelState, kCancelNone);
    const Removal removal = ops.operations.removeTree(placeOf(ops.scan, path), run);
    ops.scan.state.CancelState = before;
    if (removal.removed) return true;
    if (removal.vanished) return false;
    for (const RemovalFailure& failure : removal.failures)
        errorText += ops.scan.facts.errorText(failure.error) + (failure.folder ? "(" : " (") +
                     cut(failure.path) + ") ";
    if (removal.failureCount > removal.failures.size())
        errorText += ops.scan.texts.TL(9555, "... und %1 weitere",
                                       {std::to_string(removal.failureCount - removal.failures.size())});
    return false;
}

namespace {

/// One folder on the road that tells. True if it went.
bool deleteFolder(const FileOps& ops, FileRun& run, const std::string& path, bool recycle) {
    std::string reason;
    if (recycle) reason = recycled(ops, run, path);
    const bool went = recycle ? reason.empty() : xDeleteFolder_W(ops, run, path, reason);
    if (went) return logGone(ops, path, recycle), true;
    tellFailure(ops, recycle ? ops.scan.texts.TL(9571,
                                                 "Beim Verschieben des Ordners'%1' in den Papierkorb ist ein "
                                                 "Fehler aufgetreten: %2",
                                                 {path, reason})
                             : folderStays(ops, path, reason));
    return false;
}

// A row that sums up the files of a folder is none itself, whatever may be called so on the disk.
void deleteFolderOf(const FileOps& ops, FileRun& run, Row row, bool recycle) {
    Grid& report = ops.scan.tvwPL;
    const std::string path = Report_GetFullpathOfNode(report, row, false, ops.scan.paths);
    if (report.number(row, kIsFolder) != 1 && report.level(row) > 0)
        return tellFailure(ops, folderStays(ops, path, ""));
    if (!refused(ops, run, path) && deleteFolder(ops, run, path, recycle)) report.removeRow(row);
}

void takeOutOf(Grid& report, Row above, double size, double files, double folders) {
    for (; above != kNoRow && !report.text(above).empty(); above = report.parent(above)) {
        report.setNumber(above, kSize, report.number(above, kSize) - size);
        report.setNumber(above, kFiles, report.number(above, kFiles) - files);
        report.setNumber(above, kFolders, report.number(above, kFolders) - folders - 1);
    }
}

}  // namespace

// --- the lists

namespace {

/// The row of a folder below `row`, whose own path is `path`; kNoRow if there is none.
Row rowOfFolder(const ScanContext& scan, Row row, std::string path, const std::string& folder) {
    while (row != kNoRow && path != folder) {
        Row child = scan.tvwPL.firstChild(row);
        std::string below;
        for (; child != kNoRow; child = scan.tvwPL.nextSibling(child)) {
            below = AddTrailingSlash(joinPath(path, scan.tvwPL.text(child), scan.paths), scan.paths);
            if (scan.tvwPL.number(child, kIsFolder) == 1 && folder.starts_with(below)) break;
        }
        row = child;
        path = below;
    }
    return row;
}

/// The row of the folder whose files the list shows, made current; whichever was is left. kNoRow for none.
Row chooseListedFolder(ScanContext& scan) {
    const std::string folder = scan.state.currentFolder;
    Row found = kNoRow;
    for (Row root = scan.tvwPL.firstRoot(); root != kNoRow && found == kNoRow && !folder.empty();
         root = scan.tvwPL.nextSibling(root)) {
        const std::string path = Report_GetFullpathOfNode(scan.tvwPL, root, true, scan.paths);
        if (folder.starts_with(path)) found = rowOfFolder(scan, root, path, folder);
    }
    const Row current = scan.tvwPL.currentRow();
    const bool isFilesRow = current != kNoRow && scan.tvwPL.number(current, kIsFolder) != 1;
    if (found == kNoRow || found == (isFilesRow ? scan.tvwPL.parent(current) : current)) return found;
    scan.tvwPL.selectNone();
    scan.tvwPL.setCurrentRow(found);
    scan.tvwPL.setSelected(found, true);
    return found;
}

struct FilesOfFolder {
    double size = 0, files = 0;
};

/// The row below a folder that sums up its files; kNoRow if there is none.
Row filesRowOf(const Grid& report, Row folder) {
    Row child = report.firstChild(folder);
    while (child != kNoRow && report.number(child, kIsFolder) == 1) child = report.nextSibling(child);
    return child;
}

/// What lies directly in a folder. One with no folders in it has no row for its files.
FilesOfFolder filesOf(const Grid& report, Row folder) {
    const Row row = report.hasChildren(folder) ? filesRowOf(report, folder) : folder;
    if (row == kNoRow) return {};
    return {report.number(row, kSize), report.number(row, kFiles)};
}

/// Reads the files of the listed folder again. A rescan of files alone does not lead to true sums: it counts
/// their change twice above, and all of them anew where there was no row for them. So the folder and those
/// above get what they had, and the change once.
void readListedFolderAgain(ScanContext& scan) {
    Grid& report = scan.tvwPL;
    const Row folder = chooseListedFolder(scan);
    if (folder == kNoRow) return;
    const bool hadChildren = report.hasChildren(folder);
    const FilesOfFolder before = filesOf(report, folder);
    std::vector<FilesOfFolder> sums;
    for (Row row = folder; row != kNoRow; row = report.parent(row))
        sums.push_back({report.number(row, kSize), report.number(row, kFiles)});
    Report_Rescan(scan, false);
    const Row read = filesRowOf(report, folder);
    const FilesOfFolder now = read == kNoRow
                                  ? FilesOfFolder()
                                  : FilesOfFolder{report.number(read, kSize), report.number(read, kFiles)};
    if (!hadChildren && read != kNoRow) report.removeRow(read);
    std::size_t level = 0;
    for (Row row = folder; row != kNoRow && level < sums.size(); row = report.parent(row), ++level) {
        report.setNumber(row, kSize, sums[level].size + now.size - before.size);
        report.setNumber(row, kFiles, sums[level].files + now.files - before.files);
        Report_ChangePercentValue(scan, row);
    }
    Report_Sort(scan);
    scan.host.reportResizeColumns();
}

}  // namespace

void List_DeleteFiles(const FileOps& ops, ListView& list, GridId id, bool recycle) {
    guarded(ops.scan.diagnostics, list.routine("DeleteFiles").c_str(), kModul, [&] {
        Grid& grid = list.grid();
        const std::vector<Row> rows = grid.selectedRows();
        if (rows.empty() || ops.scan.state.ScanActive) return;
        if (!ops.window.message(MessageKind::kQuestion, ops.scan.texts.TL(9572, "Löschvorgang durchführen?")))
            return;
        {
            FileRun run(ops, statusOf(ops, recycle));
            for (auto row = rows.rbegin(); row != rows.rend() && !run.stopped(); ++row)
                if (Delete_Files(ops, run, list.pathOf(*row), recycle).empty()) grid.removeRow(*row);
        }
        if (id != GridId::kFiles) return ops.host.listChanged(id);
        if (ops.host.closed()) return;
        readListedFolderAgain(ops.scan);
        ops.host.Preview_Reset_View();
    });
}

// --- the report

void DeleteFolders(const FileOps& ops, bool recycle) {
    guarded(ops.scan.diagnostics, "DeleteFolders", kModul, [&] {
        const std::vector<Row> rows = ops.scan.tvwPL.selectedRows();
        if (rows.empty() || ops.scan.state.ScanActive) return;
        FileRun run(ops, statusOf(ops, recycle));
        // From the end: what lies below a selected row comes before it.
        for (auto row = rows.rbegin(); row != rows.rend() && !run.stopped(); ++row)
            deleteFolderOf(ops, run, *row, recycle);
    });
}

void Report_DeleteFolder(const FileOps& ops, Row row, bool recycle) {
    guarded(ops.scan.diagnostics, "Report_DeleteFolder", kModul, [&] {
        Grid& report = ops.scan.tvwPL;
        if (ops.scan.state.ScanActive || report.number(row, kIsFolder) != 1) return;
        const std::string path = Report_GetFullpathOfNode(report, row, false, ops.scan.paths);
        FileRun run(ops, statusOf(ops, recycle));
        if (refused(ops, run, path)) return;
        std::string unused;
        if (recycle) {
            ops.operations.recycle(placeOf(ops.scan, path), run);
        } else {
            xDeleteFolder_W(ops, run, path, unused);
        }
        takeOutOf(report, report.parent(row), report.number(row, kSize), report.number(row, kFiles),
                  report.number(row, kFolders));
        // Messages run while the list is read: the run keeps the row where it is until it goes.
        ops.scan.host.refreshDriveOf(row);
        ops.host.List_Files_Refresh();
        report.removeRow(row);
    });
}

}  // namespace hl
