// The scan's control: the queue, a single source, and the lock of the window.
#include "scan/driver.h"

#include <optional>

#include "base/date_format.h"
#include "base/scope_exit.h"
#include "base/size_text.h"
#include "base/text.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"
#include "scan/file_system_calls.h"
#include "scan/left_out.h"
#include "scan/list_handover.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/scan_options_text.h"
#include "scan/walker.h"
#include "scan/yield.h"

namespace hl {

namespace {

constexpr int kSourceImages = 9;  // Smaller numbers are images of the sources' list.
constexpr int kBarOfWhole = 100;

// Returns the text of a source's row: its path without the trailing separator; a root such as "/" stays as it
// is.
std::string rowTextOf(const std::string& source) {
    return source.size() > 1 ? source.substr(0, source.size() - 1) : source;
}

void resetForSource(ScanContext& scan) {
    ScanState& state = scan.state;
    state.RowPicked = false;
    state.top.count = 0;
    state.top.largest = state.top.smallest = SizeValue();
    state.top.maxCount = scan.options.TOPmaxcount;
    for (Grid* list : {&scan.lvwTOP, &scan.lvwJunctions, &scan.lvwHardlinks}) list->clear();
    if (scan.types != nullptr) scan.types->restart();
    state.links.seen.Clear();
    state.links.seen.AllowDuplicateKeys = false;
    state.links.seen.CompareMode(0);
    state.links.needCount =
        scan.options.AddHardlinksOnlyOnce == 1 || (scan.options.CreateListHardlink == 1 && !state.SilentRun);
    state.NeedSpace =
        !state.SilentRun || state.balance.wanted || scan.facts != nullptr || scan.options.ReckonOnDisk != 0;
    state.Started = secondsNow();
}

// Part of a source is read as the rest of it was.
void chooseStatistics(ScanContext& scan, Row row) {
    if (scan.statistics == nullptr || scan.tvwPL.parent(row) != kNoRow) return;
    if (scan.options.CreateStatistics == 1) return scan.statistics->keepSource(row, scan.state.Started);
    scan.statistics->dropSource(row);
}

Row addSourceRow(ScanContext& scan, const std::string& source, int imageIndex) {
    Grid& report = scan.tvwPL;
    const Row row = report.addRow(kNoRow, rowTextOf(source));
    if (scan.statistics != nullptr) scan.statistics->dropSource(row);
    if (scan.largest != nullptr) scan.largest->dropSource(row);
    if (scan.facts != nullptr) scan.facts->dropSource(row);
    if (imageIndex >= 0 && imageIndex < kSourceImages) report.setPicture(row, imageIndex);
    report.setExpanded(row, true);
    report.setNumber(row, kPercent, 100);
    return row;
}

void finishLists(ScanContext& scan, const std::string& source) {
    trimTopList(scan);
    scan.lvwTOP.sortLevels(0);
    scan.state.top.source = source;
    scan.state.leaving.ofLists = scan.state.lastTotals.leftOut;
    scan.state.ListsIncomplete = scan.state.CancelState == kCancelStop;
    scan.lvwJunctions.sortLevels(0);
    sortHardlinks(scan.lvwHardlinks);
    scan.host.listsFilled();
}

/// While it exists, the walk counts for the balance of the source whose row this is.
class Counting {
  public:
    Counting(ScanContext& scan, const std::string& folder, Row row) : scan_(scan), folder_(folder) {
        if (!scan.state.balance.wanted) return;
        const Grid& report = scan.tvwPL;
        if (report.parent(row) != kNoRow) {
            noteSpaceChanged(scan, row);
            return;
        }
        space_ = &scan.state.balance.sources.insert_or_assign(std::string(report.text(row)), SourceSpace())
                      .first->second;
        space_->before = used();
        scan.state.balance.current = space_;
    }
    ~Counting() {
        if (space_ == nullptr) return;
        scan_.state.balance.current = nullptr;
        space_->count.finish();
        space_->ended = secondsNow();
        guarded(scan_.diagnostics, {.routine = "used"}, [&] { space_->after = used(); });
    }
    Counting(const Counting&) = delete;
    Counting& operator=(const Counting&) = delete;

  private:
    std::optional<UsedSpace> used() const {
        if (scan_.diskSpace == nullptr) return std::nullopt;
        Yield wait(scan_.state, scan_.pump);
        const Result<UsedSpace> told = scan_.diskSpace->used(folder_, &wait);
        return told ? std::optional(*told) : std::nullopt;
    }

    ScanContext& scan_;
    const std::string& folder_;
    SourceSpace* space_ = nullptr;
};

void logTotals(ScanContext& scan, const ScanTotals& totals) {
    const auto count = [&](std::int32_t value) {
        return FormatSizeForMode(kModeBytes, SizeValue::fromBytes(static_cast<std::uint64_t>(value)), false,
                                 false, scan.numbers);
    };
    const auto size = [&](int mode) {
        return FormatSizeForMode(mode, totals.size, true, false, scan.numbers);
    };
    const Texts& texts = scan.texts;
    if (totals.errors > 0)
        scan.log.LogProtokoll(texts.TL(3773, "Zugriffsfehler: %1", {count(totals.errors)}));
    scan.log.LogProtokoll(texts.TL(3774, "Ordneranzahl: %1", {count(totals.folders)}));
    scan.log.LogProtokoll(texts.TL(3775, "Dateianzahl: %1", {count(totals.files)}));
    scan.log.LogProtokoll(texts.TL(3776, "Dateigröße: %1 (%2)", {size(kModeDynamic), size(kModeBytes)}));
    if (scan.state.CancelState == kCancelStop)
        scan.log.LogProtokoll(texts.TL(3778, "Der Vorgang wurde vom Anwender abgebrochen!"));
}

// A folder of a source that is read again leaves the times of its source as they are.
void noteReading(ScanContext& scan, Row row) {
    if (scan.facts == nullptr || scan.tvwPL.parent(row) != kNoRow) return;
    SourceFacts& source = scan.facts->source(row);
    source.started = scan.state.Started;
    source.ended = secondsNow();
    source.stopped = scan.state.CancelState == kCancelStop;
    source.options = scanOptionsJson(scan);
}

void readWholeSource(ScanContext& scan, const std::string& source, const std::string& folder, Row row) {
    scan.log.LogProtokoll(std::string(40, '-'));
    scan.log.LogProtokoll(scan.texts.TL(3777, "Einlesen: %1", {visible(source)}));
    {
        const Counting counting(scan, folder, row);
        Report_ScanFolders(scan, folder, row, scan.state.lastTotals);
    }
    noteReading(scan, row);
    if (!scan.state.SilentRun) finishLists(scan, source);
    Report_SetTotals(scan.tvwPL, row, scan.state.lastTotals);
    logTotals(scan, scan.state.lastTotals);
}

// Reads the source at the head of the queue; returns kNoRow if it does not exist.
Row readHead(ScanContext& scan, std::string& lastSource) {
    const std::string head = scan.state.SourceQueue.front();
    if (const Result<> exists = xExistFolder_W(scan, head); !exists) {
        const Error& error = exists.error();
        scan.host.sourceMissing(head, isNotThere(error) ? "" : ApiErrorText(true, error));
        return kNoRow;
    }
    if (scan.state.CancelState == kCancelStop) return kNoRow;  // Stopped while its disk was waited for.
    scan.cboOrdner.addOrSelect(head, scan.paths);
    scan.host.sourceBegan();
    const SourceItem item = *scan.cboOrdner.selected();
    lastSource = item.tag;
    const Row row = QuelleEinlesen(scan, item.tag, item.image, kNoRow);
    if (row != kNoRow) Report_ChangePercentValue(scan, row);
    return row;
}

RunEnd workThroughQueue(ScanContext& scan) {
    ScanState& state = scan.state;
    std::string lastSource;
    Row lastRow = kNoRow;
    while (!state.SourceQueue.empty()) {
        const Row row = readHead(scan, lastSource);
        if (row != kNoRow) lastRow = row;
        if (state.CancelState == kCancelStop) break;
        state.SourceQueue.pop_front();
    }
    state.SourceQueue.clear();
    const RunEnd end = endOf(state);  // The files that are listed next take a stop back.
    if (!state.SilentRun && !lastSource.empty()) scan.host.folderShown(lastSource);
    Report_Sort(scan);
    if (lastRow == kNoRow || state.RowPicked) return end;
    scan.tvwPL.selectNone();
    scan.tvwPL.setSelected(lastRow, true);
    scan.tvwPL.setCurrentRow(lastRow);
    return end;
}

}  // namespace

void noteSpaceChanged(ScanContext& scan, Row row) {
    const Grid& report = scan.tvwPL;
    const auto found = scan.state.balance.sources.find(report.text(report.rootOf(row)));
    if (found != scan.state.balance.sources.end()) found->second.changed = true;
}

RunEnd endOf(const ScanState& state) {
    return state.CancelState == kCancelStop ? RunEnd::kStopped : RunEnd::kDone;
}

// --- the queue

void AddNewSearchPath(ScanContext& scan, std::string_view path) {
    scan.cboOrdner.addOrSelect(path, scan.paths);
}

void StartSearchViaToolbar(ScanContext& scan) {
    guarded(scan.diagnostics, [&] {
        scan.state.CancelState = kCancelNone;
        scan.state.SourceQueue.clear();
        if (scan.cboOrdner.text.empty()) return;
        if (scan.cboOrdner.selected() == nullptr)
            AddNewSearchPath(scan, absoluteSource(scan.cboOrdner.text, scan.bases, scan.paths));
        scan.state.SourceQueue.push_back(scan.cboOrdner.selected()->tag);
        Ordnerliste_Abarbeiten(scan);
    });
}

void Ordnerliste_Abarbeiten(ScanContext& scan) {
    asOneRun(scan, [&] { return workThroughQueue(scan); });
}

void asOneRun(ScanContext& scan, const std::function<RunEnd()>& work) {
    guarded(scan.diagnostics, {.routine = "Ordnerliste_Abarbeiten"}, [&] {
        // A Stop of something earlier, such as a list of files, must not end this run.
        scan.state.CancelState = kCancelNone;
        std::optional<BusyPointer> busy(scan.controls);
        RunEnd end = RunEnd::kBrokenOff;
        {
            // The window is unlocked however the run ends, because a locked window could not even be closed.
            const ScopeExit unlock([&] {
                scan.state.CancelState = kCancelNone;
                EnableControls(scan);
                if (end != RunEnd::kBrokenOff) return;
                scan.state.SourceQueue.clear();
                scan.host.runEnded(end);
            });
            DisableControls(scan, false);
            scan.host.runBegan();
            end = work();
        }
        busy.reset();
        scan.host.runEnded(end);
    });
}

// --- one source

Row QuelleEinlesen(ScanContext& scan, const std::string& source, int imageIndex, Row row) {
    guarded(scan.diagnostics, [&] {
        if (row == kNoRow) {
            forgetReadAllTheSame(scan.state, rowTextOf(source));
            row = addSourceRow(scan, source, imageIndex);
        }
        const std::string folder = Report_GetFullpathOfNode(scan.tvwPL, row, true, scan.paths);
        resetForSource(scan);
        chooseStatistics(scan, row);
        scan.tvwPL.setSelected(row, true);
        scan.tvwPL.setCurrentRow(row);
        scan.tvwPL.setNumber(row, kIsFolder, 1);
        if (scan.options.FolderShowPercentBar == 1) scan.tvwPL.setBarPicture(row, kBarOfWhole);
        scan.host.readingInto(row);
        readWholeSource(scan, source, folder, row);
        scan.state.links.met = scan.state.links.seen.Count() > 0;
        scan.state.links.seen.Clear();
        scan.host.sourceDone(row);
    });
    return row;
}

// --- the lock of the window

void DisableControls(ScanContext& scan, bool noStop) {
    scan.state.ScanActive = true;
    scan.controls.lockControls(noStop);
    scan.pump.PumpMessages();
}

void EnableControls(ScanContext& scan) {
    scan.controls.unlockControls();
    scan.state.ScanActive = false;
}

}  // namespace hl
