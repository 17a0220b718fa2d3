// What changes or opens files: the menus of report, drives and lists, names edited in their cells, and what
// the commands of fileops/ ask of the window.
#include "base/scope_exit.h"
#include "base/text.h"
#include "fileops/deleting.h"
#include "fileops/menus.h"
#include "fileops/renaming.h"
#include "mainwindow/window_form.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/file_system_calls.h"
#include "scan/rollup.h"

namespace hl {

namespace {
constexpr const char* kModul = "frmMain";

/// Removes the separator at the end, because with it a link would be followed.
std::string withoutSlash(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path;
}
}  // namespace

// --- menus

// Returns true, and shows the user why, if the path is gone or does not answer. Also true if the window was
// closed meanwhile.
bool WindowForm::hasNoMenu(const char* routine, const std::string& path) {
    if (path.empty()) return false;
    std::string text;
    if (hasVanished(scan_, path)) {
        text = services_.texts.TL(9640, "'%1' ist nicht mehr da.", {path});
    } else if (isSilent(scan_, path)) {
        text = services_.texts.TL(
            9655, "Der Datenträger von '%1' antwortet nicht; es wurde nichts verändert.", {path});
    }
    if (unloaded_ || text.empty()) return unloaded_;
    services_.log.LogDebug(routine, {visible(text)});
    setFirstPanel(text);
    return true;
}

void WindowForm::Report_ShellContextMenu(Row row, const std::string& path, Point at) {
    guarded(services_.diagnostics, "Report_ShellContextMenu", kModul, [&] {
        if (path.empty() || hasNoMenu("Report_ShellContextMenu", withoutSlash(path))) return;
        const FileOps ops = fileOps();
        const ScopeExit over = command();
        const int chosen = Menus(ops).ofReport(row, withoutSlash(path), at);
        if (!unloaded_) reportMenuCommand(chosen, row);
    });
    readWaiting();
}

void WindowForm::reportMenuCommand(int id, Row row) {
    using namespace report_menu;
    switch (id) {
        case kReadAgain:
            return Report_Rescan(scan_);
        case kRemoveSource:
            return Report_RemoveFolders(scan_);
        case kRecycle:
        case kDelete:
            return DeleteFolders(fileOps(), {row}, id == kRecycle);
        case kFoldAll:
        case kUnfoldAll:
            return reportView_->Report_ExpandSubFolders(id == kUnfoldAll);
        case kRename:
            return reportView_->KeyUp(kKeyF2);
        default:
            return;
    }
}

// The menu acts on the drive that was clicked, so that one is selected.
void WindowForm::openDriveMenu(Row row, Point at) {
    lvwDiskinfo_.selectNone();
    lvwDiskinfo_.setSelected(row, true);
    lvwDiskinfo_.setCurrentRow(row);
    {
        const FileOps ops = fileOps();
        const ScopeExit over = command();
        const int chosen = Menus(ops).ofDrive(std::string(lvwDiskinfo_.text(row)), at);
        if (chosen == kDriveMenuRead && !unloaded_) driveList_->Drives_ScanDrives(true);
    }
    readWaiting();
}

void WindowForm::ShellContextMenuFileList(GridId id, Point at) {
    guarded(services_.diagnostics, "ShellContextMenuFileList", kModul, [&] {
        ListView& list = *lists_->of(id);
        const FileOps ops = fileOps();
        Menus menus(ops);
        const ScopeExit over = command();
        const std::vector<std::string> paths = list.menuPaths();
        if (!paths.empty() && hasNoMenu("ShellContextMenuFileList", paths.front())) return;
        const int chosen = menus.ofList(id, paths, at);
        if (unloaded_) return;
        switch (chosen) {
            case list_menu::kRecycle:
            case list_menu::kDelete:
                List_DeleteFiles(ops, list, chosen == list_menu::kRecycle);
                break;
            case list_menu::kRename:
                list.KeyUp(kKeyF2);
                break;
            case list_menu::kShowInFolder:
                menus.showInFolder(paths.front());
                break;
            default:
                break;
        }
    });
    readWaiting();
}

void WindowForm::openFile(const std::string& path) {
    const FileOps ops = fileOps();
    Menus(ops).openFile(path);
}

// --- names

void WindowForm::nameEdited(GridId id, Row row, const std::string& value) {
    {
        const ScopeExit over = command();
        if (id == GridId::kReport) renameInReport(fileOps(), row, value);
        if (ListView* list = lists_->of(id)) renameInList(fileOps(), *list, row, value);
    }
    readWaiting();
}

std::string WindowForm::askSavePath(const SaveQuestion& question) {
    return window_->dialogs.askSavePath(question.filter, question.defaultExtension, question.initialFolder);
}

// --- FileOpsHost

void WindowForm::removeFromLists(const std::function<bool(const std::string& path)>& went) {
    for (const GridId id : kListGrids) lists_->of(id)->removeRows(went);
}

}  // namespace hl
