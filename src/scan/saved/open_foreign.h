// Makes the rows of what another program has found. For the thread of the logic; messages run meanwhile.
#pragma once

#include "scan/saved/foreign_tree.h"
#include "scan/scan_context.h"

namespace hl {

/// Adds the tree as a source, as if it were read from a disk, and returns its row; kNoRow if an error of the
/// program broke it off, which was reported. The caller sorts the report. REQUIRES: the report's facts are
/// kept (ScanContext).
Row openForeignTree(ScanContext& scan, const ForeignTree& tree);

/// Says why a text cannot be read.
std::string foreignProblemText(const Texts& texts, ForeignProblem problem);

}  // namespace hl
