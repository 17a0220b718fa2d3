#include "mainwindow/view_options.h"

namespace hl {

namespace {

// By BarId. Nobody asks for the grid of the main bar.
constexpr GridId kGrids[kBarCount] = {GridId::kReport, GridId::kReport,    GridId::kDrives,   GridId::kFiles,
                                      GridId::kTop,    GridId::kHardlinks, GridId::kJunctions};
// By GridId.
constexpr std::string Options::*kFontNames[kGridCount] = {
    &Options::FontName,    &Options::FontNameDisk,      &Options::FontNameFiles,
    &Options::FontNameTOP, &Options::FontNameHardlinks, &Options::FontNameJunctions};
constexpr float Options::*kFontSizes[kGridCount] = {&Options::FontSize,          &Options::FontSizeDisk,
                                                    &Options::FontSizeFiles,     &Options::FontSizeTOP,
                                                    &Options::FontSizeHardlinks, &Options::FontSizeJunctions};

}  // namespace

std::string& fontNameOf(Options& options, GridId grid) {
    return options.*kFontNames[static_cast<std::size_t>(grid)];
}

float& fontSizeOf(Options& options, GridId grid) {
    return options.*kFontSizes[static_cast<std::size_t>(grid)];
}

GridId gridOf(BarId bar) {
    return kGrids[static_cast<std::size_t>(bar)];
}

// The main bar comes first, then the bars in the order of their grids.
BarId barOf(GridId grid) {
    return static_cast<BarId>(static_cast<int>(grid) + 1);
}

}  // namespace hl
