#include "views/junctions_view.h"

#include "views/list_columns.h"

namespace hl {

namespace {

const ListTraits kTraits = {
    .grid = GridId::kJunctions,
    .bar = BarId::kJunctions,
    .family = "List_Junctions_",
    .events = "lvwJunctions_",
    .mouseUp = "lvwjunctions_MouseUp",
    .fileStat = "List_Hardlinks_ShowFileStat",
    .fit = 317,
    .fullView = 323,
    .save = 324,
    .print = 325,
    .hasFiles = false,
    .searched = kJunctionTarget,
};

}  // namespace

JunctionsView::JunctionsView(const ListParts& parts, Grid& lvwJunctions, CommandBar& cbrJunctions)
    : ListView(kTraits, parts, lvwJunctions, cbrJunctions) {}

std::string JunctionsView::pathOf(Row row) const {
    return std::string(grid_.text(row));
}

std::vector<std::string> JunctionsView::menuPaths() const {
    if (!menuForTargets_) return ListView::menuPaths();
    std::vector<std::string> targets;
    for (const Row row : grid_.selectedRows()) targets.emplace_back(grid_.cellText(row, kJunctionTarget));
    return targets;
}

void JunctionsView::beforeMenu(Point at) {
    menuForTargets_ = parts_.host.columnAt(GridId::kJunctions, at) == kJunctionListTarget;
}

std::string JunctionsView::total() const {
    return parts_.scan.texts.TL(9524, "%1 Junction(s)", {grid_.rowCount()});
}

}  // namespace hl
