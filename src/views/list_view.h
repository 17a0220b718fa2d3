// What the four lists have in common: files of a folder, largest files, hardlinks, junctions.
//
// Each list is a ListView with its ListTraits; what no table can say is a short override in its own unit. The
// grid keeps all rows and their state. In error reports the routines have the names of their list:
// "List_Files_StartSearch", "lvwTOP_KeyUp". Input is ignored while the window is locked. Thread of the logic
// only.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/command.h"
#include "base/size_value.h"
#include "platform/command_bar.h"
#include "platform/file_types.h"
#include "platform/window.h"
#include "robustness/trap.h"
#include "scan/records.h"
#include "scan/scan_context.h"

namespace hl {

/// What a list asks of the rest of the main form. `list` is the list that asks.
class ListHost {
  public:
    virtual ~ListHost() = default;
    /// Nothing where the list does not show, or has no rows.
    virtual std::optional<RowRange> visibleRows(GridId list) = 0;
    /// The column at a place of the screen, counted from 0; one that does not exist right of them all.
    virtual std::size_t columnAt(GridId list, Point at) = 0;
    virtual bool listShows(GridId list) = 0;
    /// The second panel of the status bar.
    virtual void setSecondPanel(const std::string& text) = 0;
    /// The preview shows the first selected file; with `force` also one that it has shown already.
    virtual void showPreview(GridId list, bool force) = 0;
    virtual void openFile(const std::string& path) = 0;
    virtual void ShellContextMenuFileList(GridId list, Point at) = 0;
    /// Begins the editing of the row's name in its cell.
    virtual void beginRename(GridId list, Row row) = 0;
};

/// Where a list differs from the others.
struct ListTraits {
    GridId grid;
    const char* family;   ///< First part of the names of its routines: "List_Files_";
    const char* events;   ///< of its events: "lvwFiles_".
    const char* mouseUp;  ///< In reports. Two lists have names that do not follow the rule.
    const char* fileStat;
    Command searchText;  ///< The box of its bar in which is typed what is searched.

    std::size_t sizeColumn = 0;  ///< 0: the list has no sizes, and none of the next two.
    std::uint8_t Options::*sizeMode = nullptr;
    void (*setSizeFormat)(Grid&, const Options&, const Texts&) = nullptr;
    Flag Options::*showIcons = nullptr;
    bool iconsDuringScan = false;  ///< Icons are loaded while a run lasts.

    bool hasFiles = true;        ///< Rows can be previewed, opened and renamed, and have sizes to sum up.
    CellId searched = kNoCell;   ///< A text cell that is searched beside the rows' texts.
    bool hitLoadsIcons = false;  ///< What follows when a search has found a row.
    bool hitShowsPreview = false;
    bool keysShowStatus = false;  ///< Keys that move bring status and preview up to date.
};

/// All of it outlives the lists.
struct ListParts {
    ScanContext& scan;
    Options& options;
    Window& window;
    ListHost& host;
    FilePictures& pictures;
    bool&
        ColumnDragGuard;  ///< The next click on a title ends the drag of a column border. One for all lists.
};

class ListView {
  public:
    ListView(const ListTraits& traits, const ListParts& parts, Grid& grid, CommandBar& bar);
    virtual ~ListView() = default;
    ListView(const ListView&) = delete;
    ListView& operator=(const ListView&) = delete;

    // --- commands of its bar
    /// Reads the files anew, or finds the groups of hardlinks; nothing for the other lists.
    virtual void ownCommand() {}
    /// The option for icons was switched.
    void iconsSwitched();
    void showColumn(std::size_t column, bool shows);
    /// The preview shows the first selected file; with `force` also one that it has shown already.
    void showPreview(bool force);
    /// Looks for the text of the bar's search box behind the current row, and from the top again.
    void StartSearch();

    // --- what the user does
    /// One toggle, whatever the column.
    void GridColumnTitleClick(std::size_t column);
    void columnSizing() { parts_.ColumnDragGuard = true; }
    void MouseUp(Row row, MouseButton button, Point at);
    void ItemDblClick();
    void KeyUp(int key);
    void VScroll() { SetFileIcons(false); }
    /// The pointer has come over another row, or over none.
    virtual void MouseMove(Row) {}

    // --- what the list shows
    /// Loads the icons of the rows that show, once for each row. With icons switched off it does nothing, or
    /// with `clear` takes those away that are there.
    void SetFileIcons(bool clear);
    void ShowFileStat();
    /// Every column as wide as what it shows.
    void Resize_Columns(bool withRedraw);
    /// Grid and status take over the list's size mode and decimals from the options.
    void Set_SizeFormat();
    /// To be called when rows have come or gone by other hands than the list's own.
    void rowsChanged();
    /// Removes the rows of those paths that `went`.
    void removeRows(const std::function<bool(const std::string& path)>& went);

    /// Full path of the row's file or folder.
    virtual std::string pathOf(Row row) const;
    /// Of the selected rows, in the order of the view: what the list's menu is for.
    virtual std::vector<std::string> menuPaths() const;
    Grid& grid() { return grid_; }
    /// The name of a routine in error reports: "List_Files_DeleteFiles".
    std::string routine(const char* name) const { return std::string(traits_.family) + name; }
    /// Of an event: "lvwFiles_GridCellAfterEditing".
    std::string event(const char* name) const { return std::string(traits_.events) + name; }

  protected:
    /// The status after a click on a row and after a key.
    virtual void showSelection() { ShowFileStat(); }
    /// Some rows have been removed.
    virtual void rowsRemoved() {}
    /// First part of the status.
    virtual std::string total() const;
    /// The right button was released over a row, and the menu is next.
    virtual void beforeMenu(Point) {}

    /// "%1 selected files with %2".
    std::string selectedFiles() const;
    /// The rows are in another order: others are visible.
    void rowsSorted();
    /// The rows are others.
    void rowsReplaced();
    /// Rows as they stand, by the list's one sort.
    void sortBy(const LevelSort& sort);
    /// What sortBy does with the list's sort.
    virtual void sortRows() { grid_.sortLevels(0); }
    template <class Body>
    void trapped(const std::string& routine, Body&& body) {
        guarded(parts_.scan.diagnostics, routine.c_str(), "frmMain", std::forward<Body>(body));
    }

    const ListTraits& traits_;
    ListParts parts_;
    Grid& grid_;
    CommandBar& bar_;

  private:
    bool ignoresInput() const;
    Row searchedFrom() const;
    std::size_t firstHit(const std::string& part, std::size_t from, std::size_t to) const;
    void showHit(Row row);
    void selectOnly(Row row);
    void takeIconsAway();
    void loadIcons(const RowRange& rows);

    std::optional<RowRange> iconRows_;  ///< Where icons were last loaded.
    std::size_t IconsLoaded_ = 0;
};

}  // namespace hl
