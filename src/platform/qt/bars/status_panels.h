// The status bar with its two panels. Texts that do not fit are cut in the middle, where a path says least.
// For the window's thread.
#pragma once

#include <QLabel>
#include <QStatusBar>

#include "platform/window.h"

namespace hl {

class StatusPanelBar final : public QStatusBar {
  public:
    explicit StatusPanelBar(WindowEvents& events);
    void setPanels(const StatusPanels& panels);

  private:
    class Panel;
    Panel* first_;
    Panel* second_;
};

}  // namespace hl
