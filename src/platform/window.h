// The main window as the logic sees it: what the logic asks of it (Window), what it is told (WindowEvents),
// and what it gives the window to show (WindowParts). For the thread of the logic only. Pixels are in the
// desktop's own unit, before any scale factor.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "grid/grid.h"
#include "platform/command_bar.h"
#include "platform/desktop.h"
#include "platform/file_types.h"
#include "platform/form.h"
#include "platform/message_pump.h"
#include "platform/patience.h"
#include "platform/preview_pane.h"
#include "platform/print.h"
#include "platform/splitter.h"
#include "platform/system_facts.h"

namespace hl {

/// The six grids, in the order in which the window is locked and fonts are stored.
enum class GridId : std::uint8_t { kReport, kDrives, kFiles, kTop, kHardlinks, kJunctions };
constexpr std::size_t kGridCount = 6;

enum class SplitterId : std::uint8_t { kMain, kReport, kInfo, kDrives, kFiles, kFilesAndPreview };
constexpr std::size_t kSplitterCount = 6;

enum class WindowState : std::uint8_t { kNormal, kMinimized, kMaximized };

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

enum class MouseButton : std::uint8_t { kLeft = 1, kRight = 2, kMiddle = 4 };

struct Point {
    int x = 0, y = 0;
};

/// The first and the last visible row, by their indexes.
struct RowRange {
    std::size_t first = 0, last = 0;
    bool operator==(const RowRange&) const = default;
};

struct Rect {
    int left = 0, top = 0, width = 0, height = 0;
};

/// The two panels of the status bar.
struct StatusPanels {
    std::string first, second;
    bool secondVisible = true;
    bool firstTakesAll = false;
    int firstWidth = 100;  ///< In pixels; counts unless the first panel takes all.
};

enum class MessageKind : std::uint8_t { kInformation, kWarning, kError, kQuestion };

/// An entry of a menu that is built when it is opened.
struct MenuEntry {
    int id = 0;                           ///< 0 means a separator.
    std::string caption;                  ///< UTF-8, control characters visible; "&" is a plain character.
    std::vector<MenuEntry> entries = {};  ///< The entries of a submenu, whose own id can then not be chosen.
};

/// An item of the list of sources.
struct ComboItem {
    std::string text;
    int image = 0;  ///< See platform/icons.h.
};

class Window {
  public:
    virtual ~Window() = default;

    // --- the frame
    virtual void setTitle(const std::string& title) = 0;
    virtual void setBusyPointer(bool busy) = 0;
    virtual Rect screen() = 0;
    /// The window's place when it is neither minimised nor maximised.
    virtual Rect normalGeometry() = 0;
    /// The window is never larger than all screens together, and its title bar always stays on one of them.
    virtual void setGeometry(const Rect& rect) = 0;
    virtual WindowState state() = 0;
    virtual void setState(WindowState state) = 0;
    virtual void show() = 0;
    /// Asks to close, as a click on the close box does.
    virtual void close() = 0;
    /// Restores a minimised window and brings it to the front.
    virtual void bringToFront() = 0;
    virtual void setStatus(const StatusPanels& panels) = 0;
    /// Sets the combo box's items, its text and the selected item (-1 if the text was typed).
    virtual void setSources(const std::vector<ComboItem>& items, const std::string& text, int selected) = 0;

    // --- panes
    /// Returns the height of a bar, with all its rows, at its present width.
    virtual int barHeight(BarId bar) = 0;
    virtual int gridWidth(GridId grid) = 0;
    virtual Rect clientArea() = 0;

    // --- grids; a window observes and paints them
    /// Makes the column as wide as its title and a sample of its rows need (the first rows and the visible
    /// ones). `margin` is added to what the rows need, in twips (15 to a pixel). A hidden column stays
    /// hidden.
    virtual void autosizeColumn(GridId grid, std::size_t column, int margin) = 0;
    /// Returns the width that the grid needs besides its columns: its frame, and the vertical scroll bar if
    /// it is visible.
    virtual int widthBesideColumns(GridId grid) = 0;
    /// Returns the height of the title row and all rows.
    virtual int heightOfRows(GridId grid) = 0;
    virtual void scrollIntoView(GridId grid, Row row) = 0;
    /// Returns nothing while the grid is hidden or has no rows.
    virtual std::optional<RowRange> visibleRows(GridId grid) = 0;
    /// Returns the column at a place of the screen, counted from 0; to the right of all columns their number.
    virtual std::size_t columnAt(GridId grid, Point at) = 0;
    /// Takes over what the grid has told, and repaints it soon.
    virtual void refresh(GridId grid) = 0;
    virtual void focusGrid(GridId grid) = 0;
    /// Scrolls to the row and begins to edit its text in the cell. Return and leaving the cell end that with
    /// WindowEvents::GridCellAfterEditing, once; Escape, locking the grid and changes of its rows end it
    /// without. Bytes that are no UTF-8 are kept unless the user changes them.
    virtual void editCell(GridId grid, Row row) = 0;
    virtual void focusEdit(BarId bar, int id) = 0;
    virtual GridFont font(GridId grid) = 0;
    virtual void setFont(GridId grid, const GridFont& font) = 0;
    /// Returns null if the window has none.
    virtual PreviewPane* previewPane() { return nullptr; }

    // --- questions; each call returns when the question is answered
    virtual void showForm(Form& form) = 0;
    /// Returns true for yes; Return alone does not mean that. A message that is no question has one button.
    virtual bool message(MessageKind kind, const std::string& text) = 0;
    /// Returns an empty text if the user cancelled.
    virtual std::string askText(const std::string& prompt, const std::string& preset) = 0;
    virtual std::string askFolder(const std::string& title, const std::string& start) = 0;
    /// `filter` has captions and their patterns, "TXT (*.txt)|*.txt|CSV (*.csv)|*.csv"; the first is
    /// selected. `extension` is appended to a name that has none.
    virtual std::string askSavePath(const std::string& filter, const std::string& extension,
                                    const std::string& folder) = 0;
    virtual std::optional<GridFont> askFont(const GridFont& start) = 0;
    /// Shows the pages; from there the user prints them or writes them to a PDF. No printer is needed.
    virtual void previewPrint(const PrintJob& job) = 0;
    /// Asks for a printer, or for a PDF instead, and prints.
    virtual void print(const PrintJob& job) = 0;
    /// Opens a popup of a bar at a place of the screen; the choice arrives as WindowEvents::execute. Returns
    /// when that has run, or when the popup was closed.
    virtual void showPopup(BarId bar, int popup, Point at) = 0;
    /// Opens a menu at a place of the screen; returns the id of the chosen entry, 0 if none was chosen.
    virtual int showMenu(const std::vector<MenuEntry>& entries, Point at) = 0;

    // --- the desktop
    virtual bool openUrl(const std::string& url) = 0;
    virtual void copyText(const std::string& text) = 0;
    /// Copies files, for pasting into a file manager.
    virtual void copyFiles(const std::vector<std::string>& paths) = 0;
    /// Returns the desktop's file types; valid as long as the window lives.
    virtual FileTypes& fileTypes() = 0;
    /// Valid as long as the window lives.
    virtual Desktop& desktop() = 0;

    // --- for the report of an error
    /// Describes the screen that the window is on.
    virtual ScreenFacts screenFacts() = 0;
    /// Copies a text like copyText, for a process that ends next: the text can still be pasted then. Takes
    /// some seconds at most.
    virtual void leaveText(const std::string& text) = 0;
};

/// What the window reports. The logic implements it; each routine has its own trap, and none throws.
class WindowEvents {
  public:
    virtual ~WindowEvents() = default;
    /// Is called once, before anything is shown: builds bars, columns and panes.
    virtual void formLoad(Window& window, MessagePump& pump) = 0;
    /// Is called once, when the user sees the window: sources may be read from now on.
    virtual void formActivate() = 0;
    /// Returns false if the window must stay open.
    virtual bool formQueryUnload() = 0;
    virtual void formUnload() = 0;
    virtual void formResize() = 0;
    virtual void formKeyUp(int key) = 0;

    virtual void execute(BarId bar, int id) = 0;
    /// The user typed into an edit box of a bar.
    virtual void editChanged(BarId bar, int id, const std::string& text) = 0;
    virtual void editKeyDown(BarId bar, int id, int key) = 0;
    /// The box lost the focus to another place of the window.
    virtual void editLeft(BarId bar, int id) = 0;
    virtual void barResized(BarId bar) = 0;

    virtual void comboText(const std::string& text) = 0;
    virtual void comboSelected(int index) = 0;
    virtual void comboKeyDown(int key) = 0;
    /// The user pressed Del on an item of the list. Returns whether it was removed.
    virtual bool comboRemove(int index) = 0;

    /// The mouse button was released. The window has already selected the row and made it current. `row` is
    /// kNoRow outside of all rows; `shift` means Shift or Ctrl.
    virtual void gridMouseUp(GridId grid, Row row, MouseButton button, bool shift, Point at) = 0;
    virtual void gridDoubleClick(GridId grid) = 0;
    virtual void gridKeyUp(GridId grid, int key) = 0;
    /// The row's text was edited; `value` is the new text as bytes, perhaps unchanged.
    virtual void GridCellAfterEditing(GridId grid, Row row, const std::string& value) = 0;
    virtual void gridTitleClick(GridId grid, std::size_t column) = 0;
    /// The user dragged the border of a column; comes before the click on the title that ends the drag.
    virtual void gridColumnSizing(GridId grid) = 0;
    /// Other rows are visible now: the grid was scrolled or resized.
    virtual void gridScrolled(GridId grid) = 0;
    /// The pointer is over a row, or has left the rows (kNoRow).
    virtual void gridMouseMove(GridId grid, Row row) = 0;
    /// The user folded or unfolded a row. Rows that are hidden now are still selected.
    virtual void gridExpanded(GridId grid, Row row) = 0;

    /// Another start of the program handed its command line over.
    virtual void handOver(const std::string& commandLine) = 0;
    /// An exception escaped in the window's own routine `where`; called inside a catch block.
    virtual void windowFault(const char* where) = 0;
};

/// What the window shows. The main form owns it; it outlives the window.
struct WindowParts {
    std::array<Grid*, kGridCount> grids{};
    std::array<const char*, kGridCount> gridNames{};   ///< "tvwPL"
    std::array<std::string, kGridCount> gridTitles{};  ///< For assistive tools.
    std::array<CommandBar*, kBarCount> bars{};
    std::array<cSplitter*, kSplitterCount> splitters{};
    /// Returns what a cell shows, with control characters made visible. For any visible column.
    std::function<std::string(GridId, std::size_t column, Row)> cellText;
    /// Returns the text for a grid without rows; empty for none.
    std::function<std::string(GridId)> emptyHint;
    /// Returns the theme's icon name for a picture that platform/icons.h does not have; empty for none.
    std::function<std::string(int picture)> fileIcon;
    /// The captions of the buttons in the window's own questions, in the user's language.
    std::string yes, no, ok, cancel;
    std::string more;        ///< The name of the button that shows the part of a bar that does not fit.
    std::string clear;       ///< The name of the button that empties an edit box.
    std::string level;       ///< A screen reader says it before a row's level.
    std::string name;        ///< The program's name.
    std::string folder;      ///< The folder for everything that is written, also by libraries.
    std::string dataFolder;  ///< The folder of the icons.
    std::string language;    ///< "de", for the texts of the toolkit's own dialogs.
    PreviewParts preview;
    Desktop* desktop = nullptr;    ///< Null means the user's own.
    Patience* patience = nullptr;  ///< For what the desktop asks of files; null means that all disks answer.
    std::string clipboardHolder;   ///< The program that leaveText starts.
};

}  // namespace hl
