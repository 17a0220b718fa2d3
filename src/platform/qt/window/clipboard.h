// The clipboard: files for a file manager, and a text that outlives the process. For the window's thread.
#pragma once

#include "platform/clipboard.h"

namespace hl {

class WindowClipboard final : public Clipboard {
  public:
    /// `holder` is the program that takes a text over on X when this process ends (clipboard_main.cpp).
    explicit WindowClipboard(std::string holder) : holder_(std::move(holder)) {}

    void copyText(const std::string& text) override;
    /// As text, the clipboard gets the paths, one per line.
    void copyFiles(const std::vector<std::string>& paths) override;
    /// On X and Wayland a text belongs to the process that copied it: on X, the holder takes it over; on
    /// Wayland, where only the active program may copy, "wl-copy" does that if it is installed, or else the
    /// desktop gets time to fetch the text.
    void leaveText(const std::string& text) override;

  private:
    std::string holder_;
};

}  // namespace hl
