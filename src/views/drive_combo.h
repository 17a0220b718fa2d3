// What stands in the combo box of sources at the start: the drives, then the folders saved at the last end.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/settings.h"
#include "base/path.h"
#include "platform/drives.h"
#include "scan/source_combo.h"

namespace hl {

/// Adds an item for each drive, "/mnt/data [Label]", and selects the one whose text is `comboText` (what the
/// box showed at the last end) or the root of the file system; of several, the last one.
void GetAllDrives(SourceCombo& cboOrdner, const std::vector<Drive>& drives, const std::string& comboText,
                  const PathRules& paths);

/// Adds the saved folders that exist and have no item yet, and selects the one that is `comboText`. A folder
/// on one of `drives` that is remote is not asked for: its server may be gone, and that is no reason to
/// forget it.
void GetAllSavedComboFolders(SourceCombo& cboOrdner, const SettingsStore& settings,
                             const std::vector<Drive>& drives, const std::string& comboText,
                             const std::function<bool(const std::string& folder)>& exists,
                             const PathRules& paths);

/// Saves the folders that the user added, the last one first and no more than kMostComboFolders.
void SaveAllComboFolders(const SourceCombo& cboOrdner, SettingsStore& settings);

}  // namespace hl
