#include "scan/saved/report_comparison.h"

#include <algorithm>
#include <cmath>

#include "scan/not_read.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/rollup.h"

namespace hl {

namespace {

void show(Grid& report, Row row, const ScanChanges::Own& sums) {
    report.setNumber(row, kBefore, static_cast<double>(sums.was));
    report.setNumber(row, kChange, static_cast<double>(sums.is) - static_cast<double>(sums.was));
}

void addGoneRow(ScanContext& scan, Row parent, std::string_view name, const FileSums& was) {
    Grid& report = scan.tvwPL;
    const Row row = report.addRow(parent, name);
    if (scan.statistics != nullptr) scan.statistics->forget(row);
    scan.facts->begin(row, {});
    Report_Shade(scan, row);
    scan.state.DeepestLevel = std::max(scan.state.DeepestLevel, report.level(row));
    report.setPicture(row, kPictureGone);
    report.setNumber(row, kIsFolder, 1);
    report.setRowNote(row, scan.texts.TL(9081, "nicht mehr da"));
    show(report, row, {was.bytes, 0});
}

}  // namespace

ReportComparison showChanges(ScanContext& scan, Row source, const FolderList& before) {
    Grid& report = scan.tvwPL;
    ReportComparison shown;
    shown.after = FolderList::of(scan, source);
    const FolderList& after = shown.after;
    shown.changes = compareScans(before, after);
    std::vector<ScanChanges::Own> sums = shown.changes.own;
    // The row of a folder's own files shows these alone.
    for (std::uint32_t i = 0; i < after.size(); ++i)
        if (const Row files = filesRowBelow(report, after.at(i).row); files != kNoRow)
            show(report, files, sums[i]);
    for (const FolderChange& change : shown.changes.folders) {
        if (change.kind != FolderChange::Kind::kGone) continue;
        sums[change.after].was += change.was.bytes;
        shown.largest = std::max(shown.largest, static_cast<double>(change.was.bytes));
        addGoneRow(scan, after.at(change.after).row, before.name(change.before), change.was);
    }
    // What lies in a folder comes behind it.
    for (std::uint32_t i = after.size(); i-- > 0;) {
        show(report, after.at(i).row, sums[i]);
        shown.largest = std::max(shown.largest, std::abs(report.number(after.at(i).row, kChange)));
        if (i == 0) break;
        sums[after.at(i).parent].was += sums[i].was;
        sums[after.at(i).parent].is += sums[i].is;
    }
    return shown;
}

void removeGoneRows(Grid& report, Row source) {
    std::vector<Row> gone;
    for (Row row = report.tree().following(source); row != kNoRow && report.level(row) > report.level(source);
         row = report.tree().following(row))
        if (isGone(report, row)) gone.push_back(row);
    for (const Row row : gone) report.removeRow(row);
}

void dropChangeCells(Grid& report) {
    report.dropCell(kBefore);
    report.dropCell(kChange);
}

}  // namespace hl
