// The numbers of the program's pictures, and the names of their drawings.
//
// A picture is the icon of the desktop's theme with its first name, or, if the theme has none, the program's
// own drawing with its second name.
#pragma once

namespace hl {

enum Icon : int {
    // The pictures of rows; those of sources and drives are below 9.
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
    kIconIncomplete = 70,
    kIconSnapshot = 71,
    kIconLeftOut = 72,
    kIconGone = 73,
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
    kIconAutoUnit,
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
    kIconGuide,
    kIconTakeBack,
    kIconOnDisk,
    kIconNewest,
    kIconReckonOnDisk,
    kIconBalance,
    kIconFind,
    kIconFilter,
    kIconAllSources,
    kIconStatistics,
    kIconMap,
    kIconChanges,
    kIconCompare,
    kIconLast = kIconCompare,
};

struct IconNames {
    int number;
    const char* theme;  ///< The name in the freedesktop icon naming scheme; null if none fits.
    const char* own;    ///< data/icons/OWN.svg
};

/// Returns null for a number without a picture.
const IconNames* iconNames(int number);

}  // namespace hl
