// What the keys, the mouse and assistive tools do with the rows of a view: picking, folding, opening the
// menu. The grid stores what is picked and unfolded. For the grid's thread.
#pragma once

#include <Qt>
#include <optional>

#include "platform/qt/grid/grid_selection.h"

namespace hl {

class GridView;

/// How a click or a key with these modifiers selects; `withControl` is for Ctrl alone.
Pick pickOf(Qt::KeyboardModifiers keys, Pick withControl);

bool shiftOrControl(Qt::KeyboardModifiers keys);

class GridActions {
  public:
    /// All must outlive it.
    GridActions(GridView& view, Grid& grid, const VisibleRows& rows)
        : view_(view), grid_(grid), rows_(rows), selection_(grid, rows) {}

    /// Do what a click on the row, and on its sign for folding, does, unless the grid is locked.
    void pickRow(std::size_t index);
    void foldRow(std::size_t index, bool expand);

    // REQUIRES, for the rest: GridView::takesInput() returned true.
    void pick(std::size_t index, Pick how);
    void pickAll();
    void pickNone();
    void unfoldAllBelow(std::size_t index);
    /// Does what a click of the right button on the current row does.
    void openMenu();
    std::optional<std::size_t> currentIndex() const;

  private:
    GridView& view_;
    Grid& grid_;
    const VisibleRows& rows_;
    GridSelection selection_;
};

}  // namespace hl
