#include "fileops/renaming.h"

#include <cstdint>
#include <optional>

#include "base/path.h"
#include "base/text.h"
#include "fileops/gone.h"
#include "fileops/recycle_texts.h"
#include "robustness/trap.h"
#include "scan/file_kinds.h"
#include "scan/file_system_calls.h"
#include "scan/left_out.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/report_changes.h"
#include "scan/rollup.h"
#include "views/list_view.h"

namespace hl {

namespace {

/// What a move did to a file that had the name before.
enum class Former : std::uint8_t { kNone, kInTrash, kReplaced };

/// Makes room for `from` at `to`. Returns an empty text if it may go there, else why not. `trashed` receives
/// the former file.
std::string makeRoom(const FileOps& ops, FileRun& run, const std::string& from, const std::string& to,
                     Former& former, TrashedItem& trashed) {
    const FilePlace place = placeOf(ops.scan, to);
    const auto replaces = ops.operations.wouldReplace(placeOf(ops.scan, from), place, run);
    if (!replaces) return noAnswerText(ops, to);
    if (!*replaces || run.stopped()) return {};
    const auto recycled = ops.operations.recycle(place, run);
    if (recycled) {
        trashed = {to, place, *recycled, false};
        former = Former::kInTrash;
        ops.scan.log.LogProtokoll(ops.scan.texts.TL(3760, "PAPIERKORB: %1", {to}));
        return {};
    }
    former = Former::kReplaced;
    if (recycled.failedAs(ErrorKind::kNoTrash)) return {};
    former = Former::kNone;
    if (recycled.failedAs(ErrorKind::kNoAnswer)) return noAnswerText(ops, to);
    const int code = recycled.error().number;
    return to + ": " + xGetErrorTextFromSH(code, false) + " (" + std::to_string(code) + ")";
}

/// `isKnown` tells whether the place in the trash is known, so that the file can come back.
void tellOfFormer(const FileOps& ops, const std::string& path, Former former, bool isKnown) {
    const Texts& texts = ops.scan.texts;
    if (former == Former::kInTrash) {
        const std::string inTrash =
            texts.TL(9641, "Die frühere Datei '%1' liegt jetzt im Papierkorb.", {path});
        return isKnown ? ops.host.offerTakeBack(inTrash) : ops.host.setFirstPanel(inTrash);
    }
    const std::string text =
        texts.TL(9642, "Die frühere Datei '%1' wurde ersetzt; hier gibt es keinen Papierkorb.", {path});
    ops.scan.log.LogProtokoll(text);
    ops.host.setFirstPanel(text);
}

/// Writes the new name into the row. If the rows were read again, they have the name already, and this number
/// may belong to another row.
void showName(Grid& grid, Row row, const std::string& old, const std::string& name) {
    if (row < grid.tree().limit() && grid.text(row) == old) grid.setText(row, name);
}

/// Corrects the report. Where names of one file count once, another of them may be the first now, because the
/// renamed entry has another place in its folder. A file with another ending counts elsewhere in the
/// statistics, and a rule may leave out one of its two names.
void follow(const FileOps& ops, const std::string& from, const std::string& to, bool folder) {
    ScanContext& scan = ops.scan;
    if (ops.host.closed()) return;
    scan.state.CancelState = kCancelNone;  // A Stop of the move must not end what is read now.
    ReportChanges changes(scan);
    if (folder) {
        changes.folderRenamed(from, fileNameOf(to, scan.paths));
    } else {
        changes.fileRenamed(from, fileNameOf(to, scan.paths));
    }
    const bool once = scan.options.AddHardlinksOnlyOnce == 1;
    if (once && folder && holdsLinkedFiles(scan, to)) changes.sourcesChanged(to);
    if (once && !folder) {
        const auto file = scan.fileSystem.look(to);
        if (file && file->links > 1) changes.sourcesChanged(to);
    }
    const bool otherEnding =
        Ending(fileNameOf(from, scan.paths)).text() != Ending(fileNameOf(to, scan.paths)).text();
    if (!folder && (leavesOut(scan) || (otherEnding && scan.statistics != nullptr)))
        changes.filesChanged(folderAbove(to, scan.paths));
    changes.finish();
}

/// Renames, then writes the new name into the row or tells why it failed.
bool rename(const FileOps& ops, Grid& grid, Row row, const std::string& folder, const std::string& name) {
    const std::string old(grid.text(row)), from = folder + old, to = folder + name;
    const bool inReport = &grid == &ops.scan.tvwPL;
    Former former = Former::kNone;
    std::string error;
    TrashedItem trashed;
    Moved moved;
    std::optional<Gone> gone;
    {
        FileRun run(ops, ops.scan.texts.TL(9551, "Wird verschoben: %1"));
        const bool taken = !hasVanished(ops.scan, to);
        if (run.stopped()) return false;
        error = makeRoom(ops, run, from, to, former, trashed);
        // If the former file is already in the trash, the move is done in spite of a Stop.
        if (error.empty() && run.stopped() && former != Former::kInTrash) return false;
        if (error.empty()) error = xMoveFile_W(ops, run, from, to, &moved);
        if (former == Former::kReplaced && !error.empty()) former = Former::kNone;
        if (error.empty()) follow(ops, from, to, inReport);
        // Both were names of one file, and the system removed the old one.
        const bool oneName = taken && former == Former::kNone && error.empty() && hasVanished(ops.scan, from);
        if (former != Former::kNone || oneName) {
            gone.emplace(ops, former == Former::kInTrash).file(oneName ? from : to);
            gone->trashed(trashed);
            if (error.empty()) gone->renamed({from, to, placeOf(ops.scan, from), moved, inReport});
            gone->readWhatIsLeft();
        }
    }
    if (gone) gone->show();
    if (former != Former::kNone) tellOfFormer(ops, to, former, !trashed.moved.now.base.empty());
    if (error.empty()) {
        if (!inReport) showName(grid, row, old, name);
        return true;
    }
    ops.window.dialogs.message(MessageKind::kWarning, visible(error));
    return false;
}

}  // namespace

std::string xMoveFile_W(const FileOps& ops, FileRun& run, const std::string& from, const std::string& to,
                        Moved* now) {
    const Result<Moved> moved = ops.operations.move(placeOf(ops.scan, from), placeOf(ops.scan, to), run);
    if (moved && now != nullptr) *now = *moved;
    if (moved) return {};
    if (moved.failedAs(ErrorKind::kNoAnswer)) return noAnswerText(ops, from);
    if (moved.failedAs(ErrorKind::kOtherFolder)) return otherFolderText(ops, from);
    const Error& error = moved.error();
    return error.text.empty() ? std::to_string(error.number) : error.text;
}

void renameInList(const FileOps& ops, ListView& list, Row row, const std::string& name) {
    guarded(ops.scan.diagnostics, {.routine = list.event("GridCellAfterEditing").c_str()}, [&] {
        const std::string old(list.grid().text(row));
        if (name == old || ops.scan.state.ScanActive) return;
        const std::string path = list.pathOf(row);
        rename(ops, list.grid(), row, path.substr(0, path.size() - old.size()), name);
    });
}

void renameInReport(const FileOps& ops, Row row, const std::string& name) {
    guarded(ops.scan.diagnostics, {.routine = "tvwPL_GridCellAfterEditing"}, [&] {
        Grid& report = ops.scan.tvwPL;
        if (name == report.text(row) || report.level(row) == 0 || ops.scan.state.ScanActive) return;
        if (!isOnDisk(ops.scan, row)) return ops.host.setFirstPanel(notOnDiskText(ops.scan, row));
        // A row that sums up files is no folder, even if there is one of that name on the disk.
        if (report.number(row, kIsFolder) != 1) return;
        const std::string folder = Report_GetFullpathOfNode(report, report.parent(row), true, ops.scan.paths);
        const std::string old = AddTrailingSlash(folder + std::string(report.text(row)), ops.scan.paths);
        std::string& listed = ops.scan.state.fileList.folder;
        // The list keeps its rows: their folder, or a folder above it, only has another name now.
        if (rename(ops, report, row, folder, name) && listed.starts_with(old))
            listed.replace(0, old.size(), AddTrailingSlash(folder + name, ops.scan.paths));
    });
}

}  // namespace hl
