// The numbers of the program's pictures, and the names of their drawings.
//
// A picture is taken from the desktop's icon theme by its first name where that has one, else from the
// program's own drawings by its second.
#pragma once

namespace hl {

enum Icon : int {
    // Pictures of rows; sources and drives lie below 9.
    kIconDriveRemovable = 1,
    kIconDriveFixed = 2,
    kIconDriveNetwork = 3,
    kIconDriveDisc = 4,
    kIconDriveOther = 5,
    kIconSource = 8,
    kIconFolder = 23,
    kIconLink = 26,
    kIconFilesRow = 51,
    kIconMountPoint = 62,
    kIconAccessError = 69,
    // Commands.
    kIconNew = 100,
    kIconStart,
    kIconStop,
    kIconReport,
    kIconDrives,
    kIconFiles,
    kIconTop,
    kIconHardlinks,
    kIconJunctions,
    kIconOptions,
    kIconIconSize,
    kIconIconText,
    kIconLarger,
    kIconSmaller,
    kIconFont,
    kIconLanguage,
    kIconLog,
    kIconInfo,
    kIconHomepage,
    kIconQuit,
    kIconRefresh,
    kIconFullView,
    kIconCollapse,
    kIconExpand,
    kIconRemove,
    kIconRemoveAll,
    kIconSave,
    kIconPrint,
    kIconPercent,
    kIconFit,
    kIconBytes,
    kIconKilobytes,
    kIconMegabytes,
    kIconGigabytes,
    kIconDecimals,
    kIconSearch,
    kIconRead,
    kIconReadAll,
    kIconAdd,
    kIconDelete,
    kIconRecycle,
    kIconSymbols,
    kIconPreview,
    kIconSplit,
    kIconAnalyze,
};

struct IconNames {
    int number;
    const char* theme;  ///< Name of the freedesktop icon naming scheme; null for none that fits.
    const char* own;    ///< data/icons/OWN.svg
};

/// Null for a number that has no picture.
const IconNames* iconNames(int number);

}  // namespace hl
