// Prints a flat list. For the thread of the logic.
#pragma once

#include <string>

#include "output/print_job.h"
#include "platform/window.h"

namespace hl {

/// Shows the print preview of the list, unless it has no rows. The list is read for as long as the preview is
/// open.
void Print_Files(const Services& services, const std::string& title, Grid& grid, GridId id,
                 const Window& window);

}  // namespace hl
