// What the program writes to a terminal: help, version, and what is wrong with a command line. Pure
// functions.
#pragma once

#include <string>

#include "app/command_line.h"
#include "app/texts.h"

namespace hl {

/// Every line, the last one too, ends in "\n".
std::string usageText(const Texts& texts);
/// Returns "Harborlantern 1.2.0" and a line end.
std::string versionText();
/// Returns one line without a line end, or an empty text if there is no problem. Control characters in the
/// argument are made visible.
std::string problemText(const Texts& texts, const JoinedLine& line);

}  // namespace hl
