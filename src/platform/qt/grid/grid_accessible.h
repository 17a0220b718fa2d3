// A grid for assistive tools: a tree (or a list) whose children are the visible rows, each with its cells.
// For the window's thread.
//
// The name of a cell is its text, its description the title of its column. The name of a row is its first
// cell, its description the level; folded and unfolded are states. Objects are made when they are asked for
// and destroyed at the next change of the grid's structure.
#pragma once

#include <cstddef>

namespace hl {

class GridView;

/// Makes every GridView known from then on. May be called more than once.
void installGridAccessible();

/// These tell assistive tools, if there are any, of a change.
void accessibleRowsChanged(GridView& view);
void accessibleCurrentChanged(GridView& view, std::size_t index);
void accessibleFoldChanged(GridView& view, std::size_t index);

}  // namespace hl
