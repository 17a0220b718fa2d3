// Gathers the changes of a grid while it lives; the observer hears of all of them when it ends. Where redraw
// was off already (in another NoRedraw, or during a scan) it stays off. For the grid's thread.
#pragma once

#include "grid/grid.h"

namespace hl {

class NoRedraw {
  public:
    explicit NoRedraw(Grid& grid) : grid_(grid), was_(grid.redraw()) { grid_.setRedraw(false); }
    ~NoRedraw() { grid_.setRedraw(was_); }
    NoRedraw(const NoRedraw&) = delete;
    NoRedraw& operator=(const NoRedraw&) = delete;

  private:
    Grid& grid_;
    bool was_;
};

}  // namespace hl
