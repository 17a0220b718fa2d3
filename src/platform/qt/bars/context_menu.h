// A menu that is made when it is opened. For the window's thread.
#pragma once

#include <vector>

#include "platform/qt/bars/icon_store.h"
#include "platform/window.h"

class QPoint;
class QWidget;

namespace hl {

/// Shows the entries at a place of the screen, with icons from `icons`; returns the id of the chosen entry, 0
/// if none was chosen.
int askWithMenu(QWidget* parent, const std::vector<MenuEntry>& entries, IconStore& icons, const QPoint& at);

}  // namespace hl
