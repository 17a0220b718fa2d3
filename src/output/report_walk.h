// Walks over the rows of a report, down to the wanted level, and knows the path of each. For the thread of
// the logic.
//
// It needs no stack for the depth, and looks at no row below the wanted levels. No row may be added or
// removed meanwhile.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/path.h"
#include "grid/grid.h"
#include "output/report_file.h"
#include "output/report_writer.h"
#include "robustness/debug.h"
#include "scan/yield.h"

namespace hl {

/// The fields of a report's row, in the order in which they are handed to a writer.
/// Those behind kUsualFields are there if the order wants them.
enum ReportFieldIndex : std::size_t {
    kPathField,
    kSizeField,
    kFilesField,
    kFoldersField,
    kUsualFields,
    kDiskField = kUsualFields,
    kNewestField,
    kAllFields,
};

class ReportWalk {
  public:
    /// All arguments must outlive it. With a `datePicture` (for formatDate) there are the fields for the
    /// space on the disk and the newest change, too; it may be null. REQUIRES: the grid has kFolderCells.
    ReportWalk(const Grid& tvwPL, const PathRules& paths, const ReportWriter& writer, ReportFile& file,
               Yield& yield, Diagnostics& diagnostics, const std::string* datePicture);

    /// Writes the row and what is below it, down to the grid's level `levels` (sources have level 0, whatever
    /// `start` is); with 0, as far as rows are unfolded. The row itself is always written, with its text
    /// alone as its path. It ends early after an error of the file.
    void writeTree(Row start, std::int32_t levels);

    std::uint64_t rowsWritten() const { return rowsWritten_; }

  private:
    void TreeViewSpeichernR(Row start, std::int32_t levels);
    void writeFrom(Row& row, Row start, std::int32_t levels);
    bool descends(Row row, std::int32_t levels) const;
    Row behind(Row row, Row start);
    Row behindLevelOf(Row row, Row start);
    void appendToPath(Row row, bool folder);
    void writeLine(Row row, bool folder);
    void fillSpace(Row row);

    const Grid& tvwPL_;
    const PathRules& paths_;
    const ReportWriter& writer_;
    ReportFile& file_;
    Yield& yield_;
    Diagnostics& diagnostics_;
    std::string path_;                  ///< The path of the current row, as the report shows it.
    std::vector<std::size_t> parents_;  ///< For each level, how many of its bytes are the path of the row's
                                        ///< parent.
    const std::string* datePicture_;
    std::string newest_;
    ReportRow fields_;
    std::uint64_t rowsWritten_ = 0;
};

}  // namespace hl
