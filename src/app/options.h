// The options: one field per key of the section "Optionen". Loaded at the start, saved at the end; everybody
// else reads and writes the fields and never the file.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>

#include "app/settings.h"
#include "robustness/debug.h"

namespace hl {

/// On is 1. A file edited by hand may hold any other number of a byte.
using Flag = std::uint8_t;

struct Options {
    // What a scan collects and counts.
    Flag CreateListTOP = 0, CreateListHardlink = 0, CreateListJunction = 0;
    Flag AddHardlinksOnlyOnce = 0, NoHardlinks = 0, ScanHardlinks = 0;
    // The folder report.
    Flag FolderColorFade = 0, FolderShowPercentBar = 0;
    Flag ColFileVisible = 0, ColFolderVisible = 0, ColPercentVisible = 0;
    // Panels.
    Flag DiskinfoVisible = 0, FilelistVisible = 0, ToplistVisible = 0, HardlinksVisible = 0,
         JunctionsVisible = 0;
    /// Size modes (base/size_text.h), 0 to 3 unless the file was edited by hand.
    std::uint8_t FileSizeFormat = 0, FileSizeFormatDrive = 0, FileSizeFormatFiles = 0, FileSizeFormatTop = 0,
                 FileSizeFormatHardlinks = 0;
    Flag ShowIcons = 0, ShowIconsTop = 0, ShowIconsHardlinks = 0;
    /// The source last shown in the combo box.
    std::string ComboText;
    // Two decimals in sizes.
    Flag SizeFormatNachkommastellenFolders = 0, SizeFormatNachkommastellenFiles = 0,
         SizeFormatNachkommastellenTop = 0, SizeFormatNachkommastellenDrive = 0,
         SizeFormatNachkommastellenHardlinks = 0;
    /// In points.
    float FontSize = 0, FontSizeDisk = 0, FontSizeFiles = 0, FontSizeTOP = 0, FontSizeHardlinks = 0,
          FontSizeJunctions = 0;
    std::string FontName, FontNameDisk, FontNameFiles, FontNameTOP, FontNameHardlinks, FontNameJunctions;
    /// "bold", "italic", both with a blank between them, or empty; anything else reads as empty.
    std::string FontStyle, FontStyleDisk, FontStyleFiles, FontStyleTOP, FontStyleHardlinks,
        FontStyleJunctions;
    // Columns shown, by their index.
    std::array<Flag, 7> FileColumn{};
    std::array<Flag, 8> TopColumn{};
    std::array<Flag, 10> HardlinkColumn{};
    // Read when the bars are built.
    Flag BigIcons = 0, SymbolText = 0;
    Flag FilePreview = 0, FilelistTile = 0, FilePreviewTOP = 0, FilelistTileTOP = 0, HardlinkPreview = 0,
         HardlinksTile = 0;
    /// Length of the list of the largest files.
    std::int32_t TOPmaxcount = 0;
    /// How the lists show dates; a picture for formatDate.
    std::string DateFormat;

    /// The keys that were read from the file. The fields of all others are zero or empty until something sets
    /// them.
    std::set<std::string, std::less<>> keysRead;
};

inline constexpr std::int32_t kLeastTopCount = 5;
/// The length of the list of the largest files that a text means, in the settings as in its box: rounded, and
/// kLeastTopCount at least; 100 for what is no number.
std::int32_t topCountOf(std::string_view text);

/// The bars that read options of their own when they are built.
enum class OptionBar { kMain, kFiles, kTop, kHardlinks };

/// Fills the fields that the main window reads, from one reading of the file. A number that is none, or does
/// not fit, is an error of this routine: it is trapped, the fields behind it stay as they were, and the
/// report has the key and its value. The order is that of the load steps in option_table.h, DateFormat first;
/// with `onlyDateFormat` it is the only one. The lists take the new date format over when this has returned.
void OptionenLadenMain(Options& options, const SettingsStore& store, Diagnostics& diagnostics,
                       bool onlyDateFormat);

/// The same for the fields of one bar. TOPmaxcount is never an error.
void loadBarOptions(Options& options, const SettingsStore& store, Diagnostics& diagnostics, OptionBar bar);

/// And for the source last shown, which is never an error.
void loadComboText(Options& options, const SettingsStore& store);

/// Writes all fields but those of the options dialog, in one step. What was not read and has not been set
/// since is left as the file has it: a reading that ended early costs none of what stands behind its end. Of
/// the ten columns of hardlinks it writes eight: the last two have no control and stay what the file makes
/// them.
void OptionenSpeichernMain(const Options& options, SettingsStore& store);

}  // namespace hl
