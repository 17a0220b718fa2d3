// The panes of the main window: a tree of seven splitters, whose leaves each hold a grid and its bar.
//
//     splMain (side by side)
//       splReport              cbrReport above
//         splReportAndMap        tvwPL, and the map
//       splInfo
//         splDrives            cbrDrives above lvwDiskinfo
//         splFiles             the bar of a list above
//           splFilesAndPreview   that list, and the preview
//
// The lists share one place, which one of them has at a time. The checked entries of cbrMain decide
// which panes are visible; the panes keep no second record of that. Lengths are in pixels. For the thread of
// the logic only.
#pragma once

#include <array>
#include <string>

#include "app/command.h"
#include "app/options.h"
#include "base/path.h"
#include "platform/window.h"
#include "scan/scan_state.h"

namespace hl {

/// Switches the entry of cbrMain that shows or hides a panel. The last visible panel stays, and a list that
/// is shown hides the others. Returns false if nothing was switched, or if the command is not that of a
/// panel.
bool PanelToggle(CommandBar& cbrMain, Command panel);

/// What the panes ask of the rest of the main form. The lists are kFiles and those behind it.
class PaneHost {
  public:
    virtual ~PaneHost() = default;

    // --- measures of the window
    virtual int barHeight(BarId bar) = 0;
    virtual int gridWidth(GridId grid) = 0;
    virtual int formWidth() = 0;

    // --- views
    virtual void refresh(GridId grid) = 0;
    /// Brings a list that becomes visible up to date.
    virtual void listAppears(GridId list) = 0;
    /// Fits the columns of a list that becomes visible, because it may have been filled at another width.
    virtual void fitColumns(GridId list) = 0;
    /// Does nothing for a list without icons of its own.
    virtual void SetFileIcons(GridId list) = 0;
    virtual void ShowFileStat(GridId list) = 0;
    /// Tells whether the folder of a row of the report is on the disk.
    virtual bool isOnDisk(Row /*row*/) const { return true; }
    /// `folder` ends with a separator; an empty one empties the list.
    virtual void List_Files_ScanFolder(const std::string& folder) = 0;
    virtual void Drives_ResizeTableHeight() = 0;
    virtual void Drives_Resize_Columns(bool withRedraw) = 0;
    virtual void Preview_Reset_View() = 0;
    virtual void Preview_ShowFile() = 0;

    /// The values that the panes set in the status panels have changed.
    virtual void statusChanged() = 0;
};

/// What the panes work with; all of it outlives them.
struct PaneParts {
    std::array<CommandBar*, kBarCount> bars;  ///< All bars, including those of hidden panes; none is null.
    const Grid& tvwPL;
    Options& options;  ///< The panes write the options that tell which panels are visible.
    const ScanState& state;
    const PathRules& paths;
    StatusPanels& status;  ///< The panes set the width of the first panel, and empty the second when no list
                           ///< is visible.
    PaneHost& host;
    Diagnostics& diagnostics;
};

class Panes {
  public:
    /// Builds the tree with its start values. The file list has the lists' place.
    explicit Panes(const PaneParts& parts);
    Panes(const Panes&) = delete;
    Panes& operator=(const Panes&) = delete;

    cSplitter& splitter(SplitterId id) { return splitters_[static_cast<std::size_t>(id)]; }
    const cSplitter& splitter(SplitterId id) const { return splitters_[static_cast<std::size_t>(id)]; }
    /// Returns them in the order of SplitterId.
    std::array<cSplitter*, kSplitterCount> all();

    // --- at the start, in the order of the calls
    /// Gives the lists' place to the first list whose option is on.
    void ShowFirstList();
    /// Places the splitters. `report` is the report's width, from mainwindow/window_geometry.h. The preview
    /// gets half of its splitter once that one's size is known.
    void placeSplitters(int report);
    /// Hides the panes that the options switch off.
    void hideByOptions();

    // --- commands
    /// Carries out a click on a panel's entry of cbrMain. Other commands are ignored.
    void PanelToggle(Command panel);
    /// Brings panes, options and status panel in line with the panel entries of cbrMain; must be called after
    /// any of them changed.
    void Change_Info_Visibility();
    /// Shows or hides the map as its option says.
    void followMap();
    /// Brings the preview and its place in line with their entries in the bar of `list`; lists without files
    /// have none. REQUIRES: `list` is one of the lists.
    void followPreviewEntries(GridId list);

    // --- events
    /// Makes the bar's pane exactly as high as the bar, for cbrReport_Resize and its siblings. Ignored
    /// for cbrMain, for a bar whose pane is hidden, and while it runs for the same bar.
    void cbrResize(BarId bar);
    /// Must be called when icons or captions of the bars change their size: then it is determined anew
    /// whether the lists' bars clip.
    void measureListBars();
    /// Adapts status panel and bars to the width of the report. In a window that became narrower both sides
    /// stay visible.
    void splMain_AfterResize();
    /// Adapts the bars to their panes and loads icons for rows that became visible.
    void splInfo_AfterResize();
    /// Has the visible grids painted during a long operation, when they would not be otherwise.
    void Form_Resize();

    /// Returns the list in the lists' place, even if that is hidden.
    GridId list() const;
    /// Tells whether the lists' place is visible.
    bool listShows() const;

  private:
    struct ListPane;
    static const ListPane kLists[7];
    static const ListPane* listOf(Command panel);
    static const ListPane& listOf(GridId grid);

    CommandBar& bar(BarId id) const { return *parts_.bars[static_cast<std::size_t>(id)]; }
    bool panelOn(Command panel) const { return bar(BarId::kMain).isChecked(idOf(panel)); }
    const ListPane* listOn() const;

    void panelsToOptions(const ListPane* list);
    void panesOfInfo(bool drives, bool lists);
    bool keepBothInSight(SplitterId id, int least);
    void statusWidth();
    void showList(const ListPane& list);
    void bindList(const ListPane& list);
    void filesOfSelection();
    void halvePreview();
    void divideReport();
    int fitBar(BarId bar, const cSplitter& holder);

    PaneParts parts_;
    std::array<cSplitter, kSplitterCount> splitters_;
    std::array<bool, kBarCount> barResizes_{};
    std::array<int, kBarCount> wrappedHeights_{};  ///< The heights without clipping, as last measured; 0 if
                                                   ///< not measured yet.
    int rest_ = 0;                                 ///< The width beside the report.
    bool narrowRest_ = false;
    bool infoResizes_ = false;
    /// Where the bar of a splitter stood before the window became too small for it, and where it was put.
    struct Squeezed {
        int from = -1, to = -1;
    };
    std::array<Squeezed, kSplitterCount> squeezed_{};
    bool halveWhenKnown_ = false;
    bool divideWhenKnown_ = false;  ///< The report's part is not known yet.
};

}  // namespace hl
