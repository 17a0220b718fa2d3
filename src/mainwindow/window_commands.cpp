// The commands of the bars. Sections: dispatch; main commands; views; fonts.
#include <algorithm>

#include "app/product.h"
#include "app/setting_keys.h"
#include "base/text.h"
#include "fileops/deleting.h"
#include "mainwindow/about_form.h"
#include "mainwindow/bar_options.h"
#include "mainwindow/options_form.h"
#include "mainwindow/view_options.h"
#include "mainwindow/window_form.h"
#include "output/print_report.h"
#include "output/save_report.h"
#include "robustness/trap.h"
#include "scan/rollup.h"
#include "views/file_list.h"
#include "views/list_columns.h"
#include "views/report_columns.h"
#include "views/size_display.h"

namespace hl {

namespace {

constexpr const char* kModul = "frmMain";
constexpr int kFontSmallest = 5;
constexpr int kFontLargest = 40;

/// The toggles of the list below "Start", and what they switch.
struct ScanToggle {
    int id;
    Flag Options::*option;
};
constexpr ScanToggle kScanToggles[] = {
    {60, &Options::CreateListTOP},        {61, &Options::CreateListHardlink},
    {62, &Options::CreateListJunction},   {63, &Options::NoHardlinks},
    {64, &Options::FolderColorFade},      {65, &Options::AddHardlinksOnlyOnce},
    {66, &Options::FolderShowPercentBar}, {68, &Options::ScanHardlinks},
};

/// What the bars of report and drives have in common: ids, and what they switch.
struct ViewCommands {
    int firstMode;  ///< Bytes; the next three follow.
    int decimals;
    std::uint8_t Options::*modeOption;
    Flag Options::*decimalsOption;
};
constexpr ViewCommands kReportCommands = {10, 33, &Options::FileSizeFormat,
                                          &Options::SizeFormatNachkommastellenFolders};
constexpr ViewCommands kDriveCommands = {201, 205, &Options::FileSizeFormatDrive,
                                         &Options::SizeFormatNachkommastellenDrive};
constexpr int kFontCommand = 328;
constexpr int kLargeIcons = 27, kIconText = 34;

const ViewCommands& commandsOf(BarId bar) {
    return bar == BarId::kReport ? kReportCommands : kDriveCommands;
}

}  // namespace

// --- dispatch

void WindowForm::execute(BarId id, int command) {
    constexpr const char* kNames[kBarCount] = {
        "cbrMain_Execute", "cbrReport_Execute",    "cbrDrives_Execute",   "cbrFiles_Execute",
        "cbrTOP_Execute",  "cbrHardlinks_Execute", "cbrJunctions_Execute"};
    ++commands_;
    guarded(services_.diagnostics, kNames[static_cast<std::size_t>(id)], kModul, [&] {
        const BarEntry* entry = bar(id).find(command);
        if (entry == nullptr || !entry->enabled || unloaded_) return;
        if (id == BarId::kMain) return cbrMain_Execute(command);
        if (ListView* list = lists_->of(gridOf(id))) return list->execute(command);
        if (viewCommand(id, command)) return;
        if (id == BarId::kReport) cbrReport_Execute(command);
        if (id == BarId::kDrives) cbrDrives_Execute(command);
    });
    --commands_;
    readWaiting();
}

// Bars of another size: those of the lists may have room now, or none.
void WindowForm::switchBarLook(int id) {
    bars_.cbrMain.toggle(id);
    if (id == kLargeIcons) Change_ToolbarIconSize(bars_, services_.diagnostics);
    if (id == kIconText) Change_Toolbar_IconText(bars_, services_.diagnostics);
    panes_.measureListBars();
}

void WindowForm::cbrMain_Execute(int id) {
    const auto language = std::find_if(kLanguageCommands.begin(), kLanguageCommands.end(),
                                       [id](const LanguageCommand& each) { return each.id == id; });
    if (language != kLanguageCommands.end()) return ChangeLanguage(language->language);
    switch (id) {
        case 1:
            return AddNewSearchPathBrowse();
        case 2:
            if (!state_.ScanActive) StartSearchViaToolbar(scan_);
            return sourcesChanged();
        case 3:
            state_.CancelState = kCancelStop;
            return;
        case 101:
        case 102:
            return DeleteFolders(fileOps(), tvwPL_.selectedRows(), id == 102);
        case 14:
            return ShowOptionen();
        case 16:
            return Show_Log();
        case 17:
            return showAbout();
        case 18:
            return StartURL(own_.addresses.homepage);
        case 20:
            return window_->close();
        case kLargeIcons:
        case kIconText:
            return switchBarLook(id);
        case 31:
        case 32:
            return ChangeFontSize(id == 32);
        case kFontCommand:
            return ChangeFontAll();
        default:
            break;
    }
    setOption(id);
    panes_.PanelToggle(id);
}

void WindowForm::setOption(int id) {
    for (const ScanToggle& toggle : kScanToggles) {
        if (toggle.id != id) continue;
        bars_.cbrMain.toggle(id);
        options_.*toggle.option = bars_.cbrMain.isChecked(id) ? 1 : 0;
        if (panes_.listShows()) window_->refresh(panes_.list());  // What an empty list says follows.
    }
}

void WindowForm::cbrReport_Execute(int id) {
    constexpr int kFirstLevel = 100;
    CommandBar& report = bars_.cbrReport;
    const auto toggleColumn = [&](std::size_t column) {
        report.toggle(id);
        reportView_->Report_ChangeColVisible(column, report.isChecked(id));
    };
    switch (id) {
        case 4:
            return Report_Rescan(scan_);
        case 5:
            return Report_SaveToFile();
        case 6:
            return Report_print();
        case 7:
            return Report_RemoveFolders(scan_);
        case 9:
            return reportView_->removeAll();
        case 22:
            return toggleColumn(kReportFiles);
        case 23:
            return toggleColumn(kReportFolders);
        case 35:
            return toggleColumn(kReportPercent);
        case 24:
        case 25:
            return reportView_->Report_ExpandAllFolders(id == 25);
        case 26:
            return reportView_->Report_Resize_Columns(true, false);
        case 29:
        case 30:
            return reportView_->Report_StartSearch();
        case 323:
            return fullView(BarId::kReport);
        case 34:
            return reportView_->Report_Resize_Columns(true, true);
        default:
            break;
    }
    if (id >= kFirstLevel)
        reportView_->Report_ExpandFolderLevels(static_cast<std::uint32_t>(id - kFirstLevel));
}

void WindowForm::cbrDrives_Execute(int id) {
    switch (id) {
        case 200:
            return driveList_.Drives_GetAllDrives();
        case 206:
        case 207:
            return driveList_.Drives_ScanDrives(id == 206);
        case 208:
            return driveList_.Drives_AddUNCpath("");
        default:
            return;
    }
}

// Size mode, decimals and font; false for any other command.
bool WindowForm::viewCommand(BarId id, int command) {
    const ViewCommands& ids = commandsOf(id);
    if (command == kFontCommand) return ChangeFont(gridOf(id)), true;
    if (command == ids.decimals) return setDecimals(id), true;
    if (command < ids.firstMode || command > ids.firstMode + 3) return false;
    options_.*ids.modeOption = static_cast<std::uint8_t>(command - ids.firstMode);
    showSizes(id);
    return true;
}

// --- main commands

void WindowForm::AddNewSearchPathBrowse() {
    const std::string folder = window_->askFolder("", "/");
    if (folder.empty()) return;
    AddNewSearchPath(scan_, folder);
    sourcesChanged();
}

void WindowForm::ShowOptionen() {
    OptionsForm frmOptionen({services_.settings, services_.texts, services_.log, services_.facts,
                             services_.diagnostics, own_.verb, own_.executable});
    Form form = frmOptionen.form();
    window_->showForm(form);
    OptionenLadenMain(options_, services_.settings, services_.diagnostics, true);
    Init_FileList_DateFormat(lvwFiles_, options_);
    Init_HardlinksList_DateFormat(lvwHardlinks_, options_);
    Init_TopList_DateFormat(lvwTOP_, options_);
}

void WindowForm::Show_Log() {
    const std::string path = joinPath(own_.programFolder, kProtocolName, services_.paths);
    if (services_.files.exists(path)) openFile(path);
}

void WindowForm::showAbout() {
    AboutForm frmInfo({services_.texts, own_.addresses, own_.version,
                       [this](const std::string& url) { StartURL(url); }, own_.portable});
    Form form = frmInfo.form();
    window_->showForm(form);
}

void WindowForm::StartURL(std::string url) {
    const std::string lower = lowerCase(url);
    if (!lower.starts_with("https://") && !lower.starts_with("http://")) url.insert(0, "http://");
    openOrSay(url, url);
}

// A desktop may have no program for it.
void WindowForm::openOrSay(const std::string& url, const std::string& name) {
    if (window_->openUrl(url)) return;
    window_->message(MessageKind::kWarning,
                     services_.texts.TL(9526, "'%1' kann nicht geöffnet werden.", {visible(name)}));
}

// What an error of our own has left out nobody can tell: it shall not replace an older report.
bool WindowForm::tellIncomplete() {
    if (!rowsMissing_) return false;
    window_->message(MessageKind::kWarning,
                     services_.texts.TL(9644,
                                        "Beim Einlesen ist ein unerwarteter Fehler aufgetreten. Was "
                                        "fehlt, ist nicht bekannt, darum wird nichts gespeichert. "
                                        "Leeren Sie den Bericht und lesen Sie neu ein."));
    return true;
}

void WindowForm::Report_SaveToFile() {
    if (tvwPL_.rowCount() == 0 || tellIncomplete()) return;
    SaveForm frmSave(SaveServices{tvwPL_, options_, services_.texts, services_.numbers, services_.files,
                                  services_.diagnostics, state_, services_.pump, services_.paths, this});
    Form form = frmSave.form();
    window_->showForm(form);
}

void WindowForm::Report_print() {
    if (tvwPL_.rowCount() == 0) return;
    PrintForm frmPrint({tvwPL_, options_, printSources(), services_.numbers, services_.diagnostics, state_,
                        services_.pump, *window_});
    Form form = frmPrint.form();
    window_->showForm(form);
}

std::string WindowForm::askSavePath(const SaveQuestion& question) {
    return window_->askSavePath(question.filter, question.defaultExtension, question.initialFolder);
}

void WindowForm::ChangeLanguage(int language) {
    services_.settings.StoreSettings(kKeyLanguage.section, kKeyLanguage.key, language);
    RestartPending_ = true;
    window_->close();
}

// --- views

void WindowForm::fullView(BarId id) {
    std::vector<int> others = {kPanelDrives, kPanelReport};
    if (id == BarId::kReport)
        others = {kPanelDrives, kPanelFiles, kPanelTop, kPanelHardlinks, kPanelJunctions};
    for (const int panel : others) bars_.cbrMain.setChecked(panel, false);
    panes_.Change_Info_Visibility();
}

void WindowForm::showSizes(BarId id) {
    const ViewCommands& ids = commandsOf(id);
    showSizeMode(bar(id), options_.*ids.modeOption, options_.*ids.decimalsOption);
    if (id == BarId::kReport) return reportView_->Report_Set_SizeFormat();
    driveList_.Drives_ChangeSizeFormat();
}

void WindowForm::setDecimals(BarId id) {
    const ViewCommands& ids = commandsOf(id);
    bar(id).toggle(ids.decimals);
    options_.*ids.decimalsOption = bar(id).isChecked(ids.decimals) ? 1 : 0;
    showSizes(id);
}

void WindowForm::resizeAllColumns() {
    for (const GridId id : kListGrids) lists_->of(id)->Resize_Columns(false);
    driveList_.Drives_Resize_Columns(true);
    reportView_->Report_Resize_Columns(true, false);
}

// --- fonts

void WindowForm::applyFonts() {
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const auto id = static_cast<GridId>(i);
        window_->setFont(id, fontOf(options_, id));
    }
}

void WindowForm::setFont(GridId id, const GridFont& font) {
    setFontOf(options_, id, font);
    window_->setFont(id, font);
}

void WindowForm::ChangeFont(GridId id) {
    const auto font = window_->askFont(window_->font(id));
    if (!font) return;
    setFont(id, *font);
    if (id == GridId::kReport) return reportView_->Report_Resize_Columns(true, false);
    if (ListView* list = lists_->of(id)) return list->Resize_Columns(true);
    driveList_.Drives_Resize_Columns(true);
    Drives_ResizeTableHeight();
}

void WindowForm::ChangeFontAll() {
    const auto font = window_->askFont(window_->font(GridId::kReport));
    if (!font) return;
    for (std::size_t i = 0; i < kGridCount; ++i) setFont(static_cast<GridId>(i), *font);
    resizeAllColumns();
    Drives_ResizeTableHeight();
}

void WindowForm::ChangeFontSize(bool larger) {
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const auto id = static_cast<GridId>(i);
        GridFont font = window_->font(id);
        font.points = std::clamp<double>(font.points + (larger ? 1 : -1), kFontSmallest, kFontLargest);
        setFont(id, font);
    }
    resizeAllColumns();
    Drives_ResizeTableHeight();
}

}  // namespace hl
