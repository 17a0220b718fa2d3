#include "mainwindow/pane_table.h"

#include "mainwindow/session.h"

namespace hl {

namespace {

// clang-format off
constexpr PaneRow kPanes[kGridCount] = {
    {"tvwPL", TL(3641, "Ordnerliste"), &Session::tvwPL, Command::kShowReport, &Options::FontName, &Options::FontSize, &Options::FontStyle},
    {"lvwDiskinfo", TL(3643, "Laufwerksliste"), &Session::lvwDiskinfo, Command::kShowDrives, &Options::FontNameDisk, &Options::FontSizeDisk, &Options::FontStyleDisk},
    {"lvwFiles", TL(3645, "Dateiliste"), &Session::lvwFiles, Command::kShowFiles, &Options::FontNameFiles, &Options::FontSizeFiles, &Options::FontStyleFiles},
    {"lvwTOP", TL(3724, "Größte Dateien"), &Session::lvwTOP, Command::kShowTop, &Options::FontNameTOP, &Options::FontSizeTOP, &Options::FontStyleTOP},
    {"lvwHardlinks", TL(3740, "Hardlinks"), &Session::lvwHardlinks, Command::kShowHardlinks, &Options::FontNameHardlinks, &Options::FontSizeHardlinks, &Options::FontStyleHardlinks},
    {"lvwJunctions", TL(3742, "Junctions"), &Session::lvwJunctions, Command::kShowJunctions, &Options::FontNameJunctions, &Options::FontSizeJunctions, &Options::FontStyleJunctions},
    {"lvwFind", TL(9945, "Finden"), &Session::lvwFind, Command::kShowFind, &Options::FontNameFind, &Options::FontSizeFind, &Options::FontStyleFind},
    {"lvwStatistics", TL(9700, "Statistik"), &Session::lvwStatistics, Command::kShowStatistics, &Options::FontNameStatistics, &Options::FontSizeStatistics, &Options::FontStyleStatistics},
    {"lvwChanges", TL(9061, "Veränderungen"), &Session::lvwChanges, Command::kShowChanges, &Options::FontNameChanges, &Options::FontSizeChanges, &Options::FontStyleChanges},
};
// clang-format on

const PaneRow& rowOf(GridId grid) {
    return kPanes[static_cast<std::size_t>(grid)];
}

// The index is the sum of 1 for bold and 2 for italic.
constexpr const char* kStyles[] = {"", "bold", "italic", "bold italic"};

}  // namespace

std::span<const PaneRow, kGridCount> paneRows() {
    return kPanes;
}

GridFont fontOf(const Options& options, GridId grid) {
    const PaneRow& row = rowOf(grid);
    const std::string& style = options.*row.fontStyle;
    return {.name = options.*row.fontName,
            .points = options.*row.fontSize,
            .bold = style == kStyles[1] || style == kStyles[3],
            .italic = style == kStyles[2] || style == kStyles[3]};
}

void setFontOf(Options& options, GridId grid, const GridFont& font) {
    const PaneRow& row = rowOf(grid);
    options.*row.fontName = font.name;
    options.*row.fontSize = static_cast<float>(font.points);
    options.*row.fontStyle = kStyles[(font.bold ? 1 : 0) + (font.italic ? 2 : 0)];
}

}  // namespace hl
