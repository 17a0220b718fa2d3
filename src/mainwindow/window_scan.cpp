// What a scan, the panes and the drive list ask of the window around them.
#include <algorithm>
#include <bit>
#include <exception>
#include <utility>

#include "base/text.h"
#include "mainwindow/window_form.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/rollup.h"

namespace hl {

namespace {
constexpr int kStop = idOf(Command::kStop);
constexpr std::uint64_t kStatusInterval = 100;  // Milliseconds between two changes of the running path.
}  // namespace

// --- the frame of a run

void WindowForm::setBusyPointer(bool busy) {
    window_->frame.setBusyPointer(busy);
}

// The bar of the largest files is not locked, because their wanted number may be changed during a run.
void WindowForm::lockControls(bool noStop) {
    errorsBefore_ = services_.diagnostics.errcount();
    rowsMissing_ = rowsMissing_ && tvwPL_.rowCount() > 0;
    for (Grid* each : parts_.grids) each->setEnabled(false);
    for (const BarId id :
         {BarId::kMain, BarId::kReport, BarId::kDrives, BarId::kFiles, BarId::kHardlinks, BarId::kJunctions})
        bar(id).setAllEnabled(false);
    bars_.cbrMain.setEnabled(kStop, !noStop);
}

void WindowForm::unlockControls() {
    // An error on its way to a trap is not counted yet.
    if (services_.diagnostics.errcount() != errorsBefore_ || std::uncaught_exceptions() > 0)
        rowsMissing_ = true;
    for (Grid* each : parts_.grids) {
        each->setRedraw(true);
        each->setEnabled(true);
    }
    for (const BarId id :
         {BarId::kMain, BarId::kReport, BarId::kDrives, BarId::kFiles, BarId::kHardlinks, BarId::kJunctions})
        bar(id).setAllEnabled(true);
    bars_.cbrMain.setEnabled(kStop, false);
}

// Rows come by the thousand now: the window hears of them when a folder of the first level is done.
void WindowForm::statusOfRun() {
    for (Grid* each : {&tvwPL_, &lvwTOP_, &lvwHardlinks_, &lvwJunctions_}) each->setRedraw(false);
    sourceUnseen_ = true;
    shownFolders_ = 0;
    status_.secondVisible = false;
    status_.firstTakesAll = true;
    showStatus();
}

void WindowForm::statusAfterRun(const std::string& text) {
    status_.secondVisible = true;
    status_.firstTakesAll = false;
    status_.firstWidth = window_->grid(GridId::kReport).innerWidth();
    setFirstPanel(missing_.empty() ? text : std::exchange(missing_, {}));
}

void WindowForm::sourceMissing(const std::string& source, const std::string& reason) {
    const Texts& texts = services_.texts;
    missing_ += missing_.empty() ? "" : " ";
    missing_ += reason.empty() ? texts.TL(9021, "Die Quelle %1 gibt es nicht.", {source})
                               : texts.TL(9022, "Nicht gelesen: %1: %2", {source, reason});
}

void WindowForm::scanNotice(const std::string& text) {
    lastStatusTick_ = services_.pump.GetTickCount();
    setFirstPanel(text);
}

void WindowForm::folderEntered(std::string_view path) {
    if (std::exchange(sourceUnseen_, false)) firstLevelFolderDone();
    const std::uint64_t tick = services_.pump.GetTickCount();
    if (tick < lastStatusTick_ + kStatusInterval) return;
    lastStatusTick_ = tick;
    setFirstPanel(std::string(path) + "*.*");
}

// Fitting the columns costs about a millisecond, so it is done each time the number of notices has doubled.
void WindowForm::firstLevelFolderDone() {
    tvwPL_.setRedraw(true);
    tvwPL_.setRedraw(false);
    if (!std::has_single_bit(++shownFolders_)) return;
    reportView_->Report_Resize_Columns(false);
    fitReportPane();
}

// --- a disk that has not answered at once

// Nothing else may begin meanwhile, so the window is locked as for a run, unless a run has locked it.
void WindowForm::waitBegins(const std::string& path) {
    if (diskWaits_++ > 0) return;
    diskWaitBegan_ = services_.pump.GetTickCount();
    statusBeforeWait_ = status_.first;
    ++commands_;
    setFirstPanel(services_.texts.TL(9656, "Warten auf den Datenträger von '%1' ... (Abbruch: ESC-Taste)",
                                     {visible(path)}));
    lockedForDisk_ = !state_.ScanActive;
    if (!lockedForDisk_) return;
    state_.CancelState = kCancelNone;
    state_.DiskSilent = true;  // Messages run here, too.
    DisableControls(scan_, false);
    state_.DiskSilent = false;
    setBusyPointer(true);
}

// While the window loads, its sources are looked for; if some are on a disk that is gone, the wait for them
// is short.
bool WindowForm::goesOnWaiting() {
    constexpr std::uint64_t kLongestAtStart = 1000;  // Milliseconds.
    state_.DiskSilent = true;
    services_.pump.PumpMessages();
    state_.DiskSilent = false;
    if (!sourcesLoaded_ && services_.pump.GetTickCount() - diskWaitBegan_ >= kLongestAtStart) return false;
    return !unloaded_ &&
           (lockedForDisk_ ? state_.CancelState == kCancelNone : state_.CancelState != kCancelStop);
}

void WindowForm::waitEnds() {
    if (--diskWaits_ > 0) return;
    --commands_;
    setFirstPanel(statusBeforeWait_);
    if (!std::exchange(lockedForDisk_, false)) return;
    if (!unloaded_) state_.CancelState = kCancelNone;
    EnableControls(scan_);
    setBusyPointer(false);
}

// --- neighbours

void WindowForm::topListTitle(const std::string& title) {
    bars_.cbrTOP.setCaption(idOf(Command::kTopTitle), title);
}

void WindowForm::reportResizeColumns() {
    reportView_->Report_Resize_Columns(false);
    fitReportPane();
    if (tvwPL_.rowCount() > 0) reportWidthOpen_ = false;
}

// If the user has not chosen a layout yet, the first report gets the width that its columns need, as far as
// the other panes keep their share, until the user moves the bar.
void WindowForm::fitReportPane() {
    constexpr int kLargestShare = 55;  // Percent of the window.
    cSplitter& main = panes_.splitter(SplitterId::kMain);
    reportWidthOpen_ = reportWidthOpen_ && main.Position() == reportStart_;
    if (!reportWidthOpen_ || tvwPL_.rowCount() == 0 || !main.Control2Visible()) return;
    reportView_->Report_Resize_Width();
    const int most = std::max(reportStart_, formWidth() * kLargestShare / 100);
    if (main.Position() > most) main.setPosition(most);
    reportStart_ = main.Position();
}

void WindowForm::selectDriveOf(Row row) {
    driveList_->Drives_SelectDrive(row);
}

void WindowForm::refreshDriveOf(Row row) {
    driveList_->Drives_RefreshDrive(row);
}

void WindowForm::clearStatus() {
    setFirstPanel("");
}

// --- the report, the panes and the drives

void WindowForm::setReportWidth(int pixels) {
    panes_.splitter(SplitterId::kMain).setPosition(pixels);
}

void WindowForm::setFirstPanel(const std::string& text) {
    status_.first = visible(text);
    showStatus();
}

// A source that is handed over while the menu is open has to wait, because its scan would select other rows.
void WindowForm::openRowsMenu(Point at) {
    {
        const ScopeExit over = command();
        window_->bar(BarId::kMain).showPopup(idOf(Command::kMenuOfSelectedFolders), at);
    }
    readWaiting();
}

void WindowForm::Drives_ResizeTableHeight() {
    if (lvwDiskinfo_.rowCount() == 0) return;
    constexpr int kBelowRows = 5;
    panes_.splitter(SplitterId::kInfo)
        .setPosition(panes_.splitter(SplitterId::kDrives).Position() +
                     window_->grid(GridId::kDrives).heightOfRows() + kBelowRows);
}

void WindowForm::readSources(const std::vector<std::string>& sources) {
    for (const std::string& source : sources) state_.SourceQueue.push_back(source);
    runQueue();
}

void WindowForm::sourcesChanged() {
    std::vector<ComboItem> items;
    items.reserve(cboOrdner_.items().size());
    for (const SourceItem& item : cboOrdner_.items()) items.push_back({visible(item.text), item.image});
    const auto selected = cboOrdner_.selectedIndex();
    window_->frame.setSources(items, visible(cboOrdner_.text), selected ? static_cast<int>(*selected) : -1);
}

}  // namespace hl
