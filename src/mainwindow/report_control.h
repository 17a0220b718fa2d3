// The folder report in the main window: its view, its pane, and what it asks of the rest of the window. For
// the thread of the logic only.
#pragma once

#include <memory>
#include <string>

#include "views/report_view.h"

namespace hl {

struct MainForm;

class ReportControl final : public ReportHost {
  public:
    explicit ReportControl(MainForm& form) : form_(form) {}

    /// Makes the view, which hears of its grid from now on. REQUIRES: the window exists.
    void makeView();
    /// REQUIRES: makeView() was called.
    ReportView& view() { return *view_; }

    /// `chosen` tells that the settings have a width for the report.
    void widthIsChosen(bool chosen);
    /// If the user has not chosen a layout yet, the first report gets the width that its columns need, as far
    /// as the other panes keep their share, until the user moves the bar.
    void fitPane();
    /// All rows of a run are there: fits the pane for the last time, and with `columns` the columns.
    void rowsArrived(bool columns);

    void save();
    /// Saves the source of the current row as a saved scan, to a file that the user is asked for.
    void saveScan();
    void print();
    /// Shows the report and selects the row of a folder in it, or, if there is none, says so.
    void goTo(const std::string& path);
    /// Selects a row, if the report shows or is to be `opened`.
    void goToRow(Row row, bool opened);
    /// Lists the folders that were not read, with the reasons.
    void showNotRead();

    // --- ReportHost
    void setReportWidth(int pixels) override;
    void setFirstPanel(const std::string& text) override;
    void selectDriveOf(Row row) override;
    void showFilesOf(const std::string& folder) override;
    void refreshPreview() override;
    void Preview_Reset_View() override;
    void deleteFolders(bool forGood) override;
    void openRowsMenu(Point at) override;
    void openColumnsMenu(GridId grid, Point at) override;
    void copyPaths(const std::vector<std::string>& paths) override;
    void nameEdited(GridId grid, Row row, const std::string& name) override;
    void looked(Look what) override;
    void Report_ShellContextMenu(Row row, const std::string& path, Point at) override;

  private:
    void writeScanTo(const std::string& path);

    MainForm& form_;
    std::unique_ptr<ReportView> view_;
    /// Nobody has chosen the width of the report yet: it starts narrower than its columns.
    bool widthOpen_ = false;
    int startWidth_ = 0;  ///< The width at the start, which nobody has chosen.
};

}  // namespace hl
