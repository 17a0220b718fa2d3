// Gathers the changes of a grid for as long as it lives; the grid's observer hears of them at once when it
// ends. Within another one, or while a scan holds the notices back, it leaves them where they were.
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
