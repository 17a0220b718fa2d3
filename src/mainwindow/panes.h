// The panes of the main window: a tree of six splitters, with a grid and its bar in each leaf.
//
//     splMain (side by side)
//       splReport              cbrReport above tvwPL
//       splInfo
//         splDrives            cbrDrives above lvwDiskinfo
//         splFiles             the bar of a list above
//           splFilesAndPreview   that list, and the preview
//
// The four lists share one place: one of them has it at a time. Which panes show is decided by the checked
// entries of cbrMain; the panes follow them and keep no second record. Lengths are pixels. Thread of the
// logic only.
#pragma once

#include <array>
#include <string>

#include "app/command.h"
#include "app/options.h"
#include "base/path.h"
#include "platform/window.h"
#include "scan/scan_state.h"

namespace hl {

/// Flips the entry of cbrMain that shows and hides a panel. The last panel that shows stays, and a list that
/// comes to show hides the other three. False if nothing was flipped; so too for a command that is no
/// panel's.
bool PanelToggle(CommandBar& cbrMain, Command panel);

/// What the panes ask of the rest of the main form. Lists are kFiles, kTop, kHardlinks and kJunctions.
class PaneHost {
  public:
    virtual ~PaneHost() = default;

    // --- measures of the window
    virtual int barHeight(BarId bar) = 0;
    virtual int gridWidth(GridId grid) = 0;
    virtual int formWidth() = 0;

    // --- views
    virtual void refresh(GridId grid) = 0;
    /// Fits the columns of a list that comes to show: it may have been filled at another width.
    virtual void fitColumns(GridId list) = 0;
    /// Nothing for the junctions, which have no icons of their own.
    virtual void SetFileIcons(GridId list) = 0;
    virtual void ShowFileStat(GridId list) = 0;
    /// `folder` ends with a separator.
    virtual void List_Files_ScanFolder(const std::string& folder) = 0;
    virtual void Drives_ResizeTableHeight() = 0;
    virtual void Drives_Resize_Columns(bool withRedraw) = 0;
    virtual void Preview_Reset_View() = 0;
    virtual void Preview_ShowFile() = 0;

    /// The panel values that the panes were given have changed.
    virtual void statusChanged() = 0;
};

/// What the panes work with. All of it outlives them.
struct PaneParts {
    std::array<CommandBar*, kBarCount> bars;  ///< None is null; those of hidden panes too are complete.
    const Grid& tvwPL;
    Options& options;  ///< The five options of panels that show are written.
    const ScanState& state;
    const PathRules& paths;
    StatusPanels& status;  ///< Width of the first panel; the second is emptied when no list shows.
    PaneHost& host;
    Diagnostics& diagnostics;
};

class Panes {
  public:
    /// Binds the tree, with its start values. The lists' place has the file list.
    explicit Panes(const PaneParts& parts);
    Panes(const Panes&) = delete;
    Panes& operator=(const Panes&) = delete;

    cSplitter& splitter(SplitterId id) { return splitters_[static_cast<std::size_t>(id)]; }
    const cSplitter& splitter(SplitterId id) const { return splitters_[static_cast<std::size_t>(id)]; }
    /// In the order of SplitterId.
    std::array<cSplitter*, kSplitterCount> all();

    // --- at the start, in the order of the calls
    /// Gives the lists' place to the first list whose option is on.
    void ShowFirstList();
    /// `report`: its width, as mainwindow/window_geometry.h read it. The preview gets half of its splitter,
    /// once the size of that is known.
    void placeSplitters(int report);
    /// Hides what the options switch off.
    void hideByOptions();

    // --- commands
    /// A click on a panel's entry of cbrMain, with all that follows from it. Other commands are ignored.
    void PanelToggle(Command panel);
    /// Panes, options and status panel follow the panel entries of cbrMain. Call after any of them changed.
    void Change_Info_Visibility();
    /// Preview and its place follow the entries for them in the bar of `list`; the junctions have none.
    /// REQUIRES: `list` is one of the four lists.
    void followPreviewEntries(GridId list);

    // --- events
    /// cbrReport_Resize and its five siblings, by bar: the bar's pane becomes exactly as high as the bar.
    /// Ignored for cbrMain, for a bar whose pane does not show, and while it runs for the same bar.
    void cbrResize(BarId bar);
    /// To be called when icons or captions of the bars have another size: whether the bars of the lists clip
    /// is found out anew.
    void measureListBars();
    /// Status panel and bars follow the width of the report. A window that became narrower keeps both sides
    /// in sight.
    void splMain_AfterResize();
    /// Bars follow their panes, and rows that came into sight get their icons.
    void splInfo_AfterResize();
    /// While a long operation runs: has the grids that show painted, since they would not be otherwise.
    void Form_Resize();

    /// The list that has the lists' place, whether it shows or not.
    GridId list() const;
    /// Whether the lists' place shows.
    bool listShows() const;

  private:
    struct ListPane;
    static const ListPane kLists[4];
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
    int fitBar(BarId bar, const cSplitter& holder);

    PaneParts parts_;
    std::array<cSplitter, kSplitterCount> splitters_;
    std::array<bool, kBarCount> barResizes_{};
    std::array<int, kBarCount> wrappedHeights_{};  ///< Without clipping, as last measured; 0 before.
    int rest_ = 0;                                 ///< Width beside the report.
    bool narrowRest_ = false;
    bool infoResizes_ = false;
    bool halveWhenKnown_ = false;
};

}  // namespace hl
