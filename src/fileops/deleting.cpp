// Deletes and recycles files, folders, and rows of lists.
#include "fileops/deleting.h"

#include <utility>
#include <vector>

#include "base/text.h"
#include "fileops/gone.h"
#include "fileops/recycle_texts.h"
#include "robustness/trap.h"
#include "scan/file_system_calls.h"
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
    const auto now = ops.operations.recycle(placeOf(ops.scan, path), run);
    if (now) return gone.trashed(*now, folder), std::string();
    if (now.failedAs(ErrorKind::kNoAnswer)) return unanswered(ops, run, path);
    const int code = now.error().number;
    return xGetErrorTextFromSH(code, false) + " (" + std::to_string(code) + ")";
}

void logGone(const FileOps& ops, const std::string& path, bool recycle) {
    const Texts& texts = ops.scan.texts;
    ops.scan.log.LogProtokoll(recycle ? texts.TL(3760, "PAPIERKORB: %1", {path})
                                      : texts.TL(3761, "GELÖSCHT: %1", {path}));
}

/// Shortens a path, since no screen shows more of it.
std::string cut(const std::string& path) {
    constexpr std::size_t kFront = 300, kBack = 200;
    if (path.size() <= kFront + kBack) return path;
    return path.substr(0, kFront) + " ... " + path.substr(path.size() - kBack);
}

/// Collects what could not be deleted, for one message at the end.
class Stayed {
  public:
    /// Adds a text to the message and writes it to the log.
    void add(const FileOps& ops, const std::string& text) {
        ops.scan.log.LogProtokoll(text);
        ++count_;
        if (texts_.size() < kMostTexts) texts_.push_back(text);
    }
    void tell(const FileOps& ops) const {
        if (count_ == 0 || ops.host.closed()) return;
        std::string all;
        for (const std::string& text : texts_)
            all += (all.empty() ? "" : "\n") + visible(count_ == 1 ? text : cut(text));
        if (count_ > texts_.size())
            all += "\n" +
                   ops.scan.texts.TL(9555, "... und %1 weitere", {std::to_string(count_ - texts_.size())});
        ops.window.dialogs.message(MessageKind::kWarning, all);
    }

  private:
    static constexpr std::size_t kMostTexts = 10;
    std::vector<std::string> texts_;
    std::size_t count_ = 0;
};

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
        errorText += ops.scan.texts.TL(9555, "... und %1 weitere",
                                       {std::to_string(removal.failureCount - removal.failures.size())});
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

void deleteAll(const FileOps& ops, FileRun& run, const std::vector<std::string>& paths, bool recycle,
               Gone& gone, Stayed& stayed) {
    for (const std::string& path : paths) {
        if (run.stopped()) return;
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
        if (run.stopped()) return;  // Stopped while it was looked at, so nothing of this folder is gone.
        const std::string failure = deleteFolder(ops, run, path, recycle, gone);
        if (failure.empty() || hasVanished(ops.scan, path)) {
            gone.folder(path);
        } else if (!recycle && !run.unanswered) {
            gone.part(path);  // A folder goes to the trash as a whole or not at all.
        }
        if (!failure.empty()) stayed.add(ops, failure);
    }
}

}  // namespace

void DeleteFolders(const FileOps& ops, const std::vector<Row>& rows, bool recycle) {
    guarded(ops.scan.diagnostics, [&] {
        const Grid& report = ops.scan.tvwPL;
        // A row that sums up files is no folder, even if there is one of that name on the disk.
        std::vector<std::string> paths;
        for (const Row row : rows)
            if (report.number(row, kIsFolder) == 1 || report.level(row) == 0)
                paths.push_back(Report_GetFullpathOfNode(report, row, false, ops.scan.paths));
        if (paths.empty() || ops.scan.state.ScanActive) return;
        Gone gone(ops, recycle);
        Stayed stayed;
        {
            FileRun run(ops, statusOf(ops, recycle));
            deleteAll(ops, run, paths, recycle, gone, stayed);
            gone.readWhatIsLeft();
        }
        gone.show();
        stayed.tell(ops);
    });
}

// --- the lists

void List_DeleteFiles(const FileOps& ops, ListView& list, bool recycle) {
    guarded(ops.scan.diagnostics, {.routine = list.routine("DeleteFiles").c_str()}, [&] {
        std::vector<std::string> paths;
        for (const Row row : list.grid().selectedRows()) paths.push_back(list.pathOf(row));
        if (paths.empty() || ops.scan.state.ScanActive) return;
        if (!ops.window.dialogs.message(MessageKind::kQuestion,
                                        ops.scan.texts.TL(9572, "Löschvorgang durchführen?")))
            return;
        Gone gone(ops, recycle);
        Stayed stayed;
        {
            FileRun run(ops, statusOf(ops, recycle));
            for (auto path = paths.rbegin(); path != paths.rend() && !run.stopped(); ++path) {
                gone.about(*path, false);
                if (run.stopped()) break;  // Stopped while it was looked at, so the file is still there.
                const std::string failure = Delete_Files(ops, run, *path, recycle, gone);
                if (failure.empty() || hasVanished(ops.scan, *path)) gone.file(*path);
                if (!failure.empty()) stayed.add(ops, failure);
            }
            gone.readWhatIsLeft();
        }
        gone.show();
        stayed.tell(ops);
    });
}

}  // namespace hl
