// The status bar of the main window. For the thread of the logic only.
#pragma once

#include <string>

#include "platform/window.h"

namespace hl {

struct MainForm;

class StatusLine {
  public:
    explicit StatusLine(MainForm& form) : form_(form) {}

    /// Control characters of the texts are made visible.
    void setFirst(const std::string& text);
    void setSecond(const std::string& text);
    const std::string& first() const { return panels_.first; }

    /// The first panel gets the whole width, for the running path of a run.
    void beginRun();
    /// Both panels are visible again, the first one with `text`.
    void endRun(const std::string& text);

    /// What the panes change: the width of the first panel and the text of the second. They call show() then.
    StatusPanels& panels() { return panels_; }
    void show();

  private:
    MainForm& form_;
    StatusPanels panels_;
};

}  // namespace hl
