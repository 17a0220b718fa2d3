// A report of the source "/s" that is read again after changes, and held against a fresh scan.
#pragma once

#include <algorithm>

#include "scan/report_changes.h"
#include "support/scan_fixture.h"

namespace hl::test {

struct RescanFixture : ScanFixture {
    void begin(Item source) {
        report.clear();
        const std::string path = source.name;
        disk.sources = {std::move(source)};
        readSources({path.c_str()});
        host.calls.clear();
        host.folders.clear();
        clearProtocol();
    }
    void rescan(Row row) {
        report.setCurrentRow(row);
        Report_Rescan(scan);
    }
    void rescanPath(std::string_view path) { rescan(rowOfFolder(report, report.firstRoot(), path, paths)); }

    /// Returns every row with its path and all that a scan writes, sorted, since equal ones have no order.
    static Lines figuresOf(const ScanBench& bench) {
        const Grid& report = bench.report;
        Lines lines;
        for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row)) {
            std::string line = Report_GetFullpathOfNode(report, row, false, bench.paths) + ":";
            for (const CellId cell : {kPercent, kSize, kFiles, kFolders, kDisk, kNewest})
                line += " " + SimpleValue(report.number(row, cell)).text();
            lines.push_back(line + " " + std::to_string(report.picture(row)) +
                            std::string(report.rowNote(row)) + " " + std::to_string(report.mark(row)));
        }
        std::ranges::sort(lines);
        return lines;
    }
    Lines figuresOfAFreshScan() const {
        ScanBench fresh;
        fresh.disk.sources = disk.sources;
        fresh.readSources({"/s"});
        return figuresOf(fresh);
    }
};

}  // namespace hl::test
