// Measures what the window does to files. Each function prints lines of a name and a number.
#pragma once

#include <string>

#include "mainwindow/window_form.h"

namespace hl::bench {

/// Deletes FOLDER, which is alone in its folder, from the report and measures the seconds, the longest times
/// in milliseconds that input waited meanwhile, and the mebibytes by which the process grew at its peak.
void deleteFolder(WindowForm& form, const std::string& folder);
/// Measures the milliseconds from a click of the right button on the first row of the report, of the drives
/// and of the files until the menu is painted; FOLDER is the source.
void menus(WindowForm& form, const std::string& folder);

}  // namespace hl::bench
