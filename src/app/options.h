// The options: one field for each key of the section "Optionen". They are loaded at the start and saved at
// the end; the rest of the program uses the fields and never the file. For the thread of the logic.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "app/settings.h"
#include "robustness/debug.h"

namespace hl {

/// 1 means on. A file that was edited by hand may hold any number from 0 to 255.
using Flag = std::uint8_t;
/// One flag for each column of a list but the first, from the left. option_table.h tells how many of them a
/// list uses.
using ColumnFlags = std::array<Flag, 16>;

struct Options {
    // What a scan collects and counts.
    Flag CreateListTOP = 0, CreateListHardlink = 0, CreateListJunction = 0;
    Flag AddHardlinksOnlyOnce = 0, NoHardlinks = 0, ScanHardlinks = 0;
    /// Cells of statistics are kept for what is read.
    Flag CreateStatistics = 0;
    /// Snapshots count although their origin is in the same source.
    Flag CountSnapshots = 0;
    Flag KeepScans = 0;  ///< The number of earlier scans that are kept of each source.
    /// Rules of what is left out, each a line as scan/rule_text.h reads it.
    std::vector<std::string> Exclude;
    // What the folder report shows.
    Flag FolderColorFade = 0, FolderShowPercentBar = 0;
    Flag ColFileVisible = 0, ColFolderVisible = 0, ColPercentVisible = 0;
    Flag ColDiskVisible = 0, ColNewestVisible = 0;
    /// Shares, bars and the order go by what files take on the disk.
    Flag ReckonOnDisk = 0;
    // Which panels are visible.
    Flag DiskinfoVisible = 0, FilelistVisible = 0, ToplistVisible = 0, HardlinksVisible = 0,
         JunctionsVisible = 0, FindVisible = 0, StatisticsVisible = 0, ChangesVisible = 0;
    Flag MapVisible = 0;
    /// What the colours of the map stand for: 0 kind, 1 age, 2 owner, 3 depth, 4 change.
    Flag MapColour = 0;
    /// Size modes (base/size_unit.h), 0 to 3 or 6 unless the file was edited by hand.
    std::uint8_t FileSizeFormat = 0, FileSizeFormatDrive = 0, FileSizeFormatFiles = 0, FileSizeFormatTop = 0,
                 FileSizeFormatHardlinks = 0, FileSizeFormatFind = 0, FileSizeFormatStatistics = 0,
                 FileSizeFormatChanges = 0;
    Flag ShowIcons = 0, ShowIconsTop = 0, ShowIconsHardlinks = 0, ShowIconsFind = 0;
    /// The source that the combo box showed last.
    std::string ComboText;
    // Whether sizes show two decimals.
    Flag SizeFormatNachkommastellenFolders = 0, SizeFormatNachkommastellenFiles = 0,
         SizeFormatNachkommastellenTop = 0, SizeFormatNachkommastellenDrive = 0,
         SizeFormatNachkommastellenHardlinks = 0, SizeFormatNachkommastellenFind = 0,
         SizeFormatNachkommastellenStatistics = 0, SizeFormatNachkommastellenChanges = 0;
    /// In points.
    float FontSize = 0, FontSizeDisk = 0, FontSizeFiles = 0, FontSizeTOP = 0, FontSizeHardlinks = 0,
          FontSizeJunctions = 0, FontSizeFind = 0, FontSizeStatistics = 0, FontSizeChanges = 0;
    std::string FontName, FontNameDisk, FontNameFiles, FontNameTOP, FontNameHardlinks, FontNameJunctions,
        FontNameFind, FontNameStatistics, FontNameChanges;
    /// "bold", "italic", both with a blank between them, or empty; anything else is read as empty.
    std::string FontStyle, FontStyleDisk, FontStyleFiles, FontStyleTOP, FontStyleHardlinks,
        FontStyleJunctions, FontStyleFind, FontStyleStatistics, FontStyleChanges;
    // Which columns are shown.
    ColumnFlags FileColumn{}, TopColumn{}, HardlinkColumn{}, FindColumn{};
    // These are read when the bars are built.
    Flag BigIcons = 0, SymbolText = 0;
    Flag FilePreview = 0, FilelistTile = 0, FilePreviewTOP = 0, FilelistTileTOP = 0, HardlinkPreview = 0,
         HardlinksTile = 0, FilePreviewFind = 0, FilelistTileFind = 0;
    /// A search goes through all sources, not only below the selected row.
    Flag FindAllSources = 0;
    /// Length of the list of the largest files.
    std::int32_t TOPmaxcount = 0;
    /// How many of the largest files of each source the window keeps, for the map.
    std::int32_t LargestKept = 0;
    /// Deleting for good asks first.
    Flag AskBeforeDelete = 1;
    /// The picture (for formatDate) by which the lists show dates.
    std::string DateFormat;

    /// The keys that were read from the file. All other fields are zero or empty until something sets them.
    std::set<std::string, std::less<>> keysRead;
};

/// Names one flag of the options: a field, or a place in a field of columns.
struct OptionFlag {
    Flag Options::*field = nullptr;
    ColumnFlags Options::*columns = nullptr;
    std::size_t column = 0;

    constexpr bool operator==(const OptionFlag&) const = default;
    /// REQUIRES: it names a flag.
    Flag& operator()(Options& options) const {
        return columns == nullptr ? options.*field : (options.*columns)[column];
    }
    Flag operator()(const Options& options) const {
        return columns == nullptr ? options.*field : (options.*columns)[column];
    }
};

inline constexpr std::int32_t kLeastTopCount = 5;
inline constexpr std::int32_t kMostLargestKept = 65'536;
/// Reads the length of the list of the largest files from a text, in the settings or in its box: it is
/// rounded and at least kLeastTopCount; a text that is no number means 100.
std::int32_t topCountOf(std::string_view text);
/// Reads LargestKept: it is rounded and at most kMostLargestKept; a text that is no number means that one.
std::int32_t largestKeptOf(std::string_view text);

/// The bars that read their own options when they are built.
enum class OptionBar { kMain, kFiles, kTop, kHardlinks };

/// Fills the fields that the main window reads, from the settings file as it was read. A value that is no
/// number, or does not fit, raises an error, which is trapped: the fields behind it stay as they were, and
/// the error report names the key and its value. The order is that of the load steps in option_table.h,
/// DateFormat first; with `onlyDialog` only what the options dialog has is read. The lists take over the new
/// date format after this has returned.
void OptionenLadenMain(Options& options, const IniText& ini, Diagnostics& diagnostics, bool onlyDialog);

/// Fills the fields of one bar, with errors as in OptionenLadenMain. TOPmaxcount never raises one.
void loadBarOptions(Options& options, const IniText& ini, Diagnostics& diagnostics, OptionBar bar);

/// The settings keep that many rules, "Exclude0" to "Exclude99".
inline constexpr std::size_t kMostRules = 100;
/// Returns the rules of the settings, in their order; empty ones are passed over.
std::vector<std::string> readRules(const IniText& ini);
/// Writes the rules in place of those that are there. Returns how many of them fit, from the first on; the
/// others are not written.
std::size_t writeRules(IniText& ini, const std::vector<std::string>& rules);

/// Fills ComboText, which never raises an error.
void loadComboText(Options& options, const SettingsStore& store);

/// Saves all fields but those of the options dialog, in one step. A field that was neither read nor set since
/// is left as the file has it, so that a reading that ended early loses nothing. Of the ten columns of
/// hardlinks eight are saved; what is chosen for the last two lasts as long as the window, and the file keeps
/// what it has.
void OptionenSpeichernMain(const Options& options, SettingsStore& store);

}  // namespace hl
