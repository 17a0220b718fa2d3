// The one table of the keys of the section "Optionen", in the order in which they are saved.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "app/options.h"

namespace hl {

/// The steps in which keys are read, in their order. Keys of one step are read in the order of the table.
enum class LoadStep {
    kDateFormat,
    kScanAndReport,
    kIcons,
    kSizeModes,
    kPanels,
    kReportColumns,
    kDecimals,
    kListColumns,
    kFontSizes,
    kFontNames,
    kLastOfMain = kFontNames,
    kBarMain,
    kBarFiles,
    kTopCount,
    kBarTop,
    kBarHardlinks,
    kElsewhere,  ///< Whoever needs the key reads it from the file.
    // A value that makes no sense in one of these steps is replaced by the default; no other is lost.
    kAskBeforeDelete,
    kOnDisk,
    kSnapshots,
    kFind,
    kStatistics,
    kMap,
    kChanges,
    kKeptScans,
};

/// The field that a value goes to. Its type decides how the value is read: as a whole number from 0 to 255, a
/// number with a fraction, the length of a list, or a text. A row of columns has one key for each column: the
/// column's index, followed by the key of the table.
using OptionField = std::variant<Flag Options::*, float Options::*, std::int32_t Options::*,
                                 std::string Options::*, ColumnFlags Options::*>;

struct OptionKey {
    std::string_view key;
    std::string_view defaultValue;
    OptionField field;
    LoadStep step;
    std::size_t columns = 0;  ///< In a row of columns: the number of columns.
    // Sets of a row's columns, bit n standing for column n.
    std::uint32_t unsaved = 0;  ///< They are read and never saved.
    std::uint32_t off = 0;      ///< They are off by default.
};

// clang-format off
inline constexpr auto kOptionTable = [] {
    using enum LoadStep;
    return std::to_array<OptionKey>({
        {"CreateListTOP", "0", &Options::CreateListTOP, kScanAndReport},
        {"CreateListHardlink", "0", &Options::CreateListHardlink, kScanAndReport},
        {"CreateListJunction", "0", &Options::CreateListJunction, kScanAndReport},
        {"AddHardlinksOnlyOnce", "0", &Options::AddHardlinksOnlyOnce, kScanAndReport},
        {"NoHardlinks", "0", &Options::NoHardlinks, kScanAndReport},
        {"ScanHardlinks", "0", &Options::ScanHardlinks, kScanAndReport},
        {"FolderColorFade", "0", &Options::FolderColorFade, kScanAndReport},
        {"FolderShowPercentBar", "0", &Options::FolderShowPercentBar, kScanAndReport},
        {"DiskinfoVisible", "1", &Options::DiskinfoVisible, kPanels},
        {"FilelistVisible", "1", &Options::FilelistVisible, kPanels},
        {"ToplistVisible", "0", &Options::ToplistVisible, kPanels},
        {"HardlinksVisible", "0", &Options::HardlinksVisible, kPanels},
        {"JunctionsVisible", "0", &Options::JunctionsVisible, kPanels},
        {"ColFileVisible", "1", &Options::ColFileVisible, kReportColumns},
        {"ColFolderVisible", "1", &Options::ColFolderVisible, kReportColumns},
        {"ColPercentVisible", "1", &Options::ColPercentVisible, kReportColumns},
        {"FileSizeFormat", "0", &Options::FileSizeFormat, kSizeModes},
        {"FileSizeFormatDrive", "3", &Options::FileSizeFormatDrive, kSizeModes},
        {"FileSizeFormatFiles", "2", &Options::FileSizeFormatFiles, kSizeModes},
        {"FileSizeFormatTop", "2", &Options::FileSizeFormatTop, kSizeModes},
        {"FileSizeFormatHardlinks", "2", &Options::FileSizeFormatHardlinks, kSizeModes},
        {"ShowIcons", "0", &Options::ShowIcons, kIcons},
        {"ShowIconsTop", "0", &Options::ShowIconsTop, kIcons},
        {"ShowIconsHardlinks", "0", &Options::ShowIconsHardlinks, kIcons},
        {"ComboText", "", &Options::ComboText, kElsewhere},
        {"SizeFormatNachkommastellenFolders", "1", &Options::SizeFormatNachkommastellenFolders, kDecimals},
        {"SizeFormatNachkommastellenFiles", "1", &Options::SizeFormatNachkommastellenFiles, kDecimals},
        {"SizeFormatNachkommastellenTop", "1", &Options::SizeFormatNachkommastellenTop, kDecimals},
        {"SizeFormatNachkommastellenDrive", "1", &Options::SizeFormatNachkommastellenDrive, kDecimals},
        {"SizeFormatNachkommastellenHardlinks", "1", &Options::SizeFormatNachkommastellenHardlinks, kDecimals},
        {"FontSize", "9", &Options::FontSize, kFontSizes},
        {"FontSizeDisk", "9", &Options::FontSizeDisk, kFontSizes},
        {"FontSizeFiles", "9", &Options::FontSizeFiles, kFontSizes},
        {"FontSizeTOP", "9", &Options::FontSizeTOP, kFontSizes},
        {"FontSizeHardlinks", "9", &Options::FontSizeHardlinks, kFontSizes},
        {"FontSizeJunctions", "9", &Options::FontSizeJunctions, kFontSizes},
        {"FontSizeFind", "9", &Options::FontSizeFind, kFontSizes},
        {"FontName", "Tahoma", &Options::FontName, kFontNames},
        {"FontNameDisk", "Tahoma", &Options::FontNameDisk, kFontNames},
        {"FontNameFiles", "Tahoma", &Options::FontNameFiles, kFontNames},
        {"FontNameTOP", "Tahoma", &Options::FontNameTOP, kFontNames},
        {"FontNameHardlinks", "Tahoma", &Options::FontNameHardlinks, kFontNames},
        {"FontNameJunctions", "Tahoma", &Options::FontNameJunctions, kFontNames},
        {"FontNameFind", "Tahoma", &Options::FontNameFind, kFontNames},
        {"FileColumn", "1", &Options::FileColumn, kListColumns, 8, 0, 1U << 7},
        {"TopColumn", "1", &Options::TopColumn, kListColumns, 9, 0, 1U << 8},
        {"HardlinkColumn", "1", &Options::HardlinkColumn, kListColumns, 11, 3U << 8, 1U << 10},
        {"BigIcons", "0", &Options::BigIcons, kBarMain},
        {"SymbolText", "0", &Options::SymbolText, kBarMain},
        {"FilePreview", "0", &Options::FilePreview, kBarFiles},
        {"FilelistTile", "0", &Options::FilelistTile, kBarFiles},
        {"FilePreviewTOP", "0", &Options::FilePreviewTOP, kBarTop},
        {"FilelistTileTOP", "0", &Options::FilelistTileTOP, kBarTop},
        {"HardlinkPreview", "0", &Options::HardlinkPreview, kBarHardlinks},
        {"HardlinksTile", "0", &Options::HardlinksTile, kBarHardlinks},
        {"TOPmaxcount", "100", &Options::TOPmaxcount, kTopCount},
        {"DateFormat", "dd/MM/yyyy hh:nn:ss", &Options::DateFormat, kDateFormat},
        {"FontStyle", "", &Options::FontStyle, kFontNames},
        {"FontStyleDisk", "", &Options::FontStyleDisk, kFontNames},
        {"FontStyleFiles", "", &Options::FontStyleFiles, kFontNames},
        {"FontStyleTOP", "", &Options::FontStyleTOP, kFontNames},
        {"FontStyleHardlinks", "", &Options::FontStyleHardlinks, kFontNames},
        {"FontStyleJunctions", "", &Options::FontStyleJunctions, kFontNames},
        {"FontStyleFind", "", &Options::FontStyleFind, kFontNames},
        {"AskBeforeDelete", "1", &Options::AskBeforeDelete, kAskBeforeDelete},
        {"ColDiskVisible", "0", &Options::ColDiskVisible, kOnDisk},
        {"ColNewestVisible", "0", &Options::ColNewestVisible, kOnDisk},
        {"ReckonOnDisk", "0", &Options::ReckonOnDisk, kOnDisk},
        {"CountSnapshots", "0", &Options::CountSnapshots, kSnapshots},
        {"FindVisible", "0", &Options::FindVisible, kFind},
        {"FindAllSources", "0", &Options::FindAllSources, kFind},
        {"FileSizeFormatFind", "2", &Options::FileSizeFormatFind, kFind},
        {"SizeFormatNachkommastellenFind", "1", &Options::SizeFormatNachkommastellenFind, kFind},
        {"ShowIconsFind", "0", &Options::ShowIconsFind, kFind},
        {"FindColumn", "1", &Options::FindColumn, kFind, 10, 0, 3U << 8},
        {"FilePreviewFind", "0", &Options::FilePreviewFind, kFind},
        {"FilelistTileFind", "0", &Options::FilelistTileFind, kFind},
        {"CreateStatistics", "1", &Options::CreateStatistics, kStatistics},
        {"StatisticsVisible", "0", &Options::StatisticsVisible, kStatistics},
        {"FileSizeFormatStatistics", "6", &Options::FileSizeFormatStatistics, kStatistics},
        {"SizeFormatNachkommastellenStatistics", "1", &Options::SizeFormatNachkommastellenStatistics, kStatistics},
        {"FontSizeStatistics", "9", &Options::FontSizeStatistics, kFontSizes},
        {"FontNameStatistics", "Tahoma", &Options::FontNameStatistics, kFontNames},
        {"FontStyleStatistics", "", &Options::FontStyleStatistics, kFontNames},
        {"MapVisible", "0", &Options::MapVisible, kMap},
        {"MapColour", "0", &Options::MapColour, kMap},
        {"LargestKept", "65536", &Options::LargestKept, kMap},
        {"ChangesVisible", "0", &Options::ChangesVisible, kChanges},
        {"FileSizeFormatChanges", "6", &Options::FileSizeFormatChanges, kChanges},
        {"SizeFormatNachkommastellenChanges", "1", &Options::SizeFormatNachkommastellenChanges, kChanges},
        {"FontSizeChanges", "9", &Options::FontSizeChanges, kFontSizes},
        {"FontNameChanges", "Tahoma", &Options::FontNameChanges, kFontNames},
        {"FontStyleChanges", "", &Options::FontStyleChanges, kFontNames},
        {"KeepScans", "0", &Options::KeepScans, kKeptScans},
    });
}();
// clang-format on

}  // namespace hl
