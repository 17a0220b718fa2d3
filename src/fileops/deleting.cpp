// Deletes and recycles files, folders, and rows of lists.
#include "fileops/deleting.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/text.h"
#include "fileops/delete_question.h"
#include "fileops/gone.h"
#include "fileops/recycle_texts.h"
#include "fileops/stayed.h"
#include "robustness/trap.h"
#include "scan/file_system_calls.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "views/list_view.h"

namespace hl {

namespace {

std::string statusOf(const FileOps& ops, bool recycle) {
    const Texts& texts = ops.scan.texts;
    return recycle ? texts.TL(9550, "In den Papierkorb: %1") : texts.TL(9549, "Wird gelöscht: %1");
}

std::string unanswered(const FileOps& ops, FileRun& run, const std::string& path) {
    run.unanswered = true;
    return noAnswerText(ops, path);
}

/// Moves it to the trash. Returns an empty text on success, else "REASON (CODE)".
std::string recycled(const FileOps& ops, FileRun& run, const std::string& path, bool folder, Gone& gone) {
    const FilePlace place = placeOf(ops.scan, path);
    const auto now = ops.operations.recycle(place, run);
    if (now) return gone.trashed({path, place, *now, folder}), std::string();
    if (now.failedAs(ErrorKind::kNoAnswer)) return unanswered(ops, run, path);
    const int code = now.error().number;
    return xGetErrorTextFromSH(code, false) + " (" + std::to_string(code) + ")";
}

void logGone(const FileOps& ops, const std::string& path, bool recycle) {
    const Texts& texts = ops.scan.texts;
    ops.scan.log.LogProtokoll(recycle ? texts.TL(3760, "PAPIERKORB: %1", {path})
                                      : texts.TL(3761, "GELÖSCHT: %1", {path}));
}

/// Tells in the status bar what went, and where to.
void tellWent(const FileOps& ops, const std::vector<std::string>& went, bool recycle, const Gone& gone) {
    if (went.empty() || ops.host.closed()) return;
    const Texts& texts = ops.scan.texts;
    if (!recycle)
        return ops.host.setFirstPanel(went.size() == 1
                                          ? texts.TL(9792, "'%1' wurde gelöscht.", {visible(went.front())})
                                          : texts.TL(9793, "%1 Einträge wurden gelöscht.",
                                                     {formatCount(went.size(), ops.scan.numbers)}));
    const std::string trash = visible(gone.trash());
    const std::string text = went.size() == 1
                                 ? texts.TL(9790, "Im Papierkorb: '%1' (%2)", {visible(went.front()), trash})
                                 : texts.TL(9791, "Im Papierkorb: %1 Einträge (%2)",
                                            {formatCount(went.size(), ops.scan.numbers), trash});
    // Where the system does not tell the place in the trash, nothing can be taken back.
    trash.empty() ? ops.host.setFirstPanel(texts.TL(3525, "OK.")) : ops.host.offerTakeBack(text);
}

/// Returns why a folder must not be removed, or an empty text if it may be.
std::string protectedReason(const FileOps& ops, FileRun& run, const std::string& path) {
    const Texts& texts = ops.scan.texts;
    switch (ops.operations.protectionOf(placeOf(ops.scan, path), run)) {
        case Protection::kRoot:
            return texts.TL(9552, "'%1' ist das ganze Dateisystem und bleibt.", {path});
        case Protection::kHome:
            return texts.TL(9553, "'%1' enthält Ihren persönlichen Ordner und bleibt.", {path});
        case Protection::kProgram:
            return texts.TL(9554, "'%1' enthält dieses Programm und bleibt.", {path});
        case Protection::kNoAnswer:
            return texts.TL(9655, "Der Datenträger von '%1' antwortet nicht; es wurde nichts verändert.",
                            {path});
        case Protection::kOtherFolder:
            return otherFolderText(ops, path);
        default:
            return {};
    }
}

}  // namespace

// --- files

bool xDeleteFile_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText) {
    const Result<> removed = ops.operations.removeFile(placeOf(ops.scan, path), run);
    if (removed || removed.failedAs(ErrorKind::kNotFound)) return true;  // It may have been gone already.
    if (removed.failedAs(ErrorKind::kNoAnswer)) return errorText = unanswered(ops, run, path), false;
    errorText = removed.failedAs(ErrorKind::kOtherFolder) ? otherFolderText(ops, path)
                                                          : removed.error().text + " (" + path + ")";
    return false;
}

std::string Delete_Files(const FileOps& ops, FileRun& run, const std::string& path, bool recycle,
                         Gone& gone) {
    const Texts& texts = ops.scan.texts;
    std::string reason;
    if (recycle) {
        // The name may belong to a folder by now; removing that as a file would fail anyway.
        reason = protectedReason(ops, run, path);
        if (reason.empty()) reason = recycled(ops, run, path, false, gone);
    } else {
        xDeleteFile_W(ops, run, path, reason);
    }
    if (reason.empty()) return logGone(ops, path, recycle), reason;
    return recycle
               ? texts.TL(3763,
                          "Beim Verschieben der Datei '%1' in den Papierkorb ist ein Fehler "
                          "aufgetreten: %2",
                          {path, reason})
               : texts.TL(3762, "Beim Löschen der Datei '%1' ist ein Fehler aufgetreten: %2", {path, reason});
}

// --- folders

bool xDeleteFolder_W(const FileOps& ops, FileRun& run, const std::string& path, std::string& errorText) {
    const std::int32_t before = std::exchange(ops.scan.state.CancelState, kCancelNone);
    const Removal removal = ops.operations.removeTree(placeOf(ops.scan, path), run);
    ops.scan.state.CancelState = before;
    if (removal.removed) return true;
    if (removal.unknown) errorText = unanswered(ops, run, path);
    if (removal.vanished || removal.unknown) return false;
    for (const auto& [error, isFolder] : removal.failures)
        errorText += error.text + (isFolder ? "(" : " (") + cut(error.name) + ") ";
    if (removal.failureCount > removal.failures.size())
        errorText += ops.scan.texts.TL(
            9555, "... und %1 weitere",
            {formatCount(removal.failureCount - removal.failures.size(), ops.scan.numbers)});
    return false;
}

namespace {

/// Returns an empty text if the folder is gone, else what the user is told.
std::string deleteFolder(const FileOps& ops, FileRun& run, const std::string& path, bool recycle,
                         Gone& gone) {
    const Texts& texts = ops.scan.texts;
    std::string reason = recycle ? recycled(ops, run, path, true, gone) : std::string();
    const bool went = recycle ? reason.empty() : xDeleteFolder_W(ops, run, path, reason);
    if (went) return logGone(ops, path, recycle), std::string();
    if (!recycle && run.stopped() && !run.unanswered && !hasVanished(ops.scan, path))
        return texts.TL(9643, "Das Löschen des Ordners '%1' wurde angehalten; ein Teil ist noch da. %2",
                        {path, reason});
    if (reason.empty()) reason = texts.TL(9640, "'%1' ist nicht mehr da.", {path});
    return recycle ? texts.TL(9571,
                              "Beim Verschieben des Ordners'%1' in den Papierkorb ist ein "
                              "Fehler aufgetreten: %2",
                              {path, reason})
                   : texts.TL(3783, "Beim Löschen des Ordners '%1' ist ein Fehler aufgetreten: %2",
                              {path, reason});
}

/// Returns what went.
std::vector<std::string> deleteAll(const FileOps& ops, FileRun& run, const std::vector<std::string>& paths,
                                   bool recycle, Gone& gone, Stayed& stayed) {
    std::vector<std::string> all;
    for (const std::string& path : paths) {
        if (run.stopped()) return all;
        run.unanswered = false;
        if (gone.went(path)) {
            logGone(ops, path, recycle);
            continue;
        }
        const std::string reason = protectedReason(ops, run, path);
        if (!reason.empty()) {
            stayed.add(ops, reason);
            continue;
        }
        gone.about(path, true);
        if (run.stopped()) return all;  // Stopped while it was looked at, so nothing of this folder is gone.
        const std::string failure = deleteFolder(ops, run, path, recycle, gone);
        if (failure.empty() || hasVanished(ops.scan, path)) {
            gone.folder(path);
        } else if (!recycle && !run.unanswered) {
            gone.part(path);  // A folder goes to the trash as a whole or not at all.
        }
        failure.empty() ? all.push_back(path) : stayed.add(ops, failure);
    }
    return all;
}

}  // namespace

void DeleteFolders(const FileOps& ops, const std::vector<Row>& rows, bool recycle) {
    guarded(ops.scan.diagnostics, [&] {
        const Grid& report = ops.scan.tvwPL;
        if (ops.scan.state.ScanActive) return;
        for (const Row row : rows)
            if (!isOnDisk(ops.scan, row)) return ops.host.setFirstPanel(notOnDiskText(ops.scan, row));
        if (std::ranges::any_of(rows, [&](Row row) { return report.level(row) == 0; }))
            return ops.host.setFirstPanel(
                ops.scan.texts.TL(9803, "Eine Quelle wird nicht gelöscht. \"%1\" nimmt sie aus dem Bericht.",
                                  {ops.scan.texts.TL(9241, "Entfernen")}));
        // A row that sums up files is no folder, even if there is one of that name on the disk.
        std::vector<std::string> paths;
        std::vector<Row> folders;
        for (const Row row : rows) {
            if (report.number(row, kIsFolder) != 1) continue;
            folders.push_back(row);
            paths.push_back(Report_GetFullpathOfNode(report, row, false, ops.scan.paths));
        }
        if (paths.empty() || (!recycle && !wantsToDelete(ops, foldersOf(ops, folders)))) return;
        Gone gone(ops, recycle);
        Stayed stayed;
        std::vector<std::string> went;
        {
            FileRun run(ops, statusOf(ops, recycle));
            went = deleteAll(ops, run, paths, recycle, gone, stayed);
            gone.readWhatIsLeft();
        }
        gone.show();
        tellWent(ops, went, recycle, gone);
        stayed.tell(ops);
    });
}

// --- the lists

void List_DeleteFiles(const FileOps& ops, ListView& list, bool recycle) {
    guarded(ops.scan.diagnostics, {.routine = list.routine("DeleteFiles").c_str()}, [&] {
        std::vector<std::string> paths = list.menuPaths();
        if (paths.empty() || ops.scan.state.ScanActive) return;
        if (!recycle && !wantsToDelete(ops, filesOf(list))) return;
        Gone gone(ops, recycle);
        Stayed stayed;
        std::vector<std::string> went;
        {
            FileRun run(ops, statusOf(ops, recycle));
            for (auto path = paths.rbegin(); path != paths.rend() && !run.stopped(); ++path) {
                gone.about(*path, false);
                if (run.stopped()) break;  // Stopped while it was looked at, so the file is still there.
                const std::string failure = Delete_Files(ops, run, *path, recycle, gone);
                if (failure.empty() || hasVanished(ops.scan, *path)) gone.file(*path);
                failure.empty() ? went.push_back(*path) : stayed.add(ops, failure);
            }
            gone.readWhatIsLeft();
        }
        gone.show();
        tellWent(ops, went, recycle, gone);
        stayed.tell(ops);
    });
}

}  // namespace hl
