// Fills the combo box of sources at the start: with the drives, and then with the folders that were saved.
// For the thread of the logic.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/settings.h"
#include "base/path.h"
#include "platform/drives.h"
#include "scan/source_combo.h"

namespace hl {

/// Adds an item for each drive, "/mnt/data [Label]". Selects the one whose text is `comboText` (what the box
/// showed at the last end) or the root of the file system; of several, the last one.
void GetAllDrives(SourceCombo& cboOrdner, const std::vector<Drive>& drives, const std::string& comboText,
                  const PathRules& paths);

/// Adds the saved folders that exist and have no item yet, and selects the one that is `comboText`. A folder
/// on a remote one of `drives` is added without being looked for: its server may be away, and the folder
/// should not be lost for that.
void GetAllSavedComboFolders(SourceCombo& cboOrdner, const SettingsStore& settings,
                             const std::vector<Drive>& drives, const std::string& comboText,
                             const std::function<bool(const std::string& folder)>& exists,
                             const PathRules& paths);

/// Saves the folders that the user added, the last one first and at most kMostComboFolders.
void SaveAllComboFolders(const SourceCombo& cboOrdner, SettingsStore& settings);

}  // namespace hl
