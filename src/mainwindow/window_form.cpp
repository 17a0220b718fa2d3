// Loading; on screen; closing; events.
#include "mainwindow/window_form.h"

#include <exception>

#include "app/product.h"
#include "app/setting_keys.h"
#include "mainwindow/bar_options.h"
#include "mainwindow/toolbar_state.h"
#include "mainwindow/window_geometry.h"
#include "robustness/trap.h"
#include "scan/driver.h"

namespace hl {

// --- loading

void WindowForm::formLoad(const Window& window, MessagePump& pump) {
    Diagnostics& diagnostics = form_.services().diagnostics;
    form_.window = &window;
    form_.preview.setWindow(&window);
    form_.map.setWindow(&window);
    guarded(diagnostics, {.routine = "windowThere"}, [&] { form_.own.windowThere(&window, &pump); });
    guarded(diagnostics, {.routine = "Form_Load"}, [&] { load(); });
}

void WindowForm::load() {
    Session& session = form_.session;
    const Services& services = session.services;
    WindowFrame& frame = form_.window->frame;
    Panes& panes = form_.looks.panes();
    frame.setTitle(std::string(kProductName) + " " + form_.own.version +
                   std::string(form_.own.portable ? kPortableEdition : ""));
    Form_Load(session);
    form_.report.makeView();
    form_.drives.makeList();
    form_.lists.makeLists();
    initAllBars(form_.bars, {services.texts, session.options, services.diagnostics,
                             !form_.own.addresses.homepage.empty()});
    loadToolbars();
    panes.ShowFirstList();
    const IniText settings = services.settings.read();
    const WindowPlace place = savedPlace(settings, frame.screen());
    frame.setGeometry(place.rect);
    form_.looks.applyFonts();
    initGrids();
    panes.Change_Info_Visibility();
    panes.placeSplitters(place.splitter);
    form_.report.widthIsChosen(settings.find(kSectionForm, kKeySplitter.key).has_value());
    Change_ToolbarIconSize(form_.bars, services.diagnostics);
    Change_Toolbar_IconText(form_.bars, services.diagnostics);
    panes.hideByOptions();
    panes.followMap();
    form_.status.setFirst(services.texts.TL(3525, "OK."));
    form_.barControl.followAllGrids();
    form_.sources.start().show();
    loaded_ = true;
}

void WindowForm::loadToolbars() {
    const Services& services = form_.services();
    const std::string path = joinPath(form_.own.programFolder, kToolbarStateName, services.paths);
    ToolbarStore stored;
    if (!stored.load(services.files, path)) return;
    for (CommandBar* each : form_.bars.all()) ExchangeState(stored, *each);
}

void WindowForm::initGrids() {
    form_.report.view().Report_Set_SizeFormat();
    form_.drives.list().Drives_ChangeSizeFormat();
    for (const GridId id : kListGrids) form_.lists.of(id)->Set_SizeFormat();
    form_.looks.resizeAllColumns();
}

// --- on screen

void WindowForm::formActivate() {
    Diagnostics& diagnostics = form_.services().diagnostics;
    guarded(diagnostics, {.routine = "Form_Activate"}, [&] { activate(); });
    guarded(diagnostics, {.routine = "windowShown"}, [&] {
        if (form_.own.windowShown) form_.own.windowShown();
    });
    form_.sources.ready();
    form_.sources.readWaiting();
}

void WindowForm::activate() {
    form_.window->frame.setState(savedState(form_.services().settings.read()));
    form_.report.view().Report_Resize_Columns(false);
    form_.drives.list().Drives_GetAllDrives();
    for (const GridId id : kListGrids) form_.lists.of(id)->Resize_Columns(false);
    form_.drives.Drives_ResizeTableHeight();
    form_.sources.load();
    EnableControls(form_.scan);
    form_.run.setBusyPointer(false);
    form_.sources.queueOwn();
}

// --- closing

bool WindowForm::formQueryUnload() {
    ScanState& state = form_.session.state;
    if (state.ScanActive && !state.DiskSilent) {
        state.CancelState = kCancelStop;
        return false;
    }
    guarded(form_.services().diagnostics, {.routine = "Form_QueryUnload"}, [&] { saveState(); });
    return true;
}

// Saves only what was loaded; if an error prevented loading, the files stay as they are.
void WindowForm::saveState() {
    if (!loaded_) return;
    Session& session = form_.session;
    const Services& services = session.services;
    WindowFrame& frame = form_.window->frame;
    FensterpositionSpeichern(services.settings, frame.state(), frame.normalGeometry(),
                             form_.looks.panes().splitter(SplitterId::kMain).Position());
    ToolbarStore store;
    for (CommandBar* each : form_.bars.all()) ExchangeState(store, *each);
    // If it cannot be written, the bars stand as before at the next start.
    const std::string file = joinPath(form_.own.programFolder, kToolbarStateName, services.paths);
    static_cast<void>(store.save(services.files, file));
    barsToOptions(form_.bars, session.options);
    if (form_.sources.loaded()) session.options.ComboText = session.cboOrdner.text;
    OptionenSpeichernMain(session.options, services.settings);
    form_.sources.save();
    form_.drives.list().Drives_SaveNetworkFolders();
}

// The window may be closed in a pause of something that still uses it: it stays, unseen, until that has
// ended.
void WindowForm::formUnload() {
    form_.closed = true;
    form_.session.state.CancelState = kCancelStop;
    ++form_.session.state.fileList.run;
    form_.preview.setWindow(nullptr);
    form_.map.setWindow(nullptr);
    for (GridPane* pane : form_.window->grids) pane->setEvents(nullptr);
    guarded(form_.services().diagnostics, {.routine = "Form_Unload"},
            [&] { form_.own.windowThere(nullptr, nullptr); });
}

// --- events

void WindowForm::formResize() {
    if (form_.closed) return;
    guarded(form_.services().diagnostics, {.routine = "Form_Resize"},
            [&] { form_.looks.panes().Form_Resize(); });
}

void WindowForm::gridChanged(GridId grid) {
    if (form_.closed || !loaded_) return;
    guarded(form_.services().diagnostics, [&] {
        if (!form_.session.state.ScanActive) form_.barControl.followGrid(grid);
        if (grid == GridId::kReport || grid == GridId::kDrives) form_.sources.start().show();
    });
}

void WindowForm::gridContentChanged(GridId grid, bool rows) {
    if (form_.closed || !loaded_ || grid != GridId::kReport) return;
    if (rows) return form_.map.reportChanged();
    if (!form_.session.state.ScanActive) form_.barControl.followGrid(grid);
    form_.map.selectionChanged();
}

void WindowForm::formKeyUp(int key) {
    ScanState& state = form_.session.state;
    if (key == kKeyEscape && state.CancelState != kCancelStop) state.CancelState = kCancelEscape;
}

// Called in a catch block: what is in flight is told like any other error.
void WindowForm::windowFault(const char* where) {
    const auto fault = std::current_exception();
    guarded(form_.services().diagnostics, {.routine = where}, [&] {
        if (fault) std::rethrow_exception(fault);
    });
}

}  // namespace hl
