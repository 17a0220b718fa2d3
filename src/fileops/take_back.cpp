// Putting back; the report; the command.
#include "fileops/take_back.h"

#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "base/path.h"
#include "fileops/stayed.h"
#include "fileops/undo_steps.h"
#include "grid/no_redraw.h"
#include "robustness/trap.h"
#include "scan/file_system_calls.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/report_changes.h"
#include "scan/rollup.h"

namespace hl {

namespace {

using Paths = std::set<std::string, std::less<>>;

/// Returns the highest folder above the path that is not there; empty if all are.
std::string missingFolder(const FileOps& ops, const std::string& path) {
    std::string missing;
    for (std::string folder = folderAbove(path, kPosixPaths);
         folder.size() > 1 && hasVanished(ops.scan, folder); folder = folderAbove(folder, kPosixPaths))
        missing = folder;
    return missing;
}

std::string reasonOf(const FileOps& ops, const std::string& path, const Error& error) {
    const Texts& texts = ops.scan.texts;
    switch (error.kind) {
        case ErrorKind::kTaken:
            return texts.TL(9801, "dort gibt es inzwischen etwas anderes mit diesem Namen.");
        case ErrorKind::kMovedOn:
            return texts.TL(9802, "es ist nicht mehr, wo es zuletzt lag, oder es ist etwas anderes.");
        case ErrorKind::kOtherFolder:
            return otherFolderText(ops, path);
        case ErrorKind::kNoAnswer:
            return noAnswerText(ops, path);
        default:
            break;
    }
    const std::string missing = missingFolder(ops, path);
    if (!missing.empty()) return texts.TL(9800, "der Ordner '%1' fehlt.", {missing});
    return error.text.empty() ? std::to_string(error.number) : error.text;
}

/// Puts the parts of one step back, and shows them.
class PuttingBack {
  public:
    PuttingBack(const FileOps& ops, UndoStep step) : ops_(ops), step_(std::move(step)) {}

    void run(FileRun& run);
    /// Brings the report up to date. REQUIRES: the window is locked by a FileRun.
    void readAgain();
    /// Updates panels and lists; the window must be free.
    void show();

  private:
    Result<> put(FileRun& run, const std::string& path, const Moved& moved, const FilePlace& to);
    void tellStayed(const std::string& path, const Error& error);
    bool renameBack(FileRun& run);
    bool selectFolder(const std::string& path);
    void selectRow();
    void tellBack();

    const FileOps& ops_;
    UndoStep step_;
    std::vector<TrashedItem> back_;
    bool renamedBack_ = false;
    Stayed stayed_;
};

// --- putting back

Result<> PuttingBack::put(FileRun& run, const std::string& path, const Moved& moved, const FilePlace& to) {
    Result<> done = ops_.operations.putBack(moved, to, run);
    if (done)
        ops_.scan.log.LogProtokoll(ops_.scan.texts.TL(9799, "ZURÜCKGEHOLT: %1", {path}));
    else
        tellStayed(path, done.error());
    return done;
}

void PuttingBack::tellStayed(const std::string& path, const Error& error) {
    stayed_.add(ops_, ops_.scan.texts.TL(9798, "'%1' wurde nicht zurückgeholt: %2",
                                         {path, reasonOf(ops_, path, error)}));
}

// Returns false if the name is not free for what is in the trash.
bool PuttingBack::renameBack(FileRun& run) {
    if (!step_.renamed) return true;
    const Result<> done = put(run, step_.renamed->from, step_.renamed->moved, step_.renamed->place);
    renamedBack_ = static_cast<bool>(done);
    if (done) return true;
    for (const TrashedItem& item : step_.trashed) tellStayed(item.path, {.kind = ErrorKind::kTaken});
    if (done.failedAs(ErrorKind::kMovedOn)) step_.renamed.reset();
    ops_.undo.addOldest(std::move(step_));
    return false;
}

// What went last comes first, because it may have lain in what went before. What fails can be tried again
// when all other steps are taken back, unless the trash no longer holds it.
void PuttingBack::run(FileRun& run) {
    if (!renameBack(run)) return;
    std::vector<TrashedItem>& all = step_.trashed;
    UndoStep failed{.links = step_.links}, rest{.links = step_.links};
    while (!all.empty() && !run.stopped()) {
        TrashedItem item = std::move(all.back());
        all.pop_back();
        const Result<> done = put(run, item.path, item.moved, item.place);
        if (done)
            back_.push_back(std::move(item));
        else if (!done.failedAs(ErrorKind::kMovedOn))
            failed.trashed.insert(failed.trashed.begin(), std::move(item));
    }
    ops_.undo.addOldest(std::move(failed));
    rest.trashed = std::move(all);
    ops_.undo.add(std::move(rest));
}

// --- the report

void PuttingBack::readAgain() {
    ScanContext& scan = ops_.scan;
    if ((back_.empty() && !renamedBack_) || ops_.host.closed()) return;
    scan.state.CancelState = kCancelNone;
    const NoRedraw off(scan.tvwPL);
    ReportChanges changes(scan);
    Paths files;
    if (renamedBack_) {
        if (step_.renamed->folder) {
            changes.folderWent(step_.renamed->to);
            changes.folderCame(step_.renamed->from);
        }
        files.insert(folderAbove(step_.renamed->from, kPosixPaths));
    }
    for (const TrashedItem& item : back_) {
        // The trash may lie in a folder of the report.
        if (item.folder) changes.folderWent(item.moved.now.base);
        const std::string trash = folderAbove(item.moved.now.base, kPosixPaths);
        files.insert({trash, folderAbove(trash, kPosixPaths) + "/info"});
        if (item.folder) changes.folderCame(item.path);
        if (!item.folder) files.insert(folderAbove(item.path, kPosixPaths));
        // Where names of one file count once, a folder with such files changes what others count.
        if (scan.options.AddHardlinksOnlyOnce != 1 || !item.folder || !holdsLinkedFiles(scan, item.path))
            continue;
        changes.sourcesChanged(item.path);
        changes.sourcesChanged(trash);
    }
    for (const std::string& folder : files) changes.filesChanged(folder);
    for (const std::string& link : step_.links) changes.folderChanged(folderAbove(link, kPosixPaths));
    changes.finish();
}

// --- what is shown

/// Selects the folder if the report shows it.
bool PuttingBack::selectFolder(const std::string& path) {
    Grid& report = ops_.scan.tvwPL;
    Row row = kNoRow;
    for (Row root = firstLiveSource(ops_.scan); root != kNoRow && row == kNoRow;
         root = nextLiveSource(ops_.scan, root))
        row = rowOfFolder(report, root, path, ops_.scan.paths);
    if (row == kNoRow) return false;
    {
        const NoRedraw off(report);
        report.selectNone();
        report.setSelected(row, true);
        report.setCurrentRow(row);
    }
    ops_.window.grid(GridId::kReport).scrollIntoView(row);
    ops_.host.folderShown(row, AddTrailingSlash(path, ops_.scan.paths));
    return true;
}

/// Selects the first folder that is back; files are shown by the file list of their folder.
void PuttingBack::selectRow() {
    if (renamedBack_ && step_.renamed->folder && selectFolder(step_.renamed->from)) return;
    for (auto item = back_.rbegin(); item != back_.rend(); ++item)
        if (item->folder && selectFolder(item->path)) return;
    // A folder that is shown already would not be listed anew.
    const std::string listed = std::exchange(ops_.scan.state.fileList.folder, {});
    if (!listed.empty()) ops_.host.folderShown(kNoRow, listed);
}

void PuttingBack::tellBack() {
    const Texts& texts = ops_.scan.texts;
    std::vector<std::string> paths;
    if (renamedBack_) paths.push_back(step_.renamed->from);
    for (const TrashedItem& item : back_) paths.push_back(item.path);
    ops_.host.setFirstPanel(paths.empty()       ? texts.TL(3525, "OK.")
                            : paths.size() == 1 ? texts.TL(9796, "'%1' ist wieder da.", {paths.front()})
                                                : texts.TL(9797, "%1 Einträge sind wieder da.",
                                                           {formatCount(paths.size(), ops_.scan.numbers)}));
}

void PuttingBack::show() {
    if (ops_.host.closed()) return;
    if (renamedBack_) ops_.host.fileRenamed(step_.renamed->to, step_.renamed->from);
    if (!back_.empty() || renamedBack_) {
        ops_.host.filesWent([](const std::string&) { return false; });
        selectRow();
        if (ops_.host.closed()) return;
        ops_.host.Preview_ShowFile();
        // Sources that lay in what went are read when the command has ended.
        for (const std::string& source : step_.sources) ops_.scan.state.SourceQueue.push_back(source);
    }
    tellBack();
    stayed_.tell(ops_);
}

}  // namespace

// --- the command

void TakeBack(const FileOps& ops) {
    guarded(ops.scan.diagnostics, [&] {
        if (ops.undo.isEmpty() || ops.scan.state.ScanActive) return;
        PuttingBack back(ops, ops.undo.take());
        {
            FileRun run(ops, ops.scan.texts.TL(9795, "Wird zurückgeholt: %1"));
            back.run(run);
            back.readAgain();
        }
        back.show();
    });
}

}  // namespace hl
