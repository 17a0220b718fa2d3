// lvwFiles: the files directly in the folder that is selected in the report, read from the disk on demand.
#pragma once

#include <string>

#include "base/size_value.h"
#include "scan/scan_context.h"

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

/// Empties the grid and gives it its columns, sizes in bytes. The largest file comes first.
void Init_FileList(Grid& grid, const Options& options, const Texts& texts);
/// The date columns take the format of the options over. Nothing happens before the list has its columns.
void Init_FileList_DateFormat(Grid& grid, const Options& options);
void List_Files_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts);

/// Fills the list with the files of `path` in the order of the list's sort. Messages run while input waits;
/// Esc and Stop end the reading, and what was found until then stays. An unreadable folder leaves the list
/// empty. What is asked for while messages run counts: an earlier filling ends then. `FilesTotalSize` is the
/// size of the files that are in the list; fillings of one list have one such sum. No row has a picture.
/// Thread of the logic.
void List_Files_ScanFolderR(ScanContext& scan, Grid& lvwFiles, const std::string& path,
                            SizeValue& FilesTotalSize);

}  // namespace hl
