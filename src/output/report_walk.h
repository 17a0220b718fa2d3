// The way over the rows of a report: each with its path, as far down as wanted.
//
// It takes no stack for depth, and looks at no row below the levels that are asked for. Rows must neither
// come nor go meanwhile.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/path.h"
#include "grid/grid.h"
#include "output/report_file.h"
#include "output/report_lines.h"
#include "robustness/debug.h"
#include "scan/yield.h"

namespace hl {

class ReportWalk {
  public:
    /// All that is passed must outlive it. REQUIRES: the grid has kFolderCells.
    ReportWalk(const Grid& tvwPL, const PathRules& paths, const ReportLines& lines, ReportFile& file,
               Yield& yield, Diagnostics& diagnostics);

    /// Writes the row and what is below it, down to the rows of the level `levels`; with 0 as far as rows are
    /// unfolded. Levels are those of the grid, not counted from `start`: sources have level 0. The row itself
    /// is written at any level, and its path is its text alone. Ends early after an error of the file.
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

    const Grid& tvwPL_;
    const PathRules& paths_;
    const ReportLines& lines_;
    ReportFile& file_;
    Yield& yield_;
    Diagnostics& diagnostics_;
    std::string path_;                  ///< Of the row in work, as the report holds it.
    std::vector<std::size_t> parents_;  ///< How much of it is the path of the row's parent, for each level.
    std::uint64_t rowsWritten_ = 0;
};

}  // namespace hl
