// The status bar with its two panels, and buttons for what the panels speak of. Texts that do not fit are cut
// in the middle, where a path says least. For the window's thread.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <map>
#include <vector>

#include "platform/window.h"

namespace hl {

class StatusPanelBar final : public QStatusBar {
  public:
    /// A click on a button is a click on the entry of the main bar that it stands for.
    StatusPanelBar(WindowEvents& events, BarEvents& barEvents);
    void setPanels(const StatusPanels& panels);

  private:
    class Panel;

    void setButtons(const std::vector<StatusButton>& buttons);
    void addButton(const StatusButton& added);
    void shareWidth(const StatusPanels& panels);

    WindowEvents& events_;
    BarEvents& barEvents_;
    Panel* first_;
    Panel* second_;
    std::map<int, QPushButton*>
        buttons_;  ///< By the ids of their entries; those that do not show are hidden.
    int largerBy_ = 0;
};

}  // namespace hl
