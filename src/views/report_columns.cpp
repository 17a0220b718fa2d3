#include "views/report_columns.h"

#include "grid/no_redraw.h"
#include "views/column_masks.h"

namespace hl {

namespace {

GridColumn numberColumn(std::string title, std::string_view key, std::string_view mask, bool visible = true) {
    return {.title = std::move(title),
            .key = std::string(key),
            .mask = std::string(mask),
            .alignment = Alignment::kRight,
            .visible = visible};
}

}  // namespace

void Init_Tree(Grid& grid, const Options& options, const Texts& texts) {
    const NoRedraw off(grid);
    grid.clear();
    grid.setColumns({
        {.title = texts.TL(9100, "Name"), .key = {}, .mask = {}},
        numberColumn(texts.TL(3519, "Größe (%1)", {texts.TL(3515, "Bytes")}), "size", kSizeMask),
        numberColumn(texts.TL(9101, "Prozent"), "percent", kPercentMask, options.ColPercentVisible != 0),
        numberColumn(texts.TL(3624, "Dateien"), "files", kCountMask, options.ColFileVisible != 0),
        numberColumn(texts.TL(3625, "Ordner"), "folders", kCountMask, options.ColFolderVisible != 0),
    });
    for (std::uint32_t level = 0; level < Grid::kSortLevels; ++level)
        grid.levelSort(level) = {.key = "size", .numbers = true, .descending = true};
}

}  // namespace hl
