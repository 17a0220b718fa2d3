// Makes print jobs, and holds what printing needs besides the rows. For the thread of the logic.
#pragma once

#include <string>
#include <string_view>

#include "app/texts.h"
#include "base/number_format.h"
#include "platform/print.h"
#include "platform/system_facts.h"

namespace hl {

/// What the jobs use; everything outlives them.
struct PrintSources {
    const Texts& texts;
    Files& files;
    SystemFacts& facts;
};

/// Makes a job that prints a text under a title.
PrintJob printedText(const PrintSources& sources, const std::string& title, std::string_view text);

/// Makes a job that prints the unfolded rows of a grid in its visible columns. The columns must not change
/// while the job is used. REQUIRES: the grid and `numbers` outlive the job.
PrintJob printedGrid(const PrintSources& sources, const std::string& title, const Grid& grid,
                     const NumberFormat& numbers, const GridFont& font);

}  // namespace hl
