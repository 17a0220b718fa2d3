// Shows in the report what has changed in a source since an earlier scan: the cells kBefore and kChange of
// its rows, and a grey row for each tree that is gone. These rows have no size, count in no sum, and are not
// on the disk (scan/on_disk.h). For the thread of the logic only.
#pragma once

#include "scan/saved/compare.h"
#include "scan/scan_context.h"

namespace hl {

struct ReportComparison {
    FolderList after;     ///< The source as it is now; the places in `changes` are those of its folders.
    ScanChanges changes;  ///< Against the earlier list.
    double largest = 0;   ///< The change of the most bytes, without its sign, that a row shows.
};

/// Compares the source with `before` and shows the changes in its rows. It is the caller's to sort the
/// report. REQUIRES: the report's facts are kept (ScanContext), and the source shows no changes.
ReportComparison showChanges(ScanContext& scan, Row source, const FolderList& before);

/// Removes the grey rows below the source; the cells stay as they are.
void removeGoneRows(Grid& report, Row source);
/// Gives back the memory of the cells.
void dropChangeCells(Grid& report);

}  // namespace hl
