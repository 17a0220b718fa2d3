// The columns of the four lists (files of a folder, largest files, hardlinks, junctions), and the order of
// their rows.
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

/// Each empties the grid and gives it its columns, sizes in bytes. Files are sorted by size, the largest
/// first; the list of largest files is cut by that order. Flag n of the options shows or hides the column n
/// + 1.
void Init_FileList(Grid& grid, const Options& options, const Texts& texts);
void Init_TopList(Grid& grid, const Options& options, const Texts& texts);
void Init_HardlinksList(Grid& grid, const Options& options, const Texts& texts);
/// Sorted downwards by the number at the front of the row's text. A path has none, so that rows go by the
/// bytes of their paths.
void Init_JunctionList(Grid& grid, const Texts& texts);

/// The date columns take the format of the options over. Nothing happens before the list has its columns.
void Init_FileList_DateFormat(Grid& grid, const Options& options);
void Init_TopList_DateFormat(Grid& grid, const Options& options);
void Init_HardlinksList_DateFormat(Grid& grid, const Options& options);

}  // namespace hl
