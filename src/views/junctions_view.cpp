#include "views/junctions_view.h"

#include "views/list_columns.h"

namespace hl {

namespace {

const ListTraits kJunctionsTraits = {
    .grid = GridId::kJunctions,
    .family = "List_Junctions_",
    .events = "lvwJunctions_",
    .mouseUp = "lvwjunctions_MouseUp",
    .fileStat = "List_Hardlinks_ShowFileStat",
    .searchText = Command::kJunctionsSearchText,
    .table = kJunctionsTable,
    .hasFiles = false,
    .searched = kJunctionTarget,
};

}  // namespace

JunctionsView::JunctionsView(const ListParts& parts, Grid& lvwJunctions, CommandBar& cbrJunctions)
    : ListView(kJunctionsTraits, parts, lvwJunctions, cbrJunctions) {}

std::string JunctionsView::pathOf(Row row) const {
    return std::string(grid_.text(row));
}

std::vector<std::string> JunctionsView::menuPaths() const {
    if (!menuForTargets_) return ListView::menuPaths();
    std::vector<std::string> targets;
    for (const Row row : grid_.selectedRows()) targets.push_back(targetOf(row));
    return targets;
}

// Returns the target as a path: that of a link is relative to the link's folder; for a mount it is the place
// where it is mounted, because what is mounted there is no path.
std::string JunctionsView::targetOf(Row row) const {
    std::string path = pathOf(row);
    const std::string target(grid_.cellText(row, kJunctionTarget));
    if (grid_.number(row, kJunctionType) != 0) return path;
    return target.starts_with('/') ? target : path.substr(0, path.rfind('/') + 1) + target;
}

void JunctionsView::beforeMenu(Point at) {
    menuForTargets_ = pane_.columnAt(at) == kJunctionsTable.columnOf(kJunctionTarget);
}

std::string JunctionsView::total() const {
    return parts_.scan.texts.TL(9524, "%1 Junction(s)", {formatCount(grid_.rowCount(), parts_.scan.numbers)});
}

}  // namespace hl
