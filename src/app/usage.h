// What the program answers on a terminal: help, version, and what is wrong with a command line.
#pragma once

#include <string>

#include "app/command_line.h"
#include "app/texts.h"

namespace hl {

/// Lines that end in "\n", the last one too.
std::string usageText(const Texts& texts);
/// "Harborlantern 1.2.0" and a line end.
std::string versionText();
/// One line without an end; empty if there is no problem. Control characters of the argument are visible.
std::string problemText(const Texts& texts, const JoinedLine& line);

}  // namespace hl
