#include "mainwindow/opened_scans.h"

#include <utility>

#include "base/scope_exit.h"
#include "base/text.h"
#include "mainwindow/main_form.h"
#include "mainwindow/saved_files.h"
#include "scan/driver.h"
#include "scan/rollup.h"
#include "scan/saved/open_scan.h"
#include "scan/yield.h"
#include "views/list_columns.h"

namespace hl {

namespace {

constexpr const char* kFilter =
    "HLSCAN (*.hlscan)|*.hlscan|ncdu, gdu (*.json)|*.json|find (*.txt *.list)|*.txt *.list|* (*)|*";

}  // namespace

void OpenedScans::choose() {
    if (form_.session.state.ScanActive) return;
    form_.sources.duringCommand([&] {
        queue(form_.window->dialogs.askOpenPath(kFilter, std::string(1, form_.services().paths.separator)));
    });
}

void OpenedScans::queue(const std::string& path) {
    if (!path.empty()) queue_.push_back(path);
}

bool OpenedScans::openNext() {
    if (queue_.empty()) return false;
    const std::string path = std::move(queue_.front());
    queue_.pop_front();
    open(path);
    return true;
}

void OpenedScans::open(const std::string& path) {
    std::string problem;
    Row source = kNoRow;
    asOneRun(form_.scan, [&] {
        source = addSource(path, problem);
        return endOf(form_.session.state);
    });
    if (form_.closed) return;
    if (source != kNoRow) form_.report.view().goTo(source);
    form_.sources.changed();
    if (problem.empty()) return;
    const SourcesControl::AtWork work(form_.sources);
    form_.window->dialogs.message(MessageKind::kWarning, problem);
}

// What is kept of the sources by their paths belongs to those on the disk. The lists of a scan stay as they
// are, because their files are on the disk, too.
Row OpenedScans::addSource(const std::string& path, std::string& problem) {
    ScanState& state = form_.session.state;
    Yield wait(state, form_.services().pump);
    const SavedFile file = readSavedFile(form_.services(), path, &wait);
    if (state.CancelState == kCancelStop) return kNoRow;
    if (const auto* text = std::get_if<std::string>(&file)) {
        problem = *text;
        return kNoRow;
    }
    const ScopeExit restore([&state, silent = state.SilentRun, top = state.top, links = state.links.met,
                             again = state.leaving.readAllTheSame, ids = state.sourceIds,
                             met = state.snapshots.met, spaces = std::move(state.balance.sources)]() mutable {
        state.SilentRun = silent;
        state.top = std::move(top);
        state.links.met = links;
        state.leaving.readAllTheSame = std::move(again);
        state.sourceIds = std::move(ids);
        state.snapshots.met = std::move(met);
        state.balance.sources = std::move(spaces);
    });
    state.SilentRun = true;
    state.RowPicked = false;
    const Row source = openSavedFile(form_.scan, file);
    if (source == kNoRow) return kNoRow;
    form_.run.sourceDone(source);
    noteOrigin(source);
    Report_Sort(form_.scan);
    return source;
}

// A note that tells why the source was not read comes first.
void OpenedScans::noteOrigin(Row source) {
    Grid& report = form_.session.tvwPL;
    if (!report.rowNote(source).empty()) return;
    const ScanHeader& header = savedScanOf(form_.scan, source)->header;
    const std::string date = shownDate(form_.session.options, header.started);
    const Texts& texts = form_.services().texts;
    report.setRowNote(source, header.host.empty()
                                  ? texts.TL(9059, "aus einem gespeicherten Scan vom %1", {date})
                                  : texts.TL(9060, "aus einem gespeicherten Scan vom %1, %2",
                                             {date, visible(header.host)}));
}

}  // namespace hl
