// The lists of the main window, and what they ask of the rest of the window. For the thread of the logic
// only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "mainwindow/list_views.h"
#include "views/type_names.h"

namespace hl {

struct MainForm;

class ListsControl final : public ListHost {
  public:
    explicit ListsControl(MainForm& form) : form_(form) {}

    /// Makes the lists, which hear of their grids from now on. REQUIRES: the window exists.
    void makeLists();
    /// Returns null for a grid that is none of the lists. REQUIRES: makeLists() was called.
    ListView* of(GridId grid) { return lists_->of(grid); }
    TopView& top() { return lists_->top; }
    ChangesView& changes() { return lists_->changes; }
    /// Returns the list that has the lists' place, null if that place is hidden.
    ListView* shown();

    /// Returns why a list is empty and what to do about it.
    std::string emptyHint(GridId grid) const;
    /// Returns the caption of the button that fills a list that is switched off; empty for none.
    std::string emptyButton(GridId grid) const;
    /// Returns the theme's icon name for a picture of a file; empty for none.
    std::string iconName(int picture) const;

    // --- what is shown of a run
    /// The three lists that a scan fills have other rows.
    void filled();
    /// The list of found files has other rows.
    void foundFiles();
    /// The titles of the lists that a scan or a search fills; they say if it was stopped.
    void showTitles();
    /// The statistics show the report's current row, if they show at all.
    void followReport();
    /// Lists the files of a folder; an empty path empties the list.
    void showFilesOf(const std::string& folder);

    /// True if the next click on a title of a list or of the report only ends the dragging of a column
    /// border.
    bool& columnDragGuard() { return columnDragGuard_; }

    // --- commands
    void save(ListView& list);
    void print(GridId grid);

    // --- ListHost
    bool listShows(GridId list) override;
    void setSecondPanel(const std::string& text) override;
    void showPreview(GridId list, bool force) override;
    void openFile(const std::string& path) override;
    void deleteFiles(GridId list, bool forGood) override;
    void ShellContextMenuFileList(GridId list, Point at) override;
    void openColumnsMenu(GridId list, Point at) override;
    void copyPaths(const std::vector<std::string>& paths) override;
    void fillNow(GridId list) override;
    void findFiles(const std::string& filter) override;
    void showInReport(const std::string& folder, bool opensReport) override;
    void listFilled(GridId list) override;
    void nameEdited(GridId list, Row row, const std::string& name) override;

  private:
    bool isOff(GridId grid) const;
    bool isFilledNow(GridId grid) const;
    std::string statisticsHint() const;
    std::string changesHint() const;
    std::string printedTitle(GridId grid) const;
    std::string markedTitle(const std::string& title) const;

    MainForm& form_;
    std::vector<GridId> filledNow_;  ///< The lists that are switched off and were filled since the last run.
    std::unique_ptr<FilePictures> pictures_;
    std::unique_ptr<TypeNames> typeNames_;
    std::unique_ptr<ListViews> lists_;
    bool columnDragGuard_ = false;
};

}  // namespace hl
