// Sections of the settings file, and the keys that stand outside the table of options (option_table.h).
#pragma once

#include <string_view>

namespace hl {

inline constexpr std::string_view kSectionGeneral = "Allgemein";
inline constexpr std::string_view kSectionForm = "Form";
inline constexpr std::string_view kSectionOptions = "Optionen";
inline constexpr std::string_view kSectionComboFolders = "ComboOrdner";
inline constexpr std::string_view kSectionDriveFolders = "DriveFolders";

/// Numbered lists: the word behind the number in a key.
inline constexpr std::string_view kComboFolderSuffix = "O";
inline constexpr std::string_view kDriveFolderSuffix = "F";
inline constexpr int kMostComboFolders = 10;

struct NumberKey {
    std::string_view section;
    std::string_view key;
    int defaultValue;
};

/// Id of the language of the interface; 0 follows the user's system.
inline constexpr NumberKey kKeyLanguage{kSectionGeneral, "Lang", 0};

// What the options dialog reads and writes; the start of the program reads the second.
inline constexpr NumberKey kKeyExplorerVerb{kSectionOptions, "Kontextmenu", 0};
inline constexpr NumberKey kKeySingleInstance{kSectionOptions, "Instanz", 1};

// What the dialog that saves a list reads and writes.
inline constexpr NumberKey kKeyCsvEscapeFormulas{kSectionOptions, "CsvEscapeFormulas", 0};

// The window, lengths in twips (1/1440 inch). Left and Top have no fixed default: the window is centred.
inline constexpr NumberKey kKeyWindowState{kSectionForm, "WindowState", 0};
inline constexpr NumberKey kKeyWidth{kSectionForm, "Width", 11715};
inline constexpr NumberKey kKeyHeight{kSectionForm, "Height", 8190};
inline constexpr NumberKey kKeySplitter{kSectionForm, "TVW", 3675};
inline constexpr std::string_view kKeyLeft = "Left";
inline constexpr std::string_view kKeyTop = "Top";

}  // namespace hl
