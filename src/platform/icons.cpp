#include "platform/icons.h"

#include <algorithm>
#include <iterator>

namespace hl {
namespace {

// A theme's name is here only if its meaning is that of the command. The buttons that switch views, units and
// columns all have our own drawings, so that they match. "Start" has no theme name, because the themes'
// triangle means playing a recording.
constexpr IconNames kIcons[] = {
    {kIconDriveRemovable, "drive-removable-media", "drive-removable"},
    {kIconDriveFixed, "drive-harddisk", "drive-fixed"},
    {kIconDriveNetwork, "folder-remote", "drive-network"},
    {kIconDriveDisc, "drive-optical", "drive-disc"},
    {kIconDriveOther, nullptr, "drive-other"},
    {kIconSource, nullptr, "source"},
    {kIconFolder, "folder", "folder"},
    {kIconLink, "emblem-symbolic-link", "link"},
    {kIconFilesRow, nullptr, "files-row"},
    {kIconMountPoint, nullptr, "mount-point"},
    {kIconAccessError, "emblem-unreadable", "access-error"},
    {kIconIncomplete, nullptr, "incomplete"},
    {kIconSnapshot, nullptr, "snapshot"},
    {kIconLeftOut, nullptr, "left-out"},
    {kIconGone, nullptr, "gone"},
    {kIconNew, "document-new", "new"},
    {kIconStart, nullptr, "start"},
    {kIconStop, "process-stop", "stop"},
    {kIconReport, nullptr, "report"},
    {kIconDrives, nullptr, "drives"},
    {kIconFiles, nullptr, "files"},
    {kIconTop, nullptr, "top"},
    {kIconHardlinks, nullptr, "hardlinks"},
    {kIconJunctions, nullptr, "junctions"},
    {kIconOptions, "preferences-system", "options"},
    {kIconIconSize, nullptr, "icon-size"},
    {kIconIconText, nullptr, "icon-text"},
    {kIconLarger, nullptr, "larger"},
    {kIconSmaller, nullptr, "smaller"},
    {kIconFont, "preferences-desktop-font", "font"},
    {kIconLanguage, "preferences-desktop-locale", "language"},
    {kIconLog, nullptr, "log"},
    {kIconInfo, "help-about", "info"},
    {kIconHomepage, nullptr, "homepage"},
    {kIconQuit, "application-exit", "quit"},
    {kIconRefresh, "view-refresh", "refresh"},
    {kIconFullView, nullptr, "full-view"},
    {kIconCollapse, nullptr, "collapse"},
    {kIconExpand, nullptr, "expand"},
    {kIconRemove, "list-remove", "remove"},
    {kIconRemoveAll, nullptr, "remove-all"},
    {kIconSave, "document-save", "save"},
    {kIconPrint, "document-print", "print"},
    {kIconPercent, nullptr, "percent"},
    {kIconFit, nullptr, "fit"},
    {kIconBytes, nullptr, "bytes"},
    {kIconKilobytes, nullptr, "kilobytes"},
    {kIconMegabytes, nullptr, "megabytes"},
    {kIconGigabytes, nullptr, "gigabytes"},
    {kIconAutoUnit, nullptr, "auto-unit"},
    {kIconDecimals, nullptr, "decimals"},
    {kIconSearch, "edit-find", "search"},
    {kIconRead, nullptr, "read"},
    {kIconReadAll, nullptr, "read-all"},
    {kIconAdd, "list-add", "add"},
    {kIconDelete, "edit-delete", "delete"},
    {kIconRecycle, "user-trash", "recycle"},
    {kIconSymbols, nullptr, "symbols"},
    {kIconPreview, nullptr, "preview"},
    {kIconSplit, nullptr, "split"},
    {kIconAnalyze, nullptr, "analyze"},
    {kIconGuide, "help-contents", "guide"},
    {kIconTakeBack, "edit-undo", "take-back"},
    {kIconOnDisk, nullptr, "on-disk"},
    {kIconNewest, nullptr, "newest"},
    {kIconReckonOnDisk, nullptr, "reckon-on-disk"},
    {kIconBalance, nullptr, "balance"},
    {kIconFind, nullptr, "find"},
    {kIconFilter, nullptr, "filter"},
    {kIconAllSources, nullptr, "all-sources"},
    {kIconStatistics, nullptr, "statistics"},
    {kIconMap, nullptr, "map"},
    {kIconChanges, nullptr, "changes"},
    {kIconCompare, nullptr, "compare"},
};

}  // namespace

const IconNames* iconNames(int number) {
    const auto* found = std::find_if(std::begin(kIcons), std::end(kIcons),
                                     [number](const IconNames& icon) { return icon.number == number; });
    return found == std::end(kIcons) ? nullptr : found;
}

}  // namespace hl
