#include "output/report_order.h"

#include <array>
#include <utility>

#include "base/date_format.h"
#include "base/size_text.h"
#include "base/text.h"
#include "output/report_file.h"
#include "output/report_walk.h"
#include "robustness/trap.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/yield.h"

namespace hl {

ReportOrder orderOf(const SilentOrder& line) {
    const auto delimiter = static_cast<std::size_t>(line.delimiterIndex);
    return {.path = line.outputFile,
            .format = formatNamed(line.format),
            .scope = kAllFolders,
            .levels = line.levels == 0 ? kAllLevels : line.levels,
            .delimiter = delimiter < kDelimiters.size() ? kDelimiters[delimiter] : '\t'};
}

DebugValues ReportRun::values() const {
    const bool isText = order.format != nullptr && order.format == &reportFormats()[kFormatTxt];
    return {"path=" + visible(order.path),
            "scope=" + std::to_string(order.scope),
            "levels=" + std::to_string(order.levels),
            "delimiter=" + std::to_string(order.delimiter),
            "start=" + std::to_string(std::int64_t{start_}),
            "IsTextFormat=" + std::to_string(isText),
            "FileSizeFormat=" + std::to_string(sizeMode_),
            "decimals=" + std::to_string(decimals_),
            "rows=" + std::to_string(rows_),
            "written=" + std::to_string(written_)};
}

void ReportRun::findStart() {
    const Grid& report = scan_.tvwPL;
    if (order.scope != kSelectedFolder)
        start_ = report.firstRoot();
    else if (const auto selected = report.selectedRows(); !selected.empty())
        start_ = isGone(report, selected.front()) ? report.parent(selected.front()) : selected.front();
    if (start_ == kNoRow)
        throw Fault(kFaultInvalidCall, kSaveRoutine, "Nothing was read: there is no row to save");
}

ReportOutcome commitReport(ReportFile& file, const ReplacingFile& target) {
    const Result<> committed = file.commit();
    ReportOutcome outcome{.written = bool{committed}, .leftBehind = target.leftBehind()};
    if (!committed) outcome.error = committed.error();
    return outcome;
}

ReportOutcome ReportRun::write(Files& files) {
    takeLayout();
    const auto target = files.replace(order.path);
    return target ? writeRows(**target) : ReportOutcome{.error = target.error()};
}

ReportOutcome ReportRun::write(ReplacingFile& target) {
    takeLayout();
    return writeRows(target);
}

void ReportRun::takeLayout() {
    if (order.format == nullptr) order.format = &formatOfFile(order.path);
    sizeMode_ = scan_.options.FileSizeFormat;
    decimals_ = scan_.options.SizeFormatNachkommastellenFolders;
}

// The start row alone decides the widths. Those of the counts are measured in the mode of the sizes, which
// makes them too small; a number wider than its column is not cut.
ReportTable ReportRun::table(bool forTerminal) const {
    const Texts& texts = scan_.texts;
    const NumberFormat& numbers = scan_.numbers;
    const auto cell = [&](FolderCell id) {
        const auto value = static_cast<std::int64_t>(scan_.tvwPL.number(start_, id));
        return SizeValue::fromBytes(static_cast<std::uint64_t>(value));
    };
    const auto countWidth = [&](FolderCell id) {
        return characterCount(FormatSizeForMode(sizeMode_, cell(id), false, false, numbers));
    };
    const auto sizeWidth = [&](FolderCell id) {
        return characterCount(xFormatFileSizeWithSpacer(sizeMode_, cell(id), 1, false, decimals_, numbers));
    };
    const std::string unit(sizeUnit(sizeMode_).reportTitle);
    ReportTable table{.isTree = true,
                      .delimiter = order.delimiter,
                      .forTerminal = forTerminal,
                      .sizeMode = sizeMode_,
                      .decimals = decimals_};
    table.columns.resize(order.withSpace ? kAllFields : kUsualFields);
    table.columns[kPathField] = {texts.TL(3626, "Pfad")};
    table.columns[kSizeField] = {texts.TL(3623, "Größe") + unit, FieldKind::kSize, sizeWidth(kSize)};
    table.columns[kFilesField] = {texts.TL(3624, "Dateien"), FieldKind::kCount, countWidth(kFiles)};
    table.columns[kFoldersField] = {texts.TL(3625, "Ordner"), FieldKind::kCount, countWidth(kFolders)};
    if (!order.withSpace) return table;
    table.columns[kDiskField] = {texts.TL(9821, "Auf Datenträger") + unit, FieldKind::kSize,
                                 sizeWidth(kDisk)};
    const std::string date = formatDate(localTime(secondsNow()), scan_.options.DateFormat);
    table.columns[kNewestField] = {texts.TL(9824, "Neueste Änderung"), FieldKind::kText,
                                   characterCount(date)};
    return table;
}

ReportOutcome ReportRun::writeRows(ReplacingFile& target) {
    const auto writer = order.format->writer(table(target.isTerminal()), scan_.numbers);
    ReportFile file(target);
    writer->begin(file.block());

    const std::uint32_t errorsBefore = scan_.diagnostics.errcount();
    Yield yield(scan_.state, scan_.pump);
    const std::string* dates = order.withSpace ? &scan_.options.DateFormat : nullptr;
    ReportWalk walk(scan_.tvwPL, scan_.paths, *writer, file, yield, scan_.diagnostics, dates);
    for (Row root = start_; root != kNoRow && file.isFine(); root = scan_.tvwPL.nextSibling(root)) {
        walk.writeTree(root, order.levels);
        rows_ = walk.rowsWritten();
        if (order.scope == kSelectedFolder) break;
    }
    writer->end(file.block());
    const bool whole = scan_.diagnostics.errcount() == errorsBefore;
    if (!whole) return {.leftBehind = target.leftBehind()};
    ReportOutcome outcome = commitReport(file, target);
    written_ = outcome.written;
    return outcome;
}

ReportOutcome SPEICHERN(ScanContext& scan, const ReportOrder& order, ReplacingFile& target) {
    ReportRun run(scan, order);
    const auto body = [&] {
        run.findStart();
        return run.write(target);
    };
    return guarded(scan.diagnostics, {.module = "frmSave"}, body, [&] { return run.values(); });
}

}  // namespace hl
