// Fonts; bars; what the panes ask.
#include "mainwindow/looks_control.h"

#include <algorithm>
#include <cmath>

#include "mainwindow/bar_options.h"
#include "mainwindow/main_form.h"
#include "mainwindow/pane_table.h"
#include "scan/on_disk.h"

namespace hl {

namespace {

// In points.
constexpr int kFontSmallest = 5;
constexpr int kFontLargest = 40;
// The fonts of bars and status bar differ by so much from that of the desktop.
constexpr int kMostSmaller = -3, kMostLarger = 12;

}  // namespace

LooksControl::LooksControl(MainForm& form)
    : form_(form),
      panes_({form.bars.all(), form.session.tvwPL, form.session.options, form.session.state,
              form.services().paths, form.status.panels(), *this, form.services().diagnostics}) {}

// --- fonts

void LooksControl::applyFonts() {
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const auto id = static_cast<GridId>(i);
        form_.window->grid(id).setGridFont(fontOf(form_.session.options, id));
    }
    followFonts();
}

// No option of their own is needed: they are larger by what all grids are larger than at the first start.
void LooksControl::followFonts() {
    constexpr double kFirstSize = 9;
    double least = kFontLargest, most = kFontSmallest;
    for (std::size_t i = 0; i < kGridCount; ++i) {
        double points = fontOf(form_.session.options, static_cast<GridId>(i)).points;
        if (points < kFontSmallest) points = kFirstSize;  // It could not be read.
        least = std::min(least, points);
        most = std::max(most, points);
    }
    const double common = least > kFirstSize ? least : most < kFirstSize ? most : kFirstSize;
    const int largerBy =
        std::clamp(static_cast<int>(std::lround(common - kFirstSize)), kMostSmaller, kMostLarger);
    for (CommandBar* bar : form_.bars.all()) bar->setLargerBy(largerBy);
    form_.status.panels().largerBy = largerBy;
    form_.status.show();
}

void LooksControl::setFont(GridId id, const GridFont& font) {
    setFontOf(form_.session.options, id, font);
    form_.window->grid(id).setGridFont(font);
}

void LooksControl::chooseFont(GridId id) {
    const auto font = form_.window->dialogs.askFont(form_.window->grid(id).gridFont());
    if (!font) return;
    setFont(id, *font);
    followFonts();
    if (id == GridId::kReport) return form_.report.view().Report_Resize_Columns(true);
    if (ListView* list = form_.lists.of(id)) return list->Resize_Columns(true);
    form_.drives.list().Drives_Resize_Columns(true);
    Drives_ResizeTableHeight();
}

void LooksControl::chooseFontOfAll() {
    const auto font = form_.window->dialogs.askFont(form_.window->grid(GridId::kReport).gridFont());
    if (!font) return;
    for (std::size_t i = 0; i < kGridCount; ++i) setFont(static_cast<GridId>(i), *font);
    followFonts();
    resizeAllColumns();
    Drives_ResizeTableHeight();
}

void LooksControl::changeFontSizes(int points) {
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const auto id = static_cast<GridId>(i);
        GridFont font = form_.window->grid(id).gridFont();
        font.points = std::clamp<double>(font.points + points, kFontSmallest, kFontLargest);
        setFont(id, font);
    }
    followFonts();
    resizeAllColumns();
    Drives_ResizeTableHeight();
}

void LooksControl::resizeAllColumns() {
    for (const GridId id : kListGrids) form_.lists.of(id)->Resize_Columns(false);
    form_.drives.list().Drives_Resize_Columns(true);
    form_.report.view().Report_Resize_Columns(true);
}

// --- bars

// Bars of another size: those of the lists may have room now, or none.
void LooksControl::largeIconsSwitched() {
    Change_ToolbarIconSize(form_.bars, form_.services().diagnostics);
    panes_.measureListBars();
}

void LooksControl::iconTextSwitched() {
    Change_Toolbar_IconText(form_.bars, form_.services().diagnostics);
    panes_.measureListBars();
}

void LooksControl::fullView(BarId bar) {
    using enum Command;
    const bool ofReport = bar == BarId::kReport;
    for (const PaneRow& pane : paneRows()) {
        const Command panel = pane.shownBy;
        // A list has its place to itself already, so only the report and the drives are hidden.
        if (ofReport ? panel != kShowReport : panel == kShowReport || panel == kShowDrives)
            form_.bars.cbrMain.setChecked(idOf(panel), false);
    }
    panes_.Change_Info_Visibility();
}

// --- PaneHost

int LooksControl::barHeight(BarId bar) {
    return form_.window->bar(bar).wrappedHeight();
}

int LooksControl::gridWidth(GridId grid) {
    return form_.window->grid(grid).innerWidth();
}

int LooksControl::formWidth() {
    return form_.window->frame.clientArea().width;
}

void LooksControl::refresh(GridId grid) {
    form_.window->grid(grid).refresh();
}

void LooksControl::listAppears(GridId list) {
    if (list == GridId::kStatistics) form_.lists.followReport();
}

void LooksControl::fitColumns(GridId list) {
    if (ListView* view = form_.lists.of(list)) view->Resize_Columns(false);
}

void LooksControl::SetFileIcons(GridId list) {
    if (ListView* view = form_.lists.of(list)) view->SetFileIcons(false);
}

void LooksControl::ShowFileStat(GridId list) {
    if (ListView* view = form_.lists.of(list)) view->ShowFileStat();
}

bool LooksControl::isOnDisk(Row row) const {
    return hl::isOnDisk(form_.scan, row);
}

void LooksControl::List_Files_ScanFolder(const std::string& folder) {
    form_.lists.showFilesOf(folder);
}

void LooksControl::Drives_ResizeTableHeight() {
    form_.drives.Drives_ResizeTableHeight();
}

void LooksControl::Drives_Resize_Columns(bool withRedraw) {
    form_.drives.list().Drives_Resize_Columns(withRedraw);
}

void LooksControl::Preview_Reset_View() {
    form_.preview.Preview_Reset_View();
}

void LooksControl::Preview_ShowFile() {
    form_.preview.Preview_ShowFile(false);
}

void LooksControl::statusChanged() {
    form_.status.show();
}

}  // namespace hl
