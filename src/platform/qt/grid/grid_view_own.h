// Marks changes of the grid that the view makes itself; for the files of GridView.
#pragma once

#include <utility>

#include "platform/qt/grid/grid_view.h"

namespace hl {

class GridView::OwnChange {
  public:
    explicit OwnChange(GridView& view) : view_(view), before_(std::exchange(view.own_, true)) {}
    ~OwnChange() { view_.own_ = before_; }
    OwnChange(const OwnChange&) = delete;
    OwnChange& operator=(const OwnChange&) = delete;

  private:
    GridView& view_;
    bool before_;
};

}  // namespace hl
