// The frame of the window: closing, activation, size, and the keys that no control takes. For the window's
// thread.
#pragma once

#include <QMainWindow>
#include <functional>
#include <vector>

#include "platform/window.h"

namespace hl {

/// Reports to the logic what happens to the window. Closing it ends the event loop.
class Frame final : public QMainWindow {
  public:
    explicit Frame(WindowEvents& events) : events_(events) { setAcceptDrops(true); }

    /// Tells whether it was closed for good.
    bool unloaded() const { return unloaded_; }

    /// Presses what an accelerator stands for; returns false if it stands for nothing now.
    std::function<bool(int key, bool control)> pressAccelerator;
    /// Returns where the Tab key may stop, in this order; hidden and disabled widgets are skipped. The
    /// toolkit's own order does not follow panes that change places, or bars that are built anew.
    std::function<std::vector<QWidget*>()> tabStops;
    /// Is called when files or folders were dropped on the window.
    std::function<void(const std::vector<DroppedPlace>&)> dropped;
    /// Is called when colours or the style have changed.
    std::function<void()> looksChanged;

  protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    void queue(const char* where, std::function<void()> what);

    WindowEvents& events_;
    bool seen_ = false;  ///< It was painted, or activated.
    bool escapePressed_ = false;
    bool unloaded_ = false;
};

}  // namespace hl
