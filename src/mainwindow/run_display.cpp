// The lock of the window; a run; a source; the walk; what is missing.
#include "mainwindow/run_display.h"

#include <algorithm>
#include <bit>
#include <exception>
#include <utility>

#include "base/path.h"
#include "base/text.h"
#include "mainwindow/main_form.h"
#include "scan/left_out.h"
#include "scan/on_disk.h"

namespace hl {

namespace {

constexpr int kStop = idOf(Command::kStop);
constexpr std::uint64_t kStatusInterval = 100;  // Milliseconds between two changes of a panel during a run.
constexpr std::uint64_t kFirstShow = 250;       // Milliseconds from the start of a source.
constexpr std::uint64_t kShowInterval = 1000;
/// With very many folders, which take a microsecond each and less, the report is shown less often.
constexpr std::uint64_t kFoldersPerMs = 30;
constexpr GridId kLookedAt[] = {GridId::kReport, GridId::kDrives, GridId::kFiles};
/// The bar of the largest files is not locked, because their wanted number may be changed during a run.
constexpr BarId kLockedBars[] = {BarId::kMain,      BarId::kReport,    BarId::kDrives, BarId::kFiles,
                                 BarId::kHardlinks, BarId::kJunctions, BarId::kFind,   BarId::kStatistics,
                                 BarId::kChanges,   BarId::kMap};

}  // namespace

// --- the lock of the window

void RunDisplay::setBusyPointer(bool busy) {
    form_.window->frame.setBusyPointer(busy);
}

void RunDisplay::lockControls(bool noStop) {
    errorsBefore_ = form_.services().diagnostics.errcount();
    rowsMissing_ = rowsMissing_ && form_.session.tvwPL.rowCount() > 0;
    for (Grid* each : form_.parts.grids) each->setEnabled(false);
    for (const BarId id : kLockedBars) form_.bar(id).setAllEnabled(false);
    form_.bars.cbrMain.setEnabled(kStop, !noStop);
    form_.sources.start().lock(true);
}

void RunDisplay::unlockControls() {
    // An error on its way to a trap is not counted yet.
    if (form_.services().diagnostics.errcount() != errorsBefore_ || std::uncaught_exceptions() > 0)
        rowsMissing_ = true;
    for (Grid* each : form_.parts.grids) {
        each->setRedraw(true);
        each->setEnabled(true);
    }
    for (const BarId id : kLockedBars) form_.bar(id).setAllEnabled(true);
    form_.bars.cbrMain.setEnabled(kStop, false);
    form_.lists.followReport();
    form_.files.showCanTakeBack();
    form_.barControl.followAllGrids();
    form_.sources.start().lock(false);
}

// --- a run

// Rows come by the thousand now: the window hears of them when a folder of the first level is done. The lists
// that a run fills stay locked, because they have no order before it ends.
void RunDisplay::runBegan() {
    for (Grid* each : {&form_.session.tvwPL, &form_.session.lvwTOP, &form_.session.lvwHardlinks,
                       &form_.session.lvwJunctions})
        each->setRedraw(false);
    for (const GridId id : kLookedAt) form_.session.grid(id).setAccess(GridAccess::kLooking);
    look_ = {};
    sourceUnseen_ = runs_ = true;
    sourceMissed_ = false;
    shownFolders_ = 0;
    ++asked_;
    progress_->begin(form_.services().pump.GetTickCount());
    form_.status.beginRun();
}

void RunDisplay::runEnded(RunEnd end) {
    runs_ = false;
    if (end == RunEnd::kStopped) form_.sources.runStopped();
    tellDesktop({});
    if (end == RunEnd::kBrokenOff) return form_.status.endRun(std::exchange(missing_, {}));
    const Services& services = form_.services();
    const std::string text = progress_->ended(services.pump.GetTickCount(), end == RunEnd::kStopped,
                                              services.texts, services.numbers);
    form_.report.rowsArrived(!look_.hasSetWidths());
    form_.lists.filled();
    const std::string leftOut = leftOutText(services.texts, services.numbers, leftOutOf(form_.session.tvwPL));
    form_.status.endRun((missing_.empty() ? text : std::exchange(missing_, {})) +
                        (leftOut.empty() ? "" : "; " + leftOut) + notKeptText());
    if (ListView* list = form_.lists.shown()) list->ShowFileStat();
    if (!form_.session.state.RowPicked || form_.session.tvwPL.currentRow() == kNoRow) return;
    if (isOnDisk(form_.scan, form_.session.tvwPL.currentRow()))
        form_.report.selectDriveOf(form_.session.tvwPL.currentRow());
    form_.preview.Preview_ShowFile(true);
}

std::string RunDisplay::notKeptText() {
    const std::string problem = form_.keptScans.takeProblem();
    if (problem.empty()) return {};
    return "; " + form_.services().texts.TL(9120, "Scan nicht aufgehoben: %1", {problem});
}

void RunDisplay::selectionGone() {
    form_.lists.showFilesOf("");
    form_.preview.Preview_ShowFile(true);
    form_.status.setFirst("");
}

// Messages run while the files are listed. If the user picked another row then, the list would not show it.
void RunDisplay::folderShown(const std::string& folder) {
    const Row current = form_.session.tvwPL.currentRow();
    if (runs_)
        for (const GridId id : kLookedAt) form_.session.grid(id).setAccess(GridAccess::kLocked);
    form_.lists.showFilesOf(form_.session.state.RowPicked && current != kNoRow
                                ? form_.report.view().listedFolder(current)
                                : folder);
}

// --- a source

void RunDisplay::sourceMissing(const std::string& source, const std::string& reason) {
    const Texts& texts = form_.services().texts;
    sourceMissed_ = true;
    missing_ += missing_.empty() ? "" : " ";
    missing_ += reason.empty() ? texts.TL(9021, "Die Quelle %1 gibt es nicht.", {source})
                               : texts.TL(9022, "Nicht gelesen: %1: %2", {source, reason});
}

void RunDisplay::sourceBegan() {
    form_.sources.changed();
    ++asked_;
    progress_->beginSource(form_.services().pump.GetTickCount());
    if (const SourceItem* source = form_.session.cboOrdner.selected()) {
        form_.sources.start().sourceBegan(source->tag);
        askDrive(source->tag);
    }
}

void RunDisplay::readingInto(Row row) {
    sourceRow_ = row;
    toTop_ = form_.session.tvwPL.level(row) == 0;
    look_.beginSource();
    nextShow_ = form_.services().pump.GetTickCount() + kFirstShow;
    showReport();
}

// A drive that is read whole tells how much there is to read. It may answer late, or never.
void RunDisplay::askDrive(const std::string& source) {
    const PathRules& paths = form_.services().paths;
    for (const Drive& drive : form_.own.drives.drives()) {
        if (identityKey(AddTrailingSlash(drive.root, paths), paths) != identityKey(source, paths)) continue;
        form_.own.drives.ask(drive, [this, asked = asked_, alive = std::weak_ptr<RunProgress>(progress_)](
                                        const DriveAnswer& space) {
            const std::shared_ptr<RunProgress> progress = alive.lock();
            if (progress == nullptr || !space || asked_ != asked) return;
            progress->expect(space->usedEntries, space->total - space->free - space->reserved);
        });
    }
}

void RunDisplay::listsFilled() {
    form_.lists.filled();
}

void RunDisplay::sourceDone(Row row) {
    const ScanTotals& totals = form_.session.state.lastTotals;
    progress_->endSource({totals.files, totals.folders, static_cast<double>(totals.size.bytes())});
    if (isFromFile(form_.scan, row)) return;
    form_.drives.list().Drives_SelectDrive(row);
    // What is opened from a file is read silently.
    const bool whole = form_.services().diagnostics.errcount() == errorsBefore_;
    if (!form_.session.state.SilentRun && whole) form_.keptScans.keep(row);
}

void RunDisplay::sourceChanged(Row row) {
    form_.drives.list().Drives_RefreshDrive(row);
}

void RunDisplay::rowsWillChange() {
    form_.comparison.rowsWillChange();
}

void RunDisplay::rowsChanged() {
    form_.comparison.rowsChanged();
}

// --- the walk

void RunDisplay::diskSilent(const std::string& text) {
    lastStatusTick_ = form_.services().pump.GetTickCount();
    form_.status.setFirst(text);
}

void RunDisplay::folderEntered(std::string_view path) {
    if (std::exchange(sourceUnseen_, false)) firstLevelFolderDone();
    const std::uint64_t tick = form_.services().pump.GetTickCount();
    if (tick < lastStatusTick_ + kStatusInterval) return;
    lastStatusTick_ = tick;
    form_.status.setFirst(std::string(path) + "*.*");
}

void RunDisplay::entriesCame(const ScanProgress& progress) {
    const Services& services = form_.services();
    const std::uint64_t tick = services.pump.GetTickCount();
    if (!runs_ || tick < lastCountTick_ + kStatusInterval) return;
    lastCountTick_ = tick;
    progress_->found(progress.soFar(), tick);
    form_.status.setSecond(progress_->running(tick, services.texts, services.numbers));
    if (tick >= nextShow_) showRows(progress, tick);
}

void RunDisplay::showRows(const ScanProgress& progress, std::uint64_t tick) {
    const bool holds = look_.holdsRows(tick) || form_.window->grid(GridId::kReport).underPointer();
    const std::size_t folders = progress.showSoFar(!holds);
    // Sizes grow, and a number that is cut looks like another one.
    if (!look_.hasSetWidths()) form_.report.view().Report_Resize_Columns(false);
    showReport();
    tellDesktop(progress_->percent());
    nextShow_ = tick + std::max<std::uint64_t>(kShowInterval, folders / kFoldersPerMs);
}

// The rows that are there are shown at once. As long as the user looks at nothing else, the source's row
// climbs to the top with the rows that come below it.
void RunDisplay::showReport() {
    Grid& report = form_.session.tvwPL;
    toTop_ = toTop_ && !look_.hasMoved();
    if (toTop_) report.setTopRow(sourceRow_);
    report.setRedraw(true);
    form_.window->grid(GridId::kReport).refresh();
    report.setRedraw(false);
    toTop_ = toTop_ && report.topRow() != sourceRow_;
}

void RunDisplay::tellDesktop(std::optional<int> percent) {
    if (percent || desktopShows_) form_.window->desktop.showProgress(percent);
    desktopShows_ = percent.has_value();
}

void RunDisplay::looked(Look what) {
    look_.did(what, form_.services().pump.GetTickCount());
    form_.session.state.RowPicked |= what == Look::kPick;
}

// Fitting the columns costs about a millisecond, so it is done each time the number of notices has doubled.
void RunDisplay::firstLevelFolderDone() {
    form_.session.tvwPL.setRedraw(true);
    form_.session.tvwPL.setRedraw(false);
    if (!std::has_single_bit(++shownFolders_) || look_.hasSetWidths()) return;
    form_.report.view().Report_Resize_Columns(false);
    form_.report.fitPane();
}

// --- what is missing

// Tells the user, and returns true, if an error of the program may have left rows out: such a report must not
// replace an older one.
bool RunDisplay::tellIncomplete() {
    if (!rowsMissing_) return false;
    form_.window->dialogs.message(
        MessageKind::kWarning,
        form_.services().texts.TL(9644,
                                  "Beim Einlesen ist ein unerwarteter Fehler aufgetreten. Was "
                                  "fehlt, ist nicht bekannt, darum wird nichts gespeichert. "
                                  "Leeren Sie den Bericht und lesen Sie neu ein."));
    return true;
}

}  // namespace hl
