// What the lists have in common: files of a folder, largest files, hardlinks, junctions, found files,
// statistics, changes.
//
// Each list is a ListView with its ListTraits; what no table can express is a short override in the list's
// own file. The grid keeps all rows and their state. In error reports the routines are named after their
// list: "List_Files_StartSearch", "lvwTOP_KeyUp". Input is ignored while the window is locked. For the thread
// of the logic only.
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
#include "scan/file_columns.h"
#include "scan/records.h"
#include "scan/scan_context.h"

namespace hl {

/// What a list asks of the rest of the main form. `list` is the list that asks.
class ListHost {
  public:
    virtual ~ListHost() = default;
    virtual bool listShows(GridId list) = 0;
    /// Sets the second panel of the status bar.
    virtual void setSecondPanel(const std::string& text) = 0;
    /// Makes the preview show the first selected file; with `force` even if it is shown already.
    virtual void showPreview(GridId list, bool force) = 0;
    virtual void openFile(const std::string& path) = 0;
    /// Moves the selected files to the trash, or deletes them for good.
    virtual void deleteFiles(GridId list, bool forGood) = 0;
    virtual void ShellContextMenuFileList(GridId list, Point at) = 0;
    /// Opens the menu in which columns are switched.
    virtual void openColumnsMenu(GridId list, Point at) = 0;
    /// Puts files on the clipboard, as files and as text.
    virtual void copyPaths(const std::vector<std::string>& paths) = 0;
    /// Fills a list that is switched off.
    virtual void fillNow(GridId list) = 0;
    /// Finds the files that a filter (scan/find_filter.h) takes, below the report's current row.
    virtual void findFiles(const std::string& filter) = 0;
    /// Shows a folder in the report; if that is hidden, only with `opensReport`, which also gives it the
    /// focus.
    virtual void showInReport(const std::string& folder, bool opensReport) = 0;
    /// The list got other rows, or lost them.
    virtual void listFilled(GridId list) = 0;
    /// The row's name was edited; `name` is the new name as bytes, perhaps unchanged.
    virtual void nameEdited(GridId list, Row row, const std::string& name) = 0;
};

/// What distinguishes a list from the others.
struct ListTraits {
    GridId grid;
    const char* family;   ///< The first part of the names of its routines, such as "List_Files_".
    const char* events;   ///< The first part of the names of its events, such as "lvwFiles_".
    const char* mouseUp;  ///< This routine's name in error reports; those of two lists do not follow the
                          ///< rule.
    const char* fileStat;
    Command searchText;  ///< The search box of its bar.

    const ListTable& table;  ///< Its columns.
    Flag Options::*showIcons = nullptr;
    bool iconsDuringScan = false;  ///< Icons are also loaded during a run.

    bool hasFiles = true;        ///< The rows can be previewed, opened and renamed, and their sizes can be
                                 ///< summed up.
    CellId searched = kNoCell;   ///< A text cell that is searched besides the rows' texts.
    bool hitLoadsIcons = false;  ///< Icons are loaded when a search has found a row.
    bool hitShowsPreview = false;
    bool keysShowPreview = false;  ///< Keys that move the selection update the preview, too.
};

/// What the lists use; everything outlives them.
struct ListParts {
    ScanContext& scan;
    Options& options;
    const Window& window;
    ListHost& host;
    FilePictures& pictures;
    bool& ColumnDragGuard;  ///< The next click on a title only ends the dragging of a column border. All
                            ///< lists share the flag.
};

class ListView : public GridEvents {
  public:
    ListView(const ListTraits& traits, const ListParts& parts, Grid& grid, CommandBar& bar);
    ListView(const ListView&) = delete;
    ListView& operator=(const ListView&) = delete;

    // --- commands of its bar
    /// Reads the files again, or finds the groups of hardlinks; in the other lists it does nothing.
    virtual void ownCommand() {}
    /// Reacts to the option for icons.
    void iconsSwitched();
    void showColumn(std::size_t column, bool shows);
    /// Makes the preview show the first selected file; with `force` even if it is shown already.
    void showPreview(bool force);
    /// Searches for the text of the bar's search box behind the current row, then from the top.
    void StartSearch();
    /// Selects the row with this text and brings it into sight. Nothing happens if there is none.
    void showRowOf(std::string_view text);

    // --- what the user does
    /// Each click reverses the order, whatever the column.
    void GridColumnTitleClick(std::size_t column) override;
    void columnSizing() override { parts_.ColumnDragGuard = true; }
    void MouseUp(Row row, MouseButton button, bool shift, Point at) override;
    void DblClick() override;
    void KeyUp(int key) override;
    void Shortcut(GridShortcut what) override;
    void columnMenu(Point at) override { parts_.host.openColumnsMenu(traits_.grid, at); }
    void emptyButtonPressed() override { parts_.host.fillNow(traits_.grid); }
    void deletePressed(bool forGood) override {
        if (!ignoresInput() && traits_.hasFiles) parts_.host.deleteFiles(traits_.grid, forGood);
    }
    void VScroll() override { SetFileIcons(false); }
    void GridCellAfterEditing(Row row, const std::string& value) override {
        parts_.host.nameEdited(traits_.grid, row, value);
    }

    // --- what the list shows
    /// Loads the icons of the visible rows, once for each row. If icons are switched off, it does nothing, or
    /// with `clear` removes the icons.
    void SetFileIcons(bool clear);
    void ShowFileStat();
    /// Makes every column as wide as its content.
    void Resize_Columns(bool withRedraw);
    /// Takes over the list's size mode and decimals from the options, for grid and status.
    void Set_SizeFormat();
    /// Must be called after somebody else added or removed rows.
    void rowsChanged();
    /// Removes the rows for whose paths `went` returns true.
    void removeRows(const std::function<bool(const std::string& path)>& went);

    /// Rows of the file `from` get the name that it has in `to`, a path in the same folder.
    void renameRows(const std::string& from, const std::string& to);

    /// Returns the full path of the row's file or folder.
    virtual std::string pathOf(Row row) const;
    /// Returns the paths that the list's menu is for: those of the selected rows, in the order of the view.
    virtual std::vector<std::string> menuPaths() const;
    Grid& grid() { return grid_; }
    const Grid& grid() const { return grid_; }
    /// Returns the name of a routine in error reports: "List_Files_DeleteFiles".
    std::string routine(const char* name) const { return std::string(traits_.family) + name; }
    /// Returns the name of an event: "lvwFiles_GridCellAfterEditing".
    std::string event(const char* name) const { return std::string(traits_.events) + name; }

  protected:
    /// Shows the status after a click on a row and after a key.
    virtual void showSelection() { ShowFileStat(); }
    /// Is called when some rows were removed.
    virtual void rowsRemoved() {}
    /// Returns the first part of the status.
    virtual std::string total() const;
    /// Is called when the right button was released over a row, before the menu opens.
    virtual void beforeMenu(Point) {}

    /// Tells whether there is nothing to work on, or the window is locked.
    bool ignoresInput() const;
    /// Returns "%1 selected files with %2".
    std::string selectedFiles() const;
    /// Must be called when the order of rows changed, because other rows are visible then.
    void rowsSorted();
    /// Must be called when the list got other rows.
    void rowsReplaced();
    /// Sets the list's sort and sorts the present rows by it.
    void sortBy(const LevelSort& sort);
    /// Sorts the rows by the list's sort, for sortBy.
    virtual void sortRows() { grid_.sortLevels(0); }
    /// Guards the routine that calls it, for error reports under its name behind `prefix`.
    template <class Body>
    void trapped(const char* prefix, Body&& body, const char* name = __builtin_FUNCTION()) {
        guarded(parts_.scan.diagnostics, {.routine = (std::string(prefix) + name).c_str()},
                std::forward<Body>(body));
    }

    const ListTraits& traits_;
    ListParts parts_;
    Grid& grid_;
    GridPane& pane_;
    CommandBar& bar_;

  private:
    Row searchedFrom() const;
    std::size_t firstHit(const std::string& part, std::size_t from, std::size_t to) const;
    void showHit(Row row);
    void selectOnly(Row row);
    void takeIconsAway();
    void loadIcons(const RowRange& rows);

    std::optional<RowRange> iconRows_;  ///< The rows whose icons were loaded last.
    std::size_t IconsLoaded_ = 0;
};

}  // namespace hl
