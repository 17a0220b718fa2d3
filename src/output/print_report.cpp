// The form that prints the report: its controls, the copy of the rows, and the printing.
#include "output/print_report.h"

#include <limits>
#include <vector>

#include "base/scope_exit.h"
#include "base/text.h"
#include "grid/no_redraw.h"
#include "robustness/trap.h"
#include "scan/left_out.h"
#include "scan/not_read.h"
#include "scan/records.h"
#include "views/list_columns.h"
#include "views/report_columns.h"

namespace hl {

namespace {

constexpr const char* kRoutine = "Report_print";
constexpr std::int32_t kAsUnfolded = -1;
constexpr int kUsualZoom = 100;
constexpr int kFourPixels = 4 * 15;  // In twips.

void copyRow(const Grid& from, Row row, Grid& to, Row copy) {
    for (CellId cell = 0; cell < static_cast<CellId>(std::size(kFolderCells)); ++cell)
        to.setNumber(copy, cell, from.number(row, cell));
    to.setPicture(copy, from.picture(row));
    to.setExpanded(copy, from.expanded(row));
    if (from.barPicture(row) >= 0) to.setBarPicture(copy, from.barPicture(row));
    if (const auto color = from.backColor(row)) to.setBackColor(copy, *color);
    to.setMark(copy, from.mark(row));
    if (const auto note = from.rowNote(row); !note.empty()) to.setRowNote(copy, note);
}

}  // namespace

/// The local values of one run of Report_print.
struct PrintForm::Run {
    int scope = -1;
    std::int32_t levels = kAsUnfolded;
    int zoom = kUsualZoom;
    std::uint64_t rows = 0;  ///< The number of unfolded rows.
    Grid* grid = nullptr;    ///< The grid that is printed.

    DebugValues values() const {
        return {"scope=" + std::to_string(scope), "levels=" + std::to_string(levels),
                "zoom=" + std::to_string(zoom), "rows=" + std::to_string(rows)};
    }
};

// --- the form

PrintForm::PrintForm(ScanContext& scan, const Window& window) : scan_(scan), window_(window) {
    fillControls();
    selectOption(optWasDrucken, kAllFolders);
    optWasDrucken[kSelectedFolder].enabled = scan_.tvwPL.selectedCount() > 0;
    selectOption(optLevels, kUnfoldedLevels);
    txtZoom.text = std::to_string(kUsualZoom);
}

void PrintForm::fillControls() {
    const Texts& texts = scan_.texts;
    caption = texts.TL(3619, "Drucken");
    lblWasDrucken = texts.TL(3706, "Was soll gedruckt werden?");
    optWasDrucken[kAllFolders].caption = texts.TL(3707, "Alle Ordner");
    optWasDrucken[kSelectedFolder].caption = texts.TL(3708, "Ausgewählter Ordner");
    lblLevels = texts.TL(3618, "Wieviele Ordnerebenen sollen gedruckt werden?");
    optLevels[kAllFolderLevels].caption = texts.TL(3614, "Alle Ordnerebenen");
    lblLevelsUnit = texts.TL(3617, "Ordnerebenen");
    optLevels[kUnfoldedLevels].caption = texts.TL(3613, "Aktuelle Ordneransicht");
    lblZoom = texts.TL(3620, "Zoom:");
    lblPercent = "%";
    OKButton.caption = texts.TL(3616, "OK");
    CancelButton.caption = texts.TL(3615, "Abbrechen");
}

Form PrintForm::form() {
    std::vector<FormItem> items =
        itemsOf({lblWasDrucken, optWasDrucken, lblLevels, optLevels, txtLevels, lblLevelsUnit});
    const FormItem below[] = {
        {.control = &lblZoom, .row = kRowsOfChoice},
        {.control = &txtZoom, .row = kRowsOfChoice, .column = 1, .keyPress = digitKey, .name = lblZoom},
        {.control = &lblPercent, .row = kRowsOfChoice, .column = 2}};
    items.insert(items.end(), std::begin(below), std::end(below));
    return {.name = "frmPrint",
            .caption = caption,
            .items = std::move(items),
            .buttons = {{.control = &OKButton, .changed = [this] { Report_print(); }},
                        {.control = &CancelButton, .changed = [this] { CancelButton_Click(); }}},
            .cancel = [this] { CancelButton_Click(); },
            .title = &caption,
            .loaded = &loaded,
            .hourglass = &hourglass};
}

int PrintForm::wantedZoom() const {
    const auto number = parseInteger(txtZoom.text);
    if (!number) return kUsualZoom;
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp<std::int64_t>(*number, 0, kMost));
}

std::int32_t PrintForm::wantedLevels() const {
    const int choice = GetOptionButtonSelectedIndex(optLevels);
    if (choice == kAllFolderLevels) return kAllLevels;
    if (choice != kSomeFolderLevels) return kAsUnfolded;
    const auto number = parseInteger(txtLevels.text);
    if (!number) throw Fault(kFaultTypeMismatch, kRoutine, "Type mismatch");
    if (*number < kAsUnfolded || *number > std::numeric_limits<std::int32_t>::max()) raiseOverflow(kRoutine);
    return static_cast<std::int32_t>(*number);
}

// --- the copy

// Goes from row to row by their links; `parents` are the copies of the rows above. Levels are counted from
// `start`.
void PrintForm::copyRows(Run& run) {
    const Grid& report = scan_.tvwPL;
    const bool one = run.scope == kSelectedFolder;
    if (one && report.selectedCount() == 0) throw Fault(kFaultInvalidCall, kRoutine, "No folder is selected");
    const Row start = one ? report.selectedRows().front() : report.firstRoot();
    const std::uint32_t top = report.level(start);
    Yield yield(scan_.state, scan_.pump);
    std::vector<Row> parents;
    for (Row row = start; row != kNoRow && loaded; row = report.tree().following(row)) {
        const std::uint32_t level = report.level(row);
        if (one && row != start && level <= top) break;
        parents.resize(level - top);
        const Row copy = tvwPL_->addRow(parents.empty() ? kNoRow : parents.back(), report.text(row));
        copyRow(report, row, *tvwPL_, copy);
        parents.push_back(copy);
        yield.perEntry();
    }
}

void PrintForm::unfold(Run& run) {
    const std::string before = caption;
    const ScopeExit restore([&] { caption = before; });
    const std::string counted = before + scan_.texts.TL(3622, " - Ordner werden aufgeklappt...(");
    Yield yield(scan_.state, scan_.pump);
    for (Row row = tvwPL_->firstRoot(); row != kNoRow && loaded; row = tvwPL_->tree().following(row)) {
        tvwPL_->setExpanded(row, static_cast<std::int64_t>(tvwPL_->level(row)) < run.levels);
        caption = counted + formatCount(++run.rows, scan_.numbers) + ")";
        yield.perEntry();
    }
}

// --- printing

void PrintForm::prepare(Run& run) {
    if (run.levels == kAsUnfolded && run.scope == kAllFolders) {
        run.grid = &scan_.tvwPL;
        const NoRedraw off(*run.grid);
        return fitColumns();
    }
    run.grid = &tvwPL_.emplace(kFolderCells);
    Init_Tree(*run.grid, scan_.options, scan_.texts);
    showSizes(*run.grid, kReportTable, scan_.options, scan_.texts);
    copyRows(run);
    if (run.levels != kAsUnfolded) unfold(run);
}

// No window shows the copy, so its columns are measured when the pages are laid out.
void PrintForm::fitColumns() {
    for (std::size_t column = 0; column < scan_.tvwPL.columns().size() && loaded; ++column) {
        window_.grid(GridId::kReport).autosizeColumn(column, column == 0 ? 0 : kFourPixels);
        scan_.pump.PumpMessages();
    }
}

void PrintForm::Report_print() {
    Run run;
    const auto body = [&] {
        run.zoom = wantedZoom();
        run.scope = GetOptionButtonSelectedIndex(optWasDrucken);
        run.levels = wantedLevels();
        {
            hourglass = true;
            OKButton.enabled = false;
            const ScopeExit ready([this] {
                hourglass = false;
                OKButton.enabled = true;
            });
            prepare(run);
        }
        if (!loaded) return;
        const Unshown leftOut = run.scope == kSelectedFolder
                                    ? leftOutWith(scan_.tvwPL, scan_.tvwPL.selectedRows().front())
                                    : leftOutOf(scan_.tvwPL);
        const std::string title = titleWithLeftOut(scan_, scan_.texts.TL(3641, "Ordnerliste"), leftOut);
        const bool whole = !isIncomplete(scan_.tvwPL);
        PrintJob job = printedGrid(scan_, whole ? title : scan_.texts.TL(9815, "Unvollständig: %1", {title}),
                                   *run.grid, window_.grid(GridId::kReport).gridFont());
        job.tree = true;
        job.zoom = run.zoom;
        window_.dialogs.previewPrint(job);
        loaded = false;
    };
    guarded(scan_.diagnostics, {.module = "frmPrint"}, body, [&] { return run.values(); });
}

}  // namespace hl
