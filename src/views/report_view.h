// tvwPL, the folder report in a window: sorting, folding, columns, selection and search.
//
// The grid keeps all of the state; this class reacts to what the user does with it. For the thread of the
// logic only; loops over all rows let messages run and end when Stop was pressed.
#pragma once

#include <string>
#include <vector>

#include "platform/command_bar.h"
#include "platform/window.h"
#include "scan/scan_context.h"
#include "views/path_history.h"

namespace hl {

/// What the report asks of the rest of the main form.
class ReportHost {
  public:
    virtual ~ReportHost() = default;
    /// Sets the width of the report's pane, in pixels.
    virtual void setReportWidth(int pixels) = 0;
    virtual void setFirstPanel(const std::string& text) = 0;
    /// Selects the drive that the row lies on.
    virtual void selectDriveOf(Row row) = 0;
    /// Lists the files of a folder; an empty path empties the list. Messages may run meanwhile.
    virtual void showFilesOf(const std::string& folder) = 0;
    virtual void refreshPreview() = 0;
    /// Empties the preview.
    virtual void Preview_Reset_View() = 0;
    /// Moves what is selected to the trash, or deletes it for good.
    virtual void deleteFolders(bool forGood) = 0;
    /// Opens the menu for several selected rows.
    virtual void openRowsMenu(Point at) = 0;
    /// Opens the menu in which columns are switched.
    virtual void openColumnsMenu(GridId grid, Point at) = 0;
    /// Puts files on the clipboard, as files and as text.
    virtual void copyPaths(const std::vector<std::string>& paths) = 0;
    /// The row's name was edited; `name` is the new name as bytes, perhaps unchanged.
    virtual void nameEdited(GridId grid, Row row, const std::string& name) = 0;
    /// The user looks around in the report while a run fills it.
    virtual void looked(Look /*what*/) {}
    /// Opens the menu of a folder, the current row. `path` ends in a separator.
    virtual void Report_ShellContextMenu(Row row, const std::string& path, Point at) = 0;
};

class ReportView final : public GridEvents {
  public:
    /// The arguments must outlive the view.
    ReportView(ScanContext& scan, Options& options, CommandBar& cbrReport, const Window& window,
               ReportHost& host, bool& ColumnDragGuard)
        : scan_(scan),
          grid_(scan.tvwPL),
          options_(options),
          bar_(cbrReport),
          pane_(window.grid(GridId::kReport)),
          barPane_(window.bar(BarId::kReport)),
          host_(host),
          ColumnDragGuard_(ColumnDragGuard) {}

    // --- columns
    /// Makes the pane as wide as its columns.
    void Report_Resize_Width();
    /// Fits all columns to their content; with `withRedraw` they are painted at once.
    void Report_Resize_Columns(bool withRedraw);
    /// `column` counts from 0, which is the name.
    void Report_ChangeColVisible(std::size_t column, bool visible);
    /// Sets the unit of sizes in the grid.
    void Report_Set_SizeFormat();

    // --- folding
    void Report_ExpandAllFolders(bool expand);
    /// Unfolds the rows of the levels up to `level`, and folds all others.
    void Report_ExpandFolderLevels(std::uint32_t level);
    /// Unfolds or folds the current row with everything below it.
    void Report_ExpandSubFolders(bool expand);

    /// Returns the path of a row's folder, which for a files row is the one above, with a separator.
    std::string folderPath(Row row) const;
    /// The same for the list of files: empty if the folder is not on the disk (scan/on_disk.h).
    std::string listedFolder(Row row) const;

    // --- commands
    /// Searches for the text of the bar's search box behind the current row, then from the top.
    void Report_StartSearch();
    /// Empties the report.
    void removeAll();
    /// Selects the row of a folder, and what hides it is unfolded; the window follows as after a click.
    /// Returns false if no source shows the folder. `path` ends in no separator.
    bool goTo(const std::string& path);
    /// The same for a row, which may be kNoRow.
    bool goTo(Row row);
    /// Shows shares and order anew, after another size is reckoned with.
    void reckonAnew();
    /// Going back leads to what is selected now, from whatever is selected later.
    void selectionArrived();

    // --- what the user does; ignored while a scan or a loop over all rows is running
    /// Sorts all levels by the column; each click reverses the order.
    void GridColumnTitleClick(std::size_t column) override;
    /// A click on a title that ends the dragging of a column border does not sort.
    void columnSizing() override { ColumnDragGuard_ = true; }
    /// If one row is selected, lists and status bar now show its folder. kNoRow means a click beside all
    /// rows.
    void MouseUp(Row row, MouseButton button, bool shift, Point at) override;
    /// Folds or unfolds the first selected row.
    void DblClick() override;
    /// Up and Down act for the first selected row like a click, but do not change the current row; Return
    /// acts like a double click; F2 renames a folder that is no source.
    void KeyUp(int key) override;
    /// Copies the paths of the selected folders, or goes through those that were selected one by one.
    void Shortcut(GridShortcut what) override;
    void columnMenu(Point at) override { host_.openColumnsMenu(GridId::kReport, at); }
    void deletePressed(bool forGood) override {
        if (!scan_.state.ScanActive) host_.deleteFolders(forGood);
    }
    /// Fits the columns to the rows that are visible now; rows that are hidden now lose their selection.
    void expandedByUser(Row row) override;
    void looked(Look what) override { host_.looked(what); }
    void GridCellAfterEditing(Row row, const std::string& value) override {
        host_.nameEdited(GridId::kReport, row, value);
    }

  private:
    enum class Folding { kExpandAll, kCollapseAll, kByLevel };

    void fold(const char* routine, Folding how, std::uint32_t level);
    void foldRows(Folding how, std::uint32_t level);
    bool progress(std::size_t done, std::size_t all);
    Row shownFor(Row row) const;
    void leaveHiddenRows();
    void sortAgain(const std::string& key, bool numbers);
    void Report_MouseClick(Row row, MouseButton button, Point at);
    void tellOf(Row row, MouseButton button, Point at);
    bool follow(Row row);
    std::string pathOf(Row row) const;
    Row rowOf(const std::string& path) const;
    void copySelected();
    void selectOther(Row row, MouseButton button, bool shift);
    void dropSelection();
    void showSelection(const std::string& path);
    Row folderOf(Row row) const;
    void searchFromStart(Row start, const std::string& part);
    void show(Row row);

    ScanContext& scan_;
    Grid& grid_;
    Options& options_;
    CommandBar& bar_;
    GridPane& pane_;
    BarPane& barPane_;
    ReportHost& host_;
    PathHistory history_;
    bool& ColumnDragGuard_;  ///< All lists that are sorted by clicks on their titles share it.
};

}  // namespace hl
