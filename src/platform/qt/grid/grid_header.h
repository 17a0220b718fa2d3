// The title row of a grid, which distinguishes clicks on titles from drags of borders. For the window's
// thread.
#pragma once

#include <QHeaderView>
#include <functional>

#include "platform/window.h"

namespace hl {

/// What the title row tells its grid.
struct HeaderCalls {
    std::function<void(int column)> click;
    /// Called once for each drag of a border, before the `click` on the same column that ends the drag.
    std::function<void()> sizing;
    std::function<void(int column, int width)> sized;
    std::function<void(const QPoint& at)> menu;  ///< Called for a right click; `at` is a place of the screen.
    std::function<void(int column)> fit;  ///< Called for a double click on the border behind the column.
};

class GridHeader : public QHeaderView {
  public:
    GridHeader(HeaderCalls calls, WindowEvents& events, QWidget* parent);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void sectionSized(int column, int oldWidth, int width);

    HeaderCalls calls_;
    WindowEvents& events_;
    /// While it is set, a changed width comes from a drag; one that a click on a title causes does not.
    bool moving_ = false;
    int dragged_ = -1;
};

}  // namespace hl
