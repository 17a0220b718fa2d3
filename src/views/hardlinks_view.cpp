#include "views/hardlinks_view.h"

#include <array>
#include <utility>

#include "grid/no_redraw.h"
#include "scan/list_handover.h"

namespace hl {

namespace {

const ListTraits kHardlinksTraits = {
    .grid = GridId::kHardlinks,
    .family = "List_Hardlinks_",
    .events = "lvwHardlinks_",
    .mouseUp = "lvwHardlinks_MouseUp",
    .fileStat = "List_Hardlinks_ShowFileStat",
    .searchText = Command::kHardlinksSearchText,
    .table = kHardlinksTable,
    .showIcons = &Options::ShowIconsHardlinks,
    .searched = kFilePath,
};

}  // namespace

HardlinksView::HardlinksView(const ListParts& parts, Grid& lvwHardlinks, CommandBar& cbrHardlinks)
    : ListView(kHardlinksTraits, parts, lvwHardlinks, cbrHardlinks) {}

void HardlinksView::sortRows() {
    sortHardlinks(grid_);
}

void HardlinksView::List_Hardlinks_ShowDups() {
    guarded(parts_.scan.diagnostics, [&] {
        if (grid_.rowCount() < 2) return;
        const BusyPointer busy(parts_.scan.controls);
        {
            const NoRedraw off(grid_);
            // The ids are sorted as texts, because two of them may begin with the same number.
            sortBy({.key = "id", .numbers = false, .descending = false});
            shadeGroups();
        }
        rowsSorted();
    });
}

void HardlinksView::shadeGroups() {
    constexpr std::array<std::uint32_t, 2> kShades = {0xFFFFFF, 0xF0F0F0};
    std::size_t shade = 0;
    // The same id may belong to another file on another disk.
    const auto fileOf = [&](Row row) {
        return std::pair(grid_.number(row, kFileDevice), grid_.cellText(row, kFileId));
    };
    auto file = fileOf(grid_.firstRoot());
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row)) {
        if (const auto own = fileOf(row); own != file) {
            shade = 1 - shade;
            file = own;
        }
        grid_.setBackColor(row, kShades[shade]);
    }
}

}  // namespace hl
