// The preview in the main window: it follows the visible list. For the thread of the logic.
#pragma once

#include <string>

#include "views/preview.h"

namespace hl {

struct MainForm;
struct Window;

class PreviewControl final : private PreviewHost {
  public:
    explicit PreviewControl(MainForm& form);

    /// Tells that the window and its pane exist; null tells that they no longer do.
    void setWindow(const Window* window);
    void Preview_ShowFile(bool force) { preview_.Preview_ShowFile(force); }
    void Preview_Reset_View() { preview_.Preview_Reset_View(); }

  private:
    bool previewShows() override;
    std::string selectedFile() override;

    MainForm& form_;
    Preview preview_;
};

}  // namespace hl
