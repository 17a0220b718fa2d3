// Measurements of the four lists in a window. Each prints lines of a name and a number.
#pragma once

#include <string>

#include "mainwindow/window_form.h"

namespace hl::bench {

/// Seconds of a run that fills the three lists that a run can fill, or none of them; rows of each.
void lists(WindowForm& form, const std::string& tree, bool all);
/// Seconds until the files of one folder stand sorted, bytes of a row, and seconds of a sort by each title.
void files(WindowForm& form, const std::string& folder);
/// The longest times in milliseconds that input waited meanwhile.
void fileClicks(WindowForm& form, const std::string& folder);
/// Seconds to bring the names of each file together, among 200,000.
void analyse(WindowForm& form);

}  // namespace hl::bench
