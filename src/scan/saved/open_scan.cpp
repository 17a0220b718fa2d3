#include "scan/saved/open_scan.h"

#include <algorithm>
#include <vector>

#include "robustness/api_error_text.h"
#include "scan/not_read.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/yield.h"

namespace hl {

namespace {

/// As the walk does it for folders of the disk.
class Opening {
  public:
    Opening(ScanContext& scan, const ScanFile& file)
        : scan_(scan),
          file_(file),
          records_(file),
          filesText_(scan.tvwPL.keepText(scan.texts.TL(3514, "Dateien"))),
          yield_(scan.state, scan.pump) {
        if (scan.statistics == nullptr) return;
        for (const std::string& ending : file.scan->endings)
            endings_.push_back(scan.statistics->endings().ofEnding(ending));
    }

    Row run() {
        while (records_.next(record_)) {
            yield_.perEntry();
            if (scan_.state.CancelState == kCancelStop) return drop();
            enter();
            while (!levels_.empty() && levels_.back().left == 0) leave();
        }
        scan_.state.lastTotals = totals_;
        if (scan_.statistics != nullptr) scan_.statistics->pack();
        return source_;
    }

  private:
    struct Level {
        Row row = kNoRow;
        std::uint64_t left = 0;  ///< Folders that are still to come.
        ScanTotals files, below;
        FolderCells cells;
        std::uint32_t firstCell = 0;
    };

    Row drop() {
        scan_.tvwPL.removeRow(source_);
        scan_.facts->dropSource(source_);
        if (scan_.statistics != nullptr) scan_.statistics->dropSource(source_);
        return kNoRow;
    }

    void enter();
    Row addSource();
    Row addFolder();
    void show(Row row);
    void noteFacts(Row row);
    void addCells(Level& level);
    void leave();

    ScanContext& scan_;
    const ScanFile& file_;
    ScanRecords records_;
    const TextRef filesText_;
    Yield yield_;
    std::vector<std::uint32_t> endings_;  ///< The numbers of the statistics, by place.
    ScanRecord record_;
    std::vector<Level> levels_;
    Row source_ = kNoRow;
    ScanTotals totals_;
};

void Opening::enter() {
    const Row row = levels_.empty() ? addSource() : addFolder();
    noteFacts(row);
    show(row);
    Level& level = levels_.emplace_back();
    level.row = row;
    level.left = record_.children;
    level.files.files = static_cast<std::int32_t>(record_.own.files);
    level.files.size = SizeValue::fromBytes(record_.own.bytes);
    level.files.disk = SizeValue::fromBytes(record_.own.blocks * kBlockBytes);
    level.files.newest = record_.newest;
    if (scan_.statistics == nullptr) return;
    level.firstCell = scan_.statistics->place();
    addCells(level);
}

Row Opening::addSource() {
    const ScanHeader& header = file_.scan->header;
    const std::string& path = header.source;
    Grid& report = scan_.tvwPL;
    source_ = report.addRow(kNoRow,
                            path.size() > 1 && path.ends_with('/') ? path.substr(0, path.size() - 1) : path);
    report.setPicture(source_, kPictureSource);
    report.setExpanded(source_, true);
    report.setNumber(source_, kPercent, 100);
    if (scan_.largest != nullptr) scan_.largest->dropSource(source_);
    if (scan_.statistics != nullptr) {
        scan_.statistics->dropSource(source_);
        scan_.statistics->keepSource(source_, header.started);
    }
    scan_.facts->source(source_) = {.started = header.started,
                                    .ended = header.ended,
                                    .device = header.device,
                                    .stopped = (record_.flags & kScanStopped) != 0,
                                    .options = header.options,
                                    .saved = file_.scan};
    return source_;
}

Row Opening::addFolder() {
    Grid& report = scan_.tvwPL;
    const Row row = report.addRow(levels_.back().row, record_.name);
    if (scan_.statistics != nullptr) scan_.statistics->forget(row);
    Report_Shade(scan_, row);
    scan_.state.DeepestLevel = std::max(scan_.state.DeepestLevel, report.level(row));
    report.setPicture(row, kPictureFolder);
    ++levels_.back().below.folders;
    --levels_.back().left;
    return row;
}

void Opening::noteFacts(Row row) {
    const bool created = (record_.flags & kScanCreated) != 0;
    scan_.facts->begin(row, {record_.inode, created ? record_.created : RowIdentity::kNoTime});
    if ((record_.flags & ~std::uint32_t{kScanCreated}) == 0) return;
    RareFacts& rare = scan_.facts->rare(row);
    rare.device = record_.device;
    if ((record_.flags & kScanError) != 0) rare.error = scan_.files.errorOf(static_cast<int>(record_.error));
    if ((record_.flags & kScanLeftOut) != 0)
        rare.rule = record_.rule == 0 ? LeaveOut::kCacheTag : static_cast<std::int32_t>(record_.rule) - 1;
    rare.stopped = (record_.flags & kScanStopped) != 0;
}

// Of a link the file does not tell where it leads, and of a snapshot not of what.
void Opening::show(Row row) {
    Grid& report = scan_.tvwPL;
    report.setNumber(row, kIsFolder, 1);
    if (scan_.options.FolderShowPercentBar == 1 && row == source_) report.setBarPicture(row, 100);
    const auto has = [&](ScanFlag flag) { return (record_.flags & flag) != 0; };
    if (has(kScanLink)) report.setPicture(row, kPictureLink);
    if (has(kScanMount)) report.setPicture(row, kPictureMountPoint);
    if (has(kScanSnapshot)) report.setPicture(row, kPictureSnapshot);
    if (has(kScanStopped)) Report_MarkIncomplete(scan_, row);
    if (has(kScanLeftOut)) {
        report.setPicture(row, kPictureLeftOut);
        report.setRowNote(row, scan_.texts.TL(9039, "durch eine Regel ausgelassen"));
        if (!levels_.empty()) ++levels_.back().below.leftOut.folders;
    }
    if (!has(kScanError)) return;
    report.setPicture(row, kPictureAccessError);
    report.setRowNote(row, ApiErrorText(true, *scan_.facts->rareOf(row)->error));
}

void Opening::addCells(Level& level) {
    for (const ScanCell& cell : record_.cells) {
        const std::uint32_t ending =
            cell.ending < kFirstEnding ? cell.ending : endings_[cell.ending - kFirstEnding];
        scan_.statistics->addCell(level.cells,
                                  {ending, cell.age, file_.scan->owners[cell.owner].first, cell.sums});
    }
}

void Opening::leave() {
    Level level = std::move(levels_.back());
    levels_.pop_back();
    Grid& report = scan_.tvwPL;
    if (report.hasChildren(level.row)) Report_AddFilesRow(scan_, level.row, level.files, filesText_);
    report.setMark(level.row, static_cast<std::uint32_t>(level.below.errors));
    addTotals(level.below, level.files);
    if (scan_.statistics != nullptr) scan_.statistics->leave(level.row, level.firstCell, level.cells);
    Report_SetTotals(report, level.row, level.below);
    Report_ChangePercentValue(scan_, level.row);
    if (isNotRead(report, level.row)) ++level.below.errors;
    if (levels_.empty())
        totals_ = level.below;
    else
        addTotals(levels_.back().below, level.below);
}

}  // namespace

Row openSavedScan(ScanContext& scan, const ScanFile& file) {
    return Opening(scan, file).run();
}

const SavedScan* savedScanOf(const ScanContext& scan, Row row) {
    if (scan.facts == nullptr || row == kNoRow) return nullptr;
    const SourceFacts* source = scan.facts->sourceOf(scan.tvwPL.rootOf(row));
    return source == nullptr ? nullptr : source->saved.get();
}

std::string hostOf(const ScanContext& scan, Row row) {
    const SavedScan* saved = savedScanOf(scan, row);
    return saved == nullptr ? scan.machine : saved->header.host;
}

std::string scanProblemText(const Texts& texts, ScanProblem problem) {
    switch (problem) {
        case ScanProblem::kNone:
            break;
        case ScanProblem::kNoScan:
            return texts.TL(9030, "kein gespeicherter Scan");
        case ScanProblem::kLaterVersion:
            return texts.TL(9031, "von einer späteren Version geschrieben");
        case ScanProblem::kCut:
            return texts.TL(9032, "die Datei ist abgeschnitten");
        case ScanProblem::kAltered:
            return texts.TL(9033, "die Datei wurde verändert");
        case ScanProblem::kHeader:
            return texts.TL(9034, "die erste Zeile ist nicht lesbar");
        case ScanProblem::kFolder:
            return texts.TL(9035, "ein Ordner oder eine Tabelle darin ist nicht lesbar");
        case ScanProblem::kIndex:
            return texts.TL(9036, "etwas darin verweist auf etwas, das fehlt");
        case ScanProblem::kTooLarge:
            return texts.TL(9037, "eine Zahl oder Summe darin ist zu groß");
        case ScanProblem::kSums:
            return texts.TL(9038, "die Summen der Ordner stimmen nicht mit denen der Datei überein");
    }
    return {};
}

}  // namespace hl
