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

    /// The panels share the width: the first has the path that is read, the second what was found.
    void beginRun();
    /// The first panel gets its own width again, and `text`; the second is empty.
    void endRun(const std::string& text);

    /// What the panes change: the width of the first panel and the text of the second. They call show() then.
    StatusPanels& panels() { return panels_; }
    void show();

  private:
    MainForm& form_;
    StatusPanels panels_;
};

}  // namespace hl
