// The view and its pane; saving and printing; what the view asks.
#include "mainwindow/report_control.h"

#include <algorithm>

#include "base/scope_exit.h"
#include "mainwindow/command_table.h"
#include "mainwindow/main_form.h"
#include "mainwindow/not_read_form.h"
#include "output/print_report.h"
#include "output/report_file.h"
#include "output/save_report.h"
#include "output/scan_output.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/on_disk.h"

namespace hl {

void ReportControl::makeView() {
    Session& session = form_.session;
    view_ = std::make_unique<ReportView>(form_.scan, session.options, form_.bars.cbrReport, *form_.window,
                                         static_cast<ReportHost&>(*this), form_.lists.columnDragGuard());
    form_.window->grid(GridId::kReport).setEvents(view_.get());
}

// --- the pane

void ReportControl::widthIsChosen(bool chosen) {
    widthOpen_ = !chosen;
    startWidth_ = form_.looks.panes().splitter(SplitterId::kMain).Position();
}

void ReportControl::fitPane() {
    constexpr int kLargestShare = 55;  // Percent of the window.
    const bool empty = form_.session.tvwPL.rowCount() == 0;
    cSplitter& main = form_.looks.panes().splitter(SplitterId::kMain);
    widthOpen_ = widthOpen_ && main.Position() == startWidth_;
    if (!widthOpen_ || empty || !main.Control2Visible()) return;
    const int most = std::max(startWidth_, form_.window->frame.clientArea().width * kLargestShare / 100);
    main.setPosition(most);  // In a narrower pane the names would give way before it is fitted to them.
    view_->Report_Resize_Columns(false);
    view_->Report_Resize_Width();
    if (main.Position() > most) main.setPosition(most);
    startWidth_ = main.Position();
}

void ReportControl::rowsArrived(bool columns) {
    if (columns) view_->Report_Resize_Columns(false);
    fitPane();
    if (form_.session.tvwPL.rowCount() > 0) widthOpen_ = false;
    view_->selectionArrived();
}

// --- saving and printing

void ReportControl::save() {
    if (form_.session.tvwPL.rowCount() == 0 || form_.run.tellIncomplete()) return;
    SaveForm frmSave(form_.scan, form_.files);
    Form form = frmSave.form();
    form_.window->dialogs.showForm(form);
}

void ReportControl::saveScan() {
    if (form_.session.tvwPL.rowCount() == 0 || form_.session.state.ScanActive || form_.run.tellIncomplete())
        return;
    form_.sources.duringCommand([&] {
        const std::string path = form_.files.askSavePath(
            {"HLSCAN (*.hlscan)|*.hlscan", "hlscan", std::string(1, form_.services().paths.separator)});
        if (!path.empty())
            guarded(form_.services().diagnostics, {.routine = "saveScan"}, [&] { writeScanTo(path); });
    });
}

// Messages run meanwhile, and must not change the report.
void ReportControl::writeScanTo(const std::string& path) {
    const BusyPointer busy(form_.scan.controls);
    DisableControls(form_.scan, true);
    const ScopeExit unlock([&] { EnableControls(form_.scan); });
    const Grid& report = form_.session.tvwPL;
    const Row row = report.currentRow() != kNoRow ? report.currentRow() : report.firstRoot();
    if (row == kNoRow) return;
    const auto target = form_.services().files.replace(path);
    if (!target) raiseFileError(target.error(), path, {});
    const ReportOutcome outcome = writeScan(form_.scan, report.rootOf(row), ScanNames::kAll, **target);
    if (outcome.error)
        raiseFileError(*outcome.error, path, leftBehindText(form_.services().texts, outcome.leftBehind));
}

void ReportControl::print() {
    if (form_.session.tvwPL.rowCount() == 0) return;
    PrintForm frmPrint(form_.scan, *form_.window);
    Form form = frmPrint.form();
    form_.window->dialogs.showForm(form);
}

void ReportControl::goTo(const std::string& path) {
    const int panel = idOf(Command::kShowReport);
    if (!form_.bars.cbrMain.isChecked(panel)) form_.looks.panes().PanelToggle(Command::kShowReport);
    if (view_->goTo(path)) return form_.window->grid(GridId::kReport).focus();
    form_.status.setFirst(form_.services().texts.TL(9751, "'%1' steht nicht in der Ordnerliste.", {path}));
}

void ReportControl::goToRow(Row row, bool opened) {
    const int panel = idOf(Command::kShowReport);
    if (!form_.bars.cbrMain.isChecked(panel)) {
        if (!opened) return;
        form_.looks.panes().PanelToggle(Command::kShowReport);
    }
    if (view_->goTo(row) && opened) form_.window->grid(GridId::kReport).focus();
}

void ReportControl::showNotRead() {
    if (form_.session.state.ScanActive) return;  // The scan would wait for the dialog.
    NotReadForm frmNotRead(form_.services(), form_.session.tvwPL, form_.files, *form_.window);
    Form form = frmNotRead.form();
    form_.window->dialogs.showForm(form);
}

// --- ReportHost

void ReportControl::setReportWidth(int pixels) {
    form_.looks.panes().splitter(SplitterId::kMain).setPosition(pixels);
}

void ReportControl::setFirstPanel(const std::string& text) {
    form_.status.setFirst(text);
}

void ReportControl::selectDriveOf(Row row) {
    form_.drives.list().Drives_SelectDrive(row);
}

// Sources that are handed over while the files are listed are read afterwards.
void ReportControl::showFilesOf(const std::string& folder) {
    form_.sources.duringCommand([&] { form_.lists.showFilesOf(folder); });
}

void ReportControl::refreshPreview() {
    form_.preview.Preview_ShowFile(true);
}

void ReportControl::Preview_Reset_View() {
    form_.preview.Preview_Reset_View();
}

void ReportControl::deleteFolders(bool forGood) {
    form_.files.deleteFolders(forGood);
}

// A source that is handed over while the menu is open has to wait, because its scan would select other rows.
void ReportControl::openRowsMenu(Point at) {
    const bool onDisk = std::ranges::all_of(form_.session.tvwPL.selectedRows(),
                                            [&](Row row) { return isOnDisk(form_.scan, row); });
    for (const CommandRow& row : commandsOf(BarId::kMain))
        if (row.parent == Command::kMenuOfSelectedFolders)
            form_.bars.cbrMain.setEnabled(idOf(row.command), onDisk);
    form_.sources.duringCommand(
        [&] { form_.window->bar(BarId::kMain).showPopup(idOf(Command::kMenuOfSelectedFolders), at); });
}

void ReportControl::openColumnsMenu(GridId grid, Point at) {
    form_.barControl.openColumnsMenu(barOf(grid), at);
}

void ReportControl::copyPaths(const std::vector<std::string>& paths) {
    form_.window->clipboard.copyFiles(paths);
}

void ReportControl::nameEdited(GridId /*grid*/, Row row, const std::string& name) {
    form_.files.renameFolder(row, name);
}

void ReportControl::looked(Look what) {
    form_.run.looked(what);
}

void ReportControl::Report_ShellContextMenu(Row row, const std::string& path, Point at) {
    form_.files.openReportMenu(row, path, at);
}

}  // namespace hl
