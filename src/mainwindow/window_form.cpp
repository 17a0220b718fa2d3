// The life of the window, and what happens in it: making; loading; on screen; closing; events.
#include "mainwindow/window_form.h"

#include <algorithm>
#include <utility>

#include "app/command_line.h"
#include "app/product.h"
#include "app/setting_keys.h"
#include "base/text.h"
#include "mainwindow/bar_options.h"
#include "mainwindow/view_options.h"
#include "mainwindow/window_geometry.h"
#include "robustness/trap.h"
#include "scan/records.h"
#include "views/cell_text.h"
#include "views/drive_combo.h"
#include "views/report_columns.h"

namespace hl {

namespace {
constexpr const char* kModul = "frmMain";
}  // namespace

// --- making

WindowForm::WindowForm(const FormServices& services, const WindowServices& window)
    : MainForm(services, false),
      own_(window),
      lvwFiles_(kFileCells),
      lvwDiskinfo_(kDriveCells),
      panes_({bars_.all(), tvwPL_, options_, state_, services.paths, status_, *this, services.diagnostics}),
      preview_({panes_, parts_.grids, state_, services.texts, services.log, services.diagnostics}) {
    const Texts& texts = services.texts;
    parts_.grids = {&tvwPL_, &lvwDiskinfo_, &lvwFiles_, &lvwTOP_, &lvwHardlinks_, &lvwJunctions_};
    parts_.gridNames = {"tvwPL", "lvwDiskinfo", "lvwFiles", "lvwTOP", "lvwHardlinks", "lvwJunctions"};
    parts_.gridTitles = {texts.TL(3641, "Ordnerliste"), texts.TL(3643, "Laufwerksliste"),
                         texts.TL(3645, "Dateiliste"),  texts.TL(3724, "Größte Dateien"),
                         texts.TL(3740, "Hardlinks"),   texts.TL(3742, "Junctions")};
    parts_.bars = bars_.all();
    parts_.barEvents = this;
    parts_.sourceEvents = this;
    parts_.splitters = panes_.all();
    parts_.cellText = [this](GridId id, std::size_t column, Row row) {
        return ColumnText(grid(id), column, services_.numbers).of(row);
    };
    parts_.emptyHint = [this](GridId id) { return emptyHint(id); };
    parts_.fileIcon = [this](int picture) {
        return pictures_ ? pictures_->iconName(picture) : std::string();
    };
    parts_.yes = texts.TL(9500, "Ja");
    parts_.no = texts.TL(9501, "Nein");
    parts_.ok = texts.TL(3610, "OK");
    parts_.cancel = texts.TL(3609, "Abbrechen");
    parts_.level = texts.TL(9502, "Ebene");
    parts_.more = texts.TL(9508, "Weitere Befehle");
    parts_.clear = texts.TL(9509, "Text löschen");
    parts_.name = kProductName;
    parts_.language = languageOf(texts.languageId()).code;
    parts_.folder = own_.programFolder;
    parts_.preview.texts = previewTexts(texts);
}

WindowForm::~WindowForm() = default;

// --- loading

void WindowForm::formLoad(const Window& window, MessagePump& pump) {
    window_ = &window;
    preview_.setWindow(&window);
    guarded(services_.diagnostics, "windowThere", kModul, [&] { own_.windowThere(&window, &pump); });
    guarded(services_.diagnostics, "Form_Load", kModul, [&] { Form_Load_Window(); });
}

void WindowForm::Form_Load_Window() {
    window_->frame.setTitle(std::string(kProductName) + " " + own_.version +
                            std::string(own_.portable ? kPortableEdition : ""));
    Form_Load();
    makeViews();
    initAllBars(bars_, {services_.texts, options_, services_.diagnostics, !own_.addresses.homepage.empty()});
    loadToolbars();
    panes_.ShowFirstList();
    const IniText settings = services_.settings.read();
    const WindowPlace place = savedPlace(settings, window_->frame.screen());
    window_->frame.setGeometry(place.rect);
    applyFonts();
    initGrids();
    panes_.Change_Info_Visibility();
    panes_.placeSplitters(place.splitter);
    reportWidthOpen_ = !settings.find(kSectionForm, kKeySplitter.key);
    reportStart_ = panes_.splitter(SplitterId::kMain).Position();
    Change_ToolbarIconSize(bars_, services_.diagnostics);
    Change_Toolbar_IconText(bars_, services_.diagnostics);
    panes_.hideByOptions();
    status_.first = services_.texts.TL(3525, "OK.");
    showStatus();
    loaded_ = true;
}

void WindowForm::loadToolbars() {
    if (!toolbars_.load(services_.files, joinPath(own_.programFolder, kToolbarStateName, services_.paths)))
        return;
    for (CommandBar* each : bars_.all()) ExchangeState(toolbars_, *each);
}

void WindowForm::initGrids() {
    reportView_->Report_Set_SizeFormat();
    driveList_->Drives_ChangeSizeFormat();
    for (const GridId id : kListGrids) lists_->of(id)->Set_SizeFormat();
    resizeAllColumns();
}

void WindowForm::resizeAllColumns() {
    for (const GridId id : kListGrids) lists_->of(id)->Resize_Columns(false);
    driveList_->Drives_Resize_Columns(true);
    reportView_->Report_Resize_Columns(true);
}

void WindowForm::applyFonts() {
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const auto id = static_cast<GridId>(i);
        window_->grid(id).setGridFont(fontOf(options_, id));
    }
}

// --- on screen

void WindowForm::formActivate() {
    guarded(services_.diagnostics, "Form_Activate", kModul, [&] { Form_Activate(); });
    guarded(services_.diagnostics, "windowShown", kModul, [&] {
        if (own_.windowShown) own_.windowShown();
    });
    ready_ = true;
    readWaiting();
}

void WindowForm::Form_Activate() {
    window_->frame.setState(savedState(services_.settings.read()));
    reportView_->Report_Resize_Columns(false);
    driveList_->Drives_GetAllDrives();
    for (const GridId id : kListGrids) lists_->of(id)->Resize_Columns(false);
    Drives_ResizeTableHeight();
    const std::vector<Drive> drives = own_.drives.drives();
    loadComboText(options_, services_.settings);
    GetAllDrives(cboOrdner_, drives, options_.ComboText, services_.paths);
    GetAllSavedComboFolders(
        cboOrdner_, services_.settings, drives, options_.ComboText,
        [this](const std::string& folder) {
            // The target of a link is not asked for, because it may be on a server that is gone.
            int notALink = 0;
            const PathFacts facts = services_.fileSystem.look(folder);
            return facts.isFolder || facts.error == kNoAnswerError ||
                   !services_.fileSystem.target(folder, notALink).empty();
        },
        services_.paths);
    sourcesLoaded_ = true;
    sourcesChanged();
    EnableControls(scan_);
    setBusyPointer(false);
    // Sources that were handed over meanwhile come after these.
    const std::vector<std::string> sources = GetFoldersFromCommand(own_.commandLine);
    state_.SourceQueue.insert(state_.SourceQueue.begin(), sources.begin(), sources.end());
}

void WindowForm::runQueue() {
    // More sources may come after a run has read its last one but before it has ended.
    while (!state_.SourceQueue.empty() && !state_.ScanActive && !unloaded_) {
        Ordnerliste_Abarbeiten(scan_);
        sourcesChanged();
    }
}

// Reads sources that were handed over during a command or a dialog, which they wait for.
void WindowForm::readWaiting() {
    if (!ready_ || commands_ > 0) return;
    guarded(services_.diagnostics, "Ordnerliste_Abarbeiten", kModul, [&] { runQueue(); });
}

// --- closing

bool WindowForm::formQueryUnload() {
    if (state_.ScanActive && !state_.DiskSilent) {
        state_.CancelState = kCancelStop;
        return false;
    }
    guarded(services_.diagnostics, "Form_QueryUnload", kModul, [&] { saveState(); });
    return true;
}

// Saves only what was loaded; if an error prevented loading, the files stay as they are.
void WindowForm::saveState() {
    if (!loaded_) return;
    FensterpositionSpeichern(services_.settings, window_->frame.state(), window_->frame.normalGeometry(),
                             panes_.splitter(SplitterId::kMain).Position());
    ToolbarStore store;
    for (CommandBar* each : bars_.all()) ExchangeState(store, *each);
    store.save(services_.files, joinPath(own_.programFolder, kToolbarStateName, services_.paths));
    barsToOptions(bars_, options_);
    if (sourcesLoaded_) options_.ComboText = cboOrdner_.text;
    OptionenSpeichernMain(options_, services_.settings);
    if (sourcesLoaded_) SaveAllComboFolders(cboOrdner_, services_.settings);
    driveList_->Drives_SaveNetworkFolders();
}

// The window may be closed in a pause of something that still uses it: it stays, unseen, until that has
// ended.
void WindowForm::formUnload() {
    unloaded_ = true;
    state_.CancelState = kCancelStop;
    ++state_.FileListRun;
    preview_.setWindow(nullptr);
    for (GridPane* pane : window_->grids) pane->setEvents(nullptr);
    guarded(services_.diagnostics, "Form_Unload", kModul, [&] { own_.windowThere(nullptr, nullptr); });
}

// --- events

void WindowForm::formResize() {
    if (!unloaded_) guarded(services_.diagnostics, "Form_Resize", kModul, [&] { panes_.Form_Resize(); });
}

void WindowForm::formKeyUp(int key) {
    if (key == kKeyEscape && state_.CancelState != kCancelStop) state_.CancelState = kCancelEscape;
}

void WindowForm::editChanged(BarId id, int entry, const std::string& text) {
    guarded(services_.diagnostics, "editChanged", kModul, [&] {
        bar(id).setText(entry, text);
        if (commandOf(id, entry) == Command::kTopCount) lists_->top.countTyped(text);
    });
}

void WindowForm::editKeyDown(BarId id, int entry, int key) {
    if (key == kKeyReturn) commandsOfBars_.returnIn(id, entry);
}

void WindowForm::barResized(BarId id) {
    if (!unloaded_) guarded(services_.diagnostics, "cbr_Resize", kModul, [&] { panes_.cbrResize(id); });
}

void WindowForm::comboText(const std::string& text) {
    guarded(services_.diagnostics, "cboOrdner_Change", kModul, [&] {
        cboOrdner_.text = text;
        cboOrdner_.selectNone();
    });
}

void WindowForm::comboSelected(int index) {
    guarded(services_.diagnostics, "cboOrdner_Click", kModul, [&] {
        if (index >= 0 && static_cast<std::size_t>(index) < cboOrdner_.items().size())
            cboOrdner_.select(static_cast<std::size_t>(index));
    });
}

void WindowForm::comboKeyDown(int key) {
    if (state_.ScanActive) return;
    guarded(services_.diagnostics, "cboOrdner_KeyDown", kModul, [&] {
        if (key == kKeyReturn) commandsOfBars_.returnIn(BarId::kMain, idOf(Command::kStart));
    });
    readWaiting();
}

bool WindowForm::comboRemove(int index) {
    bool removed = false;
    guarded(services_.diagnostics, "cboOrdner_KeyDown", kModul, [&] {
        removed = !state_.ScanActive && index >= 0 && cboOrdner_.remove(static_cast<std::size_t>(index));
        if (removed) sourcesChanged();
    });
    return removed;
}

void WindowForm::handOver(const std::string& commandLine) {
    guarded(services_.diagnostics, "ISubclass_WindowProc", kModul, [&] {
        window_->frame.bringToFront();
        for (std::string& source : GetFoldersFromCommand(commandLine))
            state_.SourceQueue.push_back(std::move(source));
    });
    readWaiting();
}

// Reports the exception being handled like any other error; must be called in a catch block.
void WindowForm::windowFault(const char* where) {
    const auto fault = std::current_exception();
    guarded(services_.diagnostics, where, kModul, [&] {
        if (fault) std::rethrow_exception(fault);
    });
}

}  // namespace hl
