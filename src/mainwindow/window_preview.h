// The preview of the main form, which follows the visible list. For the thread of the logic.
#pragma once

#include <array>
#include <string>

#include "mainwindow/panes.h"
#include "views/preview.h"

namespace hl {

class WindowPreview final : private PreviewHost {
  public:
    /// What the preview works with; all of it outlives it.
    struct Parts {
        const Panes& panes;
        const std::array<Grid*, kGridCount>& grids;
        const ScanState& state;
        const Texts& texts;
        Log& log;
        Diagnostics& diagnostics;
    };
    explicit WindowPreview(const Parts& parts)
        : parts_(parts), preview_(*this, parts.texts, parts.log, parts.diagnostics) {}

    /// Tells that the window and its pane exist; null tells that they no longer do.
    void setWindow(const Window* window);
    void Preview_ShowFile(bool force) { preview_.Preview_ShowFile(force); }
    void Preview_Reset_View() { preview_.Preview_Reset_View(); }

  private:
    bool previewShows() override;
    std::string selectedFile() override;

    Parts parts_;
    Preview preview_;
};

}  // namespace hl
