// The menus of a row of the report, of a drive and of the selected rows of a list. Below the desktop's part
// stand the program's own entries, each of which is one row of a table. For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "platform/window.h"

namespace hl {

struct MainForm;

/// What a menu is opened for. Whoever opens it must not let rows change until it is answered.
struct MenuTarget {
    MainForm& form;
    GridId grid;
    Row row;  ///< The row of the report or of the drives; kNoRow in a list.
    std::vector<std::string> paths;
};

/// Shows the menu and carries out what is chosen.
/// REQUIRES: there is a path, and none is empty.
void showContextMenu(const MenuTarget& on, Point at);

}  // namespace hl
