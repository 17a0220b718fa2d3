// The main window as the logic sees it: what the logic asks of it (Window), what it is told (WindowEvents),
// and what it gives the window to show (WindowParts). For the thread of the logic only. Pixels are in the
// desktop's own unit, before any scale factor.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "grid/grid.h"
#include "platform/bar_pane.h"
#include "platform/clipboard.h"
#include "platform/command_bar.h"
#include "platform/desktop.h"
#include "platform/dialogs.h"
#include "platform/file_types.h"
#include "platform/geometry.h"
#include "platform/grid_pane.h"
#include "platform/map_pane.h"
#include "platform/message_pump.h"
#include "platform/patience.h"
#include "platform/preview_pane.h"
#include "platform/splitter.h"
#include "platform/start_page.h"
#include "platform/system_facts.h"

namespace hl {

enum class SplitterId : std::uint8_t {
    kMain,
    kReport,
    kInfo,
    kDrives,
    kFiles,
    kFilesAndPreview,
    kReportAndMap,
    kMap
};
constexpr std::size_t kSplitterCount = 8;

enum class WindowState : std::uint8_t { kNormal, kMinimized, kMaximized };

struct StatusButton {
    int id = 0;  ///< Of the entry of the main bar that a click carries out.
    std::string caption;
    bool ofFirst = false;  ///< It stands behind the first panel, else behind the second.
};

/// The two panels of the status bar.
struct StatusPanels {
    std::string first, second;
    bool secondVisible = true;
    bool firstTakesAll = false;
    int firstWidth = 100;  ///< In pixels; counts unless the first panel takes all.
    /// Commands of the main bar that have a button behind a panel, with their captions.
    std::vector<StatusButton> buttons = {};
    int largerBy = 0;  ///< By how many points its font is larger than that of the desktop.
};

/// An item of the list of sources.
struct ComboItem {
    std::string text;
    int image = 0;  ///< See platform/icons.h.
};

/// What is around the panes: title, place, status bar, and the box of sources.
class WindowFrame {
  public:
    virtual ~WindowFrame() = default;
    virtual void setTitle(const std::string& title) = 0;
    virtual void setBusyPointer(bool busy) = 0;
    virtual Rect screen() = 0;
    /// The window's place when it is neither minimised nor maximised.
    virtual Rect normalGeometry() = 0;
    /// The window is never larger than all screens together, and its title bar always stays on one of them.
    virtual void setGeometry(const Rect& rect) = 0;
    virtual Rect clientArea() = 0;
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
    virtual bool openUrl(const std::string& url) = 0;
    /// Describes the screen that the window is on.
    virtual ScreenFacts screenFacts() = 0;
};

/// All that the logic may ask of the window. Owned by the window; valid as long as it is there.
struct Window {
    WindowFrame& frame;
    std::array<GridPane*, kGridCount> grids;
    std::array<BarPane*, kBarCount> bars;
    Dialogs& dialogs;
    Clipboard& clipboard;
    FileTypes& fileTypes;  ///< The desktop's kinds of files.
    Desktop& desktop;
    PreviewPane* preview = nullptr;  ///< Null for a window that has none.
    MapPane* map = nullptr;          ///< Null for a window that has none.
    SourcePane* sources = nullptr;   ///< Null for a window that has none.

    GridPane& grid(GridId id) const { return *grids[static_cast<std::size_t>(id)]; }
    BarPane& bar(BarId id) const { return *bars[static_cast<std::size_t>(id)]; }
};

/// What the window reports of itself. The logic implements it; each routine has its own trap, and none
/// throws.
class WindowEvents {
  public:
    virtual ~WindowEvents() = default;
    /// Is called once, before anything is shown: builds bars, columns and panes.
    virtual void formLoad(const Window& window, MessagePump& pump) = 0;
    /// Is called once, when the user sees the window: sources may be read from now on.
    virtual void formActivate() = 0;
    /// Returns false if the window must stay open.
    virtual bool formQueryUnload() = 0;
    virtual void formUnload() = 0;
    virtual void formResize() = 0;
    virtual void formKeyUp(int key) = 0;
    /// A grid got its first row or lost its last one, or its selection did. Told at once, but not before
    /// redraw is on.
    virtual void gridChanged(GridId /*grid*/) {}
    /// What a grid holds has changed: its rows, their cells or the selection; `rows` is false if neither rows
    /// nor cells did. Told some time later and once for many changes; during a run when the grid is painted
    /// anew.
    virtual void gridContentChanged(GridId /*grid*/, bool /*rows*/) {}
    /// Another start of the program handed its command line over.
    virtual void handOver(const std::string& commandLine) = 0;
    /// An exception escaped in the window's own routine `where`; called inside a catch block.
    virtual void windowFault(const char* where) = 0;
};

/// What was dropped on the window.
struct DroppedPlace {
    std::string address;  ///< As it came, such as "sftp://host/folder".
    std::string path;     ///< Its bytes; empty if it is not on this machine.
};

/// What the box of sources and the start page tell. No routine throws.
class SourceEvents {
  public:
    virtual ~SourceEvents() = default;
    virtual void comboText(const std::string& text) = 0;
    virtual void comboSelected(int index) = 0;
    virtual void comboKeyDown(int key) = 0;
    /// The user pressed Del on an item of the list. Returns whether it was removed.
    virtual bool comboRemove(int index) = 0;
    /// A button of the start page was pressed; it has this tag.
    virtual void startChosen(const std::string& tag) = 0;
    /// Files and folders were dropped on the window, in this order.
    virtual void dropped(const std::vector<DroppedPlace>& places) = 0;
};

/// What the window shows. The main form owns it; it outlives the window.
struct WindowParts {
    std::array<Grid*, kGridCount> grids{};
    std::array<const char*, kGridCount> gridNames{};   ///< "tvwPL"
    std::array<std::string, kGridCount> gridTitles{};  ///< For assistive tools.
    std::array<CommandBar*, kBarCount> bars{};
    BarEvents* barEvents = nullptr;        ///< Must be set before a window is made.
    SourceEvents* sourceEvents = nullptr;  ///< Must be set before a window is made.
    std::array<cSplitter*, kSplitterCount> splitters{};
    /// Returns what a cell shows, with control characters made visible. For any visible column.
    std::function<std::string(GridId, std::size_t column, Row)> cellText;
    /// Returns what the mark of a row means (Grid::mark), for its tooltip.
    std::function<std::string(std::uint32_t mark)> markNote;
    /// Returns what a cell's tooltip tells besides the cell's text, such as a size in all units; empty for
    /// nothing. May be null.
    std::function<std::string(GridId, std::size_t column, Row)> cellTip;
    /// Returns the text for a grid without rows; empty for none.
    std::function<std::string(GridId)> emptyHint;
    /// Returns the caption of the button below that text; empty for none.
    std::function<std::string(GridId)> emptyButton;
    /// Returns the theme's icon name for a picture that platform/icons.h does not have; empty for none.
    std::function<std::string(int picture)> fileIcon;
    /// The captions of the buttons in the window's own questions, in the user's language.
    std::string yes, no, ok, cancel;
    std::string more;        ///< The name of the button that shows the part of a bar that does not fit.
    std::string clear;       ///< The name of the button that empties an edit box.
    std::string map;         ///< The name of the map's pane, for assistive tools.
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
