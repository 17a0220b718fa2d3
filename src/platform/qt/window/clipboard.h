// The clipboard: files for a file manager, and a text that outlives the process. For the window's thread.
#pragma once

#include <string>
#include <vector>

namespace hl {

/// Puts files on the clipboard, for pasting into a file manager; as text, these are their paths, one per
/// line.
void copyFilesToClipboard(const std::vector<std::string>& paths);

/// Puts `text` on the clipboard so that it can be pasted even after this process has ended; returns when that
/// is so, or after some seconds. On X and Wayland a text belongs to the process that copied it: on X,
/// `holder` is the program that takes it over (clipboard_main.cpp); on Wayland, where only the active program
/// may copy, "wl-copy" does that if it is installed, or else the desktop gets time to fetch the text.
void leaveOnClipboard(const std::string& text, const std::string& holder);

}  // namespace hl
