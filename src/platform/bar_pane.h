// The command bars of the window: what the logic may ask of one, and what they tell. Thread of the logic
// only.
#pragma once

#include <string>

#include "platform/command_bar.h"
#include "platform/geometry.h"

namespace hl {

/// What the bars tell. No routine throws.
class BarEvents {
  public:
    virtual ~BarEvents() = default;
    virtual void execute(BarId bar, int id) = 0;
    /// The user typed into an edit box of a bar.
    virtual void editChanged(BarId bar, int id, const std::string& text) = 0;
    virtual void editKeyDown(BarId bar, int id, int key) = 0;
    /// The box lost the focus to another place of the window.
    virtual void editLeft(BarId bar, int id) = 0;
    virtual void barResized(BarId bar) = 0;
};

/// A CommandBar as the window shows it.
class BarPane {
  public:
    virtual ~BarPane() = default;
    /// Returns the height of the bar, with all its rows, at its present width.
    virtual int wrappedHeight() = 0;
    virtual void focusEdit(int id) = 0;
    /// Marks the text of an edit box as one that was not found, until it changes; false takes the mark away.
    virtual void markEdit(int id, bool notFound) = 0;
    /// Opens a popup of the bar at a place of the screen; the choice arrives as BarEvents::execute. Returns
    /// when that has run, or when the popup was closed.
    virtual void showPopup(int popup, Point at) = 0;
};

}  // namespace hl
