// The lists of the main form, and what they share. For the thread of the logic only.
#pragma once

#include "views/changes_view.h"
#include "views/files_view.h"
#include "views/find_view.h"
#include "views/hardlinks_view.h"
#include "views/junctions_view.h"
#include "views/statistics_view.h"
#include "views/top_view.h"

namespace hl {

inline constexpr GridId kListGrids[] = {GridId::kFiles,     GridId::kTop,  GridId::kHardlinks,
                                        GridId::kJunctions, GridId::kFind, GridId::kStatistics,
                                        GridId::kChanges};

struct ListViews {
    FilesView files;
    TopView top;
    HardlinksView hardlinks;
    JunctionsView junctions;
    FindView find;
    StatisticsView statistics;
    ChangesView changes;

    /// Returns null for a grid that is none of the lists.
    ListView* of(GridId grid) {
        switch (grid) {
            case GridId::kFiles:
                return &files;
            case GridId::kTop:
                return &top;
            case GridId::kHardlinks:
                return &hardlinks;
            case GridId::kJunctions:
                return &junctions;
            case GridId::kFind:
                return &find;
            case GridId::kStatistics:
                return &statistics;
            case GridId::kChanges:
                return &changes;
            default:
                return nullptr;
        }
    }
};

}  // namespace hl
