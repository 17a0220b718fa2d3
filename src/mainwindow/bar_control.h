// The bars of the main window: what a click or a key in one does. Each command has a row in the table of
// commands (mainwindow/command_table.cpp), which names its routine. For the thread of the logic only.
#pragma once

#include <string>

#include "app/command.h"
#include "platform/bar_pane.h"

namespace hl {

struct MainForm;
enum class Needs : std::uint8_t;
struct CommandRow;

class BarControl final : public BarEvents {
  public:
    explicit BarControl(MainForm& form) : form_(form) {}

    // --- BarEvents
    /// Runs a command of a bar: its option first, then its routine. Does nothing if the bar does not have the
    /// command or if it is disabled. Anything that escapes from a routine ends in the trap of its bar.
    void execute(BarId bar, int id) override;
    void editChanged(BarId bar, int id, const std::string& text) override;
    void editKeyDown(BarId bar, int id, int key) override;
    void editLeft(BarId bar, int id) override;
    void barResized(BarId bar) override;

    /// Return was pressed in a box: runs the routine of `command`, if it has one, but not while a scan runs.
    void returnIn(Command command);
    /// Opens the menu that switches the columns of the bar's grid; nothing happens if it has none.
    void openColumnsMenu(BarId bar, Point at);
    /// Enables the entries above a grid that have something to work on, and disables the others. Must not be
    /// called while the window is locked.
    void followGrid(GridId grid);
    void followAllGrids();

  private:
    void keep(const CommandRow& row);
    bool isThere(Needs needs, const Grid& grid) const;

    MainForm& form_;
};

}  // namespace hl
