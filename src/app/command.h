// Names the commands of the bars and their menus. mainwindow/command_table.cpp tells what each of them is.
#pragma once

#include "platform/command_bar.h"

namespace hl {

/// The number of a command is the id of its entry, which is unique within its bar, plus a thousand for each
/// earlier bar.
constexpr int commandNumber(BarId bar, int id) {
    return static_cast<int>(bar) * 1000 + id;
}

/// The commands that code names; a command that only its row in the table of commands needs to know has no
/// name. New ones take ids from 500 up: those from 400 to 499 are given to what is found at the start.
enum class Command : int {
    kNone = 0,

    // The main bar.
    kNewSource = commandNumber(BarId::kMain, 1),
    kStart = commandNumber(BarId::kMain, 2),
    kStop = commandNumber(BarId::kMain, 3),
    kOptions = commandNumber(BarId::kMain, 14),
    kLog = commandNumber(BarId::kMain, 16),
    kInfo = commandNumber(BarId::kMain, 17),
    kHomepage = commandNumber(BarId::kMain, 18),
    kQuit = commandNumber(BarId::kMain, 20),
    kShowDrives = commandNumber(BarId::kMain, 21),
    kLargeIcons = commandNumber(BarId::kMain, 27),
    kLanguages = commandNumber(BarId::kMain, 28),
    kSmallerFont = commandNumber(BarId::kMain, 31),
    kLargerFont = commandNumber(BarId::kMain, 32),
    kShowReport = commandNumber(BarId::kMain, 33),
    kIconText = commandNumber(BarId::kMain, 34),
    kLanguageGerman = commandNumber(BarId::kMain, 35),  ///< The other languages follow.
    kSourceBox = commandNumber(BarId::kMain, 50),
    kCreateListTop = commandNumber(BarId::kMain, 60),
    kCreateListHardlinks = commandNumber(BarId::kMain, 61),
    kCreateListJunctions = commandNumber(BarId::kMain, 62),
    kHideLinks = commandNumber(BarId::kMain, 63),
    kColorFade = commandNumber(BarId::kMain, 64),
    kCountHardlinksOnce = commandNumber(BarId::kMain, 65),
    kPercentBar = commandNumber(BarId::kMain, 66),
    kFollowLinks = commandNumber(BarId::kMain, 68),
    kMenuOfSelectedFolders = commandNumber(BarId::kMain, 100),  ///< A popup.
    kDeleteFolders = commandNumber(BarId::kMain, 101),
    kRecycleFolders = commandNumber(BarId::kMain, 102),
    kMenuOfStatus = commandNumber(BarId::kMain, 562),  ///< A popup that is never opened: the status bar has
                                                       ///< its entries.
    kShowFiles = commandNumber(BarId::kMain, 306),
    kShowTop = commandNumber(BarId::kMain, 307),
    kShowHardlinks = commandNumber(BarId::kMain, 308),
    kShowJunctions = commandNumber(BarId::kMain, 309),
    kShowFind = commandNumber(BarId::kMain, 550),
    kFontOfAll = commandNumber(BarId::kMain, 328),
    kGuide = commandNumber(BarId::kMain, 530),
    kColumnsMenu = commandNumber(BarId::kMain, 531),  ///< A popup; each bar with columns has one of this id.
    kShowStatistics = commandNumber(BarId::kMain, 570),
    kCreateStatistics = commandNumber(BarId::kMain, 571),
    kTakeBack = commandNumber(BarId::kMain, 560),
    kShowNotRead = commandNumber(BarId::kMain, 561),
    kShowMap = commandNumber(BarId::kMain, 580),
    kShowChanges = commandNumber(BarId::kMain, 590),

    // The report. A bar's title is a label; its id is 0.
    kReportTitle = commandNumber(BarId::kReport, 0),
    kReportRescan = commandNumber(BarId::kReport, 4),
    kReportSave = commandNumber(BarId::kReport, 5),
    kReportSaveScan = commandNumber(BarId::kReport, 600),
    kReportOpenScan = commandNumber(BarId::kReport, 601),
    kReportCompare = commandNumber(BarId::kReport, 602),
    kReportCompareFile = commandNumber(BarId::kReport, 603),
    kReportPrint = commandNumber(BarId::kReport, 6),
    kReportRemove = commandNumber(BarId::kReport, 7),
    kReportRemoveAll = commandNumber(BarId::kReport, 9),
    kReportBytes = commandNumber(BarId::kReport, 10),  ///< The other units follow.
    kReportFilesColumn = commandNumber(BarId::kReport, 22),
    kReportFoldersColumn = commandNumber(BarId::kReport, 23),
    kReportFoldAll = commandNumber(BarId::kReport, 24),
    kReportUnfoldAll = commandNumber(BarId::kReport, 25),
    kReportFit = commandNumber(BarId::kReport, 26),
    kReportSearchText = commandNumber(BarId::kReport, 29),
    kReportSearch = commandNumber(BarId::kReport, 30),
    kReportDecimals = commandNumber(BarId::kReport, 33),
    kReportPercentColumn = commandNumber(BarId::kReport, 35),
    kReportUnfold1 = commandNumber(BarId::kReport, 100),  ///< Unfolds one level; the commands for two to ten
                                                          ///< levels follow.
    kReportUnfold4 = kReportUnfold1 + 3,
    kReportUnfold10 = kReportUnfold1 + 9,
    kReportFullView = commandNumber(BarId::kReport, 323),
    kReportDiskColumn = commandNumber(BarId::kReport, 500),
    kReportNewestColumn,
    kReckonOnDisk,
    kReportFont = commandNumber(BarId::kReport, 328),

    // The drives.
    kDrivesTitle = commandNumber(BarId::kDrives, 0),
    kDrivesRefresh = commandNumber(BarId::kDrives, 200),
    kDrivesBytes = commandNumber(BarId::kDrives, 201),  ///< The other units follow.
    kDrivesDecimals = commandNumber(BarId::kDrives, 205),
    kDrivesRead = commandNumber(BarId::kDrives, 206),
    kDrivesReadAll = commandNumber(BarId::kDrives, 207),
    kDrivesAdd = commandNumber(BarId::kDrives, 208),
    kDrivesFont = commandNumber(BarId::kDrives, 328),

    // The files of a folder. The commands for columns follow those for units of size, in the order of the
    // columns.
    kFilesTitle = commandNumber(BarId::kFiles, 0),
    kFilesRefresh = commandNumber(BarId::kFiles, 300),
    kFilesBytes = commandNumber(BarId::kFiles, 301),  ///< The other units follow.
    kFilesIcons = commandNumber(BarId::kFiles, 305),
    kFilesSearchText = commandNumber(BarId::kFiles, 307),
    kFilesSearch,
    kFilesDecimals,
    kFilesSizeColumn,
    kFilesFit = commandNumber(BarId::kFiles, 317),
    kFilesPreview,
    kFilesSplit,
    kFilesDelete,
    kFilesRecycle,
    kFilesFullView = commandNumber(BarId::kFiles, 323),
    kFilesSave,
    kFilesPrint,
    kFilesFont = commandNumber(BarId::kFiles, 328),
    kFilesDiskColumn = commandNumber(BarId::kFiles, 500),

    // The largest files.
    kTopTitle = commandNumber(BarId::kTop, 0),
    kTopBytes = commandNumber(BarId::kTop, 301),  ///< The other units follow.
    kTopIcons = commandNumber(BarId::kTop, 305),
    kTopSearchText = commandNumber(BarId::kTop, 307),
    kTopSearch,
    kTopDecimals,
    kTopSizeColumn,
    kTopPreview = commandNumber(BarId::kTop, 318),
    kTopSplit,
    kTopDelete,
    kTopRecycle,
    kTopCount,  ///< The box with the number of files that the list keeps.
    kTopFullView,
    kTopFit,
    kTopSave,
    kTopPrint,
    kTopFont = commandNumber(BarId::kTop, 328),
    kTopDiskColumn = commandNumber(BarId::kTop, 500),

    // The hardlinks. The first of their column commands is that of the id.
    kHardlinksTitle = commandNumber(BarId::kHardlinks, 0),
    kHardlinksAnalyze = commandNumber(BarId::kHardlinks, 300),
    kHardlinksBytes = commandNumber(BarId::kHardlinks, 301),  ///< The other units follow.
    kHardlinksIcons = commandNumber(BarId::kHardlinks, 305),
    kHardlinksSearchText = commandNumber(BarId::kHardlinks, 307),
    kHardlinksSearch,
    kHardlinksDecimals,
    kHardlinksIdColumn,
    kHardlinksDelete = commandNumber(BarId::kHardlinks, 320),
    kHardlinksRecycle,
    kHardlinksPreview,
    kHardlinksSplit,
    kHardlinksSave,
    kHardlinksPrint,
    kHardlinksFit,
    kHardlinksFullView,
    kHardlinksFont,
    kHardlinksDiskColumn = commandNumber(BarId::kHardlinks, 500),

    // The junctions.
    kJunctionsTitle = commandNumber(BarId::kJunctions, 0),
    kJunctionsSearchText = commandNumber(BarId::kJunctions, 307),
    kJunctionsSearch,
    kJunctionsFit = commandNumber(BarId::kJunctions, 317),
    kJunctionsFullView = commandNumber(BarId::kJunctions, 323),
    kJunctionsSave,
    kJunctionsPrint,
    kJunctionsFont = commandNumber(BarId::kJunctions, 328),

    // The files that a search has found.
    kFindTitle = commandNumber(BarId::kFind, 0),
    kFindBytes = commandNumber(BarId::kFind, 301),  ///< The other units follow.
    kFindIcons = commandNumber(BarId::kFind, 305),
    kFindSearchText = commandNumber(BarId::kFind, 307),
    kFindSearch,
    kFindDecimals,
    kFindSizeColumn,
    kFindPreview = commandNumber(BarId::kFind, 330),
    kFindSplit,
    kFindDelete,
    kFindRecycle,
    kFindFullView,
    kFindFit,
    kFindSave,
    kFindPrint,
    kFindFont,
    kFindDiskColumn = commandNumber(BarId::kFind, 500),
    kFindOwnerColumn,
    kFindFilter,  ///< The box with the filter.
    kFindStart,
    kFindForm,
    kFindAllSources,

    // The statistics.
    kStatisticsTitle = commandNumber(BarId::kStatistics, 0),
    kStatisticsBytes = commandNumber(BarId::kStatistics, 301),  ///< The other units follow.
    kStatisticsSearchText = commandNumber(BarId::kStatistics, 307),
    kStatisticsSearch,
    kStatisticsDecimals,
    kStatisticsFit = commandNumber(BarId::kStatistics, 317),
    kStatisticsFullView = commandNumber(BarId::kStatistics, 323),
    kStatisticsSave,
    kStatisticsPrint,
    kStatisticsFont = commandNumber(BarId::kStatistics, 328),

    // The changes since an earlier scan.
    kChangesTitle = commandNumber(BarId::kChanges, 0),
    kChangesBytes = commandNumber(BarId::kChanges, 301),  ///< The other units follow.
    kChangesSearchText = commandNumber(BarId::kChanges, 307),
    kChangesSearch,
    kChangesDecimals,
    kChangesFit = commandNumber(BarId::kChanges, 317),
    kChangesFullView = commandNumber(BarId::kChanges, 323),
    kChangesSave,
    kChangesPrint,
    kChangesFont = commandNumber(BarId::kChanges, 328),

    // The map.
    kMapTitle = commandNumber(BarId::kMap, 0),
    kMapColours = commandNumber(BarId::kMap, 581),
    kMapByKind,
    kMapByAge,
    kMapByOwner,
    kMapByDepth,
    kMapUp,
    kMapSave,
    kMapSavePng,
    kMapSaveSvg,
    kMapPrint,
    kMapByChange = commandNumber(BarId::kMap, 592),
};

constexpr Command commandOf(BarId bar, int id) {
    return static_cast<Command>(commandNumber(bar, id));
}
constexpr BarId barOf(Command command) {
    return static_cast<BarId>(static_cast<int>(command) / 1000);
}
/// Returns the id of the command's entry in its bar.
constexpr int idOf(Command command) {
    return static_cast<int>(command) % 1000;
}
/// Returns the command whose number is larger by `n`.
constexpr Command operator+(Command command, int n) {
    return static_cast<Command>(static_cast<int>(command) + n);
}

}  // namespace hl
