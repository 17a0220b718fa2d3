// Menus; names; what the commands ask.
#include "mainwindow/files_control.h"

#include "base/text.h"
#include "fileops/deleting.h"
#include "fileops/menus.h"
#include "fileops/renaming.h"
#include "fileops/take_back.h"
#include "mainwindow/comes_back_form.h"
#include "mainwindow/context_menus.h"
#include "mainwindow/main_form.h"
#include "robustness/trap.h"
#include "scan/file_system_calls.h"
#include "scan/on_disk.h"

namespace hl {

namespace {

/// Removes the separator at the end, because with it a link would be followed.
std::string withoutSlash(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path;
}

}  // namespace

FileOps FilesControl::ops() {
    return {form_.scan, form_.own.operations, *form_.window, *this, undo_, form_.own.surveys};
}

// --- menus

// Returns true, and shows the user why, if the path is gone or does not answer. Also true if the window was
// closed meanwhile.
bool FilesControl::hasNoMenu(const char* routine, const std::string& path) {
    if (path.empty()) return false;
    std::string text;
    if (hasVanished(form_.scan, path)) {
        text = form_.services().texts.TL(9640, "'%1' ist nicht mehr da.", {path});
    } else if (isSilent(form_.scan, path)) {
        text = form_.services().texts.TL(
            9655, "Der Datenträger von '%1' antwortet nicht; es wurde nichts verändert.", {path});
    }
    if (form_.closed || text.empty()) return form_.closed;
    form_.services().log.LogDebug(routine, {visible(text)});
    form_.status.setFirst(text);
    return true;
}

void FilesControl::openReportMenu(Row row, const std::string& path, Point at) {
    form_.sources.duringCommand([&] {
        guarded(form_.services().diagnostics, {.routine = "Report_ShellContextMenu"}, [&] {
            const bool live = isOnDisk(form_.scan, row);
            if (path.empty() || (live && hasNoMenu("Report_ShellContextMenu", withoutSlash(path)))) return;
            showContextMenu({form_, GridId::kReport, row, {withoutSlash(path)}}, at);
        });
    });
}

// The commands of the menu act on the drive that was clicked.
void FilesControl::openDriveMenu(Row row, Point at) {
    Grid& drives = form_.session.lvwDiskinfo;
    drives.selectNone();
    drives.setSelected(row, true);
    drives.setCurrentRow(row);
    form_.sources.duringCommand([&] {
        showContextMenu({form_, GridId::kDrives, row, {std::string(drives.text(row))}}, at);
    });
}

void FilesControl::openListMenu(GridId id, Point at) {
    form_.sources.duringCommand([&] {
        guarded(form_.services().diagnostics, {.routine = "ShellContextMenuFileList"}, [&] {
            const std::vector<std::string> paths = form_.lists.of(id)->menuPaths();
            if (paths.empty() || paths.front().empty()) return;
            // Of the changes, what is gone has a menu, too.
            if (id != GridId::kChanges && hasNoMenu("ShellContextMenuFileList", paths.front())) return;
            showContextMenu({form_, id, kNoRow, paths}, at);
        });
    });
}

void FilesControl::openFile(const std::string& path) {
    const FileOps files = ops();
    Menus(files).openFile(path);
}

// --- deleting

void FilesControl::deleteFolders(bool forGood) {
    form_.sources.duringCommand([&] { DeleteFolders(ops(), form_.session.tvwPL.selectedRows(), !forGood); });
}

void FilesControl::deleteFiles(GridId list, bool forGood) {
    form_.sources.duringCommand([&] { List_DeleteFiles(ops(), *form_.lists.of(list), !forGood); });
}

void FilesControl::showComesBack(GridId grid) {
    form_.sources.duringCommand([&] {
        const bool folders = grid == GridId::kReport;
        for (const Row row : folders ? form_.session.tvwPL.selectedRows() : std::vector<Row>())
            if (!isOnDisk(form_.scan, row)) return form_.status.setFirst(notOnDiskText(form_.scan, row));
        showComesBack(folders ? foldersOf(ops(), form_.session.tvwPL.selectedRows())
                              : filesOf(*form_.lists.of(grid)));
    });
}

void FilesControl::showComesBack(const ToDelete& what) {
    if (what.paths.empty() || form_.session.state.ScanActive) return;
    guarded(form_.services().diagnostics, {.routine = "ComesBack"}, [&] {
        ComesBackForm frmComesBack(form_.services(), what, beginSurvey(ops(), what));
        Form form = frmComesBack.form();
        form_.window->dialogs.showForm(form);
    });
}

void FilesControl::takeBack() {
    form_.sources.duringCommand([&] { TakeBack(ops()); });
}

void FilesControl::showCanTakeBack() {
    form_.bars.cbrMain.setEnabled(idOf(Command::kTakeBack), !undo_.isEmpty());
}

// --- names

void FilesControl::renameFolder(Row row, const std::string& name) {
    form_.sources.duringCommand([&] { renameInReport(ops(), row, name); });
}

void FilesControl::renameFile(ListView& list, Row row, const std::string& name) {
    form_.sources.duringCommand([&] { renameInList(ops(), list, row, name); });
    form_.map.reportChanged();  // It has names of files that the report does not show.
}

std::string FilesControl::askSavePath(const SaveQuestion& question) {
    return form_.window->dialogs.askSavePath(question.filter, question.defaultExtension,
                                             question.initialFolder);
}

// --- FileOpsHost

void FilesControl::setFirstPanel(const std::string& text) {
    form_.status.setFirst(text);
}

void FilesControl::offerTakeBack(const std::string& text) {
    form_.status.offerTakeBack(text);
}

void FilesControl::Preview_ShowFile() {
    form_.preview.Preview_ShowFile(false);
}

void FilesControl::filesWent(const std::function<bool(const std::string& path)>& went) {
    // The list of changes is filled anew by the comparison.
    for (const GridId id : kListGrids)
        if (id != GridId::kChanges) form_.lists.of(id)->removeRows(went);
    form_.lists.showTitles();
    form_.report.rowsArrived(true);
}

void FilesControl::fileRenamed(const std::string& from, const std::string& to) {
    for (const GridId id : kListGrids)
        if (id != GridId::kChanges) form_.lists.of(id)->renameRows(from, to);
}

void FilesControl::folderShown(Row row, const std::string& folder) {
    form_.status.setFirst(folder);
    if (row != kNoRow) form_.drives.list().Drives_SelectDrive(row);
    form_.lists.showFilesOf(folder);
}

bool FilesControl::closed() {
    return form_.closed;
}

}  // namespace hl
