#include "mainwindow/view_options.h"

namespace hl {

namespace {

// By BarId. The main bar and that of the junctions have no sizes, and nobody asks for theirs.
constexpr std::uint8_t Options::*kModes[kBarCount] = {
    &Options::FileSizeFormat,      &Options::FileSizeFormat,    &Options::FileSizeFormatDrive,
    &Options::FileSizeFormatFiles, &Options::FileSizeFormatTop, &Options::FileSizeFormatHardlinks,
    &Options::FileSizeFormat};
constexpr Flag Options::*kDecimals[kBarCount] = {
    &Options::SizeFormatNachkommastellenFolders, &Options::SizeFormatNachkommastellenFolders,
    &Options::SizeFormatNachkommastellenDrive,   &Options::SizeFormatNachkommastellenFiles,
    &Options::SizeFormatNachkommastellenTop,     &Options::SizeFormatNachkommastellenHardlinks,
    &Options::SizeFormatNachkommastellenFolders};
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

std::uint8_t& sizeModeOf(Options& options, BarId bar) {
    return options.*kModes[static_cast<std::size_t>(bar)];
}

Flag& decimalsOf(Options& options, BarId bar) {
    return options.*kDecimals[static_cast<std::size_t>(bar)];
}

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
