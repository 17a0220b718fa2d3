// The rows that a scan makes, by their cells. A cell's id is its place in the table, so that the walk needs
// no search.
#pragma once

#include "grid/cell_table.h"
#include "grid/grid.h"

namespace hl {

/// Pictures of rows: indexes into the program's image list.
enum RowPicture : int {
    kPictureSource = 8,
    kPictureFolder = 23,
    kPictureLink = 26,
    kPictureFilesRow = 51,
    kPictureMountPoint = 62,
    kPictureAccessError = 69,
};

/// A row of the folder report: a folder, or the one row that stands for all files directly in a folder that
/// has subfolders as well (IsFolder 0).
enum FolderCell : CellId { kIsFolder, kPercent, kSize, kFiles, kFolders };
inline constexpr CellSpec kFolderCells[] = {
    {"IsFolder", CellType::kFlag},    //
    {"percent", CellType::kPercent},  // Share of the parent's size.
    {"size", CellType::kSize},        //
    {"files", CellType::kCount},      // Files below the folder, all levels.
    {"folders", CellType::kCount},    // Folders below it, all levels, itself not counted.
};
// What a million folders cost: 49 bytes each, the name and one byte more.
inline constexpr std::size_t kFolderRowBytes = Grid::kRowBytes + cellBytes(kFolderCells);
static_assert(kFolderRowBytes == 49);

/// A row of the largest files or of the hardlinks (which alone fill links, id and device).
enum FileCell : CellId {
    kFilePath,
    kFileSize,
    kFileDate,
    kFileDateCreated,
    kFileDateAccessed,
    kFileType,
    kFileExt,
    kFileAttr,
    kFileLinks,
    kFileId,
    kFileDevice,
};
inline constexpr CellSpec kFileCells[] = {
    {"path", CellType::kText},  // Folder of the file, with a trailing separator.
    {"size", CellType::kSize},    {"date", CellType::kDate},   {"dateE", CellType::kDate},
    {"dateZ", CellType::kDate},   {"type", CellType::kText},   {"ext", CellType::kText},
    {"attr", CellType::kText},    {"links", CellType::kCount}, {"id", CellType::kText},
    {"device", CellType::kCount},  // In no column: files of one id are one file only if it is the same too.
};

/// A row of the junctions and links; the row's text is the full path of the folder.
enum JunctionCell : CellId { kJunctionTarget, kJunctionType };
inline constexpr CellSpec kJunctionCells[] = {
    {"target", CellType::kText}, {"type", CellType::kFlag},  // 0 for a symbolic link, 1 for anything else.
};

}  // namespace hl
