#include "output/scan_output.h"

#include "app/product.h"
#include "output/report_file.h"
#include "scan/not_read.h"
#include "scan/saved/report_records.h"
#include "scan/saved/scan_writer.h"
#include "scan/yield.h"

namespace hl {

namespace {

ScanHeader headerOf(const ScanContext& scan, Row source, ScanNames names) {
    const SourceFacts* facts = scan.facts->sourceOf(source);
    ScanHeader header = {.program = std::string(kProductName),
                         .version = HARBORLANTERN_VERSION,
                         .source = std::string(scan.tvwPL.text(source)),
                         .complete = isWhole(scan, source)};
    if (names == ScanNames::kAll) header.host = scan.machine;
    if (facts == nullptr) return header;
    header.started = facts->started;
    header.ended = facts->ended;
    header.device = facts->device;
    header.options = facts->options.empty() ? "{}" : facts->options;
    return header;
}

// What was opened keeps its first line and the order of its tables.
SavedScan tablesOf(const ScanContext& scan, Row source, ScanNames names) {
    const SourceFacts* facts = scan.facts->sourceOf(source);
    SavedScan tables;
    if (facts != nullptr && facts->saved != nullptr) {
        tables = *facts->saved;
        if (names == ScanNames::kAll) return tables;
        tables.header.host.clear();
        for (auto& [uid, name] : tables.owners) name.clear();
    } else {
        tables.header = headerOf(scan, source, names);
    }
    tables.headerLine = scanHeaderLine(tables.header);
    return tables;
}

// A user without a name has none in the file; a name that is there already was kept.
void nameOwners(const ScanContext& scan, SavedScan& tables, std::size_t from) {
    if (scan.owners == nullptr) return;
    for (std::size_t i = from; i < tables.owners.size(); ++i) {
        auto& [uid, name] = tables.owners[i];
        name = scan.owners->nameOf(uid);
        if (name.starts_with('#') || name.size() > kMostNameBytes) name.clear();
    }
}

}  // namespace

bool isWhole(const ScanContext& scan, Row source) {
    const SourceFacts* facts = scan.facts != nullptr ? scan.facts->sourceOf(source) : nullptr;
    if (facts != nullptr && facts->saved != nullptr) return facts->saved->header.complete;
    const Grid& report = scan.tvwPL;
    if (foldersNotRead(report, source) != 0 || (facts != nullptr && facts->stopped)) return false;
    if (scan.facts == nullptr || !scan.facts->hasRare()) return true;
    for (Row row = source; row != kNoRow && row != report.nextSibling(source);
         row = report.tree().following(row))
        if (const RareFacts* rare = scan.facts->rareOf(row); rare != nullptr && rare->error) return false;
    return true;
}

ReportOutcome writeScan(ScanContext& scan, Row source, ScanNames names, ReplacingFile& target) {
    SavedScan tables = tablesOf(scan, source, names);
    const std::size_t knownOwners = tables.owners.size();
    target.makePrivate();
    ReportFile file(target);
    Yield yield(scan.state, scan.pump);
    ScanWriter writer(tables.header.started);
    writer.begin(file.block(), tables.headerLine);
    ReportRecords records(scan, source, &tables);
    for (ScanRecord record; file.isFine() && records.next(record);) {
        yield.perEntry();
        writer.folder(file.block(), record);
        file.endLine();
    }
    if (names == ScanNames::kAll) nameOwners(scan, tables, knownOwners);
    writer.end(file.block(), tables);
    return commitReport(file, target);
}

}  // namespace hl
