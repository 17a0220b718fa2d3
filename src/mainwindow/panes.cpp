#include "mainwindow/panes.h"

#include <algorithm>
#include <utility>

#include "base/scope_exit.h"
#include "mainwindow/pane_table.h"
#include "mainwindow/window_geometry.h"
#include "robustness/trap.h"
#include "scan/records.h"
#include "scan/rollup.h"

namespace hl {

namespace {

// In twips. Bars are clipped instead of wrapped: those beside the report if it leaves less than the first,
// cbrReport if the report is narrower than the second.
constexpr int kNarrowRest = 3500;
constexpr int kNarrowReport = 2000;
// In pixels: the least height that a list's bar leaves below itself for titles and a few rows; and what
// stays, when the window becomes smaller, for a preview, for a list with its bar, and for everything beside
// the report.
constexpr int kLeastList = 96, kLeastPreview = 24, kLeastLists = 96, kLeastBeside = 100, kLeastMap = 100;
// The part of the report's pane that the report keeps when the map is shown first, in percent.
constexpr int kReportPercent = 60;

PaneRef pane(SplitterId id) {
    return {PaneRef::Kind::kSplitter, static_cast<int>(id)};
}
PaneRef pane(BarId id) {
    return {PaneRef::Kind::kBar, static_cast<int>(id)};
}
PaneRef pane(GridId id) {
    return {PaneRef::Kind::kGrid, static_cast<int>(id)};
}
constexpr PaneRef kPreviewPane = {PaneRef::Kind::kPreview, 0};
constexpr PaneRef kMapPane = {PaneRef::Kind::kMap, 0};

// The start values of a splitter. A minimum of 0 means none.
struct StartValues {
    SplitterId id;
    int barSize, position, minimum1, minimum2;
    bool gripper;
};
constexpr StartValues kStart[] = {
    {SplitterId::kMain, 3, 100, 100, 100, true},           //
    {SplitterId::kInfo, 3, 40, 40, 50, true},              //
    {SplitterId::kReport, 1, 21, 0, 0, false},             //
    {SplitterId::kDrives, 1, 21, 0, 0, false},             //
    {SplitterId::kFiles, 1, 21, 0, 50, false},             //
    {SplitterId::kFilesAndPreview, 3, 100, 100, 0, true},  //
    {SplitterId::kReportAndMap, 3, 100, 100, 0, true},     //
    {SplitterId::kMap, 1, 21, 0, 0, false},                //
};

void setUp(cSplitter& splitter, const StartValues& start) {
    splitter.setSplitterSize(start.barSize);
    splitter.setMinimumSize(1, start.minimum1);
    splitter.setMinimumSize(2, start.minimum2);
    splitter.setPosition(start.position);
    splitter.setShowGripper(start.gripper);
}

// A bar above a view, and the splitter whose first pane holds the bar.
struct PaneOfBar {
    BarId bar;
    SplitterId splitter;
};
constexpr PaneOfBar kPanesOfBars[] = {
    {BarId::kReport, SplitterId::kReport},   {BarId::kDrives, SplitterId::kDrives},
    {BarId::kFiles, SplitterId::kFiles},     {BarId::kTop, SplitterId::kFiles},
    {BarId::kHardlinks, SplitterId::kFiles}, {BarId::kJunctions, SplitterId::kFiles},
    {BarId::kFind, SplitterId::kFiles},      {BarId::kStatistics, SplitterId::kFiles},
    {BarId::kChanges, SplitterId::kFiles},   {BarId::kMap, SplitterId::kMap},
};

bool isList(Command panel) {
    return panel != Command::kShowReport && panel != Command::kShowDrives;
}

Flag flagOf(bool on) {
    return on ? 1 : 0;
}

}  // namespace

// One of the lists that share a place. If its bar has no entry for the preview, or for a preview beside the
// list, that is kNone.
struct Panes::ListPane {
    Command panel;
    BarId bar;
    GridId grid;
    Command preview, beside;
    Flag Options::*visible;
};

const Panes::ListPane Panes::kLists[7] = {
    {Command::kShowFiles, BarId::kFiles, GridId::kFiles, Command::kFilesPreview, Command::kFilesSplit,
     &Options::FilelistVisible},
    {Command::kShowTop, BarId::kTop, GridId::kTop, Command::kTopPreview, Command::kTopSplit,
     &Options::ToplistVisible},
    {Command::kShowHardlinks, BarId::kHardlinks, GridId::kHardlinks, Command::kHardlinksPreview,
     Command::kHardlinksSplit, &Options::HardlinksVisible},
    {Command::kShowJunctions, BarId::kJunctions, GridId::kJunctions, Command::kNone, Command::kNone,
     &Options::JunctionsVisible},
    {Command::kShowFind, BarId::kFind, GridId::kFind, Command::kFindPreview, Command::kFindSplit,
     &Options::FindVisible},
    {Command::kShowStatistics, BarId::kStatistics, GridId::kStatistics, Command::kNone, Command::kNone,
     &Options::StatisticsVisible},
    {Command::kShowChanges, BarId::kChanges, GridId::kChanges, Command::kNone, Command::kNone,
     &Options::ChangesVisible},
};

bool PanelToggle(CommandBar& cbrMain, Command panel) {
    const auto isOn = [&](Command one) { return cbrMain.isChecked(idOf(one)); };
    const auto panes = paneRows();
    if (std::ranges::find(panes, panel, &PaneRow::shownBy) == panes.end()) return false;
    if (std::ranges::none_of(
            panes, [&](Command other) { return other != panel && isOn(other); }, &PaneRow::shownBy))
        return false;
    cbrMain.toggle(idOf(panel));
    if (!isList(panel) || !isOn(panel)) return true;
    for (const PaneRow& other : panes)
        if (isList(other.shownBy) && other.shownBy != panel) cbrMain.setChecked(idOf(other.shownBy), false);
    return true;
}

// --- start

Panes::Panes(const PaneParts& parts) : parts_(parts) {
    for (const StartValues& start : kStart) setUp(splitter(start.id), start);
    splitter(SplitterId::kMain).setOrientation(Orientation::kSideBySide);
    splitter(SplitterId::kMain).Bind(pane(SplitterId::kReport), pane(SplitterId::kInfo));
    splitter(SplitterId::kReport).Bind(pane(BarId::kReport), pane(SplitterId::kReportAndMap));
    splitter(SplitterId::kReportAndMap).Bind(pane(GridId::kReport), pane(SplitterId::kMap));
    splitter(SplitterId::kMap).Bind(pane(BarId::kMap), kMapPane);
    splitter(SplitterId::kReportAndMap).setControl2Visible(false);
    splitter(SplitterId::kInfo).Bind(pane(SplitterId::kDrives), pane(SplitterId::kFiles));
    splitter(SplitterId::kDrives).Bind(pane(BarId::kDrives), pane(GridId::kDrives));
    splitter(SplitterId::kFiles).Bind(pane(BarId::kFiles), pane(SplitterId::kFilesAndPreview));
    splitter(SplitterId::kFilesAndPreview).Bind(pane(GridId::kFiles), kPreviewPane);
    splitter(SplitterId::kFilesAndPreview).setControl2Visible(false);
    splitter(SplitterId::kMain).AfterResize = [this] { splMain_AfterResize(); };
    splitter(SplitterId::kInfo).AfterResize = [this] { splInfo_AfterResize(); };
    splitter(SplitterId::kReportAndMap).AfterResize = [this] {
        if (divideWhenKnown_) return divideReport();
        if (!splitter(SplitterId::kReportAndMap).dragging())
            keepBothInSight(SplitterId::kReportAndMap, kLeastMap);
    };
    splitter(SplitterId::kFilesAndPreview).AfterResize = [this] {
        if (halveWhenKnown_) return halvePreview();
        // While the user drags the splitter, it may go to its end.
        if (!splitter(SplitterId::kFilesAndPreview).dragging())
            keepBothInSight(SplitterId::kFilesAndPreview, kLeastPreview);
    };
}

std::array<cSplitter*, kSplitterCount> Panes::all() {
    std::array<cSplitter*, kSplitterCount> pointers{};
    std::ranges::transform(splitters_, pointers.begin(), [](cSplitter& one) { return &one; });
    return pointers;
}

void Panes::ShowFirstList() {
    const auto on = [&](const ListPane& list) { return parts_.options.*list.visible == 1; };
    const auto* first = std::ranges::find_if(kLists, on);
    if (first != std::end(kLists)) bindList(*first);
}

void Panes::placeSplitters(int report) {
    splitter(SplitterId::kMain).setPosition(report);
    halveWhenKnown_ = splitter(SplitterId::kFilesAndPreview).total() <= 0;
    if (!halveWhenKnown_) halvePreview();
}

void Panes::halvePreview() {
    halveWhenKnown_ = false;
    cSplitter& preview = splitter(SplitterId::kFilesAndPreview);
    preview.setPosition(preview.total() / 2);
}

void Panes::divideReport() {
    cSplitter& both = splitter(SplitterId::kReportAndMap);
    divideWhenKnown_ = both.total() <= 0;
    if (!divideWhenKnown_) both.setPosition(both.total() * kReportPercent / 100);
}

void Panes::followMap() {
    guarded(parts_.diagnostics, [&] {
        cSplitter& both = splitter(SplitterId::kReportAndMap);
        const bool shows = parts_.options.MapVisible == 1;
        if (both.Control2Visible() == shows) return;
        both.setControl2Visible(shows);
        if (!shows) return;
        divideReport();
        cbrResize(BarId::kMap);
    });
}

void Panes::hideByOptions() {
    const Options& options = parts_.options;
    const bool drives = options.DiskinfoVisible != 0;
    const bool lists =
        std::ranges::any_of(kLists, [&](const ListPane& list) { return options.*list.visible != 0; });
    if (!drives) splitter(SplitterId::kInfo).setControl1Visible(false);
    if (!lists) splitter(SplitterId::kInfo).setControl2Visible(false);
    if (!drives && !lists) splitter(SplitterId::kMain).setControl2Visible(false);
}

// --- which panes show

const Panes::ListPane* Panes::listOf(Command panel) {
    const auto* found = std::ranges::find(kLists, panel, &ListPane::panel);
    return found != std::end(kLists) ? found : nullptr;
}

const Panes::ListPane& Panes::listOf(GridId grid) {
    return *std::ranges::find(kLists, grid, &ListPane::grid);
}

const Panes::ListPane* Panes::listOn() const {
    const auto* found =
        std::ranges::find_if(kLists, [&](const ListPane& list) { return panelOn(list.panel); });
    return found != std::end(kLists) ? found : nullptr;
}

GridId Panes::list() const {
    return static_cast<GridId>(splitter(SplitterId::kFilesAndPreview).Control1().number);
}

bool Panes::listShows() const {
    return splitter(SplitterId::kMain).Control2Visible() && splitter(SplitterId::kInfo).Control2Visible();
}

void Panes::PanelToggle(Command panel) {
    if (!hl::PanelToggle(bar(BarId::kMain), panel)) return;
    const ListPane* list = listOf(panel);
    if (list != nullptr) {
        parts_.host.Preview_Reset_View();
        followPreviewEntries(list->grid);
    }
    Change_Info_Visibility();
    if (panel == Command::kShowDrives) parts_.host.Drives_Resize_Columns(true);
    if (list != nullptr) parts_.host.Preview_ShowFile();
}

void Panes::Change_Info_Visibility() {
    guarded(parts_.diagnostics, [&] {
        const ListPane* list = listOn();
        const bool drives = panelOn(Command::kShowDrives);
        panelsToOptions(list);
        if (list == nullptr && !parts_.status.second.empty()) {
            parts_.status.second.clear();  // The statistics belonged to the list.
            parts_.host.statusChanged();
        }
        cSplitter& splMain = splitter(SplitterId::kMain);
        if (!drives && list == nullptr) {
            splMain.setControl2Visible(false);
            return cbrResize(BarId::kReport);
        }
        panesOfInfo(drives, list != nullptr);
        splMain.setControl2Visible(true);
        splMain.setControl1Visible(panelOn(Command::kShowReport));
        statusWidth();
        if (list != nullptr) showList(*list);
        cbrResize(BarId::kReport);
    });
}

// The options name at most one list, even if a file edited by hand has several of them checked.
void Panes::panelsToOptions(const ListPane* list) {
    parts_.options.DiskinfoVisible = flagOf(panelOn(Command::kShowDrives));
    for (const ListPane& one : kLists) parts_.options.*one.visible = flagOf(&one == list);
}

// Panes are shown before others are hidden, because hiding the last pane would show the other one.
void Panes::panesOfInfo(bool drives, bool lists) {
    cSplitter& splInfo = splitter(SplitterId::kInfo);
    if (drives) splInfo.setControl1Visible(true);
    if (lists) splInfo.setControl2Visible(true);
    splInfo.setControl1Visible(drives);
    splInfo.setControl2Visible(lists);
    if (drives) parts_.host.Drives_ResizeTableHeight();
}

// Makes the first panel as wide as the report above it, if that is visible.
void Panes::statusWidth() {
    const bool report = panelOn(Command::kShowReport);
    parts_.status.firstTakesAll = !report;
    if (report) parts_.status.firstWidth = parts_.host.gridWidth(GridId::kReport);
    parts_.host.statusChanged();
}

void Panes::showList(const ListPane& list) {
    bindList(list);
    if (list.grid == GridId::kFiles) filesOfSelection();
    parts_.host.listAppears(list.grid);
    followPreviewEntries(list.grid);
    parts_.host.refresh(list.grid);
    parts_.host.fitColumns(list.grid);
    parts_.host.SetFileIcons(list.grid);
    parts_.host.ShowFileStat(list.grid);
    cbrResize(list.bar);
}

void Panes::bindList(const ListPane& list) {
    splitter(SplitterId::kFiles).setControl1(pane(list.bar));
    splitter(SplitterId::kFilesAndPreview).setControl1(pane(list.grid));
}

void Panes::filesOfSelection() {
    const Grid& report = parts_.tvwPL;
    if (report.selectedCount() == 0) return;
    Row row = report.selectedRows().front();
    const bool isFolder = report.number(row, kIsFolder) != 0 || report.level(row) == 0;
    if (!isFolder) row = report.parent(row);
    // What is not on the disk has no files there, even if its path exists.
    const std::string folder =
        parts_.host.isOnDisk(row) ? Report_GetFullpathOfNode(report, row, true, parts_.paths) : std::string();
    if (identityKey(folder, parts_.paths) != identityKey(parts_.state.fileList.folder, parts_.paths))
        parts_.host.List_Files_ScanFolder(folder);
}

void Panes::followPreviewEntries(GridId grid) {
    const ListPane& list = listOf(grid);
    cSplitter& both = splitter(SplitterId::kFilesAndPreview);
    if (list.preview == Command::kNone) return both.setControl2Visible(false);
    both.setControl2Visible(bar(list.bar).isChecked(idOf(list.preview)));
    const bool beside = bar(list.bar).isChecked(idOf(list.beside));
    both.setOrientation(beside ? Orientation::kSideBySide : Orientation::kStacked);
    // The preview is switched on but was dragged out of sight, or the direction has changed.
    if (both.Control2Visible() && both.total() > 0 && both.total() - both.Position() < kLeastPreview)
        halvePreview();
}

// --- sizes

void Panes::cbrResize(BarId id) {
    const auto* found = std::ranges::find(kPanesOfBars, id, &PaneOfBar::bar);
    if (found == std::end(kPanesOfBars)) return;
    bool& running = barResizes_[static_cast<std::size_t>(id)];
    cSplitter& holder = splitter(found->splitter);
    if (running || holder.Control1() != pane(id)) return;
    running = true;
    const ScopeExit done([&] { running = false; });
    guarded(parts_.diagnostics, {.routine = (bar(id).name() + "_Resize").c_str()}, [&] {
        const int before = holder.Position();
        const int height = fitBar(id, holder);
        holder.setMinimumSize(1, height);
        holder.setMaximumSize(1, height);
        holder.Resize();
        // A bar with one more row would take it from the few rows of the drives.
        if (id == BarId::kDrives && holder.Position() != before) parts_.host.Drives_ResizeTableHeight();
    });
}

void Panes::measureListBars() {
    for (const ListPane& list : kLists) {
        bar(list.bar).setClips(narrowRest_);
        cbrResize(list.bar);
    }
}

// Clips the bar of a list if it would leave less than kLeastList for the list, or for the preview, and wraps
// it again if there is room. Returns the bar's height after that.
int Panes::fitBar(BarId id, const cSplitter& holder) {
    const int height = parts_.host.barHeight(id);
    if (&holder != &splitter(SplitterId::kFiles)) return height;
    int& wrapped = wrappedHeights_[static_cast<std::size_t>(id)];
    if (!bar(id).clips()) wrapped = height;
    const int panes = splitter(SplitterId::kFilesAndPreview).Control2Visible() ? 2 : 1;
    const bool low = holder.total() > 0 && holder.total() - wrapped < panes * kLeastList;
    if (bar(id).clips() == (low || narrowRest_)) return height;
    bar(id).setClips(!bar(id).clips());
    return parts_.host.barHeight(id);
}

void Panes::splMain_AfterResize() {
    guarded(parts_.diagnostics, [&] {
        if (keepBothInSight(SplitterId::kMain, kLeastBeside)) return;
        // The report's grid may not have its new width yet, so the width is taken from the splitter.
        const cSplitter::Span pane = splitter(SplitterId::kMain).layout().first;
        const int report = pane.visible ? pane.size : 0;
        parts_.status.firstWidth = report;
        parts_.host.statusChanged();
        const int rest = parts_.host.formWidth() - report;
        narrowRest_ = rest * kTwipsPerPixel < kNarrowRest;
        // With a new width, a bar that is clipped in a low pane is measured anew.
        const bool sameWidth = std::exchange(rest_, rest) == rest;
        for (const BarId beside : {BarId::kDrives, BarId::kFiles, BarId::kTop, BarId::kHardlinks,
                                   BarId::kJunctions, BarId::kFind, BarId::kStatistics, BarId::kChanges})
            bar(beside).setClips(narrowRest_ || (sameWidth && bar(beside).clips()));
        for (const BarId above : {BarId::kReport, BarId::kMap})
            bar(above).setClips(report * kTwipsPerPixel < kNarrowReport);
        cbrResize(BarId::kFiles);
        cbrResize(BarId::kReport);
        cbrResize(BarId::kMap);
    });
}

// When the window becomes smaller, the second pane and the bar between would leave it; this keeps `least`
// pixels for the second pane, and puts the bar back when there is room again. Returns true if it moved the
// bar, which causes another event.
bool Panes::keepBothInSight(SplitterId id, int least) {
    cSplitter& both = splitter(id);
    const int most = both.total() - both.SplitterSize() - least;
    const bool shown = both.Control1Visible() && both.Control2Visible();
    const int least1 = kStart[static_cast<std::size_t>(id)].minimum1;
    if (!shown || most < least1) return false;
    Squeezed& squeezed = squeezed_[static_cast<std::size_t>(id)];
    // A bar that stands elsewhere by now was moved by somebody else.
    const int wanted = both.Position() == squeezed.to ? squeezed.from : both.Position();
    squeezed = {wanted, std::min(wanted, most)};
    if (both.Position() == squeezed.to) return false;
    both.setPosition(squeezed.to);
    return true;
}

void Panes::splInfo_AfterResize() {
    if (infoResizes_) return;
    infoResizes_ = true;
    const ScopeExit done([&] { infoResizes_ = false; });
    guarded(parts_.diagnostics, [&] {
        keepBothInSight(SplitterId::kInfo, kLeastLists);
        for (const PaneOfBar& one : kPanesOfBars) cbrResize(one.bar);
        if (!splitter(SplitterId::kInfo).Control2Visible()) return;
        for (const GridId list : {GridId::kFiles, GridId::kTop, GridId::kHardlinks, GridId::kFind})
            parts_.host.SetFileIcons(list);
    });
}

void Panes::Form_Resize() {
    if (!parts_.state.ScanActive) return;
    guarded(parts_.diagnostics, [&] {
        if (listShows()) parts_.host.refresh(list());
        parts_.host.refresh(GridId::kReport);
        const bool drives =
            splitter(SplitterId::kMain).Control2Visible() && splitter(SplitterId::kInfo).Control1Visible();
        if (drives) parts_.host.refresh(GridId::kDrives);
    });
}

}  // namespace hl
