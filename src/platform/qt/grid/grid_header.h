// The title row of a grid: tells clicks on titles from drags of borders.
#pragma once

#include <QHeaderView>
#include <functional>

#include "platform/window.h"

namespace hl {

/// What the title row tells its grid.
struct HeaderCalls {
    std::function<void(int column)> click;
    /// Once per drag of a border, before `click` for the same column, which ends the drag.
    std::function<void()> sizing;
    std::function<void(int column, int width)> sized;
    std::function<void(int column)> fit;  ///< Double click on the border behind the column.
};

class GridHeader : public QHeaderView {
  public:
    GridHeader(HeaderCalls calls, WindowEvents& events, QWidget* parent);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    void sectionSized(int column, int oldWidth, int width);

    HeaderCalls calls_;
    WindowEvents& events_;
    /// A width that changes then is of a drag. One that a click on a title has brought about is not.
    bool moving_ = false;
    int dragged_ = -1;
};

}  // namespace hl
