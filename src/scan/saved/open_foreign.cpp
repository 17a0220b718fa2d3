#include "scan/saved/open_foreign.h"

#include "app/product.h"
#include "scan/driver.h"
#include "scan/file_columns.h"
#include "scan/not_read.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/saved/scan_format.h"
#include "scan/saved/scan_writer.h"

namespace hl {

namespace {

/// What such a scan is saved with.
std::shared_ptr<const SavedScan> savedAs(const ScanContext& scan, const ForeignTree& tree, Row row) {
    auto saved = std::make_shared<SavedScan>();
    const SourceFacts& facts = *scan.facts->sourceOf(row);
    saved->header = {.program = std::string(kProductName),
                     .version = HARBORLANTERN_VERSION,
                     .source = tree.source,
                     .started = facts.started,
                     .ended = tree.written != 0 ? tree.written : facts.ended,
                     .device = facts.device,
                     .complete = foldersNotRead(scan.tvwPL, row) == 0 && !facts.stopped};
    saved->headerLine = scanHeaderLine(saved->header);
    return saved;
}

}  // namespace

Row openForeignTree(ScanContext& scan, const ForeignTree& tree) {
    ForeignDisk disk(tree);
    const Services services{scan.settings, scan.texts,   scan.log,         scan.files,  disk,
                            scan.pump,     scan.console, scan.diagnostics, scan.paths,  scan.numbers,
                            scan.bases,    nullptr,      scan.owners,      scan.machine};
    // The files of the tree are not on the disk, so no list shows them.
    Grid top(kFileCells), hardlinks(kFileCells), junctions(kJunctionCells);
    ScanContext opening{services,   scan.state,      scan.options, scan.cboOrdner, scan.tvwPL,
                        top,        hardlinks,       junctions,    scan.host,      scan.controls,
                        scan.types, scan.statistics, scan.largest, scan.facts};
    const Row row =
        QuelleEinlesen(opening, AddTrailingSlash(tree.source, scan.paths), kPictureSource, kNoRow);
    if (row == kNoRow || scan.facts->sourceOf(row) == nullptr) return kNoRow;
    Report_ChangePercentValue(scan, row);
    SourceFacts& facts = scan.facts->source(row);
    facts.options = "{}";
    facts.saved = savedAs(scan, tree, row);
    return row;
}

std::string foreignProblemText(const Texts& texts, ForeignProblem problem) {
    switch (problem) {
        case ForeignProblem::kNone:
            break;
        case ForeignProblem::kNoJson:
            return texts.TL(9051, "das JSON ist nicht lesbar oder nicht von ncdu");
        case ForeignProblem::kRecord:
            return texts.TL(9052, "ein Datensatz der Liste ist nicht lesbar");
        case ForeignProblem::kTwice:
            return texts.TL(9053, "ein Pfad hat zwei Datensätze");
    }
    return {};
}

}  // namespace hl
