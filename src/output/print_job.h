// Makes print jobs, and holds what printing needs besides the rows. For the thread of the logic.
#pragma once

#include <string>
#include <string_view>

#include "app/services.h"
#include "platform/print.h"

namespace hl {

/// Makes a job that prints a text under a title.
PrintJob printedText(const Texts& texts, Files& files, const std::string& title, std::string_view text);

/// Makes a job that prints a drawing, an SVG file, as large as a page allows.
PrintJob printedPicture(const Texts& texts, Files& files, const std::string& title, std::string svg);

/// Makes a job that prints the unfolded rows of a grid in its visible columns. The columns must not change
/// while the job is used. REQUIRES: the grid and what `services` names outlive the job.
PrintJob printedGrid(const Services& services, const std::string& title, const Grid& grid,
                     const GridFont& font);

}  // namespace hl
