// The mouse in a grid's view. The view first does what a row's own clicks and drags do; then the logic is
// told. For the grid's thread.
#pragma once

#include <QPoint>

#include "grid/row_tree.h"

class QMouseEvent;

namespace hl {

class GridView;

class GridMouse {
  public:
    explicit GridMouse(GridView& view) : view_(view) {}

    void press(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release(const QMouseEvent& event);
    /// Is called for the press of a double click, whose release is not reported.
    void doubleClick(const QMouseEvent& event);
    /// Tells which row the pointer is over; kNoRow when it has left the rows.
    void hover(Row row);

  private:
    void pressAt(const QMouseEvent& event);
    void lookAt(const QMouseEvent& event, bool twice);
    void dragTo(const QPoint& point);

    GridView& view_;
    Qt::MouseButton pressed_ = Qt::NoButton;
    QPoint pressPoint_;
    bool dragging_ = false;
    Row hovered_ = kNoRow;
};

}  // namespace hl
