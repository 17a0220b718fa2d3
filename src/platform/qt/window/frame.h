// The frame of the window: closing, activation, size, and the keys that no control takes.
#pragma once

#include <QMainWindow>
#include <functional>
#include <vector>

#include "platform/window.h"

namespace hl {

/// Tells the logic what happens to the window and holds nothing else. Ends the event loop when it is closed.
class Frame final : public QMainWindow {
  public:
    explicit Frame(WindowEvents& events) : events_(events) {}

    /// Whether it was closed for good.
    bool unloaded() const { return unloaded_; }

    /// Presses what an accelerator stands for; false if it stands for nothing now.
    std::function<bool(int key, bool control)> pressAccelerator;
    /// Where the Tab key may stop, in this order; what is hidden or disabled is passed over. The toolkit's
    /// own order follows neither panes that change places nor bars that are made anew.
    std::function<std::vector<QWidget*>()> tabStops;
    /// Colours or the style have changed.
    std::function<void()> looksChanged;

  protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    void queue(const char* where, std::function<void()> what);

    WindowEvents& events_;
    bool seen_ = false;  ///< It was painted, or made the active window.
    bool escapePressed_ = false;
    bool unloaded_ = false;
};

}  // namespace hl
