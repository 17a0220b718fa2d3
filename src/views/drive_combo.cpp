#include "views/drive_combo.h"

#include <algorithm>
#include <utility>

#include "app/setting_keys.h"
#include "base/text.h"
#include "scan/records.h"
#include "views/drive_list.h"

namespace hl {

namespace {

SourceItem itemOf(const Drive& drive, const PathRules& paths) {
    const std::string folder = AddTrailingSlash(drive.root, paths);
    const std::string label = drive.label.valueOr("");
    return {identityKey(folder, paths), drive.root + (label.empty() ? "" : " [" + label + "]"), folder,
            drivePicture(drive.type)};
}

}  // namespace

void GetAllDrives(SourceCombo& cboOrdner, const std::vector<Drive>& drives, const std::string& comboText,
                  const PathRules& paths) {
    for (const Drive& drive : drives) {
        if (drive.type == DriveType::kUnknown || drive.type == DriveType::kNoRoot) continue;
        cboOrdner.add(itemOf(drive, paths));
        const bool systemDrive = drive.root.size() == 1 && drive.root[0] == paths.separator;
        const std::size_t added = cboOrdner.items().size() - 1;
        if (systemDrive || cboOrdner.items()[added].text == comboText) cboOrdner.select(added);
    }
}

void GetAllSavedComboFolders(SourceCombo& cboOrdner, const SettingsStore& settings,
                             const std::vector<Drive>& drives, const std::string& comboText,
                             const std::function<bool(const std::string& folder)>& exists,
                             const PathRules& paths) {
    for (const std::string& folder :
         readNumberedList(settings.read(), kSectionComboFolders, kComboFolderSuffix)) {
        const Drive* drive = driveOfPath(folder, drives, paths);
        const bool remote = drive != nullptr && drive->type == DriveType::kRemote;
        std::string key = identityKey(AddTrailingSlash(folder, paths), paths);
        if ((!remote && !exists(folder)) || cboOrdner.has(key)) continue;
        cboOrdner.add({std::move(key), folder, folder, kPictureSource});
        if (folder == comboText) cboOrdner.select(cboOrdner.items().size() - 1);
    }
}

void SaveAllComboFolders(const SourceCombo& cboOrdner, SettingsStore& settings) {
    std::vector<std::string> folders;
    const auto& items = cboOrdner.items();
    for (auto item = items.rbegin(); item != items.rend() && folders.size() < kMostComboFolders; ++item)
        if (item->image == kPictureSource && !trimBlanks(item->text).empty()) folders.push_back(item->text);
    settings.change(
        [&](IniText& ini) { writeNumberedList(ini, kSectionComboFolders, kComboFolderSuffix, folders); });
}

}  // namespace hl
