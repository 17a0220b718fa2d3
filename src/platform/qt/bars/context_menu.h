// A menu that is made when it is opened. Thread of the window.
#pragma once

#include <vector>

#include "platform/window.h"

class QPoint;
class QWidget;

namespace hl {

/// Shows the entries at a place of the screen; the id of what was chosen, 0 if nothing was.
int askWithMenu(QWidget* parent, const std::vector<MenuEntry>& entries, const QPoint& at);

}  // namespace hl
