#include "scan/not_read.h"

#include <limits>

namespace hl {

std::uint32_t foldersNotRead(const Grid& report) {
    std::uint32_t sum = 0;
    for (Row root = report.firstRoot(); root != kNoRow; root = report.nextSibling(root))
        sum += foldersNotRead(report, root);
    return sum;
}

std::vector<Row> rowsNotRead(const Grid& report, std::size_t most) {
    std::vector<Row> found;
    std::vector<Row> open;
    // The children of a row come behind it and before its next sibling.
    for (Row row = report.firstRoot(); row != kNoRow && found.size() < most;) {
        if (isNotRead(report, row)) found.push_back(row);
        if (report.mark(row) > 0 && report.hasChildren(row)) {
            open.push_back(row);
            row = report.firstChild(row);
            continue;
        }
        row = report.nextSibling(row);
        while (row == kNoRow && !open.empty()) {
            row = report.nextSibling(open.back());
            open.pop_back();
        }
    }
    return found;
}

bool isIncomplete(const Grid& report) {
    for (const Row row : rowsNotRead(report, std::numeric_limits<std::size_t>::max()))
        if (report.picture(row) == kPictureIncomplete) return true;
    return false;
}

}  // namespace hl
