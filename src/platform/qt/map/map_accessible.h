// The map for assistive tools: a tree whose items are the tiles, each folder's before those in it, as the
// report's rows are. The name of an item is what its tooltip tells, its description the level. Objects are
// made when they are asked for and destroyed when the map is painted anew. For the window's thread.
#pragma once

namespace hl {

class MapArea;

/// Makes every MapArea known from then on. May be called more than once.
void installMapAccessible();

/// These tell assistive tools, if there are any, of a change.
void accessibleTilesChanged(MapArea& map);
void accessibleSelectionChanged(MapArea& map);

}  // namespace hl
