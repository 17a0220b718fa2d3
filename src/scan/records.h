// The cells of the rows that a scan makes for folders and for links; file_columns.h has those of files. A
// cell's id is its place in the table, so that the walk needs no search.
#pragma once

#include "grid/cell_table.h"
#include "grid/grid.h"
#include "platform/icons.h"

namespace hl {

/// The pictures of the rows of the report and of links.
enum RowPicture : int {
    kPictureSource = kIconSource,
    kPictureFolder = kIconFolder,
    kPictureLink = kIconLink,
    kPictureFilesRow = kIconFilesRow,
    kPictureMountPoint = kIconMountPoint,
    kPictureAccessError = kIconAccessError,
    kPictureIncomplete = kIconIncomplete,
    kPictureSnapshot = kIconSnapshot,
    kPictureLeftOut = kIconLeftOut,
    kPictureGone = kIconGone,  ///< Only a comparison shows such rows.
};

/// A row of the folder report: a folder, or (with IsFolder 0) the one row that stands for all files directly
/// in a folder that also has subfolders.
enum FolderCell : CellId { kIsFolder, kPercent, kSize, kFiles, kFolders, kDisk, kNewest, kBefore, kChange };
inline constexpr CellSpec kFolderCells[] = {
    {"IsFolder", CellType::kFlag},    //
    {"percent", CellType::kPercent},  // The share of the parent's size.
    {"size", CellType::kSize},        //
    {"files", CellType::kCount},      // The files below the folder, on all levels.
    {"folders", CellType::kCount},    // The folders below it, on all levels, without itself.
    {"disk", CellType::kSize},        // What the files below take on the disk, in bytes.
    {"newest", CellType::kDate},      // The last writing of a file below that was before the scan.
    // Bytes, while the source is compared with an earlier scan: what the files below that can be compared
    // took then, and what they take more now.
    {"before", CellType::kSize, true},
    {"change", CellType::kReal, true},
};
// A row takes 65 bytes, its name and one byte more. That is what a million folders cost. A comparison
// adds 16.
inline constexpr std::size_t kFolderRowBytes = Grid::kRowBytes + cellBytes(kFolderCells);
static_assert(kFolderRowBytes == 65);

/// A row of the junctions and links; its text is the full path of the folder.
enum JunctionCell : CellId { kJunctionTarget, kJunctionType };
inline constexpr CellSpec kJunctionCells[] = {
    {"target", CellType::kText}, {"type", CellType::kFlag},  // 0 for a symbolic link, 1 for anything else.
};

}  // namespace hl
