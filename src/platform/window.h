// The main window as the logic sees it: what it may ask of it (Window), what it is told (WindowEvents), and
// what it gives it to show (WindowParts). All of it on the thread of the logic. Pixels are those of the
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

/// Virtual key codes of the keys that handlers know.
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

/// Rows that are on screen, by their indexes, both included.
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
    int firstWidth = 100;  ///< Where it does not take all.
};

enum class MessageKind : std::uint8_t { kInformation, kWarning, kError, kQuestion };

/// An entry of a menu that is made when it is opened.
struct MenuEntry {
    int id = 0;                           ///< 0: a separator.
    std::string caption;                  ///< UTF-8, control characters visible; "&" stands for itself.
    std::vector<MenuEntry> entries = {};  ///< Of a submenu; its own id is never chosen then.
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
    /// Where the window is when it is neither minimised nor maximised.
    virtual Rect normalGeometry() = 0;
    /// Larger than all screens together it does not become, and its title stays on them.
    virtual void setGeometry(const Rect& rect) = 0;
    virtual WindowState state() = 0;
    virtual void setState(WindowState state) = 0;
    virtual void show() = 0;
    /// Asks to close, as a click on the close box does.
    virtual void close() = 0;
    /// Out of the minimised state, and in front of others.
    virtual void bringToFront() = 0;
    virtual void setStatus(const StatusPanels& panels) = 0;
    /// The combo box takes over the items, its text and what is selected (-1: the text was typed).
    virtual void setSources(const std::vector<ComboItem>& items, const std::string& text, int selected) = 0;

    // --- panes
    /// Height of a bar at its present width, all rows of it.
    virtual int barHeight(BarId bar) = 0;
    virtual int gridWidth(GridId grid) = 0;
    virtual Rect clientArea() = 0;

    // --- grids; a window paints what the grid it observes tells
    /// Makes the column as wide as its title and a sample of its rows need (the first ones, and those on
    /// screen). `margin` is added to what the rows need, in twips, of which a pixel has 15. A hidden column
    /// stays hidden.
    virtual void autosizeColumn(GridId grid, std::size_t column, int margin) = 0;
    /// What the grid needs beside its columns: its frame, and the vertical scroll bar where it shows.
    virtual int widthBesideColumns(GridId grid) = 0;
    /// Title row and all rows together.
    virtual int heightOfRows(GridId grid) = 0;
    virtual void scrollIntoView(GridId grid, Row row) = 0;
    /// Nothing while the grid does not show or has no rows.
    virtual std::optional<RowRange> visibleRows(GridId grid) = 0;
    /// The column at a place of the screen, counted from 0; right of them all their number.
    virtual std::size_t columnAt(GridId grid, Point at) = 0;
    /// Takes over what the grid has told, and paints it anew before long.
    virtual void refresh(GridId grid) = 0;
    virtual void focusGrid(GridId grid) = 0;
    /// Begins the editing of the row's text in its cell, scrolled into sight. Return and leaving the cell end
    /// it with WindowEvents::GridCellAfterEditing, once; Escape, locking the grid and rows that come or go
    /// end it without. Bytes that are no UTF-8 stay as they are where the user leaves them alone.
    virtual void editCell(GridId grid, Row row) = 0;
    virtual void focusEdit(BarId bar, int id) = 0;
    virtual GridFont font(GridId grid) = 0;
    virtual void setFont(GridId grid, const GridFont& font) = 0;
    /// Null for a window that has none.
    virtual PreviewPane* previewPane() { return nullptr; }

    // --- questions; each returns when it is answered
    virtual void showForm(Form& form) = 0;
    /// True for yes, which Return alone does not say; a message that is no question has one button.
    virtual bool message(MessageKind kind, const std::string& text) = 0;
    /// Empty if it was cancelled.
    virtual std::string askText(const std::string& prompt, const std::string& preset) = 0;
    virtual std::string askFolder(const std::string& title, const std::string& start) = 0;
    /// `filter`: captions and their patterns, "TXT (*.txt)|*.txt|CSV (*.csv)|*.csv"; the first one is chosen.
    /// `extension` goes behind a name that has none.
    virtual std::string askSavePath(const std::string& filter, const std::string& extension,
                                    const std::string& folder) = 0;
    virtual std::optional<GridFont> askFont(const GridFont& start) = 0;
    /// Shows the pages; from there the user prints them or writes them to a PDF. Needs no printer.
    virtual void previewPrint(const PrintJob& job) = 0;
    /// Asks for a printer, or for a PDF in place of one, and prints.
    virtual void print(const PrintJob& job) = 0;
    /// A popup of a bar at a place of the screen; what is chosen arrives as WindowEvents::execute. Returns
    /// when that is done, or when it was closed.
    virtual void showPopup(BarId bar, int popup, Point at) = 0;
    /// A menu at a place of the screen; the id of what was chosen, 0 if nothing was.
    virtual int showMenu(const std::vector<MenuEntry>& entries, Point at) = 0;

    // --- the desktop
    virtual bool openUrl(const std::string& url) = 0;
    virtual void copyText(const std::string& text) = 0;
    /// The desktop's kinds of files. As long as the window lives.
    virtual FileTypes& fileTypes() = 0;
    /// As long as the window lives.
    virtual Desktop& desktop() = 0;

    // --- for the report of an error
    /// Of the screen that the window is on, whatever else lies on it.
    virtual ScreenFacts screenFacts() = 0;
    /// Like copyText, for a process that ends next: the text is there to paste afterwards. Takes some seconds
    /// at most.
    virtual void leaveText(const std::string& text) = 0;
};

/// What the window tells. Implemented by the logic; each routine has its own trap, and none throws.
class WindowEvents {
  public:
    virtual ~WindowEvents() = default;
    /// Once, before anything is shown: builds bars, columns and panes.
    virtual void formLoad(Window& window, MessagePump& pump) = 0;
    /// Once, when the user sees the window: what it is to read may be read.
    virtual void formActivate() = 0;
    /// False: the window stays open.
    virtual bool formQueryUnload() = 0;
    virtual void formUnload() = 0;
    virtual void formResize() = 0;
    virtual void formKeyUp(int key) = 0;

    virtual void execute(BarId bar, int id) = 0;
    /// The user has typed into an edit box of a bar.
    virtual void editChanged(BarId bar, int id, const std::string& text) = 0;
    virtual void editKeyDown(BarId bar, int id, int key) = 0;
    /// The box has lost the focus to another place of the window.
    virtual void editLeft(BarId bar, int id) = 0;
    virtual void barResized(BarId bar) = 0;

    virtual void comboText(const std::string& text) = 0;
    virtual void comboSelected(int index) = 0;
    virtual void comboKeyDown(int key) = 0;
    /// Del on an item of the list: whether it was removed.
    virtual bool comboRemove(int index) = 0;

    /// The window has already done what every list does with a click: select and make current. `row` is
    /// kNoRow outside of all rows; `shift` stands for Shift or Ctrl.
    virtual void gridMouseUp(GridId grid, Row row, MouseButton button, bool shift, Point at) = 0;
    virtual void gridDoubleClick(GridId grid) = 0;
    virtual void gridKeyUp(GridId grid, int key) = 0;
    /// The row's text was edited; `value` are its bytes, perhaps as they were.
    virtual void GridCellAfterEditing(GridId grid, Row row, const std::string& value) = 0;
    virtual void gridTitleClick(GridId grid, std::size_t column) = 0;
    /// The user drags the border of a column; comes before the title's click that the drag ends with.
    virtual void gridColumnSizing(GridId grid) = 0;
    /// Other rows than before are on screen: the grid was scrolled, or its size has changed.
    virtual void gridScrolled(GridId grid) = 0;
    /// The pointer moves over a row, or has left them all (kNoRow).
    virtual void gridMouseMove(GridId grid, Row row) = 0;
    /// The user has folded a row up or down. What is hidden now is still selected.
    virtual void gridExpanded(GridId grid, Row row) = 0;

    /// Another start of the program handed its command line over.
    virtual void handOver(const std::string& commandLine) = 0;
    /// Called inside a catch block: something escaped in the window's own routine `where`.
    virtual void windowFault(const char* where) = 0;
};

/// What the window shows. Owned by the main form; outlives the window.
struct WindowParts {
    std::array<Grid*, kGridCount> grids{};
    std::array<const char*, kGridCount> gridNames{};   ///< "tvwPL"
    std::array<std::string, kGridCount> gridTitles{};  ///< For assistive tools.
    std::array<CommandBar*, kBarCount> bars{};
    std::array<cSplitter*, kSplitterCount> splitters{};
    /// What a cell shows, control characters visible. For any visible column.
    std::function<std::string(GridId, std::size_t column, Row)> cellText;
    /// What stands in a grid that has no rows; empty for nothing.
    std::function<std::string(GridId)> emptyHint;
    /// Name of the theme's icon for a picture that platform/icons.h does not have; empty for none.
    std::function<std::string(int picture)> fileIcon;
    /// Captions of the buttons that the window's own questions have, in the user's language.
    std::string yes, no, ok, cancel;
    std::string more;        ///< Name of the button behind which a bar has what does not fit.
    std::string clear;       ///< Name of the button that empties an edit box.
    std::string level;       ///< What a screen reader says in front of a row's level.
    std::string name;        ///< Of the program.
    std::string folder;      ///< Where all that is written goes, also what libraries write.
    std::string dataFolder;  ///< Icons.
    std::string language;    ///< "de", for the texts of the toolkit's own dialogs.
    PreviewParts preview;
    Desktop* desktop = nullptr;    ///< Null for the user's own.
    Patience* patience = nullptr;  ///< For what the desktop asks of files; null: all disks answer.
    std::string clipboardHolder;   ///< The program that leaveText starts.
};

}  // namespace hl
