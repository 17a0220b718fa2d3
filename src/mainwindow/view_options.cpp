#include "mainwindow/view_options.h"

namespace hl {

namespace {

struct FontFields {
    std::string Options::*name;
    float Options::*size;
    std::string Options::*style;
};
// In the order of GridId.
constexpr FontFields kFonts[kGridCount] = {
    {&Options::FontName, &Options::FontSize, &Options::FontStyle},
    {&Options::FontNameDisk, &Options::FontSizeDisk, &Options::FontStyleDisk},
    {&Options::FontNameFiles, &Options::FontSizeFiles, &Options::FontStyleFiles},
    {&Options::FontNameTOP, &Options::FontSizeTOP, &Options::FontStyleTOP},
    {&Options::FontNameHardlinks, &Options::FontSizeHardlinks, &Options::FontStyleHardlinks},
    {&Options::FontNameJunctions, &Options::FontSizeJunctions, &Options::FontStyleJunctions}};
// The index is the sum of 1 for bold and 2 for italic.
constexpr const char* kStyles[] = {"", "bold", "italic", "bold italic"};

}  // namespace

GridFont fontOf(const Options& options, GridId grid) {
    const FontFields& fields = kFonts[static_cast<std::size_t>(grid)];
    const std::string& style = options.*fields.style;
    return {.name = options.*fields.name,
            .points = options.*fields.size,
            .bold = style == kStyles[1] || style == kStyles[3],
            .italic = style == kStyles[2] || style == kStyles[3]};
}

void setFontOf(Options& options, GridId grid, const GridFont& font) {
    const FontFields& fields = kFonts[static_cast<std::size_t>(grid)];
    options.*fields.name = font.name;
    options.*fields.size = static_cast<float>(font.points);
    options.*fields.style = kStyles[(font.bold ? 1 : 0) + (font.italic ? 2 : 0)];
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
