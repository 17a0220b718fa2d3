// What printing needs beside the rows, and jobs made of it. Thread of the logic.
#pragma once

#include <string>
#include <string_view>

#include "app/texts.h"
#include "base/number_format.h"
#include "platform/print.h"
#include "platform/system_facts.h"

namespace hl {

/// All of it outlives the jobs.
struct PrintSources {
    const Texts& texts;
    Files& files;
    SystemFacts& facts;
};

/// A text under a title.
PrintJob printedText(const PrintSources& sources, const std::string& title, std::string_view text);

/// The rows of a grid as far as they are unfolded, in the columns that show. The columns must stay as they
/// are for as long as the job is used. REQUIRES: the grid and `numbers` outlive the job.
PrintJob printedGrid(const PrintSources& sources, const std::string& title, const Grid& grid,
                     const NumberFormat& numbers, const GridFont& font);

}  // namespace hl
