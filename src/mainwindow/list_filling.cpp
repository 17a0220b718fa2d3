#include "mainwindow/list_filling.h"

#include "base/scope_exit.h"
#include "base/text.h"
#include "mainwindow/main_form.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/list_fill.h"
#include "scan/on_disk.h"
#include "scan/rollup.h"

namespace hl {

namespace {

constexpr std::uint64_t kStatusInterval = 100;  // Milliseconds between two changes of the status.

}  // namespace

bool ListFilling::fill(GridId list) {
    source_ = source();
    if (source_.empty()) return false;
    guarded(form_.services().diagnostics, {.routine = "ListFilling"}, [&] { read(list); });
    if (form_.closed) return false;
    const Texts& texts = form_.services().texts;
    form_.status.endRun(!failure_.empty() ? failure_
                        : stopped_        ? texts.TL(9761, "Abgebrochen. Die Liste ist unvollständig.")
                                          : texts.TL(3525, "OK."));
    return failure_.empty() && !stopped_;
}

std::string ListFilling::source() const {
    const Grid& report = form_.session.tvwPL;
    const Row row = report.currentRow() != kNoRow ? report.currentRow() : firstLiveSource(form_.scan);
    if (row == kNoRow || isFromFile(form_.scan, row)) return {};
    return Report_GetFullpathOfNode(report, report.rootOf(row), true, form_.services().paths);
}

void ListFilling::read(GridId list) {
    ScanState& state = form_.session.state;
    const BusyPointer busy(form_.run);
    state.CancelState = kCancelNone;
    DisableControls(form_.scan, false);
    const ScopeExit unlock([&] {
        state.CancelState = kCancelNone;  // A Stop of this reading must not end what comes next.
        EnableControls(form_.scan);
    });
    form_.status.beginRun();
    Grid& rows = form_.session.grid(list);
    rows.setRedraw(false);
    fillList(form_.scan, rows, source_, *this);
    stopped_ = state.CancelState == kCancelStop;
    if (stopped_) state.ListsIncomplete = true;
}

void ListFilling::folderEntered(std::string_view path) {
    const std::uint64_t tick = form_.services().pump.GetTickCount();
    if (tick < lastStatusTick_ + kStatusInterval) return;
    lastStatusTick_ = tick;
    form_.status.setFirst(std::string(path) + "*.*");
}

void ListFilling::notRead(std::string_view path, const std::string& reason) {
    if (path == source_)
        failure_ = form_.services().texts.TL(9022, "Nicht gelesen: %1: %2", {visible(path), reason});
}

void ListFilling::diskSilent(const std::string& text) {
    form_.status.setFirst(text);
}

}  // namespace hl
