// The columns of the four lists (files of a folder, largest files, hardlinks, junctions), and how their rows
// are sorted. For the thread of the logic.
#pragma once

#include "app/options.h"
#include "app/texts.h"
#include "grid/grid.h"

namespace hl {

enum FileListColumn : std::size_t {
    kFileListName,
    kFileListSize,
    kFileListExt,
    kFileListType,
    kFileListAttr,
    kFileListDate,
    kFileListDateCreated,
    kFileListDateAccessed,
};

enum TopListColumn : std::size_t {
    kTopName,
    kTopSize,
    kTopPath,
    kTopExt,
    kTopType,
    kTopAttr,
    kTopDate,
    kTopDateCreated,
    kTopDateAccessed,
};

enum HardlinksListColumn : std::size_t {
    kHardlinksName,
    kHardlinksId,
    kHardlinksLinks,
    kHardlinksPath,
    kHardlinksSize,
    kHardlinksExt,
    kHardlinksType,
    kHardlinksAttr,
    kHardlinksDate,
    kHardlinksDateCreated,
    kHardlinksDateAccessed,
};

enum JunctionListColumn : std::size_t { kJunctionListPath, kJunctionListTarget, kJunctionListType };

/// Each empties the grid and gives it its columns, with sizes in bytes. Files are sorted by size, the largest
/// first; in that order the list of the largest files is cut. Flag n of the options shows or hides column n +
/// 1.
void Init_FileList(Grid& grid, const Options& options, const Texts& texts);
void Init_TopList(Grid& grid, const Options& options, const Texts& texts);
void Init_HardlinksList(Grid& grid, const Options& options, const Texts& texts);
/// The rows are sorted downwards by the number at the front of the text. Paths have none, so the bytes of the
/// paths decide.
void Init_JunctionList(Grid& grid, const Texts& texts);

/// These give the date columns the format of the options. Nothing happens if the list has no columns yet.
void Init_FileList_DateFormat(Grid& grid, const Options& options);
void Init_TopList_DateFormat(Grid& grid, const Options& options);
void Init_HardlinksList_DateFormat(Grid& grid, const Options& options);

}  // namespace hl
