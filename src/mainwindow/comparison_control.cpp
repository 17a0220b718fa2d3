#include "mainwindow/comparison_control.h"

#include <utility>

#include "base/scope_exit.h"
#include "base/text.h"
#include "grid/no_redraw.h"
#include "mainwindow/main_form.h"
#include "mainwindow/saved_files.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/report_changes.h"
#include "scan/rollup.h"
#include "scan/saved/open_scan.h"
#include "scan/scan_options_text.h"
#include "scan/yield.h"
#include "views/list_columns.h"
#include "views/report_columns.h"

namespace hl {

namespace {

constexpr const char* kFilter = "HLSCAN (*.hlscan)|*.hlscan|* (*)|*";
constexpr std::size_t kColumns[] = {kReportBefore, kReportChange};

}  // namespace

void ComparisonControl::toggle() {
    if (form_.session.state.ScanActive) return;
    form_.sources.duringCommand([&] {
        if (isShown()) return end();
        const Row row = source();
        const std::string kept = row == kNoRow ? std::string() : form_.keptScans.lastBefore(row);
        compareWith(kept.empty() ? ask() : kept);
    });
}

void ComparisonControl::chooseFile() {
    if (form_.session.state.ScanActive) return;
    form_.sources.duringCommand([&] {
        if (isShown()) end();
        compareWith(ask());
    });
}

std::string ComparisonControl::ask() {
    return form_.window->dialogs.askOpenPath(kFilter, std::string(1, form_.services().paths.separator));
}

/// The one of the current row, or the first one; kNoRow in an empty report.
Row ComparisonControl::source() const {
    const Grid& report = form_.session.tvwPL;
    const Row row = report.currentRow() != kNoRow ? report.currentRow() : report.firstRoot();
    return row == kNoRow ? kNoRow : report.rootOf(row);
}

// The window is locked while the file is read, which may lie on a disk that does not answer.
void ComparisonControl::compareWith(const std::string& path) {
    const Row row = source();
    if (path.empty() || row == kNoRow || form_.closed) return;
    std::variant<ScanFile, std::string> file = std::string();
    {
        const BusyPointer busy(form_.scan.controls);
        DisableControls(form_.scan, true);
        const ScopeExit unlock([&] { EnableControls(form_.scan); });
        file = readScanFile(form_.services(), path, nullptr);
    }
    if (form_.closed) return;
    if (const auto* problem = std::get_if<std::string>(&file)) {
        form_.window->dialogs.message(MessageKind::kWarning, *problem);
        return;
    }
    const std::string doubt = doubts(std::get<ScanFile>(file).scan->header, row);
    if (!doubt.empty() && !form_.window->dialogs.message(MessageKind::kQuestion, doubt)) return;
    if (!form_.closed)
        guarded(form_.services().diagnostics, {.routine = "compareWith"},
                [&] { begin(std::get<ScanFile>(file), row); });
}

// Returns why a comparison may say little, as a question; empty if there is no reason.
std::string ComparisonControl::doubts(const ScanHeader& header, Row source) const {
    const Texts& texts = form_.services().texts;
    std::string text;
    if (const std::string_view path = form_.session.tvwPL.text(source); header.source != path)
        text += texts.TL(9088, "Der gespeicherte Scan ist von '%1', die Quelle ist '%2'.",
                         {visible(header.source), visible(path)}) +
                "\n";
    const SourceFacts* facts = form_.session.facts.sourceOf(source);
    const std::string host = hostOf(form_.scan, source);
    if (!header.host.empty() && !host.empty() && header.host != host)
        text += texts.TL(9125, "Der gespeicherte Scan ist vom Rechner '%1', die Quelle vom Rechner '%2'.",
                         {visible(header.host), visible(host)}) +
                "\n";
    const std::string others = differingOptions(header.options, facts == nullptr ? "{}" : facts->options);
    if (!others.empty())
        text += texts.TL(9089, "Der gespeicherte Scan wurde mit anderen Optionen eingelesen: %1.",
                         {visible(others)}) +
                "\n";
    return text.empty() ? text : text + "\n" + texts.TL(9090, "Trotzdem vergleichen?");
}

void ComparisonControl::begin(const ScanFile& file, Row source) {
    earlier_ = Earlier{FolderList::of(file), file.scan->header};
    source_ = source;
    sourceText_ = form_.session.tvwPL.text(source);
    const BusyPointer busy(form_.scan.controls);
    DisableControls(form_.scan, true);
    {
        const ScopeExit unlock([&] { EnableControls(form_.scan); });
        const bool shown =
            guarded(form_.services().diagnostics, {.routine = "showChanges"}, [&] { return show(), true; });
        if (!shown) return end();
    }
    showColumns(true);
    form_.map.reportChanged();
}

Row ComparisonControl::rowOf(const std::string& path) const {
    return isShown() ? rowOfFolder(form_.session.tvwPL, source_, path, form_.services().paths) : kNoRow;
}

void ComparisonControl::rowsWillChange() {
    if (isShown()) removeGoneRows(form_.session.tvwPL, source_);
}

void ComparisonControl::rowsChanged() {
    if (!isShown()) return;
    guarded(form_.services().diagnostics, {.routine = "showChanges"}, [&] {
        const Grid& report = form_.session.tvwPL;
        const bool there = report.tree().exists(source_) && report.parent(source_) == kNoRow;
        if (!there || report.text(source_) != sourceText_) return end();
        rowsWillChange();
        show();
    });
}

void ComparisonControl::show() {
    const NoRedraw off(form_.session.tvwPL);
    const ReportComparison shown = showChanges(form_.scan, source_, earlier_->folders);
    form_.session.tvwPL.changeColumn(kReportChange).barMost = shown.largest;
    Report_Sort(form_.scan);
    form_.lists.changes().show(listed(shown));
}

std::vector<ShownChange> ComparisonControl::listed(const ReportComparison& shown) const {
    const std::string source = AddTrailingSlash(form_.session.tvwPL.text(source_), form_.services().paths);
    const auto pathIn = [&](const FolderList& list, std::uint32_t place) {
        return place == 0 ? std::string(form_.session.tvwPL.text(source_)) : source + list.path(place);
    };
    using Kind = FolderChange::Kind;
    using State = ShownChange::State;
    std::vector<ShownChange> all;
    for (const FolderChange& change : shown.changes.folders) {
        ShownChange& one = all.emplace_back();
        const bool gone = change.kind == Kind::kGone;
        one.state = gone                            ? State::kGone
                    : change.kind == Kind::kNew     ? State::kNew
                    : change.kind == Kind::kRenamed ? State::kRenamed
                    : change.bytes() > 0            ? State::kGrown
                                                    : State::kShrunk;
        one.path = gone ? pathIn(earlier_->folders, change.before) : pathIn(shown.after, change.after);
        if (change.kind == Kind::kRenamed) one.was = pathIn(earlier_->folders, change.before);
        one.before = change.was.bytes;
        one.now = change.is.bytes;
    }
    return all;
}

void ComparisonControl::end() {
    Grid& report = form_.session.tvwPL;
    const Row source = std::exchange(source_, kNoRow);
    earlier_.reset();
    if (report.tree().exists(source)) removeGoneRows(report, source);
    showColumns(false);
    dropChangeCells(report);
    form_.lists.changes().clear();
    sortAsUsual();
    form_.map.reportChanged();
}

void ComparisonControl::showColumns(bool on) {
    for (const std::size_t column : kColumns) form_.report.view().Report_ChangeColVisible(column, on);
    form_.bars.cbrReport.setCaption(idOf(Command::kReportTitle), title());
}

// Rows that were sorted by a column that no longer shows are sorted by their size.
void ComparisonControl::sortAsUsual() {
    Grid& report = form_.session.tvwPL;
    const std::string& key = report.levelSort(0).key;
    if (key != kFolderCells[kBefore].key && key != kFolderCells[kChange].key) return;
    for (std::uint32_t level = 0; level < Grid::kSortLevels; ++level)
        report.levelSort(level) = {.key = std::string(kFolderCells[reckonedCell(form_.session.options)].key)};
    Report_Sort(form_.scan);
}

std::string ComparisonControl::title() const {
    const Texts& texts = form_.services().texts;
    std::string folders = texts.TL(3625, "Ordner");
    if (!isShown()) return folders;
    const ScanHeader& header = earlier_->header;
    const std::string date = shownDate(form_.session.options, header.started);
    return header.complete
               ? texts.TL(9091, "%1, verglichen mit dem Scan vom %2", {folders, date})
               : texts.TL(9092, "%1, verglichen mit dem unvollständigen Scan vom %2", {folders, date});
}

}  // namespace hl
