// The folders of the report that were not read, or not wholly. Their rows have a picture of their own and the
// reason as their note; each row above them counts them in its mark. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <vector>

#include "grid/grid.h"
#include "scan/records.h"

namespace hl {

inline bool isNotRead(const Grid& report, Row row) {
    const int picture = report.picture(row);
    return picture == kPictureAccessError || picture == kPictureIncomplete;
}

/// Returns how many folders, the row's own and all below it, were not read.
inline std::uint32_t foldersNotRead(const Grid& report, Row row) {
    return report.mark(row) + (isNotRead(report, row) ? 1U : 0U);
}

/// Returns how many folders of the whole report were not read.
std::uint32_t foldersNotRead(const Grid& report);

/// Returns the rows of folders that were not read, in the order of the report, `most` at most. The cost is
/// that of the rows that have a mark and of those directly below them.
std::vector<Row> rowsNotRead(const Grid& report, std::size_t most);

/// Tells whether the reading of a source, or of a folder in it, was stopped.
bool isIncomplete(const Grid& report);

}  // namespace hl
