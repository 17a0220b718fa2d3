// How the main window looks: its panes, fonts and icons. For the thread of the logic only.
#pragma once

#include <string>

#include "mainwindow/panes.h"

namespace hl {

struct MainForm;
struct GridFont;

class LooksControl final : private PaneHost {
  public:
    explicit LooksControl(MainForm& form);

    Panes& panes() { return panes_; }

    // --- fonts; REQUIRES: the window exists
    /// Gives every grid the font that the options have for it.
    void applyFonts();
    /// Asks for a font for one grid, and fits its columns.
    void chooseFont(GridId grid);
    void chooseFontOfAll();
    /// Makes every font larger or smaller by `points`, within bounds.
    void changeFontSizes(int points);
    void resizeAllColumns();

    // --- bars
    void largeIconsSwitched();
    void iconTextSwitched();
    /// Hides all panels but the report, or, for a list, the report and the drives.
    void fullView(BarId bar);

  private:
    /// Sets the font of a grid in the window and in the options; the columns stay as they are.
    void setFont(GridId grid, const GridFont& font);
    /// The fonts of bars and status bar follow what the grids' fonts have in common.
    void followFonts();

    // --- PaneHost
    int barHeight(BarId bar) override;
    int gridWidth(GridId grid) override;
    int formWidth() override;
    void refresh(GridId grid) override;
    void listAppears(GridId list) override;
    void fitColumns(GridId list) override;
    void SetFileIcons(GridId list) override;
    void ShowFileStat(GridId list) override;
    bool isOnDisk(Row row) const override;
    void List_Files_ScanFolder(const std::string& folder) override;
    void Drives_ResizeTableHeight() override;
    void Drives_Resize_Columns(bool withRedraw) override;
    void Preview_Reset_View() override;
    void Preview_ShowFile() override;
    void statusChanged() override;

    MainForm& form_;
    Panes panes_;
};

}  // namespace hl
