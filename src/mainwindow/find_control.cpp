#include "mainwindow/find_control.h"

#include <utility>

#include "base/scope_exit.h"
#include "base/text.h"
#include "mainwindow/find_form.h"
#include "mainwindow/find_run.h"
#include "mainwindow/main_form.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/left_out.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "views/find_texts.h"

namespace hl {

namespace {

constexpr int kFilterBox = idOf(Command::kFindFilter);

}  // namespace

FindFilter::OwnerNumber FindControl::ownerNumbers() const {
    return [owners = form_.services().owners](const std::string& name) {
        return owners != nullptr ? owners->numberOf(name) : std::nullopt;
    };
}

// --- where to search

std::vector<FindPlace> FindControl::places() const {
    const Grid& report = form_.session.tvwPL;
    std::vector<FindPlace> all;
    if (form_.session.options.FindAllSources == 0) {
        const std::vector<Row> selected = report.selectedRows();
        const Row row = selected.empty() ? report.currentRow() : selected.front();
        if (row != kNoRow && !isOnDisk(form_.scan, row)) return {};
        if (row != kNoRow) return {placeOf(row)};
    }
    for (Row root = firstLiveSource(form_.scan); root != kNoRow; root = nextLiveSource(form_.scan, root))
        all.push_back(placeOf(root));
    return all;
}

FindPlace FindControl::placeOf(Row row) const {
    const Grid& report = form_.session.tvwPL;
    const PathRules& paths = form_.services().paths;
    if (report.level(row) > 0 && report.number(row, kIsFolder) == 0) row = report.parent(row);
    FindPlace place{.folder = Report_GetFullpathOfNode(report, row, true, paths),
                    .level = report.level(row),
                    .elsewhere = {}};
    const Row root = report.rootOf(row);
    const auto& met = form_.session.state.snapshots.met;
    const auto of = met.find(report.text(root));
    if (root == row || of == met.end()) return place;
    place.elsewhere = of->second;
    place.elsewhere.forget(Report_GetFullpathOfNode(report, row, false, paths), paths);
    return place;
}

// --- the search

void FindControl::start() {
    if (form_.session.state.ScanActive || form_.closed) return;
    form_.sources.duringCommand([&] {
        auto filter = FindFilter::read(form_.bars.cbrFind.textOf(kFilterBox), ownerNumbers());
        if (const auto* problem = std::get_if<FilterProblem>(&filter)) return refuse(*problem);
        form_.bars.cbrFind.setTooltip(
            kFilterBox, form_.services().texts.TL(9947, "Filter, zum Beispiel size>1G age>1y name=*.iso"));
        form_.window->bar(BarId::kFind).markEdit(kFilterBox, false);
        const std::vector<FindPlace> where = places();
        if (!where.empty()) return find(std::get<FindFilter>(std::move(filter)), where);
        const Texts& texts = form_.services().texts;
        form_.status.setSecond(form_.session.tvwPL.currentRow() != kNoRow
                                   ? notOnDiskText(form_.scan, form_.session.tvwPL.currentRow())
                                   : texts.TL(9610, "es wurde nichts eingelesen"));
    });
}

// The box keeps the focus, and tells why it is marked.
void FindControl::refuse(const FilterProblem& problem) {
    const std::string why = filterProblemText(form_.services().texts, problem);
    form_.bars.cbrFind.setTooltip(kFilterBox, why);
    BarPane& bar = form_.window->bar(BarId::kFind);
    bar.markEdit(kFilterBox, true);
    bar.focusEdit(kFilterBox);
    form_.status.setSecond(why);
}

void FindControl::find(FindFilter filter, const std::vector<FindPlace>& places) {
    ScanState& state = form_.session.state;
    FindRun run(form_);
    stopped_ = true;  // Unless it comes to its end.
    more_ = false;
    state.leaving.ofSearch = {};
    place_ = places.size() == 1 ? places.front().folder : "";
    guarded(form_.services().diagnostics, {.routine = "FindControl"}, [&] {
        const BusyPointer busy(form_.run);
        state.CancelState = kCancelNone;
        DisableControls(form_.scan, false);
        const ScopeExit unlock([&] {
            state.CancelState = kCancelNone;  // What ended this search must not end what comes next.
            EnableControls(form_.scan);
        });
        form_.status.beginRun();
        const FindEnd end = run.run(filter, places);
        stopped_ = end == FindEnd::kStopped;
        more_ = end == FindEnd::kEnough;
    });
    searched_ = true;
    if (form_.closed) return;
    form_.lists.foundFiles();
    form_.status.endRun(!run.failure().empty() ? run.failure()
                        : stopped_             ? title()
                                               : form_.services().texts.TL(3525, "OK."));
    ListView* list = form_.lists.shown();
    if (list == nullptr) return;
    list->showPreview(true);
    list->ShowFileStat();
}

void FindControl::startWith(const std::string& filter) {
    form_.bars.cbrFind.setText(kFilterBox, filter);
    if (!form_.bars.cbrMain.isChecked(idOf(Command::kShowFind)))
        form_.looks.panes().PanelToggle(Command::kShowFind);
    start();
}

void FindControl::showForm() {
    FindForm frmFind(form_.services(), form_.bars.cbrFind.textOf(kFilterBox), ownerNumbers());
    Form dialog = frmFind.form();
    form_.window->dialogs.showForm(dialog);
    if (form_.closed || !frmFind.accepted()) return;
    form_.bars.cbrFind.setText(kFilterBox, frmFind.filter());
    start();
}

// --- what is told

std::string FindControl::title() const {
    if (!searched_) return {};
    const Services& services = form_.services();
    const Texts& texts = services.texts;
    const std::string count = formatCount(form_.session.lvwFind.rowCount(), services.numbers);
    std::string text = place_.empty()
                           ? texts.TL(9954, "Gefundene Dateien in allen Quellen: %1", {count})
                           : texts.TL(9953, "Gefundene Dateien unter '%2': %1", {count, visible(place_)});
    text = titleWithLeftOut(services, text, form_.session.state.leaving.ofSearch);
    if (more_) text = texts.TL(9956, "Es gibt noch mehr: %1", {text});
    return stopped_ ? texts.TL(9955, "Angehalten: %1", {text}) : text;
}

}  // namespace hl
