// What the status bar tells of several selected rows of the report. For the thread of the logic.
#pragma once

#include <string>

#include "app/options.h"
#include "app/texts.h"
#include "base/number_format.h"
#include "grid/grid.h"

namespace hl {

/// Returns the sum of the selected rows' sizes, its share of the folder that has them all, and their numbers
/// of files and folders. What lies below another selected row counts once. REQUIRES: a row is selected.
std::string selectionSum(const Grid& tvwPL, const Options& options, const Texts& texts,
                         const NumberFormat& numbers);

}  // namespace hl
