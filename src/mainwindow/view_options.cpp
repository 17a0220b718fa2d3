#include "mainwindow/view_options.h"

namespace hl {

namespace {

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

// The main bar comes first, then the bars in the order of their grids.
static_assert(static_cast<int>(BarId::kReport) == static_cast<int>(GridId::kReport) + 1 &&
              static_cast<int>(BarId::kJunctions) == static_cast<int>(GridId::kJunctions) + 1);

GridId gridOf(BarId bar) {
    return static_cast<GridId>(static_cast<int>(bar) - 1);
}

BarId barOf(GridId grid) {
    return static_cast<BarId>(static_cast<int>(grid) + 1);
}

}  // namespace hl
