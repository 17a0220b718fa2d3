// A grid for assistive tools: a tree (or a list) whose children are the visible rows, each with its cells.
//
// The names of cells are what they show, their descriptions the titles of their columns. A row's name is its
// first cell, its description its level; folded and unfolded are states. Objects are made when they are asked
// for and go with the next change of the grid's structure.
#pragma once

#include <cstddef>

namespace hl {

class GridView;

/// Once or more; every GridView is known from then on.
void installGridAccessible();

/// Tell assistive tools, if there are any.
void accessibleRowsChanged(GridView& view);
void accessibleCurrentChanged(GridView& view, std::size_t index);
void accessibleFoldChanged(GridView& view, std::size_t index);

}  // namespace hl
