// The main bar; several views; the report; the drives; the lists; found files; the map.
#include "mainwindow/commands.h"

#include <optional>

#include "app/product.h"
#include "app/setting_keys.h"
#include "base/text.h"
#include "mainwindow/about_form.h"
#include "mainwindow/main_form.h"
#include "mainwindow/options_form.h"
#include "mainwindow/pane_table.h"
#include "scan/driver.h"
#include "scan/rollup.h"
#include "views/list_columns.h"
#include "views/report_columns.h"

namespace hl::commands {

namespace {

// A desktop may have no program for it.
void startUrl(MainForm& form, std::string url) {
    const std::string lower = lowerCase(url);
    if (!lower.starts_with("https://") && !lower.starts_with("http://")) url.insert(0, "http://");
    if (form.window->frame.openUrl(url)) return;
    form.window->dialogs.message(
        MessageKind::kWarning,
        form.services().texts.TL(9526, "'%1' kann nicht geöffnet werden.", {visible(url)}));
}

// Returns the path of the guide where it is installed, built or unpacked; empty if it is nowhere.
std::string guideOf(const MainForm& form) {
    for (const char* folder : {"/../doc/harborlantern", "/../docs", "/docs"}) {
        std::string path = form.parts.dataFolder + folder + "/guide.md";
        if (form.services().files.exists(path)) return path;
    }
    return {};
}

bool isOn(MainForm& form, const CommandRow& row) {
    return row.kept.field(form.session.options) != 0;
}

// They cannot be taken back.
std::optional<std::size_t> removeKeptScans(MainForm& form) {
    const Texts& texts = form.services().texts;
    const std::string question = texts.TL(9126, "Alle aufgehobenen Scans für immer löschen?");
    if (!form.window->dialogs.confirm(question, texts.TL(9271, "Löschen"), nullptr)) return std::nullopt;
    return form.keptScans.removeAll();
}

GridId gridOf(const CommandRow& row) {
    return hl::gridOf(barOf(row.command));
}

ListView& listOf(MainForm& form, const CommandRow& row) {
    return *form.lists.of(gridOf(row));
}

}  // namespace

// --- the main bar

void newSource(MainForm& form, const CommandRow& /*row*/) {
    const std::string folder = form.window->dialogs.askFolder("", "/");
    if (folder.empty()) return;
    AddNewSearchPath(form.scan, folder);
    form.sources.changed();
}

void start(MainForm& form, const CommandRow& /*row*/) {
    if (form.session.state.ScanActive) return form.sources.changed();
    StartSearchViaToolbar(form.scan);
    form.sources.changed();
    // The box is ready to mend what was typed.
    if (form.run.sourceMissed() && form.window->sources != nullptr) form.window->sources->focusBox();
}

void stop(MainForm& form, const CommandRow& /*row*/) {
    form.session.state.CancelState = kCancelStop;
}

// An empty list shows a hint that depends on the option.
void scanOption(MainForm& form, const CommandRow& /*row*/) {
    const Panes& panes = form.looks.panes();
    if (panes.listShows()) form.window->grid(panes.list()).refresh();
}

void showPanel(MainForm& form, const CommandRow& row) {
    form.looks.panes().PanelToggle(row.command);
}

void showMap(MainForm& form, const CommandRow& /*row*/) {
    form.looks.panes().followMap();
}

void showOptions(MainForm& form, const CommandRow& /*row*/) {
    Session& session = form.session;
    const Services& services = session.services;
    OptionsForm frmOptionen(services, form.own.verb, form.own.executable,
                            [&form] { return removeKeptScans(form); });
    Form dialog = frmOptionen.form();
    form.window->dialogs.showForm(dialog);
    OptionenLadenMain(session.options, services.settings.read(), services.diagnostics, true);
    setDateFormat(session.tvwPL, kReportTable, session.options);
    setDateFormat(session.lvwFiles, kFilesTable, session.options);
    setDateFormat(session.lvwHardlinks, kHardlinksTable, session.options);
    setDateFormat(session.lvwTOP, kTopTable, session.options);
    setDateFormat(session.lvwFind, kFindTable, session.options);
}

void showLog(MainForm& form, const CommandRow& /*row*/) {
    const std::string path = joinPath(form.own.programFolder, kProtocolName, form.services().paths);
    if (form.services().files.exists(path)) form.files.openFile(path);
}

void openGuide(MainForm& form, const CommandRow& /*row*/) {
    const std::string path = guideOf(form);
    if (!path.empty()) return form.files.openFile(path);
    form.window->dialogs.message(
        MessageKind::kInformation,
        form.services().texts.TL(9759, "Die Anleitung (guide.md) ist nicht installiert."));
}

void showAbout(MainForm& form, const CommandRow& /*row*/) {
    AboutForm frmInfo({form.services().texts, form.own.addresses, form.own.version,
                       [&form](const std::string& url) { startUrl(form, url); }, form.own.portable});
    Form dialog = frmInfo.form();
    form.window->dialogs.showForm(dialog);
}

void openHomepage(MainForm& form, const CommandRow& /*row*/) {
    startUrl(form, form.own.addresses.homepage);
}

void largeIcons(MainForm& form, const CommandRow& /*row*/) {
    form.looks.largeIconsSwitched();
}

void iconText(MainForm& form, const CommandRow& /*row*/) {
    form.looks.iconTextSwitched();
}

void changeFontSize(MainForm& form, const CommandRow& row) {
    form.looks.changeFontSizes(row.value);
}

void changeFontOfAll(MainForm& form, const CommandRow& /*row*/) {
    form.looks.chooseFontOfAll();
}

void changeLanguage(MainForm& form, const CommandRow& row) {
    form.services().settings.StoreSettings(kKeyLanguage.section, kKeyLanguage.key, row.value);
    form.restartPending = true;
    form.window->frame.close();
}

void quit(MainForm& form, const CommandRow& /*row*/) {
    form.window->frame.close();
}

void deleteFolders(MainForm& form, const CommandRow& /*row*/) {
    form.files.deleteFolders(true);
}

void recycleFolders(MainForm& form, const CommandRow& /*row*/) {
    form.files.deleteFolders(false);
}

void comesBack(MainForm& form, const CommandRow& row) {
    const BarId bar = barOf(row.command);
    form.files.showComesBack(bar == BarId::kMain ? GridId::kReport : hl::gridOf(bar));
}

void takeBack(MainForm& form, const CommandRow& /*row*/) {
    form.files.takeBack();
}

void showNotRead(MainForm& form, const CommandRow& /*row*/) {
    form.report.showNotRead();
}

// --- several views

void showSizes(MainForm& form, const CommandRow& row) {
    const GridId id = gridOf(row);
    if (id == GridId::kReport) return form.report.view().Report_Set_SizeFormat();
    if (id == GridId::kDrives) return form.drives.list().Drives_ChangeSizeFormat();
    listOf(form, row).Set_SizeFormat();
}

void changeFont(MainForm& form, const CommandRow& row) {
    form.looks.chooseFont(gridOf(row));
}

void fullView(MainForm& form, const CommandRow& row) {
    form.looks.fullView(barOf(row.command));
}

// --- the report

void reportRescan(MainForm& form, const CommandRow& /*row*/) {
    Report_Rescan(form.scan);
}

void reportFoldAll(MainForm& form, const CommandRow& /*row*/) {
    form.report.view().Report_ExpandAllFolders(false);
}

void reportUnfoldAll(MainForm& form, const CommandRow& /*row*/) {
    form.report.view().Report_ExpandAllFolders(true);
}

void reportUnfold(MainForm& form, const CommandRow& row) {
    form.report.view().Report_ExpandFolderLevels(static_cast<std::uint32_t>(row.value - 1));
}

void reportRemove(MainForm& form, const CommandRow& /*row*/) {
    Report_RemoveFolders(form.scan);
}

void reportRemoveAll(MainForm& form, const CommandRow& /*row*/) {
    form.report.view().removeAll();
}

void reportSave(MainForm& form, const CommandRow& /*row*/) {
    form.report.save();
}

void reportSaveScan(MainForm& form, const CommandRow& /*row*/) {
    form.report.saveScan();
}

void reportOpenScan(MainForm& form, const CommandRow& /*row*/) {
    form.openedScans.choose();
}

void reportCompare(MainForm& form, const CommandRow& /*row*/) {
    form.comparison.toggle();
}

void reportCompareFile(MainForm& form, const CommandRow& /*row*/) {
    form.comparison.chooseFile();
}

void reportPrint(MainForm& form, const CommandRow& /*row*/) {
    form.report.print();
}

void reportColumn(MainForm& form, const CommandRow& row) {
    form.report.view().Report_ChangeColVisible(static_cast<std::size_t>(row.value), isOn(form, row));
}

void reckonOnDisk(MainForm& form, const CommandRow& /*row*/) {
    form.report.view().reckonAnew();
    form.lists.followReport();
}

void reportBalance(MainForm& form, const CommandRow& /*row*/) {
    const Grid& report = form.session.tvwPL;
    form.balance.showOf(report.currentRow() != kNoRow ? report.currentRow() : report.firstRoot());
}

void reportFit(MainForm& form, const CommandRow& /*row*/) {
    form.report.view().Report_Resize_Columns(true);
}

void reportSearch(MainForm& form, const CommandRow& /*row*/) {
    form.report.view().Report_StartSearch();
}

// --- the drives

void drivesRefresh(MainForm& form, const CommandRow& /*row*/) {
    form.drives.list().Drives_GetAllDrives();
}

void drivesRead(MainForm& form, const CommandRow& /*row*/) {
    form.drives.list().Drives_ScanDrives(true);
}

void drivesReadAll(MainForm& form, const CommandRow& /*row*/) {
    form.drives.list().Drives_ScanDrives(false);
}

void drivesBalance(MainForm& form, const CommandRow& /*row*/) {
    form.balance.showOfDrive();
}

void drivesAdd(MainForm& form, const CommandRow& /*row*/) {
    form.drives.list().Drives_AddUNCpath("");
}

// --- the lists

void listOwnCommand(MainForm& form, const CommandRow& row) {
    listOf(form, row).ownCommand();
}

void listDelete(MainForm& form, const CommandRow& row) {
    form.files.deleteFiles(gridOf(row), true);
}

void listRecycle(MainForm& form, const CommandRow& row) {
    form.files.deleteFiles(gridOf(row), false);
}

void listIcons(MainForm& form, const CommandRow& row) {
    listOf(form, row).iconsSwitched();
}

void listPreview(MainForm& form, const CommandRow& row) {
    listSplit(form, row);
    listOf(form, row).showPreview(false);
}

void listSplit(MainForm& form, const CommandRow& row) {
    form.looks.panes().followPreviewEntries(gridOf(row));
    form.looks.panes().cbrResize(barOf(row.command));
    listOf(form, row).SetFileIcons(false);
}

void listColumn(MainForm& form, const CommandRow& row) {
    listOf(form, row).showColumn(static_cast<std::size_t>(row.value), isOn(form, row));
}

void listFit(MainForm& form, const CommandRow& row) {
    listOf(form, row).Resize_Columns(true);
}

void listSave(MainForm& form, const CommandRow& row) {
    form.lists.save(listOf(form, row));
}

void listPrint(MainForm& form, const CommandRow& row) {
    form.lists.print(gridOf(row));
}

void listSearch(MainForm& form, const CommandRow& row) {
    listOf(form, row).StartSearch();
}

// --- the files that a search has found

void findStart(MainForm& form, const CommandRow& /*row*/) {
    form.find.start();
}

void findForm(MainForm& form, const CommandRow& /*row*/) {
    form.find.showForm();
}

// --- the map

void mapColour(MainForm& form, const CommandRow& /*row*/) {
    form.map.reportChanged();
}

void mapUp(MainForm& form, const CommandRow& /*row*/) {
    form.map.levelUp();
}

void mapSave(MainForm& form, const CommandRow& row) {
    row.command == Command::kMapSaveSvg ? form.map.saveSvg() : form.map.savePng();
}

void mapPrint(MainForm& form, const CommandRow& /*row*/) {
    form.map.print();
}

}  // namespace hl::commands
