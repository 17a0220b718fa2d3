// The views of the report and of the four lists, with no rows at first.
#pragma once

#include "support/fake_window.h"
#include "support/scan_fixture.h"
#include "views/files_view.h"
#include "views/hardlinks_view.h"
#include "views/junctions_view.h"
#include "views/list_columns.h"
#include "views/report_view.h"
#include "views/top_view.h"

namespace hl::test {

struct ViewsFixture : ScanFixture, ListHost, ReportHost {
    FakeWindow window;
    FakeTypes types;
    FilePictures pictures{types};
    bool dragGuard = false;
    Grid lvwFiles{kFileCells};
    CommandBar bar{BarId::kFiles, ""};  ///< Stands for all bars.
    ListParts parts{scan, options, window, *this, pictures, dragGuard};
    FilesView filesView{parts, lvwFiles, bar};
    TopView topView{parts, top, bar};
    HardlinksView hardlinksView{parts, hardlinks, bar};
    JunctionsView junctionsView{parts, junctions, bar};
    ReportView reportView{scan, options, bar, window, *this, dragGuard};
    std::string status;  ///< The text of a panel, or the path of a file that was opened.

    ViewsFixture() {
        window.visibleRows = RowRange{0, 99};
        Init_List(lvwFiles, kFilesTable, options, texts);
        Init_List(top, kTopTable, options, texts);
        Init_List(hardlinks, kHardlinksTable, options, texts);
        Init_List(junctions, kJunctionsTable, options, texts);
    }

    bool listShows(GridId) override { return true; }
    void setSecondPanel(const std::string& text) override { status = text; }
    void showPreview(GridId, bool) override {}
    void deleteFiles(GridId, bool) override {}
    void openFile(const std::string& path) override { status = path; }
    void ShellContextMenuFileList(GridId, Point) override {}
    void openColumnsMenu(GridId, Point) override {}
    void copyPaths(const std::vector<std::string>&) override {}
    void fillNow(GridId) override {}
    void findFiles(const std::string&) override {}
    void showInReport(const std::string&, bool) override {}
    void listFilled(GridId) override {}
    void nameEdited(GridId, Row, const std::string&) override {}
    void setReportWidth(int) override {}
    void setFirstPanel(const std::string& text) override { status = text; }
    void selectDriveOf(Row) override {}
    void showFilesOf(const std::string&) override {}
    void refreshPreview() override {}
    void Preview_Reset_View() override {}
    void deleteFolders(bool) override {}
    void openRowsMenu(Point) override {}
    void Report_ShellContextMenu(Row, const std::string&, Point) override {}
};

}  // namespace hl::test
