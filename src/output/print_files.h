// Prints a flat list. Thread of the logic.
#pragma once

#include <string>

#include "output/print_job.h"
#include "platform/window.h"

namespace hl {

/// Shows the preview of the list; nothing happens for one without rows. Reads the list for as long as the
/// preview is open.
void Print_Files(const PrintSources& sources, const std::string& title, Grid& grid, GridId id,
                 const NumberFormat& numbers, Window& window);

}  // namespace hl
