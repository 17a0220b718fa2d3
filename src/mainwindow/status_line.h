// The status bar of the main window. For the thread of the logic only.
#pragma once

#include <string>

#include "platform/window.h"

namespace hl {

struct MainForm;

class StatusLine {
  public:
    explicit StatusLine(MainForm& form) : form_(form) {}

    /// Control characters of the texts are made visible. The next text of the first panel takes the button
    /// away that offers to take back.
    void setFirst(const std::string& text);
    void offerTakeBack(const std::string& text);
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
    /// The buttons: to take back, and to list the folders of the report that were not read.
    void showButtons();

    MainForm& form_;
    StatusPanels panels_;
    bool takeBack_ = false;
};

}  // namespace hl
