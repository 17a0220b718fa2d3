// One grid of the window: what the logic may ask of it, and what it tells. Thread of the logic only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "grid/grid.h"
#include "platform/geometry.h"
#include "platform/pane_ids.h"
#include "platform/print.h"

namespace hl {

/// The virtual key codes that handlers know.
enum KeyCode : int {
    kKeyReturn = 13,
    kKeyEscape = 27,
    kKeyPageUp = 33,
    kKeyPageDown = 34,
    kKeyUp = 38,
    kKeyDown = 40,
    kKeyDelete = 46,
    kKeyF2 = 113,
};

/// What a combination of keys in a grid asks for.
enum class GridShortcut : std::uint8_t {
    kCopy,     ///< Ctrl+C
    kBack,     ///< Alt+Left
    kForward,  ///< Alt+Right
};

enum class MouseButton : std::uint8_t { kLeft = 1, kRight = 2, kMiddle = 4 };

/// What the user does in a grid that may only be looked at (GridAccess::kLooking).
enum class Look : std::uint8_t {
    kKey,     ///< Presses a key that means something there.
    kPick,    ///< Picks a row, which is the current one now.
    kScroll,  ///< Scrolls, or folds or unfolds a row.
    kColumn,  ///< Sets the width of a column.
};

/// What a grid of the window tells the view that it belongs to. No routine throws; what a view does not
/// override it does not care for.
class GridEvents {
  public:
    virtual ~GridEvents() = default;
    /// The mouse button was released. The window has already selected the row and made it current. `row` is
    /// kNoRow outside of all rows; `shift` means Shift or Ctrl.
    virtual void MouseUp(Row /*row*/, MouseButton /*button*/, bool /*shift*/, Point /*at*/) {}
    virtual void DblClick() {}
    virtual void KeyUp(int /*key*/) {}
    virtual void Shortcut(GridShortcut /*what*/) {}
    /// The button of a grid without rows was pressed.
    virtual void emptyButtonPressed() {}
    /// Del was pressed anew, with Shift if `forGood`.
    virtual void deletePressed(bool /*forGood*/) {}
    /// The row's text was edited; `value` is the new text as bytes, perhaps unchanged.
    virtual void GridCellAfterEditing(Row /*row*/, const std::string& /*value*/) {}
    virtual void GridColumnTitleClick(std::size_t /*column*/) {}
    /// The title row was clicked with the right button.
    virtual void columnMenu(Point /*at*/) {}
    /// The user dragged the border of a column; comes before the click on the title that ends the drag.
    virtual void columnSizing() {}
    /// Other rows are visible now: the grid was scrolled or resized.
    virtual void VScroll() {}
    /// The pointer is over a row, or has left the rows (kNoRow).
    virtual void MouseMove(Row /*row*/) {}
    /// The user folded or unfolded a row. Rows that are hidden now are still selected.
    virtual void expandedByUser(Row /*row*/) {}
    /// While a grid may only be looked at, this and expandedByUser alone tell of what the user does.
    virtual void looked(Look /*what*/) {}
};

/// A grid as the window shows it. It paints what the Grid that it observes tells.
class GridPane {
  public:
    virtual ~GridPane() = default;
    /// Sets who is told from now on; null means nobody. `events` must outlive the pane or be taken away
    /// before.
    virtual void setEvents(GridEvents* events) = 0;
    /// Makes the column as wide as its title and a sample of its rows need (the first rows and the visible
    /// ones). `margin` is added to what the rows need, in twips (15 to a pixel). A hidden column stays
    /// hidden.
    virtual void autosizeColumn(std::size_t column, int margin) = 0;
    /// Returns the width that the grid needs besides its columns: its frame, and the vertical scroll bar if
    /// it is visible.
    virtual int widthBesideColumns() = 0;
    /// Returns the width between the borders of its frame.
    virtual int innerWidth() = 0;
    /// Returns the height of the title row and all rows.
    virtual int heightOfRows() = 0;
    /// Unfolds the rows that hide this one.
    virtual void scrollIntoView(Row row) = 0;
    /// Unfolds the rows that hide this one, and scrolls it to the middle of what is visible.
    virtual void scrollToMiddle(Row row) = 0;
    /// Returns nothing while the grid is hidden or has no rows.
    virtual std::optional<RowRange> visibleRows() = 0;
    /// Returns the column at a place of the screen, counted from 0; to the right of all columns their number.
    virtual std::size_t columnAt(Point at) = 0;
    /// Tells whether the pointer rests on the grid.
    virtual bool underPointer() = 0;
    /// Takes over what the grid has told, and repaints it soon.
    virtual void refresh() = 0;
    virtual void focus() = 0;
    /// Scrolls to the row and begins to edit its text in the cell. Return and leaving the cell end that with
    /// GridEvents::GridCellAfterEditing, once; Escape, locking the grid and changes of its rows end it
    /// without. Bytes that are no UTF-8 are kept unless the user changes them.
    virtual void editCell(Row row) = 0;
    virtual GridFont gridFont() const = 0;
    virtual void setGridFont(const GridFont& font) = 0;
};

}  // namespace hl
