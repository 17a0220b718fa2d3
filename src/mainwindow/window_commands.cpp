// The commands: dispatch; the main bar; several views; the report; the drives; the lists.
#include "mainwindow/window_commands.h"

#include <algorithm>
#include <utility>

#include "app/product.h"
#include "app/setting_keys.h"
#include "base/text.h"
#include "fileops/deleting.h"
#include "mainwindow/about_form.h"
#include "mainwindow/bar_options.h"
#include "mainwindow/options_form.h"
#include "mainwindow/view_options.h"
#include "mainwindow/window_form.h"
#include "output/print_files.h"
#include "output/print_report.h"
#include "output/save_files.h"
#include "output/save_report.h"
#include "robustness/trap.h"
#include "scan/rollup.h"
#include "views/file_list.h"
#include "views/list_columns.h"

namespace hl {

namespace {

constexpr const char* kModul = "frmMain";
constexpr int kFontSmallest = 5;
constexpr int kFontLargest = 40;

}  // namespace

// --- dispatch

void WindowCommands::execute(BarId id, int command) {
    {
        const auto over = form_.command();
        const CommandBar& bar = form_.bar(id);
        guarded(form_.services_.diagnostics, (bar.name() + "_Execute").c_str(), kModul, [&] {
            const BarEntry* entry = bar.find(command);
            const CommandRow* row = commandRow(commandOf(id, command));
            if (entry == nullptr || row == nullptr || !entry->enabled || form_.unloaded_) return;
            keep(*row);
            if (row->run != nullptr) (this->*row->run)(*row);
        });
    }
    form_.readWaiting();
}

// Changes the option of the clicked entry.
void WindowCommands::keep(const CommandRow& row) {
    using Use = KeptOption::Use;
    CommandBar& bar = form_.bar(barOf(row.command));
    if (row.kept.use == Use::kToggles || row.kept.use == Use::kDecimals) {
        bar.toggle(idOf(row.command));
        row.kept.field(form_.options_) = bar.isChecked(idOf(row.command)) ? 1 : 0;
    }
    if (row.kept.use != Use::kChooses) return;
    row.kept.field(form_.options_) = static_cast<Flag>(row.value);
    for (const CommandRow& other : commandsOf(bar.id()))
        if (other.kept.field == row.kept.field) bar.setChecked(idOf(other.command), &other == &row);
}

void WindowCommands::returnIn(BarId id, int command) {
    const CommandRow* row = commandRow(commandOf(id, command));
    if (row != nullptr && row->run != nullptr && !form_.state_.ScanActive) (this->*row->run)(*row);
}

// --- the main bar

void WindowCommands::newSource(const CommandRow& /*row*/) {
    const std::string folder = form_.window_->dialogs.askFolder("", "/");
    if (folder.empty()) return;
    AddNewSearchPath(form_.scan_, folder);
    form_.sourcesChanged();
}

void WindowCommands::start(const CommandRow& /*row*/) {
    if (!form_.state_.ScanActive) StartSearchViaToolbar(form_.scan_);
    form_.sourcesChanged();
}

void WindowCommands::stop(const CommandRow& /*row*/) {
    form_.state_.CancelState = kCancelStop;
}

// An empty list shows a hint that depends on the option.
void WindowCommands::scanOption(const CommandRow& /*row*/) {
    if (form_.panes_.listShows()) form_.window_->grid(form_.panes_.list()).refresh();
}

void WindowCommands::showPanel(const CommandRow& row) {
    form_.panes_.PanelToggle(row.command);
}

void WindowCommands::showOptions(const CommandRow& /*row*/) {
    const FormServices& services = form_.services_;
    OptionsForm frmOptionen({services.settings, services.texts, services.log, services.facts,
                             services.diagnostics, form_.own_.verb, form_.own_.executable});
    Form form = frmOptionen.form();
    form_.window_->dialogs.showForm(form);
    OptionenLadenMain(form_.options_, services.settings, services.diagnostics, true);
    Init_FileList_DateFormat(form_.lvwFiles_, form_.options_);
    Init_HardlinksList_DateFormat(form_.lvwHardlinks_, form_.options_);
    Init_TopList_DateFormat(form_.lvwTOP_, form_.options_);
}

void WindowCommands::showLog(const CommandRow& /*row*/) {
    const std::string path = joinPath(form_.own_.programFolder, kProtocolName, form_.services_.paths);
    if (form_.services_.files.exists(path)) form_.openFile(path);
}

void WindowCommands::showAbout(const CommandRow& /*row*/) {
    AboutForm frmInfo({form_.services_.texts, form_.own_.addresses, form_.own_.version,
                       [this](const std::string& url) { startUrl(url); }, form_.own_.portable});
    Form form = frmInfo.form();
    form_.window_->dialogs.showForm(form);
}

void WindowCommands::openHomepage(const CommandRow& /*row*/) {
    startUrl(form_.own_.addresses.homepage);
}

// Opens an address; the desktop may have no program for it.
void WindowCommands::startUrl(std::string url) {
    const std::string lower = lowerCase(url);
    if (!lower.starts_with("https://") && !lower.starts_with("http://")) url.insert(0, "http://");
    if (form_.window_->frame.openUrl(url)) return;
    form_.window_->dialogs.message(
        MessageKind::kWarning,
        form_.services_.texts.TL(9526, "'%1' kann nicht geöffnet werden.", {visible(url)}));
}

// With other sizes of the bars, those of the lists may fit now, or no longer.
void WindowCommands::largeIcons(const CommandRow& /*row*/) {
    Change_ToolbarIconSize(form_.bars_, form_.services_.diagnostics);
    form_.panes_.measureListBars();
}

void WindowCommands::iconText(const CommandRow& /*row*/) {
    Change_Toolbar_IconText(form_.bars_, form_.services_.diagnostics);
    form_.panes_.measureListBars();
}

void WindowCommands::setFont(GridId id, const GridFont& font) {
    setFontOf(form_.options_, id, font);
    form_.window_->grid(id).setGridFont(font);
}

void WindowCommands::changeFontSize(const CommandRow& row) {
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const auto id = static_cast<GridId>(i);
        GridFont font = form_.window_->grid(id).gridFont();
        font.points = std::clamp<double>(font.points + row.value, kFontSmallest, kFontLargest);
        setFont(id, font);
    }
    form_.resizeAllColumns();
    form_.Drives_ResizeTableHeight();
}

void WindowCommands::changeFontOfAll(const CommandRow& /*row*/) {
    const auto font = form_.window_->dialogs.askFont(form_.window_->grid(GridId::kReport).gridFont());
    if (!font) return;
    for (std::size_t i = 0; i < kGridCount; ++i) setFont(static_cast<GridId>(i), *font);
    form_.resizeAllColumns();
    form_.Drives_ResizeTableHeight();
}

void WindowCommands::changeLanguage(const CommandRow& row) {
    form_.services_.settings.StoreSettings(kKeyLanguage.section, kKeyLanguage.key, row.value);
    form_.RestartPending_ = true;
    form_.window_->frame.close();
}

void WindowCommands::quit(const CommandRow& /*row*/) {
    form_.window_->frame.close();
}

void WindowCommands::deleteFolders(const CommandRow& /*row*/) {
    DeleteFolders(form_.fileOps(), form_.tvwPL_.selectedRows(), false);
}

void WindowCommands::recycleFolders(const CommandRow& /*row*/) {
    DeleteFolders(form_.fileOps(), form_.tvwPL_.selectedRows(), true);
}

// --- several views

void WindowCommands::showSizes(const CommandRow& row) {
    const BarId id = barOf(row.command);
    if (id == BarId::kReport) return form_.reportView_->Report_Set_SizeFormat();
    if (id == BarId::kDrives) return form_.driveList_->Drives_ChangeSizeFormat();
    list(row).Set_SizeFormat();
}

void WindowCommands::changeFont(const CommandRow& row) {
    const GridId id = gridOf(barOf(row.command));
    const auto font = form_.window_->dialogs.askFont(form_.window_->grid(id).gridFont());
    if (!font) return;
    setFont(id, *font);
    if (id == GridId::kReport) return form_.reportView_->Report_Resize_Columns(true);
    if (id != GridId::kDrives) return list(row).Resize_Columns(true);
    form_.driveList_->Drives_Resize_Columns(true);
    form_.Drives_ResizeTableHeight();
}

void WindowCommands::fullView(const CommandRow& row) {
    using enum Command;
    const bool ofReport = row.command == kReportFullView;
    for (const Command panel :
         {kShowReport, kShowDrives, kShowFiles, kShowTop, kShowHardlinks, kShowJunctions})
        // A list has its place to itself already, so only the report and the drives are hidden.
        if (ofReport ? panel != kShowReport : panel == kShowReport || panel == kShowDrives)
            form_.bars_.cbrMain.setChecked(idOf(panel), false);
    form_.panes_.Change_Info_Visibility();
}

// --- the report

void WindowCommands::reportRescan(const CommandRow& /*row*/) {
    Report_Rescan(form_.scan_);
}

void WindowCommands::reportFoldAll(const CommandRow& /*row*/) {
    form_.reportView_->Report_ExpandAllFolders(false);
}

void WindowCommands::reportUnfoldAll(const CommandRow& /*row*/) {
    form_.reportView_->Report_ExpandAllFolders(true);
}

void WindowCommands::reportUnfold(const CommandRow& row) {
    form_.reportView_->Report_ExpandFolderLevels(static_cast<std::uint32_t>(row.value - 1));
}

void WindowCommands::reportRemove(const CommandRow& /*row*/) {
    Report_RemoveFolders(form_.scan_);
}

void WindowCommands::reportRemoveAll(const CommandRow& /*row*/) {
    form_.reportView_->removeAll();
}

// Tells the user, and returns true, if an error of the program may have left rows out: such a report must not
// replace an older one.
bool WindowCommands::tellIncomplete() {
    if (!form_.rowsMissing_) return false;
    form_.window_->dialogs.message(
        MessageKind::kWarning,
        form_.services_.texts.TL(9644,
                                 "Beim Einlesen ist ein unerwarteter Fehler aufgetreten. Was "
                                 "fehlt, ist nicht bekannt, darum wird nichts gespeichert. "
                                 "Leeren Sie den Bericht und lesen Sie neu ein."));
    return true;
}

void WindowCommands::reportSave(const CommandRow& /*row*/) {
    if (form_.tvwPL_.rowCount() == 0 || tellIncomplete()) return;
    const FormServices& services = form_.services_;
    SaveForm frmSave(SaveServices{form_.tvwPL_, form_.options_, services.texts, services.numbers,
                                  services.files, services.diagnostics, form_.state_, services.pump,
                                  services.paths, &form_});
    Form form = frmSave.form();
    form_.window_->dialogs.showForm(form);
}

void WindowCommands::reportPrint(const CommandRow& /*row*/) {
    if (form_.tvwPL_.rowCount() == 0) return;
    PrintForm frmPrint({form_.tvwPL_, form_.options_, form_.printSources(), form_.services_.numbers,
                        form_.services_.diagnostics, form_.state_, form_.services_.pump, *form_.window_});
    Form form = frmPrint.form();
    form_.window_->dialogs.showForm(form);
}

void WindowCommands::reportColumn(const CommandRow& row) {
    const bool shows = row.kept.field(form_.options_) != 0;
    form_.reportView_->Report_ChangeColVisible(static_cast<std::size_t>(row.value), shows);
}

void WindowCommands::reportFit(const CommandRow& /*row*/) {
    form_.reportView_->Report_Resize_Columns(true);
}

void WindowCommands::reportSearch(const CommandRow& /*row*/) {
    form_.reportView_->Report_StartSearch();
}

// --- the drives

void WindowCommands::drivesRefresh(const CommandRow& /*row*/) {
    form_.driveList_->Drives_GetAllDrives();
}

void WindowCommands::drivesRead(const CommandRow& /*row*/) {
    form_.driveList_->Drives_ScanDrives(true);
}

void WindowCommands::drivesReadAll(const CommandRow& /*row*/) {
    form_.driveList_->Drives_ScanDrives(false);
}

void WindowCommands::drivesAdd(const CommandRow& /*row*/) {
    form_.driveList_->Drives_AddUNCpath("");
}

// --- the lists

ListView& WindowCommands::list(const CommandRow& row) {
    return *form_.lists_->of(gridOf(barOf(row.command)));
}

void WindowCommands::listOwnCommand(const CommandRow& row) {
    list(row).ownCommand();
}

void WindowCommands::listDelete(const CommandRow& row) {
    List_DeleteFiles(form_.fileOps(), list(row), false);
}

void WindowCommands::listRecycle(const CommandRow& row) {
    List_DeleteFiles(form_.fileOps(), list(row), true);
}

void WindowCommands::listIcons(const CommandRow& row) {
    list(row).iconsSwitched();
}

void WindowCommands::listPreview(const CommandRow& row) {
    listSplit(row);
    list(row).showPreview(false);
}

void WindowCommands::listSplit(const CommandRow& row) {
    const BarId id = barOf(row.command);
    form_.panes_.followPreviewEntries(gridOf(id));
    form_.panes_.cbrResize(id);
    list(row).SetFileIcons(false);
}

void WindowCommands::listColumn(const CommandRow& row) {
    const bool shows = row.kept.field(form_.options_) != 0;
    list(row).showColumn(static_cast<std::size_t>(row.value), shows);
}

void WindowCommands::listFit(const CommandRow& row) {
    list(row).Resize_Columns(true);
}

void WindowCommands::listSave(const CommandRow& row) {
    if (tellIncomplete()) return;
    const FormServices& services = form_.services_;
    Save_Files({list(row).grid(), services.texts, services.numbers, services.settings, services.files,
                services.diagnostics, services.paths, form_},
               *form_.window_);
}

void WindowCommands::listPrint(const CommandRow& row) {
    if (form_.state_.ScanActive) return;  // The scan would wait for the preview.
    const GridId id = gridOf(barOf(row.command));
    Print_Files(form_.printSources(), form_.parts_.gridTitles[static_cast<std::size_t>(id)], form_.grid(id),
                id, form_.services_.numbers, *form_.window_);
}

void WindowCommands::listSearch(const CommandRow& row) {
    list(row).StartSearch();
}

}  // namespace hl
