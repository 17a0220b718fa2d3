// The clipboard: files for a file manager, and a text that outlives the process.
#pragma once

#include <string>
#include <vector>

namespace hl {

/// Puts files on the clipboard, for pasting into a file manager; as text, their paths, one a line.
void copyFilesToClipboard(const std::vector<std::string>& paths);

/// Puts `text` on the clipboard, to be pasted also when this process has ended, and returns when that is so,
/// or after some seconds. X and Wayland leave a text with the process that copied it: `holder` is the program
/// that takes it over on X (clipboard_main.cpp); on Wayland, where only the program in use may copy,
/// "wl-copy" does it if it is installed, and else the desktop gets the time to fetch the text.
void leaveOnClipboard(const std::string& text, const std::string& holder);

}  // namespace hl
