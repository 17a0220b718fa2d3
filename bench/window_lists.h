// Measures the lists in a window. Each function prints lines of a name and a number.
#pragma once

#include <string>

#include "mainwindow/window_form.h"

namespace hl::bench {

/// Measures the seconds of a run that fills the three lists that a run can fill, or none of them, and counts
/// the rows of each.
void lists(WindowForm& form, const std::string& tree, bool all);
/// Measures the seconds until the files of one folder are sorted, the bytes of a row, and the seconds of a
/// sort by each title.
void files(WindowForm& form, const std::string& folder);
/// Measures the longest times in milliseconds that input waits while the files of a folder are listed.
void fileClicks(WindowForm& form, const std::string& folder);
/// Measures the bytes that statistics take for each folder row of a tree, the seconds of a sum over all of
/// them, and those of sums over made rows.
void statistics(WindowForm& form, const std::string& tree);
/// Measures the seconds to bring the names of each file together, among 200,000.
void analyse(WindowForm& form);

}  // namespace hl::bench
