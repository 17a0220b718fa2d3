#include "views/find_view.h"

namespace hl {

namespace {

const ListTraits kFindTraits = {
    .grid = GridId::kFind,
    .family = "List_Find_",
    .events = "lvwFind_",
    .mouseUp = "lvwFind_MouseUp",
    .fileStat = "List_Find_ShowFileStat",
    .searchText = Command::kFindSearchText,
    .table = kFindTable,
    .showIcons = &Options::ShowIconsFind,
    .hitLoadsIcons = true,
    .keysShowPreview = true,
};

}  // namespace

FindView::FindView(const ListParts& parts, Grid& lvwFind, CommandBar& cbrFind)
    : ListView(kFindTraits, parts, lvwFind, cbrFind) {}

}  // namespace hl
