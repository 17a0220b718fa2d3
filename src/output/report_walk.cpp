// In the loop, parents_ always has one length for each level, from the start's children to the current row.
#include "output/report_walk.h"

#include "base/date_format.h"
#include "robustness/trap.h"
#include "scan/on_disk.h"
#include "scan/records.h"

namespace hl {

namespace {

// A size below 0 is out of range, as is one that is too large.
double sizeOf(const Grid& grid, Row row, CellId cell) {
    const auto bytes = static_cast<std::int64_t>(grid.number(row, cell));
    return static_cast<double>(SizeValue::fromBytes(static_cast<std::uint64_t>(bytes)).bytes());
}

}  // namespace

ReportWalk::ReportWalk(const Grid& tvwPL, const PathRules& paths, const ReportWriter& writer,
                       ReportFile& file, Yield& yield, Diagnostics& diagnostics,
                       const std::string* datePicture)
    : tvwPL_(tvwPL),
      paths_(paths),
      writer_(writer),
      file_(file),
      yield_(yield),
      diagnostics_(diagnostics),
      datePicture_(datePicture),
      fields_(datePicture == nullptr ? kUsualFields : kAllFields) {}

void ReportWalk::writeTree(Row start, std::int32_t levels) {
    path_.clear();
    writer_.appendText(path_, tvwPL_.text(start));
    writeLine(start, true);
    if (descends(start, levels)) TreeViewSpeichernR(start, levels);
}

// An error ends its level and those below it; the walk goes on above.
void ReportWalk::TreeViewSpeichernR(Row start, std::int32_t levels) {
    parents_.assign(1, path_.size());
    Row row = tvwPL_.firstChild(start);
    while (row != kNoRow) {
        const bool whole = guarded(diagnostics_, {.module = "frmSave"}, [&] {
            writeFrom(row, start, levels);
            return true;
        });
        if (whole) return;
        row = behindLevelOf(row, start);
    }
}

void ReportWalk::writeFrom(Row& row, Row start, std::int32_t levels) {
    while (row != kNoRow && file_.isFine()) {
        yield_.perEntry();
        if (isGone(tvwPL_, row)) {
            row = behind(row, start);
            continue;
        }
        const bool folder = tvwPL_.number(row, kIsFolder) == 1;
        appendToPath(row, folder);
        writeLine(row, folder);
        if (folder && descends(row, levels)) {
            parents_.push_back(path_.size());
            row = tvwPL_.firstChild(row);
        } else {
            row = behind(row, start);
        }
    }
}

bool ReportWalk::descends(Row row, std::int32_t levels) const {
    if (!tvwPL_.hasChildren(row)) return false;
    return levels == 0 ? tvwPL_.expanded(row) : std::int64_t{tvwPL_.level(row)} < levels;
}

// Returns the row that follows `row` and everything below it; kNoRow if there is none below `start`.
Row ReportWalk::behind(Row row, Row start) {
    while (tvwPL_.nextSibling(row) == kNoRow) {
        row = tvwPL_.parent(row);
        parents_.pop_back();
        if (row == start) return kNoRow;
    }
    return tvwPL_.nextSibling(row);
}

Row ReportWalk::behindLevelOf(Row row, Row start) {
    const Row parent = tvwPL_.parent(row);
    parents_.pop_back();
    return parent == start ? kNoRow : behind(parent, start);
}

void ReportWalk::appendToPath(Row row, bool folder) {
    path_.resize(parents_.back());
    if (!path_.ends_with(paths_.separator)) path_ += paths_.separator;
    if (!folder) path_ += '[';
    writer_.appendText(path_, tvwPL_.text(row));
    if (!folder) path_ += ']';
}

void ReportWalk::fillSpace(Row row) {
    fields_[kDiskField].number = sizeOf(tvwPL_, row, kDisk);
    const auto newest = static_cast<std::int64_t>(tvwPL_.number(row, kNewest));
    newest_ = newest == 0 ? "" : formatDate(localTime(newest), *datePicture_);
    fields_[kNewestField].text = newest_;
}

// The row of a folder's own files counts no folders.
void ReportWalk::writeLine(Row row, bool folder) {
    fields_[kPathField].text = path_;
    fields_[kSizeField].number = sizeOf(tvwPL_, row, kSize);
    fields_[kFilesField].number = tvwPL_.number(row, kFiles);
    fields_[kFoldersField].number = folder ? tvwPL_.number(row, kFolders) : 0;
    if (datePicture_ != nullptr) fillSpace(row);
    writer_.row(file_.block(), fields_);
    file_.endLine();
    ++rowsWritten_;
}

}  // namespace hl
