// Sections of the settings file, and the keys that are not in the table of options (option_table.h).
#pragma once

#include <string_view>

namespace hl {

inline constexpr std::string_view kSectionGeneral = "Allgemein";
inline constexpr std::string_view kSectionForm = "Form";
inline constexpr std::string_view kSectionOptions = "Optionen";
inline constexpr std::string_view kSectionComboFolders = "ComboOrdner";
inline constexpr std::string_view kSectionDriveFolders = "DriveFolders";

/// The words behind the number in the keys of numbered lists.
inline constexpr std::string_view kComboFolderSuffix = "O";
inline constexpr std::string_view kDriveFolderSuffix = "F";
inline constexpr int kMostComboFolders = 10;

struct NumberKey {
    std::string_view section;
    std::string_view key;
    int defaultValue;
};

/// The id of the interface's language; 0 means that of the user's system.
inline constexpr NumberKey kKeyLanguage{kSectionGeneral, "Lang", 0};

// The options dialog reads and writes these; the start of the program reads the second one, too.
inline constexpr NumberKey kKeyExplorerVerb{kSectionOptions, "Kontextmenu", 0};
inline constexpr NumberKey kKeySingleInstance{kSectionOptions, "Instanz", 1};
inline constexpr NumberKey kKeyAskBeforeDelete{kSectionOptions, "AskBeforeDelete", 1};
inline constexpr NumberKey kKeyKeepScans{kSectionOptions, "KeepScans", 0};
inline constexpr NumberKey kKeyCountSnapshots{kSectionOptions, "CountSnapshots", 0};

/// With a number from 0 to 99 behind it: the rules of what a scan leaves out.
inline constexpr std::string_view kRuleKey = "Exclude";

// The dialog that saves a list reads and writes this.
inline constexpr NumberKey kKeyCsvEscapeFormulas{kSectionOptions, "CsvEscapeFormulas", 0};

// The window's place and size in twips (1/1440 inch). Left and Top have no default: the window is centred.
inline constexpr NumberKey kKeyWindowState{kSectionForm, "WindowState", 0};
inline constexpr std::string_view kKeyWidth = "Width";
inline constexpr std::string_view kKeyHeight = "Height";
inline constexpr NumberKey kKeySplitter{kSectionForm, "TVW", 3675};
inline constexpr std::string_view kKeyLeft = "Left";
inline constexpr std::string_view kKeyTop = "Top";

}  // namespace hl
