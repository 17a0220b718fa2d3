// What the tooltip of a cell tells besides the cell's text. For the thread of the logic.
#pragma once

#include <string>

#include "app/services.h"
#include "grid/grid.h"

namespace hl {

/// Returns a size, or a difference of sizes, in all units, a line for each. What is taken on the disk also
/// tells if the file system counts it before it compresses. Of a drive, its sizes and bars also tell what is
/// reserved. Empty for a cell without a text, and for all others. `onDisk` tells whether the row's file
/// system can be asked. REQUIRES: the column exists.
std::string cellTip(const Grid& grid, std::size_t column, Row row, const Services& services,
                    bool onDisk = true);

}  // namespace hl
