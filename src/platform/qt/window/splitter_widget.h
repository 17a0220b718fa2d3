// Two panes and the bar between them: a cSplitter as a widget. For the window's thread.
#pragma once

#include <QWidget>
#include <functional>

#include "platform/splitter.h"
#include "platform/window.h"

namespace hl {

/// Tells the splitter its size and the mouse, and puts the panes where it says. It follows when other panes
/// are bound to the splitter; a pane that leaves is hidden, unless another splitter already has it.
class SplitterWidget final : public QWidget {
  public:
    /// Returns the widget of a pane, null for none; whoever made it still owns it.
    using PaneFactory = std::function<QWidget*(const PaneRef&)>;

    /// `splitter` must outlive it; the widget sets its `changed`.
    SplitterWidget(cSplitter& splitter, PaneFactory factory, WindowEvents& events);
    ~SplitterWidget() override;

    QSize sizeHint() const override { return {400, 300}; }
    QSize minimumSizeHint() const override { return {0, 0}; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    class Handle;

    void follow();
    void bind(QWidget*& pane, const PaneRef& ref);
    void place(QWidget* pane, const cSplitter::Span& span);
    int along(const QSize& size) const;

    cSplitter& splitter_;
    PaneFactory factory_;
    WindowEvents& events_;
    QWidget* panes_[2] = {};
    Handle* handle_;
};

}  // namespace hl
